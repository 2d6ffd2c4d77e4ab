#include "ShownTip.h"

#include "shared/Content.h"
#include "shared/Places.h"
#include "stage/PreviewStage.h"

#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>
#include <Vidtips/VTXmlElement.h>

#include <QtCore/QFileInfo>
#include <QtDeclarative/QDeclarativeContext>
#include <QtDeclarative/QDeclarativeEngine>
#include <QtDeclarative/QDeclarativeProperty>
#include <QtGui/QTextDocument>
#include <QtGui/QTextDocumentFragment>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

namespace {

constexpr int fewestLetters = 3; // of words that are looked for within others

QString wordsOf(const QGraphicsObject *item)
{
    const QString text = item->property("text").toString();
    const int format = item->property("textFormat").toInt();
    const bool isPlain = format == Qt::PlainText || (format == Qt::AutoText && !Qt::mightBeRichText(text));
    return isPlain ? text : QTextDocumentFragment::fromHtml(text).toPlainText();
}

bool isMirrored(QGraphicsObject *item)
{
    QDeclarativeContext *const context = QDeclarativeEngine::contextForObject(item);
    return QDeclarativeProperty(item, "LayoutMirroring.enabled", context).read().toBool();
}

// Nobody can tell whether an alignment was written or follows the text, which is not mirrored; but a text
// that is read from the right does not go to the left by itself.
int alignmentOf(QGraphicsObject *item, const QString &words)
{
    const int alignment = item->property("horizontalAlignment").toInt();
    const bool isTurned = alignment == Qt::AlignLeft && words.isRightToLeft() && isMirrored(item);
    return isTurned ? int(Qt::AlignRight) : alignment;
}

// The letters stand in the item as it is aligned; they may reach out of it.
QRectF paintedIn(QGraphicsObject *item, const QString &words)
{
    const QSizeF box(item->property("width").toReal(), item->property("height").toReal());
    const QSizeF painted(item->property("paintedWidth").toReal(), item->property("paintedHeight").toReal());
    const int horizontal = alignmentOf(item, words);
    const int vertical = item->property("verticalAlignment").toInt();
    const QSizeF room = box - painted;
    const qreal x = horizontal == Qt::AlignRight ? room.width()
        : horizontal == Qt::AlignHCenter         ? room.width() / 2
                                                 : 0;
    const qreal y = vertical == Qt::AlignBottom ? room.height()
        : vertical == Qt::AlignVCenter          ? room.height() / 2
                                                : 0;
    return QRectF(QPointF(x, y), painted);
}

bool holds(const QString &value, const QString &words)
{
    const QString text = value.simplified();
    return text == words || (words.size() >= fewestLetters && text.contains(words));
}

// Attributes first: an element's own text is often no more than the blanks around others.
Position positionOf(const XmlNode &node, const QString &words)
{
    for (const XmlAttribute &attribute : node.attributes) {
        if (holds(attribute.value, words))
            return attribute.position;
    }
    for (const XmlText &text : node.texts) {
        if (holds(text.text, words))
            return text.position;
    }
    for (const auto &child : node.children) {
        const Position position = positionOf(*child, words);
        if (position.line > 0)
            return position;
    }
    return {};
}

} // namespace

ShownTip::ShownTip(const Content &content, const PreviewStage &stage, const Report &report)
    : m_content(content)
    , m_stage(stage)
    , m_report(report)
    , m_items(stage.items())
{
    for (QGraphicsObject *item : qAsConst(m_items)) {
        if (!item->inherits("QDeclarativeText") || item->effectiveOpacity() <= 0)
            continue;
        const QString words = wordsOf(item);
        const ShownText text{item, words, paintedIn(item, words)};
        if (!text.words.trimmed().isEmpty() && !seen(item, text.painted).isEmpty())
            m_texts << text;
    }
}

QString ShownTip::userInterface() const
{
    return QFileInfo(m_stage.window()->view()->source().toLocalFile()).canonicalFilePath();
}

QSizeF ShownTip::size() const
{
    return m_stage.window()->view()->rootObject()->boundingRect().size();
}

QRectF ShownTip::seen(const QGraphicsItem *item, const QRectF &rect) const
{
    QRectF seen = item->mapRectToScene(rect);
    for (const QGraphicsItem *holder = item; holder; holder = holder->parentItem()) {
        const bool clips = holder->flags().testFlag(QGraphicsItem::ItemClipsChildrenToShape);
        if (clips || !holder->parentItem())
            seen &= holder->mapRectToScene(holder->shape().boundingRect());
    }
    return seen;
}

ItemPlace ShownTip::placeOf(QGraphicsObject *item) const
{
    const ItemPlace place = ItemPlace::of(item);
    return place.file.isEmpty() ? ItemPlace{userInterface(), {}} : place;
}

ItemPlace ShownTip::placeOf(const QString &words) const
{
    const VTXmlElement *const shown = m_stage.window()->view()->content();
    const QString path = shown ? QFileInfo(shown->attribute("VTLocation")).canonicalFilePath() : QString();
    for (const ControlFile &file : m_content.controlFiles()) {
        if (file.path != path)
            continue;
        for (const XmlNode *entry : file.entries()) {
            const bool isIt = entry->attribute("key") == shown->attribute("key");
            const Position position = isIt ? positionOf(*entry, words.simplified()) : Position();
            if (position.line > 0)
                return {file.path, position};
        }
    }
    return {};
}

void ShownTip::add(const QString &code, QGraphicsObject *item, const QString &message) const
{
    const ItemPlace place = placeOf(item);
    m_report({code, place.file, place.position, message});
}

void ShownTip::add(const QString &code, const ShownText &text, const QString &message) const
{
    const ItemPlace item = placeOf(text.item);
    const ItemPlace words = placeOf(text.words);
    if (words.file.isEmpty())
        m_report({code, item.file, item.position, message});
    else
        m_report(
            {code, words.file, words.position, message + " in " + Places::shown(item.file, item.position)});
}

void ShownTip::add(const QString &code, const QString &message) const
{
    m_report({code, userInterface(), {}, message});
}
