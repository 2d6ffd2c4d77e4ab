#include "FitCheck.h"

#include <QtCore/QSize>
#include <QtCore/qmath.h>
#include <QtWidgets/QGraphicsObject>

namespace {

const QSize smallScreen(1280, 720);
constexpr qreal tolerance = 1.5; // pixels: letters are measured in fractions, and items are often whole
constexpr int mostLetters = 40; // of a text that is shown to people

QString shown(const QString &words)
{
    const QString text = words.simplified();
    return '"' + (text.size() > mostLetters ? text.left(mostLetters - 1) + QChar(0x2026) : text) + '"';
}

bool isWithin(const QRectF &rect, const QRectF &outer)
{
    return outer.adjusted(-tolerance, -tolerance, tolerance, tolerance).contains(rect);
}

QString sizes(const QSizeF &needed, const QSizeF &given)
{
    return QString("it takes %1 x %2 pixels and has %3 x %4")
        .arg(qCeil(needed.width()))
        .arg(qCeil(needed.height()))
        .arg(qFloor(given.width()))
        .arg(qFloor(given.height()));
}

// A line that was too long once counts as cut from then on, whatever room it has been given.
bool isCutShort(const QGraphicsObject *item)
{
    if (!item->property("truncated").toBool())
        return false;
    const bool isOneLine = item->property("lineCount").toInt() == 1;
    return !isOneLine || item->property("implicitWidth").toReal() > item->property("width").toReal();
}

// What can be moved into sight is not cut.
bool isScrolled(const QGraphicsItem *item)
{
    for (const QGraphicsItem *holder = item->parentItem(); holder; holder = holder->parentItem()) {
        const QGraphicsObject *const object = const_cast<QGraphicsItem *>(holder)->toGraphicsObject();
        if (object && object->inherits("QDeclarativeFlickable"))
            return true;
    }
    return false;
}

} // namespace

void FitCheck::run(const ShownTip &tip)
{
    const QSizeF size = tip.size();
    if (size.width() > smallScreen.width() || size.height() > smallScreen.height())
        tip.add("VT904",
                QString("the tip is %1 x %2 pixels, and small screens have %3 x %4")
                    .arg(qCeil(size.width()))
                    .arg(qCeil(size.height()))
                    .arg(smallScreen.width())
                    .arg(smallScreen.height()));
    for (const ShownText &text : tip.texts())
        checkText(tip, text);
}

void FitCheck::checkText(const ShownTip &tip, const ShownText &text)
{
    const QRectF whole = text.item->mapRectToScene(text.painted);
    const QRectF seen = tip.seen(text.item, text.painted);
    const QSizeF box(text.item->property("width").toReal(), text.item->property("height").toReal());
    if (isCutShort(text.item))
        tip.add("VT902", text, QString("the text %1 is cut short").arg(shown(text.words)));
    else if (!isScrolled(text.item) && !isWithin(whole, seen))
        tip.add("VT902", text,
                QString("the text %1 is cut: %2").arg(shown(text.words), sizes(whole.size(), seen.size())));
    else if (!isWithin(text.painted, QRectF(QPointF(), box)))
        tip.add("VT903", text,
                QString("the text %1 is larger than its item: %2")
                    .arg(shown(text.words), sizes(text.painted.size(), box)));
}
