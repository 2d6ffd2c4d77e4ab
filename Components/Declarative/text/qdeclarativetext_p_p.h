#pragma once

#include "item/qdeclarativeitem_p.h"
#include "qdeclarativetext_p.h"
#include "qdeclarativetextdocument_p.h"
#include "qdeclarativetextlayout_p.h"

#include <limits>

/** What a Text shows, and how it lays that out and draws it. */
class QDeclarativeTextPrivate : public QDeclarativeItemPrivate
{
    Q_DECLARE_PUBLIC(QDeclarativeText)

public:
    void updateLayout();
    void updateSizes(const QSizeF &);
    void prepareText();
    void layOutLines();
    void layOutDocument();
    QSizeF clearLayout();
    void setLineCount(int);
    void setTruncated(bool);
    void updateAlignment();
    void mirrorChange() override;
    bool reactsToWidth() const;
    QDeclarativeTextLayout::Parameters parameters() const;
    Qt::Alignment effectiveAlignment() const;
    qreal naturalWidth() const;
    qreal implicitWidth() const override;
    qreal verticalOffset() const;
    QRectF contentRect() const;
    void draw(QPainter *, const QPointF &, const QColor &, bool isStyle, const QRectF &exposed);
    QRectF drawnRect(const QRectF &exposed) const;
    QString linkAt(const QPointF &) const;

    QString text;
    QString shownText; ///< without the markup of styled text, lines separated by QChar::LineSeparator
    QVector<QTextLayout::FormatRange> formats;
    QFont font;
    QColor color = Qt::black;
    QColor styleColor;
    QScopedPointer<QDeclarativeTextLayout> layout;
    QScopedPointer<QDeclarativeTextDocument> document; ///< exists while the text is rich
    QString activeLink;
    QSizeF paintedSize;
    int maximumLineCount = std::numeric_limits<int>::max();
    int lineCount = 1;
    qreal lineHeight = 1;
    QDeclarativeText::HAlignment hAlign = QDeclarativeText::AlignLeft;
    QDeclarativeText::VAlignment vAlign = QDeclarativeText::AlignTop;
    QDeclarativeText::TextStyle style = QDeclarativeText::Normal;
    QDeclarativeText::TextFormat format = QDeclarativeText::AutoText;
    QDeclarativeText::TextElideMode elide = QDeclarativeText::ElideNone;
    QDeclarativeText::WrapMode wrapMode = QDeclarativeText::NoWrap;
    QDeclarativeText::LineHeightMode lineHeightMode = QDeclarativeText::ProportionalHeight;
    bool isTruncated = false;
    bool isTextDirty = true;
    bool keepsTruncated = false;
    bool alignmentIsSet = false;
    bool isSizing = false;
    bool implicitWidthIsRead = false;
};
