#include "HostileTest.h"
#include "MessageRecorder.h"
#include "Patience.h"

#include <QtCore/QPointer>

using namespace Vidtips;

namespace {

void row(const char *name, const char *body, const char *message)
{
    QTest::newRow(name) << QByteArray(body) << message;
}

void addScripts()
{
    row("throws", "Component.onCompleted: { throw new Error('hostile') }", "Error: hostile");
    row("throws in a binding", "property int a: missing.b", "ReferenceError: missing is not defined");
    row("throws while it goes", "Component.onDestruction: missing.call()", "");
    row("binding loop", "property int a: b + 1; property int b: a + 1", "Binding loop detected");
    row("loop of its size", "Item { id: i; width: height + 1; height: width + 1 }", "Binding loop detected");
    row("loop of a handler", "property int a: 0; onAChanged: a = a + 1; Component.onCompleted: a = 1",
        "QML VidtipsUI: Changes bring each other about without end");
    row("loop of its own width", "onWidthChanged: width = width + 1; Component.onCompleted: width = 5",
        "QML VidtipsUI: Changes bring each other about without end");
    row("recurses", "function f() { return f() + 1 } Component.onCompleted: f()",
        "RangeError: Maximum call stack size exceeded");
    row("quits", "Component.onCompleted: Qt.quit()", "");
}

void addRoots()
{
    row("destroys its root", "id: r; Component.onCompleted: r.destroy()", "indestructible");
    row("destroys its root later", "id: r; Timer { interval: 1; running: true; onTriggered: r.destroy() }",
        "");
    row("leaves its parent", "id: r; Component.onCompleted: r.parent = null", "");
    row("becomes its own child", "id: r; Item { id: c } Component.onCompleted: r.parent = c",
        "cannot be its own parent");
    row("becomes its own parent", "id: r; Component.onCompleted: r.parent = r", "cannot be its own parent");
    row("has no size", "id: r; Component.onCompleted: { r.width = 0; r.height = 0 }", "");
    row("has a size that is no number", "id: r; Component.onCompleted: { r.width = NaN; r.height = -1/0 }",
        "");
    row("is huge", "id: r; Component.onCompleted: { r.width = 1e9; r.height = 1e9 }", "");
    row("is endless", "id: r; Component.onCompleted: { r.width = 1e300; r.height = 1/0 }", "");
    row("is endlessly negative", "id: r; Component.onCompleted: { r.width = -1e300; r.height = -1e300 }", "");
}

void addSizes()
{
    row("holds what is endless", R"(
        Component { id: d; Rectangle { width: 1e300; height: 1e300 } }
        Text { width: 1e300; text: 'text'; font.pixelSize: 2147483647 }
        TextEdit { width: 1e300; height: -1e300; text: 'text'; verticalAlignment: Text.AlignBottom }
        TextInput { width: -1e300; text: 'text'; focus: true; cursorPosition: 4 }
        Rectangle { width: 1e300; height: 1e300; radius: 1e300; border.width: 2147483647 }
        Item { width: 1e300; height: 1e300; Text { anchors.centerIn: parent; text: 'text' } }
        ListView { width: 1e300; height: 1e300; model: 5; delegate: d; contentY: 1e300; currentIndex: 4 }
        ListView { width: 9; height: 9; model: 5; delegate: d; contentY: -1e300; snapMode: ListView.SnapToItem
                   highlightRangeMode: ListView.StrictlyEnforceRange; spacing: -1e300; currentIndex: 4 }
        GridView { width: 1e300; height: 9; model: 5; delegate: d; contentY: -1e300; cellWidth: 2147483647
                   highlightRangeMode: GridView.StrictlyEnforceRange; snapMode: GridView.SnapToRow; currentIndex: 4 }
        PathView { model: 5; delegate: d; path: Path { startX: -1e300; PathLine { x: 1e300; y: 1e300 } } }
        Flickable { width: 9; height: 9; contentWidth: 1e300; contentHeight: -1e300; contentX: 1e300 }
        BorderImage { width: 1e300; border { left: 2147483647; right: 2147483647 } }
        Row { spacing: 2147483647; Repeater { model: 3; delegate: d } }
        Grid { columns: 2147483647; spacing: 2147483647; Repeater { model: 3; delegate: d } })",
        "");
    row("holds what is of no number", R"(
        Component { id: d; Rectangle { width: NaN; height: NaN } }
        Text { width: NaN; text: 'text' } TextEdit { width: NaN; height: NaN; text: 'text' }
        TextInput { width: NaN; text: 'text' } Rectangle { width: NaN; height: NaN; radius: NaN }
        ListView { width: NaN; height: 9; model: 5; delegate: d; contentY: NaN; currentIndex: 4 }
        GridView { width: 9; height: NaN; model: 5; delegate: d; contentY: NaN; cellWidth: NaN }
        PathView { model: 5; delegate: d; path: Path { startX: NaN; PathLine { x: NaN; y: NaN } } }
        Flickable { width: 9; height: 9; contentWidth: NaN; contentX: NaN })",
        "");
}

void addPictures()
{
    row("shows a huge picture",
        "Image { source: 'data:image/svg+xml,<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 60000 "
        "60000\"/>' }",
        "QML Image: Error decoding: data:image/svg+xml,");
    row("asks for a huge picture",
        "Image { source: 'image://none/x'; sourceSize { width: 60000; height: 60000 } }",
        "Image too large: 3600.0 megapixels, where 64 are the most");
}

