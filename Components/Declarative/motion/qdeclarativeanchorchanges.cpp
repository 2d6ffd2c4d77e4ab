#include "qdeclarativeanchorchanges_p.h"

#include <private/qqmlbinding_p.h>
#include <private/qqmlproperty_p.h>
#include <private/qquickstate_p_p.h>

namespace {

const char *const lineNames[] = {"anchors.left",    "anchors.right",  "anchors.horizontalCenter",
                                 "anchors.top",     "anchors.bottom", "anchors.verticalCenter",
                                 "anchors.baseline"};

} // namespace

QDeclarativeAnchorChanges::QDeclarativeAnchorChanges(QObject *parent)
    : QQuickStateOperation(*new QQuickStateOperationPrivate, parent)
{
}

QQmlProperty QDeclarativeAnchorChanges::property(int line) const
{
    return QQmlProperty(m_target, QString::fromLatin1(lineNames[line]));
}

QRectF QDeclarativeAnchorChanges::geometry() const
{
    return m_target ? QRectF(m_target->pos(), QSizeF(m_target->width(), m_target->height())) : QRectF();
}

QQuickStateOperation::ActionList QDeclarativeAnchorChanges::actions()
{
    QQuickStateAction action;
    action.event = this;
    return {action};
}

bool QDeclarativeAnchorChanges::mayOverride(QQuickStateActionEvent *other)
{
    return other->type() == AnchorChanges
        && static_cast<QDeclarativeAnchorChanges *>(other)->m_target == m_target;
}

void QDeclarativeAnchorChanges::saveOriginals()
{
    if (!m_target)
        return;
    for (int line = 0; line < Lines; ++line) {
        const QQmlProperty anchor = property(line);
        m_original[line].binding = QQmlPropertyPrivate::binding(anchor);
        m_original[line].line = anchor.read().value<QDeclarativeAnchorLine>();
    }
    m_originalGeometry = geometry();
    saveCurrentValues();
}

void QDeclarativeAnchorChanges::copyOriginals(QQuickStateActionEvent *other)
{
    const auto *changes = static_cast<QDeclarativeAnchorChanges *>(other);
    std::copy(std::begin(changes->m_original), std::end(changes->m_original), std::begin(m_original));
    m_originalGeometry = changes->m_originalGeometry;
    saveCurrentValues();
}

void QDeclarativeAnchorChanges::saveCurrentValues()
{
    m_currentGeometry = geometry();
}

void QDeclarativeAnchorChanges::saveTargetValues()
{
    m_targetGeometry = geometry();
}

/** Whether the state sets or releases @p line, or it is not as it was before the state. */
bool QDeclarativeAnchorChanges::isConcerned(int line) const
{
    if (!m_anchors.script(Line(line)).isEmpty())
        return true;
    const QQmlProperty anchor = property(line);
    return QQmlPropertyPrivate::binding(anchor) != m_original[line].binding.data()
        || anchor.read().value<QDeclarativeAnchorLine>() != m_original[line].line;
}

void QDeclarativeAnchorChanges::clearBindings()
{
    if (!m_target)
        return;
    for (int line = 0; line < Lines; ++line) {
        if (!isConcerned(line))
            continue;
        QQmlPropertyPrivate::removeBinding(property(line));
        property(line).reset();
    }
}

void QDeclarativeAnchorChanges::restore(int line)
{
    if (m_original[line].binding)
        QQmlPropertyPrivate::setBinding(m_original[line].binding.data());
    else if (m_original[line].line.item)
        property(line).write(QVariant::fromValue(m_original[line].line));
}

void QDeclarativeAnchorChanges::apply(int line)
{
    const QQmlScriptString script = m_anchors.script(Line(line));
    const QQmlProperty anchor = property(line);
    auto *binding =
        QQmlBinding::create(&QQmlPropertyPrivate::get(anchor)->core, script, m_target, qmlContext(this));
    binding->setTarget(anchor);
    QQmlPropertyPrivate::setBinding(anchor, binding);
}

void QDeclarativeAnchorChanges::execute()
{
    if (!m_target)
        return;
    // Releasing comes first: an item that is held on both sides for a moment would be stretched.
    QVarLengthArray<int, Lines> own, back;
    for (int line = 0; line < Lines; ++line) {
        if (!isConcerned(line))
            continue;
        const QQmlScriptString script = m_anchors.script(Line(line));
        QQmlPropertyPrivate::removeBinding(property(line));
        property(line).reset();
        if (script.isEmpty())
            back.append(line);
        else if (!script.isUndefinedLiteral())
            own.append(line);
    }
    for (int line : qAsConst(back))
        restore(line);
    for (int line : qAsConst(own))
        apply(line);
}

