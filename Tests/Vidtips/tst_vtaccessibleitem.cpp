#include "AccessibleEvents.h"
#include "TestClips.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <Vidtips/VTVideoComponent.h>

#include <QtGui/QImage>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

/** What is in a tip as assistive technology sees it. */
class tst_VTAccessibleItem : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void items_data();
    void items();
    void descriptionAndValue();
    void pressing_data();
    void pressing();
    void pressingMayDestroyTheItem();
    void whereItemsAre();
    void clippedItemsAreNotShowing();
    void clipPlaysOrPauses();
    void focusIsTold();
    void changesAreTold();
    void goneItems();

private:
    void show(const QByteArray &qml);
    QAccessibleInterface *view() const { return QAccessible::queryAccessibleInterface(session->view()); }
    QObject *root() const { return session->view()->rootObject(); }

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
};

void tst_VTAccessibleItem::init()
{
    packages.reset(new TestPackages);
    packages->writeControl("Basic", "tips.xml", "<vidtip key='cut' title='Cut'/>");
    QVERIFY(QImage(8, 8, QImage::Format_RGB32).save(packages->write("Basic.vidtips/ui/a.png", {})));
}

void tst_VTAccessibleItem::cleanup()
{
    session.reset();
}

void tst_VTAccessibleItem::show(const QByteArray &qml)
{
    packages->writeUserInterface("Basic", "property int presses: 0\n" + qml, 120, 80,
                                 "import com.corvale.vidtips.qml 1.0\n");
    session.reset(new TestSession({packages->path()}));
    session->set(HideDuration, 0);
    session->set(MessageThreshold, 400);
    QVERIFY(session->host->show("cut", {}, nullptr));
    QVERIFY(session->view()->rootObject());
}

void tst_VTAccessibleItem::items_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const QByteArray &qml, const QStringList &expected) {
        QTest::newRow(name) << qml << expected;
    };
    row("text", "Text { text: 'Takes it out' }", {"StaticText \"Takes it out\""});
    row("styled text", "Text { text: '<b>Takes</b> it' }", {"StaticText \"Takes it\""});
    row("plain text", "Text { text: '<b>'; textFormat: Text.PlainText }", {"StaticText \"<b>\""});
    row("empty text", "Text { }", {});
    row("invisible text", "Item { visible: false; Text { text: 'A' } }", {});
    row("order", "Column { Text { text: 'A' } Text { text: 'B' } }",
        {"StaticText \"A\"", "StaticText \"B\""});
    row("picture", "Image { source: 'a.png' }", {"Graphic \"\""});
    row("named picture", "Image { source: 'a.png'; VTAccessible.name: 'Tree' }", {"Graphic \"Tree\""});
    row("picture without a source", "Image { }", {});
    row("line editor", "TextInput { text: 'abc'; VTAccessible.name: 'Search' }", {"EditableText \"Search\""});
    row("scroll bar", "VTScrollBar { VTAccessible.name: 'Steps' }", {"ScrollBar \"Steps\""});
    row("missing clip", "VTVideoComponent { }", {});
    row("area with a text on it", "MouseArea { onClicked: presses = 1; Text { text: 'Go' } }",
        {"Button \"Go\" Press"});
    row("area on a text", "Text { text: 'Go'; MouseArea { onClicked: presses = 1 } }",
        {"StaticText \"Go\"", "  Button \"Go\" Press"});
    row("area beside a text",
        "Item { width: 50; height: 20; Text { text: 'Go' } Text { y: 30; text: 'No' }\n"
        "MouseArea { anchors.fill: parent; onClicked: presses = 1 } }",
        {"StaticText \"Go\"", "StaticText \"No\"", "Button \"Go\" Press"});
    row("named area", "MouseArea { onPressed: presses = 1; VTAccessible.name: 'Go' }",
        {"Button \"Go\" Press"});
    row("area without a name", "MouseArea { onClicked: presses = 1 }", {"Button \"\" Press"});
    row("area heard from elsewhere",
        "MouseArea { id: area }\nConnections { target: area; onClicked: presses = 1 }",
        {"Button \"\" Press"});
    row("area for hovering", "MouseArea { hoverEnabled: true; onEntered: presses = 1 }", {});
    row("disabled area", "MouseArea { enabled: false; onClicked: presses = 1 }", {});
    row("area around everything",
        "MouseArea { onClicked: presses = 1; VTAccessible.name: 'More'\nText { text: 'A' }\n"
        "MouseArea { onClicked: presses = 2; Text { text: 'Go' } } }",
        {"Button \"More\" Press", "  StaticText \"A\"", "  Button \"Go\" Press"});
    row("several items as one",
        "Item { VTAccessible.role: VTAccessible.Button; VTAccessible.name: 'Go'\n"
        "Text { text: 'x' } MouseArea { onClicked: presses = 1 } }",
        {"Button \"Go\" Press"});
    row("one that takes its texts for a name",
        "Row { VTAccessible.role: VTAccessible.ListItem; Text { text: '1.' } Text { text: 'Cut' } }",
        {"ListItem \"1. Cut\""});
    row("one with a handler of its own",
        "Item { VTAccessible.role: VTAccessible.Link; VTAccessible.name: 'Help'; VTAccessible.onPressed: "
        "presses = 1 }",
        {"Link \"Help\" Press"});
    row("group", "Item { VTAccessible.name: 'Steps'; Text { text: 'A' } }",
        {"Grouping \"Steps\"", "  StaticText \"A\""});
    row("list",
        "Column { VTAccessible.role: VTAccessible.List\n"
        "Text { VTAccessible.role: VTAccessible.ListItem; text: 'A' } }",
        {"List \"\"", "  ListItem \"A\""});
    row("heading", "Text { VTAccessible.role: VTAccessible.Heading; text: 'Cut' }", {"Heading \"Cut\""});
    row("ignored", "MouseArea { onClicked: presses = 1; VTAccessible.ignored: true; Text { text: 'A' } }",
        {"StaticText \"A\""});
}

