#include "ItemScene.h"

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

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
    void clearedFocus_data();
    void clearedFocus();
    void clearedFocusStaysCleared();
    void disabledScopeGivesFocusUp();
    void windowTakesActiveFocusAlong();
    void clearedWhileWindowIsInactive_data();
    void clearedWhileWindowIsInactive();
    void focusBroughtBackByHandler();
    void scopeWithHiddenItemGoes_data();
    void scopeWithHiddenItemGoes();
    void focusSignalsWhileWindowIsInactive();
    void rememberedItemGoes_data();
    void rememberedItemGoes();
    void enabledInsideDisabledTakesNoFocus();
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

void tst_QDeclarativeFocusScope::clearedFocus_data()
{
    QTest::addColumn<QByteArray>("cleared");
    QTest::addColumn<QStringList>("focused");
    QTest::addColumn<QStringList>("active");
    QTest::newRow("item in the active scope")
        << QByteArray("l1") << QStringList{"left", "r2"} << QStringList{"left"};
    QTest::newRow("item in another scope")
        << QByteArray("r2") << QStringList{"left", "l1"} << QStringList{"left", "l1"};
    QTest::newRow("active scope") << QByteArray("left") << QStringList{"l1", "r2"} << QStringList();
}

/** The names of those that @p has says yes for. */
static QStringList namesOf(ItemScene &scene, bool (QDeclarativeItem::*has)() const)
{
    QStringList names;
    for (const char *name : {"left", "l1", "l2", "right", "r1", "r2"}) {
        if ((scene.item(name)->*has)())
            names << QLatin1String(name);
    }
    return names;
}

void tst_QDeclarativeFocusScope::clearedFocus()
{
    QFETCH(QByteArray, cleared);
    ItemScene scene(twoScopes);
    scene.item(cleared)->setFocus(false);
    QTEST(namesOf(scene, &QDeclarativeItem::hasFocus), "focused");
    QTEST(namesOf(scene, &QDeclarativeItem::hasActiveFocus), "active");
}

void tst_QDeclarativeFocusScope::clearedFocusStaysCleared()
{
    ItemScene scene(twoScopes);
    scene.item("l1")->setFocus(false);
    scene.item("right")->setFocus(true);
    scene.item("left")->setFocus(true);
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasActiveFocus), QStringList{"left"});
    scene.item("l2")->setFocus(true);
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasActiveFocus), (QStringList{"left", "l2"}));
}

void tst_QDeclarativeFocusScope::disabledScopeGivesFocusUp()
{
    ItemScene scene(twoScopes);
    QSignalSpy active(scene.item("left"), &QDeclarativeItem::activeFocusChanged);
    scene.item("left")->setEnabled(false);
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasActiveFocus), QStringList());
    QCOMPARE(active.count(), 1);
    scene.item("left")->setEnabled(true);
    scene.item("l1")->forceActiveFocus();
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasActiveFocus), (QStringList{"left", "l1"}));
}

/** Makes the scene's window inactive, or active again. */
static void activate(ItemScene &scene, bool active)
{
    QApplication::setActiveWindow(active ? &scene.view() : nullptr);
}

void tst_QDeclarativeFocusScope::windowTakesActiveFocusAlong()
{
    ItemScene scene(twoScopes);
    QSignalSpy active(scene.item("l1"), &QDeclarativeItem::activeFocusChanged);
    QSignalSpy focus(scene.item("left"), &QDeclarativeItem::focusChanged);
    activate(scene, false);
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasActiveFocus), QStringList());
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasFocus), (QStringList{"left", "l1", "r2"}));
    QCOMPARE(active.count(), 1);
    scene.item("right")->setFocus(true);
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasActiveFocus), QStringList());
    scene.item("left")->setFocus(true);
    focus.clear();
    activate(scene, true);
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasActiveFocus), (QStringList{"left", "l1"}));
    QCOMPARE(active.count(), 2);
    QCOMPARE(focus.count(), 0);
}

void tst_QDeclarativeFocusScope::clearedWhileWindowIsInactive_data()
{
    QTest::addColumn<QByteArray>("cleared");
    QTest::addColumn<QStringList>("active");
    QTest::newRow("item") << QByteArray("l1") << QStringList{"left"};
    QTest::newRow("scope") << QByteArray("left") << QStringList();
}

