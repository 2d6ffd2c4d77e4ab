#include "qdeclarativeanimationtypes_p.h"

#include "engine/qdeclarativeqttype_p.h"

#include <QtCore/QVector>

#include <private/qmetaobjectbuilder_p.h>
#include <private/qobject_p.h>
#include <private/qquickanimation_p.h>

#include <utility>

namespace {

const char *const animationTypes[] = {
    "Animation",         "PropertyAnimation", "NumberAnimation", "ColorAnimation", "RotationAnimation",
    "Vector3dAnimation", "SmoothedAnimation", "SpringAnimation", "PauseAnimation", "SequentialAnimation",
    "ParallelAnimation", "PropertyAction",    "ScriptAction",
};
constexpr int animationTypeCount = sizeof(animationTypes) / sizeof(animationTypes[0]);

/**
 * Adds the signal completed() to a class of Qt's animations, whose own is called stopped().
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
        *static_cast<QMetaObject *>(this) = *builder.toMetaObject();
    }

    void addTo(QObject *animation)
    {
        static const int stopped = QQuickAbstractAnimation::staticMetaObject.indexOfSignal("stopped()");
        QObjectPrivate::get(animation)->metaObject = this;
        QMetaObject::connect(animation, stopped, animation, methodOffset(), Qt::DirectConnection);
    }

    void objectDestroyed(QObject *) override { }

    int metaCall(QObject *animation, Call call, int id, void **arguments) override
    {
        if (call != InvokeMetaMethod || id != methodOffset())
            return animation->qt_metacall(call, id, arguments);
        activate(animation, this, 0, nullptr);
        return -1;
    }
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

template <int... index>
void registerAnimations(std::integer_sequence<int, index...>)
{
    const QDeclarativeQtType::CreateFunction create[] = {createAnimation<index>...};
    QVector<QQmlType> types;
    for (const char *name : animationTypes)
        types += QDeclarativeQtType::find("QtQuick", name);
    for (int i = 0; i < animationTypeCount; ++i) {
        completing[i] = {QDeclarativeQtType::createFunction(types.at(i)),
                         new CompletingMetaObject(types.at(i).baseMetaObject())};
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