void tst_VTAccessibleItem::items()
{
    QFETCH(QByteArray, qml);
    show(qml);
    QTEST(accessibleTree(view()), "expected");
}

void tst_VTAccessibleItem::descriptionAndValue()
{
    show("TextInput { text: 'abc'; VTAccessible.description: 'What to search for' }");
    QAccessibleInterface *const editor = view()->child(0);
    QVERIFY(editor);
    QCOMPARE(editor->text(QAccessible::Description), QStringLiteral("What to search for"));
    QCOMPARE(editor->text(QAccessible::Value), QStringLiteral("abc"));
    QVERIFY(!view()->child(1));
    QVERIFY(!view()->child(-1));
    QCOMPARE(view()->indexOfChild(nullptr), -1);
}

void tst_VTAccessibleItem::pressing_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::newRow("click") << QByteArray("MouseArea { width: 9; height: 9; onClicked: ++presses }");
    QTest::newRow("press") << QByteArray("MouseArea { width: 9; height: 9; onPressed: ++presses }");
    QTest::newRow("below others") << QByteArray(
        "MouseArea { width: 9; height: 9; VTAccessible.name: 'A'; onClicked: ++presses }\n"
        "MouseArea { width: 9; height: 9; onClicked: presses += 10 }");
    QTest::newRow("inside") << QByteArray(
        "Item { VTAccessible.role: VTAccessible.Button; Item { MouseArea { onClicked: ++presses } } }");
    QTest::newRow("own handler") << QByteArray(
        "MouseArea { onClicked: presses += 10; VTAccessible.onPressed: ++presses }");
}

void tst_VTAccessibleItem::pressing()
{
    QFETCH(QByteArray, qml);
    show(qml);
    QAccessibleActionInterface *const actions = view()->child(0)->actionInterface();
    QVERIFY(actions);
    actions->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(root()->property("presses").toInt(), 1);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    actions->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(root()->property("presses").toInt(), 2);
}

void tst_VTAccessibleItem::pressingMayDestroyTheItem()
{
    show("Loader { id: loader; sourceComponent: MouseArea { width: 9; height: 9\n"
         "onPressed: { ++presses; loader.sourceComponent = undefined } } }");
    QAccessibleActionInterface *const actions = view()->child(0)->actionInterface();
    actions->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(root()->property("presses").toInt(), 1);
    QTRY_COMPARE(view()->childCount(), 0);
}

void tst_VTAccessibleItem::whereItemsAre()
{
    show("Item { x: 10; y: 20; scale: 2; transformOrigin: Item.TopLeft\n"
         "MouseArea { x: 5; width: 10; height: 10; onClicked: presses = 1 } }");
    QAccessibleInterface *const area = view()->child(0);
    const QRect expected(session->view()->viewport()->mapToGlobal(QPoint(20, 20)), QSize(20, 20));
    QCOMPARE(area->rect(), expected);
    QCOMPARE(view()->childAt(expected.center().x(), expected.center().y()), area);
    QVERIFY(!view()->childAt(expected.right() + 2, expected.center().y()));
    QCOMPARE(area->window(), session->window()->windowHandle());
}

