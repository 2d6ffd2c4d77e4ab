#pragma once

#include "item/qdeclarativeitem.h"

#include <QtGui/QColor>
#include <QtGui/QFont>

class QDeclarativeTextPrivate;

/**
 * Shows plain, styled or rich text.
 *
 * Plain and styled text are laid out by lines; rich text, and automatic text that looks like markup, is a
 * whole document with tables, lists and pictures. Sizes are in pixels.
 *
 * Until something reads implicitWidth no natural width is measured; each layout then announces a change of
 * it, so that a binding that uses it asks. Eliding a single line sets truncated, which stays set when the
 * line merely gets enough room later.
 */
class QDeclarativeText : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(qreal implicitWidth READ implicitWidth NOTIFY implicitWidthChanged REVISION 1)
    Q_PROPERTY(qreal implicitHeight READ implicitHeight NOTIFY implicitHeightChanged REVISION 1)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
    Q_PROPERTY(TextStyle style READ style WRITE setStyle NOTIFY styleChanged)
    Q_PROPERTY(QColor styleColor READ styleColor WRITE setStyleColor NOTIFY styleColorChanged)
    Q_PROPERTY(HAlignment horizontalAlignment READ hAlign WRITE setHAlign RESET resetHAlign NOTIFY
                   horizontalAlignmentChanged)
    Q_PROPERTY(VAlignment verticalAlignment READ vAlign WRITE setVAlign NOTIFY verticalAlignmentChanged)
    Q_PROPERTY(WrapMode wrapMode READ wrapMode WRITE setWrapMode NOTIFY wrapModeChanged)
    Q_PROPERTY(int lineCount READ lineCount NOTIFY lineCountChanged REVISION 1)
    Q_PROPERTY(bool truncated READ truncated NOTIFY truncatedChanged REVISION 1)
    Q_PROPERTY(int maximumLineCount READ maximumLineCount WRITE setMaximumLineCount RESET
                   resetMaximumLineCount NOTIFY maximumLineCountChanged REVISION 1)
    Q_PROPERTY(TextFormat textFormat READ textFormat WRITE setTextFormat NOTIFY textFormatChanged)
    Q_PROPERTY(TextElideMode elide READ elideMode WRITE setElideMode NOTIFY elideModeChanged)
    Q_PROPERTY(qreal paintedWidth READ paintedWidth NOTIFY paintedSizeChanged)
    Q_PROPERTY(qreal paintedHeight READ paintedHeight NOTIFY paintedSizeChanged)
    Q_PROPERTY(qreal lineHeight READ lineHeight WRITE setLineHeight NOTIFY lineHeightChanged REVISION 1)
    Q_PROPERTY(LineHeightMode lineHeightMode READ lineHeightMode WRITE setLineHeightMode NOTIFY
                   lineHeightModeChanged REVISION 1)

public:
    enum HAlignment {
        AlignLeft = Qt::AlignLeft,
        AlignRight = Qt::AlignRight,
        AlignHCenter = Qt::AlignHCenter,
        AlignJustify = Qt::AlignJustify
    };
    Q_ENUM(HAlignment)
    enum VAlignment {
        AlignTop = Qt::AlignTop,
        AlignBottom = Qt::AlignBottom,
        AlignVCenter = Qt::AlignVCenter
    };
    Q_ENUM(VAlignment)
    enum TextStyle { Normal, Outline, Raised, Sunken };
    Q_ENUM(TextStyle)
    enum TextFormat {
        PlainText = Qt::PlainText,
        RichText = Qt::RichText,
        AutoText = Qt::AutoText,
        StyledText = 4
    };
    Q_ENUM(TextFormat)
    enum TextElideMode {
        ElideLeft = Qt::ElideLeft,
        ElideRight = Qt::ElideRight,
        ElideMiddle = Qt::ElideMiddle,
        ElideNone = Qt::ElideNone
    };
    Q_ENUM(TextElideMode)
    enum WrapMode { NoWrap = 0, WordWrap = 1, WrapAnywhere = 3, Wrap = 4, WrapAtWordBoundaryOrAnywhere = 4 };
    Q_ENUM(WrapMode)
    enum LineHeightMode { ProportionalHeight, FixedHeight };
    Q_ENUM(LineHeightMode)

    explicit QDeclarativeText(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeText() override;

    QString text() const;
    void setText(const QString &);
    QFont font() const;
    void setFont(const QFont &);
    QColor color() const;
    void setColor(const QColor &);
    TextStyle style() const;
    void setStyle(TextStyle);
    QColor styleColor() const;
    void setStyleColor(const QColor &);

    /** Where none is set, it follows the direction of the text. */
    HAlignment hAlign() const;
    void setHAlign(HAlignment);
    void resetHAlign();
    VAlignment vAlign() const;
    void setVAlign(VAlignment);
    WrapMode wrapMode() const;
    void setWrapMode(WrapMode);

    /** The lines of plain or styled text; rich text counts as one. */
    int lineCount() const;
    bool truncated() const;
    int maximumLineCount() const;
    void setMaximumLineCount(int);
    void resetMaximumLineCount();
    TextFormat textFormat() const;
    void setTextFormat(TextFormat);
    TextElideMode elideMode() const;
    void setElideMode(TextElideMode);
    qreal paintedWidth() const;
    qreal paintedHeight() const;
    qreal lineHeight() const;
    void setLineHeight(qreal);
    LineHeightMode lineHeightMode() const;
    void setLineHeightMode(LineHeightMode);

    QRectF boundingRect() const override;
    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override;

Q_SIGNALS:
    void textChanged(const QString &text);
    void linkActivated(const QString &link);
    void fontChanged(const QFont &font);
    void colorChanged(const QColor &color);
    void styleChanged(QDeclarativeText::TextStyle style);
    void styleColorChanged(const QColor &color);
    void horizontalAlignmentChanged(QDeclarativeText::HAlignment alignment);
    void verticalAlignmentChanged(QDeclarativeText::VAlignment alignment);
    void wrapModeChanged();
    Q_REVISION(1) void lineCountChanged();
    Q_REVISION(1) void truncatedChanged();
    Q_REVISION(1) void maximumLineCountChanged();
    void textFormatChanged(QDeclarativeText::TextFormat textFormat);
    void elideModeChanged(QDeclarativeText::TextElideMode mode);
    void paintedSizeChanged();
    Q_REVISION(1) void lineHeightChanged(qreal lineHeight);
    Q_REVISION(1) void lineHeightModeChanged(QDeclarativeText::LineHeightMode mode);

protected:
    QVariant itemChange(GraphicsItemChange, const QVariant &) override;
    void componentComplete() override;
    void geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void mousePressEvent(QGraphicsSceneMouseEvent *) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent *) override;

private:
    Q_DISABLE_COPY(QDeclarativeText)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeText)
};

QML_DECLARE_TYPE(QDeclarativeText)
