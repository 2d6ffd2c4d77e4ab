#include "qdeclarativestate_p.h"

#include <private/qqmlbinding_p.h>
#include <private/qqmlproperty_p.h>
#include <private/qquickstate_p_p.h>
#include <private/qquickstategroup_p.h>

void QDeclarativeState::setWhen(bool when)
{
    // Which of several conditions hears first of what they share must not decide which state is entered.
    const QList<QQuickState *> states = stateGroup() ? stateGroup()->states() : QList<QQuickState *>();
    for (QQuickState *state : states) {
        auto *other = qobject_cast<QDeclarativeState *>(state);
        if (other && other != this)
            other->updateWhen();
    }
    QQuickState::setWhen(when);
}

/** Notes what the condition has become, without entering or leaving any state for it. */
void QDeclarativeState::updateWhen()
{
    const QQmlProperty property(this, QStringLiteral("when"));
    auto *binding = dynamic_cast<QQmlBinding *>(QQmlPropertyPrivate::binding(property));
    // While the states are being made their conditions are not yet to be asked.
    if (!isWhenKnown() || !binding)
        return;
    const bool isTrue = binding->evaluate().toBool();
    static_cast<QQuickStatePrivate *>(QObjectPrivate::get(this))->when = isTrue;
}