void tst_VTAccessibleItem::clippedItemsAreNotShowing()
{
    show("Item { width: 50; height: 0; clip: true; Text { text: 'A' } }\nText { text: 'B' }");
    QVERIFY(view()->child(0)->state().offscreen);
    QVERIFY(!view()->child(1)->state().offscreen);
    QVERIFY(!view()->child(1)->state().invisible);
    QAccessibleInterface *const text = view()->child(1);
    session->window()->hide();
    QVERIFY(text->state().invisible);
}

void tst_VTAccessibleItem::clipPlaysOrPauses()
{
    packages->write("Basic.vidtips/Resources/clip.mp4", TestClips::read(TestClips::h264()));
    show("VTVideoComponent { objectName: 'clip'; source: 'clip.mp4'; loop: true }");
    QAccessibleInterface *const clip = view()->child(0);
    QCOMPARE(clip->role(), QAccessible::Animation);
    QCOMPARE(clip->text(QAccessible::Name), QStringLiteral("Cut"));
    QVERIFY(!clip->state().animated);
    const QObject *const item = root()->findChild<QObject *>("clip");
    QTRY_COMPARE(item->property("status").toInt(), int(VTVideoComponent::Ready));
    const AccessibleEvents events;
    clip->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_VERIFY(clip->state().animated);
    QTRY_VERIFY(events.of(QAccessible::Animation).contains("StateChanged Cut"));
    clip->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_VERIFY(!clip->state().animated);
}

void tst_VTAccessibleItem::focusIsTold()
{
    show("Row { focus: true\n"
         "FocusScope { VTAccessible.role: VTAccessible.Button; VTAccessible.name: 'A'; Item { focus: true } "
         "}\n"
         "FocusScope { VTAccessible.role: VTAccessible.Button; VTAccessible.name: 'B'; Item { focus: true } "
         "} }");
    QVERIFY(!view()->child(0)->state().focusable);
    const QPointer<VTWidget> kept = session->window();
    VTView *const keptView = kept->view();
    keptView->setReserved(true);
    QVERIFY(QTest::qWaitForWindowActive(kept));
    const AccessibleEvents events;
    QAccessibleInterface *const panel = QAccessible::queryAccessibleInterface(keptView);
    QVERIFY(panel->state().focused);
    for (int i = 0; i < 2; ++i) {
        QAccessibleInterface *const button = panel->child(i);
        QVERIFY(button->state().focusable);
        button->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
        QTRY_VERIFY(button->state().focused);
        QCOMPARE(panel->focusChild(), button);
        QVERIFY(!panel->state().focused);
        QCOMPARE(events.of(QAccessible::Button).mid(i),
                 QStringList("Focus " + button->text(QAccessible::Name)));
    }
    QVERIFY(!panel->child(0)->state().focused);
    delete kept;
}

void tst_VTAccessibleItem::changesAreTold()
{
    show("property alias words: text.text\nproperty alias name: picture.source\n"
         "Text { id: text; text: 'A' }\nImage { id: picture; source: 'a.png'; VTAccessible.name: text.text;\n"
         "VTAccessible.description: text.text }");
    const AccessibleEvents events;
    QCOMPARE(accessibleTree(view()), QStringList({"StaticText \"A\"", "Graphic \"A\""}));
    root()->setProperty("words", "B");
    QCOMPARE(events.of(QAccessible::StaticText), QStringList("NameChanged B"));
    QCOMPARE(events.of(QAccessible::Graphic), QStringList({"NameChanged B", "DescriptionChanged B"}));
}

void tst_VTAccessibleItem::goneItems()
{
    show("property bool there: true\nLoader { sourceComponent: there ? part : undefined }\n"
         "Component { id: part; Text { text: 'A' } }");
    const QAccessible::Id id = QAccessible::uniqueId(view()->child(0));
    QVERIFY(QAccessible::accessibleInterface(id));
    root()->setProperty("there", false);
    QCOMPARE(view()->childCount(), 0);
    QTRY_VERIFY(!QAccessible::accessibleInterface(id));
}

QTEST_MAIN(tst_VTAccessibleItem)
#include "tst_vtaccessibleitem.moc"
