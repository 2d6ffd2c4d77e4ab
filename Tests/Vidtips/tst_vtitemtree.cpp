#include "QmlScene.h"

#include <Vidtips/VTItemTree_p.h>
#include <Vidtips/VTQmlTypes_p.h>

#include <QtWidgets/QGraphicsRectItem>

using namespace Vidtips;

/** What assistive technology makes of the tree is tested with the items; here, scenes no tip would have. */
class tst_VTItemTree : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void role_data();
    void role();
    void children_data();
    void children();
    void isWhole_data();
    void isWhole();
    void teller();
    void tellerOfWhatIsNoObject();
    void clickableArea_data();
    void clickableArea();
    void label_data();
    void label();
    void text_data();
    void text();

private:
    void load(const QByteArray &body)
    {
        scene->load("import QtQuick 1.1\nimport com.corvale.vidtips.qml 1.0\nItem { width: 100; height: 100\n"
                    "property int n\n"
                    + body + "\n}");
    }
    QGraphicsObject *item(const char *name = "it") const { return scene->find<QGraphicsObject>(name); }

    QScopedPointer<QmlScene> scene;
};

void tst_VTItemTree::initTestCase()
{
    registerQmlTypes();
}

void tst_VTItemTree::init()
{
    scene.reset(new QmlScene);
}

void tst_VTItemTree::cleanup()
{
    scene.reset();
}

void tst_VTItemTree::role_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<int>("expected");
    const auto row = [](const char *name, const QByteArray &qml, QAccessible::Role expected) {
        QTest::newRow(name) << qml << int(expected);
    };
    row("item", "Item { objectName: 'it' }", QAccessible::NoRole);
    row("named item", "Item { objectName: 'it'; VTAccessible.name: 'A' }", QAccessible::Grouping);
    row("described item", "Item { objectName: 'it'; VTAccessible.description: 'A' }", QAccessible::NoRole);
    row("ignored, though it has a role",
        "Text { objectName: 'it'; text: 'A'; VTAccessible.role: VTAccessible.Link; VTAccessible.ignored: "
        "true }",
        QAccessible::NoRole);
    row("said to be something else",
        "Text { objectName: 'it'; text: 'A'; VTAccessible.role: VTAccessible.Link }", QAccessible::Link);
    row("said to be something, though empty",
        "Text { objectName: 'it'; VTAccessible.role: VTAccessible.Heading }", QAccessible::Heading);
    row("empty text with a name", "Text { objectName: 'it'; VTAccessible.name: 'A' }", QAccessible::Grouping);
    row("text of markup only", "Text { objectName: 'it'; text: '<b></b>' }", QAccessible::NoRole);
    row("several lines", "TextEdit { objectName: 'it' }", QAccessible::EditableText);
    row("animated picture", "AnimatedImage { objectName: 'it' }", QAccessible::NoRole);
    row("clip without a source", "VTVideoComponent { objectName: 'it' }", QAccessible::NoRole);
    row("area that answers being held", "MouseArea { objectName: 'it'; onPressAndHold: n = 1 }",
        QAccessible::Button);
    row("area that answers two clicks", "MouseArea { objectName: 'it'; onDoubleClicked: n = 1 }",
        QAccessible::Button);
    row("area that answers the release", "MouseArea { objectName: 'it'; onReleased: n = 1 }",
        QAccessible::Button);
    row("area that only follows the pointer", "MouseArea { objectName: 'it'; onPositionChanged: n = 1 }",
        QAccessible::NoRole);
}

void tst_VTItemTree::role()
{
    QFETCH(QByteArray, qml);
    load(qml);
    QTEST(int(VTItemTree::role(item())), "expected");
}

