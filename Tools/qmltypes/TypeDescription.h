#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QStringList>

struct QMetaObject;
class QMetaEnum;
class QMetaMethod;
class QMetaProperty;

/**
 * Describes the QML types of one module for editors, in the format of plugins.qmltypes files.
 *
 * The module's types are described with the classes they derive from and the classes of their properties, as
 * far as the QML engine knows those; QObject, which every editor knows, is left out. The same types give the
 * same text.
 */
class TypeDescription
{
public:
    /** Describes what is registered with the QML engine under the import URI @p module. */
    explicit TypeDescription(const QString &module);

    /** Tells whether nothing is registered under the module's URI. */
    bool isEmpty() const;

    /** Returns the description. */
    QByteArray text() const;

private:
    struct Export
    {
        QStringList names;
        QStringList revisions;
        QByteArray attached; ///< the class of what is attached to others; empty for nothing
        bool isCreatable = true;
    };

    void addClass(const QMetaObject *metaObject);
    void addPropertyClasses(const QMetaObject *metaObject);

    QByteArray component(const QMetaObject *metaObject) const;
    QByteArray exports(const QMetaObject *metaObject) const;

    QMap<QByteArray, const QMetaObject *> m_classes;
    QMap<QByteArray, Export> m_exports;
};
