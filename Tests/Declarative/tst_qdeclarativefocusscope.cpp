#include "ItemScene.h"

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

/** Which item has the focus of its scope, and which of them gets the keys. */
class tst_QDeclarativeFocusScope : public QObject
{
    Q_OBJECT

private slots:
    void scopeRemembersItsItem();
    void forceActiveFocusTakesScopesAlong();
    void ancestorsAreNotActive();
    void focusIsLostWithTheItem();
    void hiddenItemGivesFocusUp();
    void focusPanel();
};

static const char twoScopes[] = "Item { width: 10; height: 10\n"
                                "FocusScope { objectName: 'left'; focus: true\n"
                                "  Item { objectName: 'l1'; focus: true }\n"
                                "  Item { objectName: 'l2' } }\n"
                                "FocusScope { objectName: 'right'\n"
                                "  Item { objectName: 'r1' }\n"
                                "  Item { objectName: 'r2'; focus: true } } }";

void tst_QDeclarativeFocusScope::scopeRemembersItsItem()
{
    ItemScene scene(twoScopes);
    QVERIFY(scene.item("l1")->hasActiveFocus());
    QVERIFY(scene.item("left")->hasActiveFocus());
    QVERIFY(scene.item("r2")->hasFocus());
    QVERIFY(!scene.item("r2")->hasActiveFocus());
    scene.item("right")->setFocus(true);
    QVERIFY(scene.item("r2")->hasActiveFocus());
    QVERIFY(scene.item("l1")->hasFocus());
    QVERIFY(!scene.item("left")->hasFocus());
    scene.item("left")->setFocus(true);
    QVERIFY(scene.item("l1")->hasActiveFocus());
}

void tst_QDeclarativeFocusScope::forceActiveFocusTakesScopesAlong()
{
    ItemScene scene(twoScopes);
    scene.item("r1")->forceActiveFocus();
    QVERIFY(scene.item("right")->hasFocus());
    QVERIFY(scene.item("r1")->hasActiveFocus());
    QVERIFY(!scene.item("r2")->hasFocus());
}

void tst_QDeclarativeFocusScope::ancestorsAreNotActive()
{
    ItemScene scene("Item { width: 10; height: 10; Item { objectName: 'middle'; Item { objectName: 'inner'; "
                    "focus: true } } }");
    QVERIFY(scene.item("inner")->hasActiveFocus());
    QVERIFY(!scene.item("middle")->hasActiveFocus());
    QVERIFY(!scene.root()->hasActiveFocus());
}

void tst_QDeclarativeFocusScope::focusIsLostWithTheItem()
{
    ItemScene scene(twoScopes);
    delete scene.item("l1");
    QVERIFY(!scene.item("l2")->hasFocus());
    scene.item("l2")->forceActiveFocus();
    QVERIFY(scene.item("l2")->hasActiveFocus());
    delete scene.item("left");
    scene.item("right")->setFocus(true);
    QVERIFY(scene.item("r2")->hasActiveFocus());
}

void tst_QDeclarativeFocusScope::hiddenItemGivesFocusUp()
{
    ItemScene scene(twoScopes);
    QSignalSpy active(scene.item("l1"), &QDeclarativeItem::activeFocusChanged);
    scene.item("l1")->setVisible(false);
    QCOMPARE(active.count(), 1);
    QVERIFY(!scene.item("l1")->hasActiveFocus());
}

void tst_QDeclarativeFocusScope::focusPanel()
{
    ItemScene scene(
        "Item { width: 10; height: 10\n"
        "FocusPanel { id: panel; objectName: 'panel'; property int changes: 0; onActiveChanged: changes++\n"
        "  Item { objectName: 'inside'; focus: true } } }");
    QVERIFY(scene.item("panel")->setProperty("active", true));
    QVERIFY(scene.item("panel")->property("active").toBool());
    QVERIFY(scene.item("inside")->hasActiveFocus());
    const int changes = scene.item("panel")->property("changes").toInt();
    QVERIFY(scene.item("panel")->setProperty("active", false));
    QVERIFY(!scene.item("panel")->property("active").toBool());
    QVERIFY(scene.item("panel")->property("changes").toInt() > changes);
}

QTEST_MAIN(tst_QDeclarativeFocusScope)
#include "tst_qdeclarativefocusscope.moc"
