#pragma once

#include <Vidtips/VTExport.h>

#include <QtDeclarative/QDeclarativeItem>

#include <QtCore/QString>
#include <QtGui/QColor>

#include <memory>

namespace Vidtips {

/**
 * A QML item that paints a filled rectangle in the desktop's colours: those of tool tips or those of windows.
 *
 * In window colours only an item without a parent item paints, as the background of a whole user interface.
 * QML creates it as "VTStyledRectangle". GUI thread only.
 */
class VIDTIPS_EXPORT VTStyledRectangleComponent : public QDeclarativeItem
{
    Q_OBJECT
    /** The name of the style element, "PE_Widget" or "PE_Frame"; painting does not depend on it. */
    Q_PROPERTY(QString element READ element WRITE setElement NOTIFY elementChanged)
    /** The colour for text on the rectangle. */
    Q_PROPERTY(QColor textColor READ textColor NOTIFY textColorChanged)
    /** Whether the rectangle is painted in the colours of tool tips; false at first. */
    Q_PROPERTY(bool toolTipStyle READ toolTipStyle WRITE setToolTipStyle NOTIFY toolTipStyleChanged)

public:
    /** Makes an item in window colours inside @p parent, if there is one. */
    explicit VTStyledRectangleComponent(QDeclarativeItem *parent = nullptr);
    ~VTStyledRectangleComponent() override;

    /** Returns the name of the style element; "PE_Widget" at first. Painting does not depend on it. */
    QString element() const;

    /**
     * Sets the style element, "PE_Widget" or "PE_Frame", and emits elementChanged(), also when it stays the
     * same. Any other name changes nothing.
     */
    void setElement(const QString &element);

    /** Returns the style element's number, a QStyle::PrimitiveElement. */
    int elementType() const;

    /** Returns the colour for text on the rectangle: black on a tip, else the palette's window text. */
    QColor textColor() const;

    /** Tells whether the rectangle is painted in the colours of tool tips; false at first. */
    bool toolTipStyle() const;

    /** Sets the colours. Emits toolTipStyleChanged() and textColorChanged(), also when nothing changes. */
    void setToolTipStyle(bool toolTipStyle);

    /** Paints the rectangle; in window colours it reaches one unit beyond the item on every side. */
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

Q_SIGNALS:
    /** Emitted whenever a known style element is set. */
    void elementChanged();

    /** Emitted whenever the colours are set. */
    void textColorChanged();

    /** Emitted whenever the colours are set, before textColorChanged(). */
    void toolTipStyleChanged();

private:
    struct Private;
    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
