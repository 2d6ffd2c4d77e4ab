#pragma once

#include <QtDeclarative/qtdeclarativeglobal.h>

#include <QtCore/QMetaType>
#include <QtQml/QQmlListProperty>
#include <QtQml/QQmlListReference>

class QDeclarativeEngine;

/**
 * The value of a property that is a list of objects in QML.
 *
 * It names its owner and the functions that work on the list, or a QList of the owner. A function that is
 * null takes that use from QML.
 */
template <typename T>
class QDeclarativeListProperty : public QQmlListProperty<T>
{
public:
    using AppendFunction = void (*)(QDeclarativeListProperty<T> *, T *); ///< adds an object at the end
    using CountFunction = int (*)(QDeclarativeListProperty<T> *); ///< tells how many there are
    using AtFunction = T *(*)(QDeclarativeListProperty<T> *, int); ///< gives the object at an index
    using ClearFunction = void (*)(QDeclarativeListProperty<T> *); ///< removes all

    /** Makes a list of nothing that nothing can be added to. */
    QDeclarativeListProperty() = default;

    /** Makes a copy of @p other. */
    QDeclarativeListProperty(const QQmlListProperty<T> &other)
        : QQmlListProperty<T>(other)
    {
    }

    /** Makes a list of what is in @p list, which @p object owns. */
    QDeclarativeListProperty(QObject *object, QList<T *> &list)
        : QQmlListProperty<T>(object, &list)
    {
        Q_UNUSED(typeId)
    }

    /** Makes a list of @p object by functions, which find @p data in the list that they are called with. */
    QDeclarativeListProperty(QObject *object, void *data, AppendFunction append,
                             CountFunction count = nullptr, AtFunction at = nullptr,
                             ClearFunction clear = nullptr)
        : QQmlListProperty<T>(object, data, reinterpret_cast<typename Base::AppendFunction>(append),
                              reinterpret_cast<typename Base::CountFunction>(count),
                              reinterpret_cast<typename Base::AtFunction>(at),
                              reinterpret_cast<typename Base::ClearFunction>(clear))
    {
        Q_UNUSED(typeId)
    }

    /**
     * Makes the list's type known by the name that moc writes down, and returns its number.
     *
     * The engine knows it by the name of Qt's template. Runs by itself in each library that makes such a
     * list.
     */
    static int makeNameKnown()
    {
        const QByteArray argument = QByteArray("<") + T::staticMetaObject.className() + '>';
        const int id = qRegisterNormalizedMetaType<Base>("QQmlListProperty" + argument);
        return QMetaType::registerNormalizedTypedef("QDeclarativeListProperty" + argument, id);
    }

private:
    using Base = QQmlListProperty<T>;

    static const int typeId;
};

template <typename T>
const int QDeclarativeListProperty<T>::typeId = QDeclarativeListProperty<T>::makeNameKnown();

/** A list property of an object, to be read and changed by C++ that knows its name only. */
class QDeclarativeListReference : public QQmlListReference
{
public:
    QDeclarativeListReference() = default;
    using QQmlListReference::QQmlListReference;

    /** Makes a reference to the list that @p other refers to. */
    QDeclarativeListReference(const QQmlListReference &other)
        : QQmlListReference(other)
    {
    }
};

/** A variant that the engine makes holds its own class, which passes for this one. */
template <>
struct QMetaTypeId<QDeclarativeListReference> : QMetaTypeId<QQmlListReference>
{
};