void tst_QDeclarativeFocusScope::clearedWhileWindowIsInactive()
{
    QFETCH(QByteArray, cleared);
    ItemScene scene(twoScopes);
    activate(scene, false);
    scene.item(cleared)->setFocus(false);
    QVERIFY(!scene.item(cleared)->hasFocus());
    activate(scene, true);
    QVERIFY(!scene.item(cleared)->hasFocus());
    QTEST(namesOf(scene, &QDeclarativeItem::hasActiveFocus), "active");
}

void tst_QDeclarativeFocusScope::focusBroughtBackByHandler()
{
    ItemScene scene("Item { width: 10; height: 10\n"
                    "FocusScope { objectName: 'scope'; focus: true; property int changes: 0\n"
                    "  onActiveFocusChanged: changes++\n"
                    "  Item { id: kept; objectName: 'kept'; focus: true\n"
                    "    onActiveFocusChanged: if (!activeFocus) kept.forceActiveFocus() } }\n"
                    "Item { objectName: 'other' } }");
    const int changes = scene.item("scope")->property("changes").toInt();
    scene.item("other")->forceActiveFocus();
    QVERIFY(scene.item("kept")->hasActiveFocus());
    QVERIFY(scene.item("scope")->hasActiveFocus());
    QCOMPARE(scene.item("scope")->property("changes").toInt(), changes);
}

void tst_QDeclarativeFocusScope::scopeWithHiddenItemGoes_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::newRow("hidden") << QByteArray("visible");
    QTest::newRow("disabled") << QByteArray("enabled");
}

void tst_QDeclarativeFocusScope::scopeWithHiddenItemGoes()
{
    QFETCH(QByteArray, property);
    ItemScene scene(twoScopes);
    scene.item("l1")->setVisible(false);
    scene.item("l1")->setFocus(true);
    scene.item("left")->setFocus(true);
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasActiveFocus), QStringList{"left"});
    QSignalSpy active(scene.item("left"), &QDeclarativeItem::activeFocusChanged);
    scene.item("left")->setProperty(property, false);
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasActiveFocus), QStringList());
    QCOMPARE(active.count(), 1);
}

void tst_QDeclarativeFocusScope::focusSignalsWhileWindowIsInactive()
{
    ItemScene scene(twoScopes);
    activate(scene, false);
    QSignalSpy left(scene.item("left"), &QDeclarativeItem::focusChanged);
    QSignalSpy right(scene.item("right"), &QDeclarativeItem::focusChanged);
    scene.item("right")->setFocus(true);
    QCOMPARE(left.count(), 1);
    QCOMPARE(right.count(), 1);
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasFocus), (QStringList{"l1", "right", "r2"}));
    scene.item("right")->setFocus(false);
    QCOMPARE(right.count(), 2);
    activate(scene, true);
    QCOMPARE(left.count(), 1);
    QCOMPARE(right.count(), 2);
}

void tst_QDeclarativeFocusScope::rememberedItemGoes_data()
{
    scopeWithHiddenItemGoes_data();
}

void tst_QDeclarativeFocusScope::rememberedItemGoes()
{
    QFETCH(QByteArray, property);
    ItemScene scene(twoScopes);
    scene.item("left")->setFocus(true);
    activate(scene, false);
    QSignalSpy focus(scene.item("left"), &QDeclarativeItem::focusChanged);
    scene.item("left")->setProperty(property, false);
    QVERIFY(!scene.item("left")->hasFocus());
    QCOMPARE(focus.count(), 1);
    activate(scene, true);
    QVERIFY(!scene.item("left")->hasFocus());
    QCOMPARE(focus.count(), 1);
    QCOMPARE(namesOf(scene, &QDeclarativeItem::hasActiveFocus), QStringList());
}

void tst_QDeclarativeFocusScope::enabledInsideDisabledTakesNoFocus()
{
    ItemScene scene(
        "Item { width: 10; height: 10\n"
        "Item { objectName: 'kept'; focus: true }\n"
        "Item { objectName: 'around'; enabled: false; Item { Item { objectName: 'inside' } } } }");
    scene.item("inside")->setEnabled(true);
    scene.item("inside")->setFocus(true);
    QVERIFY(scene.item("kept")->hasActiveFocus());
    scene.item("inside")->forceActiveFocus();
    QVERIFY(scene.item("kept")->hasActiveFocus());
    QVERIFY(!scene.item("inside")->hasFocus());
    scene.item("around")->setEnabled(true);
    scene.item("inside")->setFocus(true);
    QVERIFY(scene.item("inside")->hasActiveFocus());
}

QTEST_MAIN(tst_QDeclarativeFocusScope)
#include "tst_qdeclarativefocusscope.moc"
