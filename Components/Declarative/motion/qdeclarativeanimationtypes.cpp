#include "qdeclarativeanimationtypes_p.h"

#include "engine/qdeclarativeqttype_p.h"
#include "qdeclarativerotationanimation_p.h"
#include "qdeclarativescriptname_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtCore/QSet>
#include <QtCore/QVector>
#include <QtQml/qqmlinfo.h>

#include <private/qmetaobjectbuilder_p.h>
#include <private/qobject_p.h>
#include <private/qquickanimation_p.h>
#include <private/qquickanimation_p_p.h>

#include <optional>
#include <utility>

namespace {

const char *const animationTypes[] = {
    "Animation",         "PropertyAnimation", "NumberAnimation", "ColorAnimation", "RotationAnimation",
    "Vector3dAnimation", "SmoothedAnimation", "SpringAnimation", "PauseAnimation", "SequentialAnimation",
    "ParallelAnimation", "PropertyAction",    "ScriptAction",
};
constexpr int animationTypeCount = sizeof(animationTypes) / sizeof(animationTypes[0]);

/** QML 1 rotates a target by both of these, and says which of them it lacks. */
const char *const angles[] = {"rotation", "angle"};

/** Says which angles the targets of @p animation lack, where it names no property itself. */
void warnOfMissingAngles(QQuickRotationAnimation *animation)
{
    const auto *d = static_cast<QQuickPropertyAnimationPrivate *>(QObjectPrivate::get(animation));
    if (!d->toIsDefined || d->defaultProperty.isValid() || !d->propertyName.isEmpty()
        || !d->properties.isEmpty())
        return;
    const QList<QObject *> targets = d->target ? d->targets + QList<QObject *>{d->target} : d->targets;
    for (const char *angle : angles) {
        const QString name = QString::fromLatin1(angle);
        for (QObject *target : targets) {
            if (target && !QQmlProperty(target, name).isValid())
                qmlWarning(animation)
                    << QCoreApplication::translate("QDeclarativeAbstractAnimation",
                                                   "Cannot animate non-existent property \"%1\"")
                           .arg(name);
        }
    }
}

/** Likewise for the animations of a group, which start as the group does. */
void warnOfMissingAngles(QQuickAbstractAnimation *animation)
{
    if (auto *rotation = qobject_cast<QQuickRotationAnimation *>(animation))
        return warnOfMissingAngles(rotation);
    auto *group = qobject_cast<QQuickAnimationGroup *>(animation);
    if (!group)
        return;
    const auto children = static_cast<QQuickAnimationGroupPrivate *>(QObjectPrivate::get(group))->animations;
    for (QQuickAbstractAnimation *child : children)
        warnOfMissingAngles(child);
}

/**
 * Gives a class of Qt's animations the signals that QML 1 content knows, in its order.
 *
 * There is completed(), which Qt calls stopped(). Its started() comes when what the animation begins with has
 * been done, and before runningChanged(). An animation that is to run to its end counts as completed when it
 * is stopped, and not again at its end. A ScriptAction without a name goes with scripts of states without
 * one.
 *
 * One object serves all animations of the class, which Qt does not let us derive from, and lives for ever.
 */
class CompletingMetaObject : public QAbstractDynamicMetaObject
{
public:
    explicit CompletingMetaObject(const QMetaObject *qtClass)
    {
        QByteArray name = qtClass->className();
        QMetaObjectBuilder builder;
        builder.setClassName(name.replace("QQuick", "QDeclarative"));
        builder.setSuperClass(qtClass);
        builder.addSignal("completed()");
        builder.addSignal("started()");
        builder.addSignal("runningChanged(bool)");
        if (qtClass->indexOfProperty("scriptName") >= 0)
            m_scriptName.emplace().addTo(&builder, qtClass, "scriptName");
        *static_cast<QMetaObject *>(this) = *builder.toMetaObject();
    }

