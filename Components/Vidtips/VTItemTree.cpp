#include "VTItemTree_p.h"

#include "VTAccessible_p.h"
#include "VTScrollBarComponent.h"
#include "VTTipWords_p.h"
#include "VTVideoComponent.h"

#include <QtCore/QMetaMethod>
#include <QtCore/QStringList>
#include <QtCore/QUrl>
#include <QtWidgets/QGraphicsObject>

#include <functional>

namespace Vidtips::VTItemTree {

namespace {

/** Makes a question that every object can answer itself one that others can ask. */
class OpenObject : public QObject
{
public:
    using QObject::isSignalConnected;
};

bool isHeard(const QObject *object, const char *signal)
{
    const QMetaObject *const meta = object->metaObject();
    for (int i = QObject::staticMetaObject.methodCount(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        const bool isNamed = method.methodType() == QMetaMethod::Signal && method.name() == signal;
        if (isNamed && (object->*&OpenObject::isSignalConnected)(method))
            return true;
    }
    return false;
}

// Areas are also there for hovering alone, and for keeping the mouse from what is below.
bool isClickable(const QGraphicsObject *item)
{
    if (!item->inherits("QDeclarativeMouseArea") || !item->property("enabled").toBool())
        return false;
    const char *const answers[] = {"clicked", "pressed", "released", "doubleClicked", "pressAndHold"};
    for (const char *const signal : answers) {
        if (isHeard(item, signal))
            return true;
    }
    return false;
}

QAccessible::Role roleOfClip(const VTVideoComponent *clip)
{
    const bool isThere = !clip->source().isEmpty() && clip->status() != VTVideoComponent::Error;
    return isThere ? QAccessible::Animation : QAccessible::NoRole;
}

QAccessible::Role roleOfClass(const QGraphicsObject *item)
{
    if (item->inherits("QDeclarativeText"))
        return text(item).isEmpty() ? QAccessible::NoRole : QAccessible::StaticText;
    if (item->inherits("QDeclarativeTextInput") || item->inherits("QDeclarativeTextEdit"))
        return QAccessible::EditableText;
    if (item->inherits("QDeclarativeImage"))
        return item->property("source").toUrl().isEmpty() ? QAccessible::NoRole : QAccessible::Graphic;
    if (const auto *const clip = qobject_cast<const VTVideoComponent *>(item))
        return roleOfClip(clip);
    if (qobject_cast<const VTScrollBarComponent *>(item))
        return QAccessible::ScrollBar;
    return isClickable(item) ? QAccessible::Button : QAccessible::NoRole;
}

using Visitor = std::function<void(QGraphicsObject *)>;

// Calls the function for the visible items below that are told of; goes into those that are no wholes.
void visit(const QGraphicsItem *parent, bool intoTold, const Visitor &visitor)
{
    const QList<QGraphicsItem *> items = parent->childItems();
    for (QGraphicsItem *const item : items) {
        if (!item->isVisible())
            continue;
        QGraphicsObject *const object = item->toGraphicsObject();
        const bool isTold = object && role(object) != QAccessible::NoRole;
        if (isTold)
            visitor(object);
        if (!isTold || intoTold)
            visit(item, intoTold, visitor);
    }
}

QStringList textsBelow(const QGraphicsItem *parent, const QRectF &sceneRect)
{
    QStringList texts;
    visit(parent, true, [&](const QGraphicsObject *item) {
        const bool isText = item->inherits("QDeclarativeText");
        if (isText && (sceneRect.isNull() || sceneRect.contains(item->sceneBoundingRect().center())))
            texts << text(item);
    });
    return texts;
}

} // namespace

QAccessible::Role role(const QGraphicsObject *item)
{
    const VTAccessible *const said = VTAccessible::of(item);
    if (said && said->isIgnored())
        return QAccessible::NoRole;
    if (said && said->role() != VTAccessible::NoRole)
        return QAccessible::Role(said->role());
    const QAccessible::Role role = roleOfClass(item);
    // What has a name has one for being told of.
    const bool isNamed = said && !said->name().isEmpty();
    return role == QAccessible::NoRole && isNamed ? QAccessible::Grouping : role;
}

QList<QGraphicsObject *> children(const QGraphicsItem *parent)
{
    QList<QGraphicsObject *> found;
    const QGraphicsObject *const object = const_cast<QGraphicsItem *>(parent)->toGraphicsObject();
    if (object && isWhole(object))
        return found;
    visit(parent, false, [&found](QGraphicsObject *item) { found << item; });
    return found;
}

bool isWhole(const QGraphicsObject *item)
{
    const VTAccessible *const said = VTAccessible::of(item);
    if (said && said->role() != VTAccessible::NoRole)
        return VTAccessible::isWhole(QAccessible::Role(said->role()));
    bool isWhole = role(item) == QAccessible::Button;
    visit(item, true, [&isWhole](const QGraphicsObject *inside) {
        const QAccessible::Role itsRole = role(inside);
        isWhole = isWhole && (itsRole == QAccessible::StaticText || itsRole == QAccessible::Graphic);
    });
    return isWhole;
}

QGraphicsObject *teller(QGraphicsItem *item)
{
    QGraphicsObject *told = nullptr;
    for (; item; item = item->parentItem()) {
        QGraphicsObject *const object = item->toGraphicsObject();
        const QAccessible::Role itsRole = object ? role(object) : QAccessible::NoRole;
        if (itsRole != QAccessible::NoRole && (!told || isWhole(object)))
            told = object;
    }
    return told;
}

QGraphicsObject *clickableArea(QGraphicsObject *item)
{
    if (isClickable(item))
        return item;
    const QList<QGraphicsItem *> items = item->childItems();
    for (QGraphicsItem *const child : items) {
        QGraphicsObject *const object = child->isVisible() ? child->toGraphicsObject() : nullptr;
        QGraphicsObject *const area = object ? clickableArea(object) : nullptr;
        if (area)
            return area;
    }
    return nullptr;
}

QString label(const QGraphicsObject *item)
{
    const QString texts = textsBelow(item, QRectF()).join(QLatin1Char(' '));
    const QGraphicsObject *const parent = item->parentObject();
    if (!texts.isEmpty() || !parent || !item->inherits("QDeclarativeMouseArea"))
        return texts;
    const VTAccessible *const said = VTAccessible::of(parent);
    if (said && !said->name().isEmpty())
        return said->name();
    if (parent->inherits("QDeclarativeText"))
        return text(parent);
    return textsBelow(parent, item->sceneBoundingRect()).join(QLatin1Char(' '));
}

QString text(const QGraphicsObject *item)
{
    const QString text = item->property("text").toString();
    const QVariant format = item->property("textFormat");
    const bool isPlain = !format.isValid() || format.toInt() == Qt::PlainText;
    return isPlain ? text : VTTipWords::plain(text);
}

} // namespace Vidtips::VTItemTree