void addNesting()
{
    row("loads itself", "Loader { source: 'VidtipsUI.qml' }", "Component creation is recursing");
    row("loads itself twice", "Loader { source: 'VidtipsUI.qml' } Loader { source: 'VidtipsUI.qml' }",
        "Component creation is recursing");
    row("loads its own component",
        "Component { id: c; Loader { sourceComponent: c } } Loader { sourceComponent: c }",
        "Cannot create new component instance");
    row("repeats itself",
        "Component { id: c; Item { Repeater { model: 1; delegate: c } } } Repeater { model: 1; delegate: c }",
        "nested too deep");
    row("lists itself",
        "Component { id: c; ListView { width: 9; height: 9; model: 1; delegate: c } } Loader { "
        "sourceComponent: c }",
        "nested too deep");
    row("makes itself", "id: r; Component.onCompleted: Qt.createComponent('VidtipsUI.qml').createObject(r)",
        "");
    row("is made of itself", "VidtipsUI {}", "VidtipsUI is instantiated recursively");
}

void addNames()
{
    row("imports what is not there", "} import Missing 9.9 Item {", "");
    row("names every property", "width: 'text'; nothing: 5", "");
    row("takes the view's place", "Component.onCompleted: { vidTipView = null; vidtip = 5 }", "");
    row("reserves again and again",
        "Timer { interval: 1; running: true; repeat: true; onTriggered: { vidTipView.reserved = "
        "!vidTipView.reserved } }",
        "");
    row("notifies nonsense", "Component.onCompleted: vidTipView.notification(-2147483648, vidTipView)", "");
    row("calls with nothing", R"(Component.onCompleted: {
        vidTipView.setItemCursor(null, null, null); vidTipView.findResource(undefined);
        vidTipView.interpolate(null); vidTipView.translate(null, undefined); vidTipView.loadQML(null);
        vidTipView.debugLog(undefined); vidTipView.resetState() })",
        "");
    row("works on the element", R"(Component.onCompleted: {
        vidtip.tagName = ''; vidtip.childElement('none'); vidtip.childElementList('');
        vidtip.appendContent(new Array(100000).join('text')); vidtip.toXml(-5); vidtip.toXml(1000000) })",
        "");
    row("destroys the element", "Component.onCompleted: vidtip.destroy()", "");
}

} // namespace

/** User interfaces that do what they should not. After each of them the next tip is shown as ever. */
class tst_HostileInterfaces : public HostileTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void endlessItemsOfTheLibrary();
    void userInterfaces_data();
    void userInterfaces();
    void rootThatIsDestroyed();
    void pictureLimitIsASetting();
};

void tst_HostileInterfaces::init()
{
    begin();
}

void tst_HostileInterfaces::cleanup()
{
    end();
}

void tst_HostileInterfaces::endlessItemsOfTheLibrary()
{
    packages->writeUserInterface("Endless", R"(
        VTStyledRectangle { width: 1e300; height: 1e300; toolTipStyle: true }
        Item { VTStyledRectangle { width: -1e300; height: -1e300 } }
        VTScrollBar { width: 1e300; height: 1e300; start: -1e30; end: 1e30; position: 1e30 }
        VTVideoComponent { width: 1e300; height: -1e300; progress: 1e300; Component.onCompleted: position = -1 })",
                                 120, 80, "import com.corvale.vidtips.qml 1.0\n");
    packages->writeControl("Endless", "tips.xml", "<vidtip key='endless'/>");
    session->manager()->loadDataPath({packages->path()});
    QVERIFY(show("endless"));
    QVERIFY(!session->view()->grab().isNull());
    verifyTheNextTip();
}

void tst_HostileInterfaces::userInterfaces_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("message");
    addScripts();
    addRoots();
    addSizes();
    addPictures();
    addNesting();
    addNames();
}

void tst_HostileInterfaces::userInterfaces()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, message);
    MessageRecorder recorder;
    packages->writeUserInterface("Hostile", body);
    packages->writeControl("Hostile", "tips.xml", "<vidtip key='hostile'/>");
    session->manager()->loadDataPath({packages->path()});
    session->host->messages.clear();
    QPointer<VTWidget> hostile;
    show("hostile");
    hostile = session->window();
    for (int i = 0; i < 20; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QStringList messages = recorder.texts();
    for (const auto &reported : qAsConst(session->host->messages))
        messages << reported.second;
    QVERIFY2(messages.join('\n').contains(message), qPrintable(messages.join('\n').left(2000)));
    verifyTheNextTip();
    if (hostile && hostile != session->window())
        delete hostile;
}

// Not by its own hand, which is refused, but by that of the host, say.
void tst_HostileInterfaces::rootThatIsDestroyed()
{
    QVERIFY(show("sound"));
    delete root();
    session->window()->hide();
    verifyTheNextTip();
    QVERIFY(root());
}

void tst_HostileInterfaces::pictureLimitIsASetting()
{
    packages->writeUserInterface("Large", R"(property string picture: ""
        Image { objectName: "i"; source: picture && "data:image/svg+xml,<svg xmlns='http://www.w3.org/2000/svg' width='2000' height='" + picture + "'/>" })");
    packages->writeControl("Large", "tips.xml", "<vidtip key='large'/>");
    session->manager()->loadDataPath({packages->path()});
    QVERIFY(show("large"));
    const QObject *const image = root()->findChild<QObject *>(QStringLiteral("i"));
    root()->setProperty("picture", "2000");
    QTRY_COMPARE(image->property("status").toInt(), 1);
    session->set(PictureLimit, 1);
    session->host->messages.clear();
    root()->setProperty("picture", "2001");
    QTRY_COMPARE(image->property("status").toInt(), 3);
    QCOMPARE(session->host->messages.count(), 1);
    QVERIFY(session->host->messages.at(0).second.endsWith(
        "Image too large: 4.0 megapixels, where 1 are the most"));
}

QTEST_MAIN(tst_HostileInterfaces)

#include "tst_hostileinterfaces.moc"
