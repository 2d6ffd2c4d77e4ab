// What a manager does when the host has nothing else to do. The element types are registered once in a
// process, so this is a program of its own.

#include "TestHost.h"

#include <QtTest/QTest>

class tst_VTManagerIdle : public QObject
{
    Q_OBJECT

private slots:
    void typesAreRegisteredAfterConstruction();
};

static bool isRegistered()
{
    return qmlTypeId("QtQuick", 1, 1, "Rectangle") != -1;
}

// The first one has Qt Quick 2 registered.
static bool wasThereAnEngine()
{
    return qmlTypeId("QtQuick", 2, 0, "Rectangle") != -1;
}

void tst_VTManagerIdle::typesAreRegisteredAfterConstruction()
{
    const TestSession session({});
    QVERIFY(!isRegistered());
    QTRY_VERIFY(isRegistered());
    QVERIFY(!wasThereAnEngine());
    QVERIFY(!session.host->manager()->widget());
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
}

QTEST_MAIN(tst_VTManagerIdle)

#include "tst_vtmanageridle.moc"
