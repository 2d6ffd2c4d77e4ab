#pragma once

#include <Vidtips/VTExport.h>

#include <QtDeclarative/QDeclarativeItem>

#include <memory>

/**
 * A QML item that holds a scroll bar of the desktop's style.
 *
 * All numbers live in the scroll bar, in hundredths: a value is cut to two decimals towards zero, and the
 * scroll bar keeps the position between start and end. Setters always emit. QML creates it as "VTScrollBar".
 * GUI thread only.
 */
class VIDTIPS_EXPORT VTScrollBarComponent : public QDeclarativeItem
{
    Q_OBJECT
    /** The position at the scroll bar's beginning, 0 at first. */
    Q_PROPERTY(float start READ start WRITE setStart NOTIFY startChanged)
    /** The position at the scroll bar's end, 0.99 at first. */
    Q_PROPERTY(float end READ end WRITE setEnd NOTIFY endChanged)
    /** The position, between start and end; 0 at first. */
    Q_PROPERTY(float position READ position WRITE setPosition NOTIFY positionChanged)
    /** Whether the scroll bar lies; false at first. */
    Q_PROPERTY(
        bool orientHorizontal READ orientHorizontal WRITE setOrientHorizontal NOTIFY orientHorizontalChanged)
    /** The scroll bar's thickness in pixels: its height when it lies, else its width. */
    Q_PROPERTY(float scrollBarWidth READ scrollBarWidth NOTIFY scrollBarWidthChanged)

public:
    /** Makes an item with a vertical scroll bar inside @p parent, if there is one. */
    explicit VTScrollBarComponent(QDeclarativeItem *parent = nullptr);
    ~VTScrollBarComponent() override;

    /** Returns the position at the scroll bar's beginning. */
    float start() const;

    /** Sets the position at the scroll bar's beginning. Emits startChanged(). */
    void setStart(float start);

    /** Returns the position at the scroll bar's end. */
    float end() const;

    /** Sets the position at the scroll bar's end. Emits endChanged(). */
    void setEnd(float end);

    /** Returns the position, between start and end. */
    float position() const;

    /** Sets the position and emits positionChanged(), a second time when the scroll bar's value changed. */
    void setPosition(float position);

    /** Tells whether the scroll bar lies. */
    bool orientHorizontal() const;

    /** Lays the scroll bar down or stands it up. Emits orientHorizontalChanged(). */
    void setOrientHorizontal(bool horizontal);

    /** Returns the scroll bar's thickness in pixels: its height when it lies, else its width. */
    float scrollBarWidth() const;

    /** Gives the scroll bar the item's size, in whole pixels. It keeps its size until this is called. */
    Q_INVOKABLE void updateDimensions();

    /** Sets the position; positionChanged() is emitted only when the scroll bar's value changed. */
    Q_INVOKABLE void setPositionExternal(float value);

Q_SIGNALS:
    /** Emitted whenever the start is set. */
    void startChanged();

    /** Emitted whenever the end is set. */
    void endChanged();

    /** Emitted whenever the position is set, and whenever the scroll bar's value changed. */
    void positionChanged();

    /** Emitted whenever the orientation is set. */
    void orientHorizontalChanged();

    /** Never emitted: the thickness is read where it is needed. */
    void scrollBarWidthChanged();

public Q_SLOTS:
    /** Tells that the scroll bar's value changed; @p value is not read. */
    void scrollBarPositionChanged(int value);

protected:
    /** Passes visibility and opacity on to the scroll bar. */
    QVariant itemChange(QGraphicsItem::GraphicsItemChange change, const QVariant &value) override;

private:
    struct Private;
    std::unique_ptr<Private> const d;
};