    void addTo(QObject *animation)
    {
        const QMetaObject &type = QQuickAbstractAnimation::staticMetaObject;
        static const int started = type.indexOfSignal("started()");
        static const int stopped = type.indexOfSignal("stopped()");
        static const int ran = type.indexOfSignal("runningChanged(bool)");
        QObjectPrivate::get(animation)->metaObject = this;
        QMetaObject::connect(animation, started, animation, methodOffset() + Started, Qt::DirectConnection);
        QMetaObject::connect(animation, stopped, animation, methodOffset() + Completed, Qt::DirectConnection);
        QMetaObject::connect(animation, ran, animation, methodOffset() + RunningChanged,
                             Qt::DirectConnection);
        if (m_scriptName)
            m_scriptName->init(animation);
    }

    void objectDestroyed(QObject *animation) override
    {
        m_starting.remove(animation);
        m_stopping.remove(animation);
    }

    int metaCall(QObject *animation, Call call, int id, void **arguments) override
    {
        if (m_scriptName && m_scriptName->metaCall(animation, call, id, arguments))
            return -1;
        const int signal = id - methodOffset();
        if (call != InvokeMetaMethod || signal < 0)
            return animation->qt_metacall(call, id, arguments);
        if (signal == Started)
            m_starting.insert(animation);
        else if (signal == Completed)
            complete(animation);
        else
            runningChange(static_cast<QQuickAbstractAnimation *>(animation));
        return -1;
    }

private:
    enum Signal { Completed, Started, RunningChanged };

    /** What takes no time is over before it says that it runs. */
    void noteStart(QObject *animation)
    {
        if (m_starting.remove(animation))
            activate(animation, this, Started, nullptr);
    }

    void complete(QObject *animation)
    {
        const QPointer<QObject> guard(animation);
        noteStart(animation);
        if (guard && !m_stopping.remove(animation))
            activate(animation, this, Completed, nullptr);
    }

    void runningChange(QQuickAbstractAnimation *animation)
    {
        const QPointer<QObject> guard(animation);
        bool isRunning = animation->isRunning();
        const auto *d = static_cast<QQuickAbstractAnimationPrivate *>(QObjectPrivate::get(animation));
        noteStart(animation);
        if (!guard)
            return;
        if (isRunning)
            warnOfMissingAngles(animation);
        m_stopping.remove(animation);
        if (!isRunning && d->animationInstance && !d->animationInstance->isStopped()) {
            activate(animation, this, Completed, nullptr);
            if (guard)
                m_stopping.insert(animation);
        }
        if (!guard)
            return;
        void *arguments[] = {nullptr, &isRunning};
        activate(animation, this, RunningChanged, arguments);
    }

    std::optional<QDeclarativeScriptName> m_scriptName;
    QSet<QObject *> m_starting; ///< about to do what they begin with
    QSet<QObject *> m_stopping; ///< run to their end, although stopped
};

struct AnimationType
{
    QDeclarativeQtType::CreateFunction create;
    CompletingMetaObject *metaObject;
};
AnimationType completing[animationTypeCount];

template <int index>
void createAnimation(void *memory)
{
    completing[index].create(memory);
    // Every animation class has QObject as its first base.
    completing[index].metaObject->addTo(static_cast<QObject *>(memory));
}

QDeclarativeQtType::CreateFunction createFunction(const QQmlType &type)
{
    if (type.baseMetaObject() == &QQuickRotationAnimation::staticMetaObject)
        return &QDeclarativeRotationAnimation::create;
    return QDeclarativeQtType::createFunction(type);
}

template <int... index>
void registerAnimations(std::integer_sequence<int, index...>)
{
    const QDeclarativeQtType::CreateFunction create[] = {createAnimation<index>...};
    QVector<QQmlType> types;
    for (const char *name : animationTypes)
        types += QDeclarativeQtType::find("QtQuick", name);
    for (int i = 0; i < animationTypeCount; ++i) {
        completing[i] = {createFunction(types.at(i)), new CompletingMetaObject(types.at(i).baseMetaObject())};
        QDeclarativeQtType::registerCopy(
            types.at(i), animationTypes[i],
            {completing[i].create ? create[i] : nullptr, completing[i].metaObject});
    }
    // Properties of these types must go on to take every animation that is derived from Qt's class.
    for (const QQmlType &type : qAsConst(types))
        QDeclarativeQtType::registerAgain(type);
}

} // namespace

void registerDeclarativeAnimationTypes()
{
    registerAnimations(std::make_integer_sequence<int, animationTypeCount>());
}