void tst_VTItemTree::children_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const QByteArray &qml, const QStringList &expected) {
        QTest::newRow(name) << qml << expected;
    };
    row("none", "Item { objectName: 'it' }", {});
    row("through what is nothing",
        "Item { objectName: 'it'; Item { Item { Text { objectName: 'a'; text: 'A' } } }\n"
        "Text { objectName: 'b'; text: 'B' } }",
        {"a", "b"});
    row("not through what is something",
        "Item { objectName: 'it'; Item { objectName: 'a'; VTAccessible.name: 'A'\n"
        "Text { objectName: 'b'; text: 'B' } } }",
        {"a"});
    row("in the order of what is painted",
        "Item { objectName: 'it'; Text { objectName: 'a'; z: 1; text: 'A' }\n"
        "Text { objectName: 'b'; text: 'B' } }",
        {"b", "a"});
    row("transparent ones are hidden",
        "Item { objectName: 'it'; Text { objectName: 'a'; visible: false; text: 'A' }\n"
        "Item { visible: false; Text { objectName: 'b'; text: 'B' } } }",
        {});
    row("none in a whole",
        "MouseArea { objectName: 'it'; onClicked: n = 1; Text { objectName: 'a'; text: 'A' } }", {});
}

void tst_VTItemTree::children()
{
    QFETCH(QByteArray, qml);
    load(qml);
    QStringList names;
    const QList<QGraphicsObject *> items = VTItemTree::children(item());
    for (const QGraphicsObject *const object : items)
        names << object->objectName();
    QTEST(names, "expected");
}

void tst_VTItemTree::isWhole_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<bool>("expected");
    const QByteArray area("MouseArea { objectName: 'it'; onClicked: n = 1; ");
    QTest::newRow("item") << QByteArray("Item { objectName: 'it' }") << false;
    QTest::newRow("text") << QByteArray("Text { objectName: 'it'; text: 'A' }") << false;
    QTest::newRow("empty area") << area + "}" << true;
    QTest::newRow("area with texts") << area + "Item { Text { text: 'A' } Text { text: 'B' } } }" << true;
    QTest::newRow("area with a picture") << area + "Image { source: 'a.png' } }" << true;
    QTest::newRow("area with an editor") << area + "Text { text: 'A'; TextInput { } } }" << false;
    QTest::newRow("area with a hidden editor") << area + "TextInput { visible: false } }" << true;
    QTest::newRow("area in an area") << area + "MouseArea { onClicked: n = 2 } }" << false;
    QTest::newRow("area that is said to be a group")
        << area + "VTAccessible.role: VTAccessible.Grouping; Text { text: 'A' } }" << false;
    QTest::newRow("area that is said to be a link")
        << area + "VTAccessible.role: VTAccessible.Link; TextInput { } }" << true;
}

void tst_VTItemTree::isWhole()
{
    QFETCH(QByteArray, qml);
    scene->addFile("a.png", QImage(4, 4, QImage::Format_RGB32));
    load(qml);
    QTEST(VTItemTree::isWhole(item()), "expected");
}

void tst_VTItemTree::teller()
{
    load("Item { objectName: 'nothing' }\n"
         "Item { objectName: 'group'; VTAccessible.name: 'G'\n"
         "    Text { objectName: 'text'; text: 'A'; Item { objectName: 'onText' } }\n"
         "    MouseArea { objectName: 'area'; onClicked: n = 1\n"
         "        Text { objectName: 'label'; text: 'B'; Item { objectName: 'onLabel' } } } }");
    QVERIFY(!VTItemTree::teller(nullptr));
    QVERIFY(!VTItemTree::teller(item("nothing")));
    QCOMPARE(VTItemTree::teller(item("group")), item("group"));
    QCOMPARE(VTItemTree::teller(item("text")), item("text"));
    QCOMPARE(VTItemTree::teller(item("onText")), item("text"));
    QCOMPARE(VTItemTree::teller(item("label")), item("area"));
    QCOMPARE(VTItemTree::teller(item("onLabel")), item("area"));
}

void tst_VTItemTree::tellerOfWhatIsNoObject()
{
    load("Text { objectName: 'it'; text: 'A' }");
    auto *const plain = new QGraphicsRectItem(item());
    QCOMPARE(VTItemTree::teller(plain), item());
    QVERIFY(VTItemTree::children(plain).isEmpty());
    QVERIFY(VTItemTree::children(item()).isEmpty());
    QVERIFY(!VTItemTree::clickableArea(item()));
}