bool QDeclarativeAnchorChanges::hadLine(std::initializer_list<int> lines) const
{
    return std::any_of(lines.begin(), lines.end(),
                       [this](int line) { return m_original[line].binding || m_original[line].line.item; });
}

/** Whether the state itself anchors the item at one of @p lines. */
bool QDeclarativeAnchorChanges::setsAny(std::initializer_list<QDeclarativeAnchorSet::Line> lines) const
{
    return std::any_of(lines.begin(), lines.end(), [this](QDeclarativeAnchorSet::Line line) {
        const QQmlScriptString script = m_anchors.script(line);
        return !script.isEmpty() && !script.isUndefinedLiteral();
    });
}

/** Whether the state holds the item at two of these three lines, so that it took its length from them. */
bool QDeclarativeAnchorChanges::setsBoth(int from, int to, int centre) const
{
    int held = 0;
    for (int line : {from, to, centre}) {
        const QQmlScriptString script = m_anchors.script(Line(line));
        held += script.isEmpty() ? hadLine({line}) : !script.isUndefinedLiteral();
    }
    return held > 1;
}

void QDeclarativeAnchorChanges::reverse()
{
    if (!m_target)
        return;
    QVarLengthArray<int, Lines> back;
    for (int line = 0; line < Lines; ++line) {
        if (!isConcerned(line))
            continue;
        QQmlPropertyPrivate::removeBinding(property(line));
        property(line).reset();
        back.append(line);
    }
    using Set = QDeclarativeAnchorSet;
    const int across = hadLine({Set::Left}) + hadLine({Set::Right}) + hadLine({Set::HorizontalCenter});
    const int down = hadLine({Set::Top}) + hadLine({Set::Bottom}) + hadLine({Set::VerticalCenter});
    if (across < 2 && setsBoth(Set::Left, Set::Right, Set::HorizontalCenter))
        m_target->setWidth(m_originalGeometry.width());
    if (down < 2 && setsBoth(Set::Top, Set::Bottom, Set::VerticalCenter))
        m_target->setHeight(m_originalGeometry.height());
    for (int line : qAsConst(back))
        restore(line);
    // What only the state anchored goes back to where it stood.
    if (!across && setsAny({Set::Left, Set::Right, Set::HorizontalCenter}))
        m_target->setX(m_originalGeometry.x());
    if (!down && !hadLine({Set::Baseline})
        && setsAny({Set::Top, Set::Bottom, Set::VerticalCenter, Set::Baseline}))
        m_target->setY(m_originalGeometry.y());
}

void QDeclarativeAnchorChanges::moveTo(const QRectF &rect)
{
    m_target->setPos(rect.topLeft());
    if (m_target->width() != rect.width())
        m_target->setWidth(rect.width());
    if (m_target->height() != rect.height())
        m_target->setHeight(rect.height());
}

void QDeclarativeAnchorChanges::rewind()
{
    if (!m_target)
        return;
    // The anchors stay off until the transition is over.
    clearBindings();
    moveTo(m_currentGeometry);
}

QQuickStateOperation::ActionList QDeclarativeAnchorChanges::additionalActions() const
{
    ActionList actions;
    const auto add = [&](const char *name, qreal from, qreal to) {
        if (from == to)
            return;
        QQuickStateAction action;
        action.property = QQmlProperty(m_target, QString::fromLatin1(name));
        action.fromValue = from;
        action.toValue = to;
        actions << action;
    };
    if (!m_target)
        return actions;
    add("x", m_currentGeometry.x(), m_targetGeometry.x());
    add("y", m_currentGeometry.y(), m_targetGeometry.y());
    add("width", m_currentGeometry.width(), m_targetGeometry.width());
    add("height", m_currentGeometry.height(), m_targetGeometry.height());
    return actions;
}

// Qt keeps the defaults of this interface to itself; these serve our own implementations of it.
QQuickStateActionEvent::~QQuickStateActionEvent() = default;
void QQuickStateActionEvent::execute() { }
bool QQuickStateActionEvent::isReversable()
{
    return false;
}
void QQuickStateActionEvent::reverse() { }
bool QQuickStateActionEvent::changesBindings()
{
    return false;
}
void QQuickStateActionEvent::clearBindings() { }
bool QQuickStateActionEvent::mayOverride(QQuickStateActionEvent *)
{
    return false;
}
