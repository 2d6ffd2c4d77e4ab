#include "DirectionCheck.h"

#include <QtGui/QGuiApplication>
#include <QtWidgets/QGraphicsObject>

#include <algorithm>

namespace {

constexpr qreal wide = 8; // pixels that are seen to be on the wrong side

// Words in the middle, or spread over the lines, are on no side.
bool hasNoSide(const QGraphicsObject *item)
{
    const int alignment = item->property("horizontalAlignment").toInt();
    return alignment == Qt::AlignHCenter || alignment == Qt::AlignJustify;
}

QRectF placeOf(const ShownText &text)
{
    return text.item->mapRectToScene(text.painted);
}

// Whether another text, or a column of them, is what this one stands to the left of.
bool hasNeighbour(const ShownTip &tip, const ShownText &text)
{
    const QRectF place = placeOf(text);
    const QVector<ShownText> &texts = tip.texts();
    return std::any_of(texts.cbegin(), texts.cend(), [&](const ShownText &other) {
        const QRectF there = placeOf(other);
        return other.item != text.item && there.left() >= place.right() && there.top() < place.bottom()
            && there.bottom() > place.top();
    });
}

} // namespace

void DirectionCheck::run(const ShownTip &tip)
{
    if (QGuiApplication::layoutDirection() != Qt::RightToLeft)
        return;
    for (const ShownText &text : tip.texts()) {
        if (text.words.isRightToLeft() && !hasNoSide(text.item) && standsWrong(tip, text))
            tip.add("VT906", text.item,
                    "a text that is read from right to left stands at the left of its place");
    }
}

// A text with room in its item stands at the right of that; one without, at the right of the tip.
bool DirectionCheck::standsWrong(const ShownTip &tip, const ShownText &text)
{
    const qreal room = text.item->property("width").toReal() - text.painted.width();
    if (room > wide)
        return text.painted.left() < room - wide;
    const QRectF place = placeOf(text);
    const qreal right = tip.size().width() - place.right();
    return right > 2 * place.left() + wide && !hasNeighbour(tip, text);
}
