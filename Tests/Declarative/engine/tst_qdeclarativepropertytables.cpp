// The tables of properties that Qt's engine has of the QML 1 types: complete, and otherwise as Qt makes them.

#include <QtDeclarative/QDeclarativeEngine>
#include <QtDeclarative/qdeclarative.h>

#include <QtCore/QScopedPointer>
#include <QtQml/QQmlComponent>
#include <QtTest/QTest>

#include <private/qqmlmetatype_p.h>
#include <private/qqmlpropertycache_p.h>
#include <private/qqmltype_p.h>

class tst_QDeclarativePropertyTables : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void tables_data();
    void tables();
    void versions_data();
    void versions();

private:
    QDeclarativeEngine m_engine;
};

void tst_QDeclarativePropertyTables::initTestCase()
{
    qmlRegisterDeclarativeTypes();
}

void tst_QDeclarativePropertyTables::tables_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names{"Item", "Rectangle", "Text", "MouseArea", "ListView", "Column", "Loader"};
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void tst_QDeclarativePropertyTables::tables()
{
    QFETCH(QString, name);
    const QQmlType type = QQmlMetaType::qmlType(name, QStringLiteral("QtQuick"), 1, 1);
    QVERIFY(type.isValid());
    const QQmlPropertyCache *const table = QQmlMetaType::propertyCache(type, 1);
    const QQmlPropertyCache *const fromQt = QQmlMetaType::propertyCache(type.metaObject());
    QCOMPARE(table->propertyOffset(), 0);
    QCOMPARE(table->parent(), fromQt);
    QCOMPARE(table->propertyCount(), fromQt->propertyCount());
    QCOMPARE(table->methodOffset(), fromQt->methodCount());
    for (int i = 0; i < table->propertyCount(); ++i) {
        QCOMPARE(table->property(i)->coreIndex(), i);
        QCOMPARE(table->property(i)->propType(), fromQt->property(i)->propType());
        QCOMPARE(table->property(i)->revision(), fromQt->property(i)->revision());
        QCOMPARE(table->property(i)->notifyIndex(), fromQt->property(i)->notifyIndex());
        QVERIFY(!table->property(i)->isRequired());
    }
}

void tst_QDeclarativePropertyTables::versions_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<bool>("isInFirst");
    QTest::newRow("of an item") << QByteArray("Item { implicitWidth: 3 }") << false;
    QTest::newRow("of its base") << QByteArray("Rectangle { implicitWidth: 3 }") << false;
    QTest::newRow("of a group") << QByteArray("Item { anchors.leftMargin: 3 }") << true;
    QTest::newRow("own") << QByteArray("Item { property int own: x }") << true;
    QTest::newRow("own, of one of a new name")
        << QByteArray("Item { property int implicitWidth: x }") << true;
}

void tst_QDeclarativePropertyTables::versions()
{
    QFETCH(QByteArray, item);
    QFETCH(bool, isInFirst);
    for (const QByteArray version : {"1.0", "1.1"}) {
        QQmlComponent component(&m_engine);
        component.setData("import QtQuick " + version + '\n' + item, QUrl());
        QCOMPARE(component.isReady(), isInFirst || version == "1.1");
        const QScopedPointer<QObject> object(component.isReady() ? component.create() : nullptr);
        QCOMPARE(bool(object), component.isReady());
    }
}

QTEST_MAIN(tst_QDeclarativePropertyTables)

#include "tst_qdeclarativepropertytables.moc"
