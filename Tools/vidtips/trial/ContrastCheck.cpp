#include "ContrastCheck.h"

#include "stage/PreviewStage.h"

#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>

#include <QtGui/QFontInfo>
#include <QtGui/QImage>
#include <QtGui/QTextBlock>
#include <QtGui/QTextDocument>
#include <QtWidgets/QGraphicsEffect>
#include <QtWidgets/QGraphicsObject>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

constexpr qreal needed = 4.5;
constexpr qreal neededForLarge = 3.0;
constexpr qreal large = 24; // pixels, 18 points
constexpr qreal largeBold = 18.66; // pixels, 14 points
constexpr qreal nothing = 1.01; // letters that cannot be told from what is behind them

/** Paints nothing, and unlike another opacity tells nobody. */
class Invisibility : public QGraphicsEffect
{
protected:
    void draw(QPainter *) override { }
};

/** Hides texts for as long as it exists. An item with an effect of its own stays as it is. */
class WithoutTexts
{
public:
    explicit WithoutTexts(const QVector<ShownText> &texts)
    {
        for (const ShownText &text : texts) {
            if (text.item->graphicsEffect())
                continue;
            text.item->setGraphicsEffect(new Invisibility);
            m_hidden << text.item;
        }
    }

    ~WithoutTexts()
    {
        for (QGraphicsObject *item : qAsConst(m_hidden))
            item->setGraphicsEffect(nullptr);
    }

private:
    Q_DISABLE_COPY(WithoutTexts)
    QVector<QGraphicsObject *> m_hidden;
};

QImage pictureOf(const ShownTip &tip)
{
    return tip.stage().window()->grab().toImage().convertToFormat(QImage::Format_RGB32);
}

QRect inPicture(const ShownTip &tip, const QRectF &inScene, const QImage &picture)
{
    const Vidtips::VTView *const view = tip.stage().window()->view();
    const QRect inView = view->mapFromScene(inScene).boundingRect();
    const QPoint origin = view->viewport()->mapTo(tip.stage().window(), QPoint());
    const qreal ratio = picture.devicePixelRatio();
    const QRectF rect = inView.translated(origin);
    return QRectF(rect.topLeft() * ratio, rect.size() * ratio).toRect() & picture.rect();
}

qreal channel(int value)
{
    const qreal part = value / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

qreal luminance(QRgb colour)
{
    return 0.2126 * channel(qRed(colour)) + 0.7152 * channel(qGreen(colour))
        + 0.0722 * channel(qBlue(colour));
}

QRgb blended(const QColor &colour, qreal opacity, QRgb behind)
{
    const auto mix = [opacity](int above, int below) {
        return qRound(above * opacity + below * (1 - opacity));
    };
    return qRgb(mix(colour.red(), qRed(behind)), mix(colour.green(), qGreen(behind)),
                mix(colour.blue(), qBlue(behind)));
}

qreal neededBy(const QGraphicsObject *item)
{
    const QFontInfo font(item->property("font").value<QFont>());
    const qreal size = font.pixelSize() * item->sceneTransform().m22();
    return size >= large || (font.bold() && size >= largeBold) ? neededForLarge : needed;
}

struct Pair
{
    QRgb front = 0;
    QRgb behind = 0;
    qreal contrast = 0;
};

// The letters are on one background, or on one that changes: what counts is the worst tenth of it.
Pair worst(std::vector<Pair> &pairs)
{
    const auto tenth = pairs.begin() + std::ptrdiff_t(pairs.size() / 10);
    std::nth_element(pairs.begin(), tenth, pairs.end(),
                     [](const Pair &a, const Pair &b) { return a.contrast < b.contrast; });
    return *tenth;
}

// An outline is what the letters stand on.
QColor outlineOf(const QGraphicsObject *item)
{
    constexpr int outline = 1;
    return item->property("style").toInt() == outline ? item->property("styleColor").value<QColor>()
                                                      : QColor();
}

// Words of rich texts may have colours of their own.
QVector<QColor> coloursOf(const QGraphicsObject *item)
{
    const QColor colour = item->property("color").value<QColor>();
    if (item->property("textFormat").toInt() == Qt::PlainText)
        return {colour};
    QTextDocument document;
    document.setHtml(item->property("text").toString());
    QVector<QColor> colours;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto it = block.begin(); !it.atEnd(); ++it) {
            const QBrush brush = it.fragment().charFormat().foreground();
            const QColor its = brush.style() == Qt::NoBrush ? colour : brush.color();
            if (!it.fragment().text().trimmed().isEmpty() && !colours.contains(its))
                colours << its;
        }
    }
    return colours;
}

Pair worstOf(const QColor &colour, const QRect &rect, const QGraphicsObject *item, const QImage &behind)
{
    const qreal opacity = item->effectiveOpacity() * colour.alphaF();
    const QColor outline = outlineOf(item);
    std::vector<Pair> pairs;
    Pair last;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            const QRgb ground = outline.isValid() ? outline.rgb() : behind.pixel(x, y);
            if (pairs.empty() || ground != last.behind) {
                const QRgb front = blended(colour, opacity, ground);
                last = {front, ground, ContrastCheck::between(front, ground)};
            }
            pairs.push_back(last);
        }
    }
    return worst(pairs);
}

bool differs(const QImage &one, const QImage &other, const QRect &rect)
{
    return one.copy(rect) != other.copy(rect);
}

} // namespace

qreal ContrastCheck::between(QRgb one, QRgb other)
{
    const qreal a = luminance(one);
    const qreal b = luminance(other);
    return (qMax(a, b) + 0.05) / (qMin(a, b) + 0.05);
}

void ContrastCheck::run(const ShownTip &tip)
{
    if (tip.texts().isEmpty())
        return;
    QImage behind;
    {
        const WithoutTexts hidden(tip.texts());
        behind = pictureOf(tip);
    }
    QImage whole; // made where it is needed
    for (const ShownText &text : tip.texts()) {
        if (text.item->graphicsEffect())
            continue;
        for (const QColor &colour : coloursOf(text.item))
            checkText(tip, text, colour, behind, whole);
    }
}

void ContrastCheck::checkText(const ShownTip &tip, const ShownText &text, const QColor &colour,
                              const QImage &behind, QImage &whole)
{
    const QRect rect = inPicture(tip, tip.seen(text.item, text.painted), behind);
    if (rect.isEmpty())
        return;
    const Pair found = worstOf(colour, rect, text.item, behind);
    const qreal enough = neededBy(text.item);
    if (found.contrast >= enough)
        return;
    if (whole.isNull())
        whole = pictureOf(tip);
    // Something lies over the whole of it; or it is of the same colour, which is worst.
    if (found.contrast > nothing && !differs(whole, behind, rect))
        return;
    tip.add("VT907", text.item,
            QString("the contrast of a text is %1, and %2 is needed: %3 on %4")
                .arg(QString::number(found.contrast, 'f', 2), QString::number(enough, 'f', 1),
                     QColor(found.front).name(), QColor(found.behind).name()));
}