void tst_VTItemTree::clickableArea_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &qml, const char *expected) {
        QTest::newRow(name) << qml << QString(expected);
    };
    row("none", "Item { objectName: 'it'; Text { text: 'A' } }", "");
    row("itself", "MouseArea { objectName: 'it'; onClicked: n = 1; MouseArea { onClicked: n = 2 } }", "it");
    row("deep inside",
        "Item { objectName: 'it'; Item { } Item { Item { MouseArea { objectName: 'a'; onClicked: n = 1 } } } "
        "}",
        "a");
    row("the first that answers",
        "Item { objectName: 'it'; MouseArea { } MouseArea { enabled: false; onClicked: n = 1 }\n"
        "MouseArea { objectName: 'a'; onPressed: n = 1 } MouseArea { onClicked: n = 1 } }",
        "a");
    row("in what is hidden",
        "Item { objectName: 'it'; MouseArea { objectName: 'a'; visible: false; onClicked: n = 1 } }", "");
}

void tst_VTItemTree::clickableArea()
{
    QFETCH(QByteArray, qml);
    load(qml);
    const QGraphicsObject *const area = VTItemTree::clickableArea(item());
    QTEST(area ? area->objectName() : QString(), "expected");
}

void tst_VTItemTree::label_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char *name, const QByteArray &qml, const char *expected) {
        QTest::newRow(name) << qml << QString(expected);
    };
    const QByteArray area("MouseArea { objectName: 'it'; width: 40; height: 40; onClicked: n = 1 }");
    row("texts inside",
        "Item { objectName: 'it'; Text { text: 'A'; Text { text: 'B' } } Text { text: 'C' } }", "A B C");
    row("hidden and ignored texts",
        "Item { objectName: 'it'; Text { text: 'A'; visible: false }\n"
        "Text { text: 'B'; VTAccessible.ignored: true } Text { text: 'C' } }",
        "C");
    row("editors are no labels", "Item { objectName: 'it'; TextInput { text: 'A' } }", "");
    row("item beside a text", "Item { Text { text: 'A' } Item { objectName: 'it'; width: 40; height: 40 } }",
        "");
    row("area beside texts",
        "Item { Text { text: 'A' } Text { y: 60; text: 'B' } Text { y: 20; text: 'C' } " + area + " }",
        "A C");
    row("area in a named item", "Item { VTAccessible.name: 'Name'; Text { text: 'A' } " + area + " }",
        "Name");
    row("area on a text", "Text { text: '<i>A</i>'; " + area + " }", "A");
    row("its own text comes first",
        "Item { VTAccessible.name: 'Name'\n"
        "MouseArea { objectName: 'it'; onClicked: n = 1; Text { text: 'A' } } }",
        "A");
}

void tst_VTItemTree::label()
{
    QFETCH(QByteArray, qml);
    load(qml);
    QTEST(VTItemTree::label(item()), "expected");
}

void tst_VTItemTree::text_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<QString>("expected");
    QTest::newRow("rich if it looks like that")
        << QByteArray("Text { objectName: 'it'; text: '<b>A</b>' }") << "A";
    QTest::newRow("plain") << QByteArray(
        "Text { objectName: 'it'; textFormat: Text.PlainText; text: '<b>A</b>' }")
                           << "<b>A</b>";
    QTest::newRow("rich editor") << QByteArray(
        "TextEdit { objectName: 'it'; textFormat: TextEdit.RichText; text: '<b>A</b>' }")
                                 << "A";
    QTest::newRow("line editors have no markup")
        << QByteArray("TextInput { objectName: 'it'; text: '<b>A</b>' }") << "<b>A</b>";
    QTest::newRow("an item without a text") << QByteArray("Item { objectName: 'it' }") << QString();
}

void tst_VTItemTree::text()
{
    QFETCH(QByteArray, qml);
    load(qml);
    QTEST(VTItemTree::text(item()), "expected");
}

QTEST_MAIN(tst_VTItemTree)
#include "tst_vtitemtree.moc"
