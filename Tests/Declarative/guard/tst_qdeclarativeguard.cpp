#include "AnyFont.h"
#include "FolderServer.h"
#include "OpenedFiles.h"

#include <QtDeclarative/QDeclarativeEngine>
#include <QtDeclarative/QDeclarativeGuard>
#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QDir>
#include <QtCore/QMutex>
#include <QtCore/QTemporaryDir>
#include <QtGui/QClipboard>
#include <QtGui/QHelpEvent>
#include <QtGui/QImage>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QToolTip>
#include <QtWidgets/QWhatsThis>

#include <algorithm>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/** Admits what lies in a folder, and QtQuick 1. */
class FolderGuard : public QDeclarativeGuard
{
public:
    explicit FolderGuard(const QString &folder)
        : folder(folder)
    {
    }

    bool admits(const QUrl &url) override
    {
        const QString path = QFileInfo(url.toLocalFile()).canonicalFilePath();
        return url.isLocalFile() && (path.isEmpty() || path == folder || path.startsWith(folder + '/'));
    }

    bool admitsModule(const QString &name, int major, int) override
    {
        return (name == "QtQuick" && major == 1) || name == "Qt.labs.particles"
            || name == "Qt.labs.folderlistmodel";
    }

    bool openUrlExternally(const QUrl &url) override
    {
        const QMutexLocker locker(&lock);
        opened.append(url.toString());
        return url.scheme() == "https";
    }

    void refused(const QString &what, const QUrl &file, int line) override
    {
        const QMutexLocker locker(&lock);
        refusals.append(QStringLiteral("%1:%2: %3").arg(file.fileName()).arg(line).arg(what));
    }

    QStringList told() const
    {
        const QMutexLocker locker(&lock);
        return refusals;
    }

    const QString folder;
    mutable QMutex lock;
    QStringList opened;
    QStringList refusals;
};

/** Milliseconds that a slow machine may take. */
constexpr int patience = 30000;

} // namespace

/**
 * Each way out of a folder, by each element or function that takes an address, tried without a guard, where
 * it has to work, and with one.
 */
class tst_QDeclarativeGuard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(folder.isValid());
        root = QFileInfo(folder.path()).canonicalFilePath();
        for (const char *name : {"inside", "outside"})
            QVERIFY(QDir(root).mkdir(name));
        QImage picture(40, 40, QImage::Format_RGB32);
        picture.fill(Qt::red);
        QVERIFY(picture.save(root + "/outside/picture.png"));
        write("outside/Thing.qml", "import QtQuick 1.0\nItem { property int answer: 42 }\n");
        write("outside/script.js", "function answer() { return 42 }\n");
        write("outside/list.xml", "<list><thing>42</thing></list>");
        write("outside/border.sci",
              "border.left: 1\nborder.top: 1\nborder.right: 1\nborder.bottom: 1\nsource: picture.png\n");
        write("outside/worker.js", "WorkerScript.onMessage = function(m) { WorkerScript.sendMessage(42) }\n");
        write("outside/animation.gif",
              QByteArray::fromBase64("R0lGODlhAgACAPAAAP8AAAAAACH5BAAAAAAALAAAAAACAAIAAAIChFEAOw=="));
        QVERIFY2(QFile::copy(anyFont(), root + "/outside/font.ttf"), "there is no font");
        write("inside/including.js", "function reaches(url) { return Qt.include(url).status == 0 }\n");
        QVERIFY(QFile::link(root + "/outside", root + "/inside/linked"));
    }

    void reading_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("address");
        for (const auto &element : readers()) {
            for (const auto &way : ways()) {
                if (way.first == "server" && element.second.first.startsWith('!'))
                    continue;
                const QByteArray file = element.second.first.mid(element.second.first.startsWith('!'));
                QTest::addRow("%s, %s", element.first.constData(), way.first.constData())
                    << element.second.second << way.second.arg(QString::fromLatin1(file));
            }
        }
    }

    void reading()
    {
        QFETCH(QByteArray, body);
        QFETCH(const QString, address);
        FolderServer server(root + "/outside");
        body.replace("ADDRESS", address.toUtf8()).replace("ROOT", root.toUtf8());
        body.replace("SERVER", server.url("").chopped(1));
        verifyThatOnlyAGuardRefuses(body, server);
    }

    void readsInside_data()
    {
        QTest::addColumn<QByteArray>("body");
        for (const Reader &reader : readers()) {
            const QByteArray file = reader.second.first.mid(reader.second.first.startsWith('!'));
            QTest::newRow(reader.first.constData())
                << QByteArray(reader.second.second).replace("ADDRESS", file);
        }
    }

    void readsInside()
    {
        QFETCH(const QByteArray, body);
        for (const QString &name : QDir(root + "/outside").entryList(QDir::Files)) {
            if (!QFile::exists(root + "/inside/" + name))
                QVERIFY(QFile::copy(root + "/outside/" + name, root + "/inside/" + name));
        }
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        QVERIFY2(reaches(body, guard), qPrintable(guard->told().join('\n')));
        QCOMPARE(guard->told(), QStringList());
    }

    void calling_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("refusal");
        const auto onCompleted = [](const QByteArray &script) {
            return QByteArray("    property bool reached: false\n    Component.onCompleted: {\n        ")
                + script + ";\n        reached = true\n    }";
        };
        QTest::newRow("database") << onCompleted("openDatabaseSync('a', '1', 'b', 1)")
                                  << "Main.qml:6: openDatabaseSync()";
        QTest::newRow("request that writes")
            << onCompleted("var r = new XMLHttpRequest; r.open('PUT', 'file://ROOT/inside/new'); r.send('a')")
            << "Main.qml:6: XMLHttpRequest \"PUT file://ROOT/inside/new\"";
        QTest::newRow("request that deletes")
            << onCompleted("var r = new XMLHttpRequest; r.open('delete', 'file://ROOT/inside/new')")
            << "Main.qml:6: XMLHttpRequest \"DELETE file://ROOT/inside/new\"";
        QTest::newRow("function that is kept")
            << onCompleted("var f = Qt.quit; f.call(null)") << "Main.qml:6: Qt.quit()";
        QTest::newRow("exit") << onCompleted("Qt.exit(3)") << "Main.qml:6: Qt.exit()";
        QTest::newRow("module in a text")
            << onCompleted("Qt.createQmlObject('import QtQml 2.0\\nQtObject {}', this)")
            << "Main.qml:1: importing QtQml 2.0";
        QTest::newRow("address in a text") << onCompleted(
            "Qt.createQmlObject('import QtQuick 1.0\\nimport \"../outside\"\\nThing {}', this)")
                                           << "Main.qml:2: reading file://ROOT/outside";
        QTest::newRow("folder beside a text") << onCompleted(
            "Qt.createQmlObject('import QtQuick 1.0\\nThing {}', this, 'file://ROOT/outside/script.js')")
                                              << "Main.qml:6: reading file://ROOT/outside/script.js";
        QTest::newRow("folder below the address of a text")
            << onCompleted("Qt.createQmlObject('import QtQuick 1.0\\nimport \".\" as O\\nO.Thing {}', this, "
                           "'../outside/script.js')")
            << "Main.qml:6: reading file://ROOT/outside/script.js";
        const auto changing = [](const QByteArray &first, const QByteArray &then) {
            return "{ n: 0, toString: function() { return this.n++ ? '" + then + "' : '" + first + "' } }";
        };
        QTest::newRow("text that changes") << onCompleted(
            "if (Qt.createQmlObject("
            + changing("import QtQuick 1.0\\nItem {}",
                       "import QtQuick 1.0\\nimport QtQml 2.0 as Two\\nItem { property int it: 1 }")
            + ", this).it) reached = true; else Qt.quit()")
                                           << "Main.qml:6: Qt.quit()";
        QTest::newRow("style sheet") << onCompleted(
            "view.setStyleSheet('QWidget { background-image: url(ROOT/outside/picture.png) }');"
            "if (!view.styleSheet) throw 'refused'")
                                     << "Main.qml:6: setting a style sheet";
        QTest::newRow("property style sheet") << QByteArray(
            "    property bool reached: false\n"
            "    Timer { interval: 1; running: true; onTriggered: reached = view.styleSheet != '' }\n"
            "    Binding { target: view; property: 'styleSheet'; value: 'QWidget { color: red }' }")
                                              << ":0: setting a style sheet";
    }

    void calling()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, refusal);
        body.replace("ROOT", root.toUtf8());
        QVERIFY2(reaches(body, nullptr), "does not work without a guard");
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        QVERIFY(!reaches(body, guard));
        QCOMPARE(guard->told(), QStringList(refusal.replace("ROOT", root)));
    }

    void clipboard_data()
    {
        QTest::addColumn<QByteArray>("script");
        QTest::addColumn<int>("keys"); // that do the same
        for (const char *editor : {"TextEdit", "TextInput"}) {
            const auto row = [editor](const char *function, QKeySequence::StandardKey keys) {
                const QByteArray call = "editor." + QByteArray(function) + "()";
                QTest::addRow("%s, %s", editor, function) << "property alias text: editor.text\n    "
                        + QByteArray(editor)
                        + " { id: editor; focus: true; text: 'own'; Component.onCompleted: selectAll() }\n"
                          "    function reach() { "
                        + call + " }" << int(keys);
            };
            row("cut", QKeySequence::Cut);
            row("copy", QKeySequence::Copy);
            row("paste", QKeySequence::Paste);
        }
    }

    void clipboard()
    {
        QFETCH(const QByteArray, script);
        QFETCH(const int, keys);
        const QString function = QString(QTest::currentDataTag()).section(", ", 1);
        const int key = QKeySequence(QKeySequence::StandardKey(keys))[0];
        const auto start = [&](QDeclarativeView *view) {
            QGuiApplication::clipboard()->setText("secret");
            view->setSource(scene(script, QByteArray()));
            view->setMinimumSize(1, 1);
            view->show();
            view->activateWindow();
            return QTest::qWaitFor([view] { return view->hasFocus() && view->scene()->focusItem(); },
                                   patience);
        };
        const auto outcome = [](const QDeclarativeView &view) {
            return view.rootObject()->property("text").toString() + '|'
                + QGuiApplication::clipboard()->text();
        };
        QString reached;
        {
            QDeclarativeView view;
            QVERIFY(start(&view));
            QMetaObject::invokeMethod(view.rootObject(), "reach");
            reached = outcome(view);
            QVERIFY2(reached != "own|secret", "does not work without a guard");
        }
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        QDeclarativeView view;
        view.engine()->setGuard(guard);
        QVERIFY(start(&view));
        QMetaObject::invokeMethod(view.rootObject(), "reach");
        QCOMPARE(outcome(view), QString("own|secret"));
        QCOMPARE(guard->told(), QStringList("Main.qml:6: the clipboard by " + function + "()"));
        QTest::keyClick(&view, Qt::Key(key & ~Qt::KeyboardModifierMask),
                        Qt::KeyboardModifiers(key & Qt::KeyboardModifierMask));
        QCOMPARE(outcome(view), reached);
        QCOMPARE(guard->told().count(), 1);
    }

    void importing_data()
    {
        QTest::addColumn<QByteArray>("imports");
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("module") << QByteArray("import QtQml 2.0\n") << QByteArray();
        QTest::newRow("later version of a module")
            << QByteArray("import QtQuick 2.0 as Two\n") << QByteArray();
        QTest::newRow("folder") << QByteArray("import \"../outside\"\n") << QByteArray("Thing {}");
        QTest::newRow("linked folder") << QByteArray("import \"linked\"\n") << QByteArray("Thing {}");
        QTest::newRow("folder on the server") << QByteArray("import \"SERVER\"\n") << QByteArray("Thing {}");
        QTest::newRow("script") << QByteArray("import \"../outside/script.js\" as S\n")
                                << QByteArray("property int i: S.answer()");
        QTest::newRow("script that imports a script")
            << QByteArray("import \"importing.js\" as S\n") << QByteArray("property int i: S.answer()");
        QTest::newRow("script that imports a module")
            << QByteArray("import \"demanding.js\" as S\n") << QByteArray("property int i: S.answer()");
        QTest::newRow("module of the language that imports one")
            << QByteArray("import \"importing.mjs\" as S\n") << QByteArray("property int i: S.answer()");
        QTest::newRow("folder that names a file outside")
            << QByteArray("import \"naming\"\n") << QByteArray("Named {}");
        QTest::newRow("folder that imports a module")
            << QByteArray("import \"demanding\"\n") << QByteArray("Item {}");
        QTest::newRow("compiled code") << QByteArray() << QByteArray("Compiled {}");
    }

    void importing()
    {
        QFETCH(QByteArray, imports);
        QFETCH(QByteArray, body);
        write("inside/importing.js",
              ".import \"../outside/script.js\" as S\nfunction answer() { return S.answer() }");
        write("inside/demanding.js", ".import QtQml 2.0 as S\nfunction answer() { return 42 }");
        write("inside/importing.mjs", "import { answer } from \"../outside/module.mjs\"; export { answer }");
        write("outside/module.mjs", "export function answer() { return 42 }");
        QDir(root).mkpath("inside/naming");
        write("inside/naming/qmldir", "Named 1.0 ../../outside/Thing.qml\n");
        QDir(root).mkpath("inside/demanding");
        write("inside/demanding/qmldir", "import QtQml\n");
        write("inside/demanding/Other.qml", "import QtQuick 1.0\nItem {}");
        write("inside/Compiled.qml", "import QtQuick 1.0\nItem {}");
        write("inside/Compiled.qmlc", "");
        FolderServer server(root + "/outside");
        imports.replace("SERVER", server.url("").chopped(1));
        body.prepend("property bool reached: true\n");
        verifyThatOnlyAGuardRefuses(body, server, imports);
    }

    void readingByOtherMeans_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QByteArray>("body");
        const auto row = [](const char *name, const QByteArray &body, const QByteArray &file = {},
                            const QByteArray &content = {}) {
            QTest::newRow(name) << file << content << body;
        };
        const QByteArray onMessage = "WorkerScript.onMessage = function(m) { ";
        const QByteArray request = onMessage
            + "var r = new XMLHttpRequest; r.open('GET', m.url); r.onreadystatechange = function() {"
              "if (r.readyState == 4 && r.responseText) WorkerScript.sendMessage(1) }; r.send() }";
        const auto worker = [](const QByteArray &source, const QByteArray &address) {
            return "property bool reached: false\nWorkerScript { id: it; source: '" + source
                + "'; onMessage: reached = true }\nComponent.onCompleted: it.sendMessage({ url: '" + address
                + "' })";
        };
        row("worker that includes", worker("w.js", "file://ROOT/outside/script.js"), "w.js",
            onMessage + "if (Qt.include(m.url).status == 0) WorkerScript.sendMessage(1) }");
        row("worker that requests a file", worker("w.js", "file://ROOT/outside/list.xml"), "w.js", request);
        row("worker that requests from the server", worker("w.js", "SERVER/list.xml"), "w.js", request);
        row("worker that imports", worker("w.mjs", ""), "w.mjs",
            "import { answer } from '../outside/module.mjs'; " + onMessage
                + "WorkerScript.sendMessage(answer()) }");
        const QByteArray picture = "property bool reached: it.status == Image.Ready\n";
        const QByteArray described = picture + "BorderImage { id: it; source: 'b.sci' }";
        const QByteArray border = "border.left: 1\nborder.top: 1\nborder.right: 1\nborder.bottom: 1\n";
        row("description of a picture", described, "b.sci", border + "source: ../outside/picture.png\n");
        row("description of a picture on the server", described, "b.sci",
            border + "source: \"SERVER/picture.png\"\n");
        row("picture that is named later",
            picture + "Image { id: it }\nComponent.onCompleted: it.source = '../outside/picture.png'");
        row("picture of a size",
            picture + "Image { id: it; sourceSize.width: 7; source: '../outside/picture.png' }");
        row("picture in a state",
            picture
                + "Image { id: it }\nstate: 'a'\nstates: State { name: 'a'; PropertyChanges { target: it;"
                  "source: '../outside/picture.png' } }");
        row("object made of a text",
            "property variant it\nproperty bool reached: it.status == Image.Ready\n"
            "Component.onCompleted: it = Qt.createQmlObject('import QtQuick 1.0\\n"
            "Image { source: \"../outside/picture.png\" }', this)");
        const auto drawing = [&row, &picture](const char *name, const QByteArray &content) {
            row(name, picture + "Image { id: it; source: 'd.svg' }", "d.svg", content);
        };
        const QByteArray svg =
            "<svg xmlns='http://www.w3.org/2000/svg' xmlns:x='http://www.w3.org/1999/xlink'"
            " width='9' height='9'>";
        drawing("drawing with a picture",
                svg + "<image width='9' height='9' x:href='ROOT/outside/picture.png'/></svg>");
        drawing("drawing with a picture without a namespace",
                svg + "<image width='9' height='9' href='../outside/picture.png'/></svg>");
        drawing("drawing with a picture named by an entity",
                "<!DOCTYPE svg [<!ENTITY p '/outside/picture.png'>]>" + svg
                    + "<image width='9' height='9' x:href='ROOT&p;'/></svg>");
        const auto inAddress = [](const QByteArray &content) {
            return "data:image/svg+xml;base64," + QByteArray(content).toBase64();
        };
        const QByteArray naming =
            svg + "<image width='9' height='9' x:href='" + root.toUtf8() + "/outside/picture.png'/></svg>";
        drawing("drawing in a drawing",
                svg + "<image width='9' height='9' x:href='" + inAddress(naming) + "'/></svg>");
        drawing(
            "drawing in a drawing in a drawing",
            svg + "<image width='9' height='9' x:href='"
                + inAddress(svg + "<image width='9' height='9' x:href='" + inAddress(naming) + "'/></svg>")
                + "'/></svg>");
        drawing("drawing with a picture whose name looks like a part of it",
                svg + "<image width='9' height='9' x:href='#/../../outside/picture.png'/></svg>");
        drawing("drawing with a style sheet",
                "<?xml version='1.0'?><?xml-stylesheet type=\"text/css\" href=\"ROOT/outside/style.css\"?>"
                    + svg + "</svg>");
        row("drawing in a text",
            "property bool reached: it.height > 60\nText { id: it; text: '<p>a<img src=\"t.svg\"></p>' }",
            "t.svg",
            QByteArray(svg).replace("'9'", "'90'")
                + "<image width='9' height='9' x:href='ROOT/outside/picture.png'/></svg>");
        const QByteArray query =
            "property bool reached: it.count > 0\nXmlListModel { id: it; xml: '<list/>'; ";
        row("query of another document", query + "query: \"/list[doc('file://ROOT/outside/list.xml')]\" }");
        row("query of a document on the server", query + "query: \"/list[doc('SERVER/list.xml')]\" }");
        row("declaration before a query",
            query
                + "namespaceDeclarations: \"declare variable $a := doc('file://ROOT/outside/list.xml');\";"
                  "query: '/list[$a]' }");
        row("style sheet of a text",
            "property bool reached: it.height > 60\nText { id: it; textFormat: Text.RichText; text: "
            "'<head><link rel=stylesheet type=\"text/css\" "
            "href=\"file://ROOT/outside/style.css\"></head><p>a</p>' }");
        row("list of the working folder", "property bool reached: it.count > 0\nFolderListModel { id: it }");
        row("list of the folder above",
            "property bool reached: it.count > 0 && it.folder == 'file://ROOT'\n"
            "FolderListModel { id: it; folder: '.'; Component.onCompleted: folder = parentFolder }");
    }

    void readingByOtherMeans()
    {
        QFETCH(const QByteArray, file);
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, body);
        FolderServer server(root + "/outside");
        write("outside/style.css", "p { font-size: 80px }");
        write("outside/module.mjs", "export function answer() { return 42 }");
        const QByteArray address = server.url("").chopped(1);
        if (!file.isEmpty())
            write("inside/" + file, content.replace("SERVER", address).replace("ROOT", root.toUtf8()));
        body.replace("ROOT", root.toUtf8()).replace("SERVER", address);
        verifyThatOnlyAGuardRefuses(body, server);
    }

    void workersDoNotWaitForPipes()
    {
        const QString pipe = root + "/inside/pipe.js";
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        QDeclarativeView view;
        view.engine()->setGuard(guard);
        view.setSource(scene("WorkerScript { source: 'pipe.js' }", QByteArray()));
        const bool isTold = QTest::qWaitFor([&] { return !guard->told().isEmpty(); }, patience);
        // Whoever waits after all finds it empty.
        ::close(::open(QFile::encodeName(pipe).constData(), O_RDWR | O_NONBLOCK));
        QVERIFY(isTold);
        QCOMPARE(guard->told(), QStringList(":0: reading file://" + pipe));
    }

    void showsDrawingsThatNameNothing()
    {
        write("inside/own.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' xmlns:x='http://www.w3.org/1999/xlink' width='9' "
              "height='9'>"
              "<defs><rect id='r' width='9' height='9'/></defs><use x:href='#r'/><a "
              "x:href='https://a.invalid/'>"
              "<image "
              "x:href='data:image/gif;base64,R0lGODlhAgACAPAAAP8AAAAAACH5BAAAAAAALAAAAAACAAIAAAIChFEAOw=='/>"
              "</a></svg>");
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        QVERIFY(reaches(
            "property bool reached: it.status == Image.Ready\nImage { id: it; source: 'own.svg' }", guard));
        QCOMPARE(guard->told(), QStringList());
    }

    void loadsNoPlugins()
    {
        QDir(root).mkpath("inside/native");
        write("inside/native/qmldir", "module native\nplugin native\n");
        write("inside/native/libnative.so", "not one");
        write("inside/native/Other.qml", "import QtQuick 1.0\nItem {}");
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        QVERIFY(!reaches("property bool reached: true", guard, "import \"native\"\n"));
        QCOMPARE(guard->told(), QStringList("qmldir:0: loading a plugin"));
    }

    void declarations_data()
    {
        QTest::addColumn<QByteArray>("declarations");
        QTest::addColumn<QByteArray>("query");
        QTest::addColumn<bool>("isAdmitted");
        const auto row = [](const char *name, const QByteArray &declarations, const QByteArray &query,
                            bool isAdmitted) { QTest::newRow(name) << declarations << query << isAdmitted; };
        row("none", " ", "/*[1]", true);
        row("namespaces",
            "declare default element namespace 'urn:list';\n declare namespace o.1 = 'urn:list; (';", "/list",
            true);
        row("function", "declare function local:one() { 1 };", "/*[local:one()]", false);
        row("function after a namespace",
            "declare namespace l = 'urn:list'; declare function local:one() { 1 };", "/l:list[local:one()]",
            false);
        row("function behind a quotation mark",
            "declare namespace l = 'a''; declare namespace m = '; declare function local:one() { 1 };",
            "/*[local:one()]", false);
        row("variable", "declare variable $one := 1;", "/*[$one]", false);
    }

    void declarations()
    {
        QFETCH(const QByteArray, declarations);
        QFETCH(const QByteArray, query);
        QFETCH(const bool, isAdmitted);
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        const QByteArray body = "property bool reached: it.count > 0\nXmlListModel { id: it;"
                                "xml: '<list xmlns=\"urn:list\"/>'; namespaceDeclarations: \""
            + QByteArray(declarations).replace('\n', "\\n") + "\"; query: \"" + query + "\" }";
        QVERIFY2(reaches(body, nullptr), "does not work without a guard");
        QCOMPARE(reaches(body, guard), isAdmitted);
        const QStringList refusals = isAdmitted
            ? QStringList()
            : QStringList("Main.qml:5: declaring more than namespaces in namespaceDeclarations");
        QCOMPARE(guard->told(), refusals);
    }

    void opensAddressesAsTheGuardSays()
    {
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        QVERIFY(reaches("property bool reached: Qt.openUrlExternally('https://a.invalid/')", guard));
        QVERIFY(!reaches("property bool reached: Qt.openUrlExternally('file:///etc/passwd')", guard));
        QCOMPARE(guard->opened, QStringList({"https://a.invalid/", "file:///etc/passwd"}));
        QCOMPARE(guard->told(), QStringList("Main.qml:4: Qt.openUrlExternally(\"file:///etc/passwd\")"));
    }

    // What the view says of itself, which Qt shows.
    void textsOfTheView_data()
    {
        QTest::addColumn<QByteArray>("property");
        QTest::addColumn<int>("asked");
        QTest::newRow("tool tip") << QByteArray("toolTip") << int(QEvent::ToolTip);
        QTest::newRow("help") << QByteArray("whatsThis") << int(QEvent::WhatsThis);
    }

    void textsOfTheView()
    {
        QFETCH(const QByteArray, property);
        QFETCH(const int, asked);
        const auto show = [&](const std::shared_ptr<FolderGuard> &guard, const QByteArray &text) {
            QDeclarativeView view;
            view.rootContext()->setContextProperty("view", &view);
            view.engine()->setGuard(guard);
            view.setSource(
                scene("Component.onCompleted: view." + property + " = \"" + text + '"', QByteArray()));
            OpenedFiles opened;
            opened.watch(root + "/outside/picture.png");
            QHelpEvent event(QEvent::Type(asked), QPoint(1, 1), view.mapToGlobal(QPoint(1, 1)));
            QCoreApplication::sendEvent(view.viewport(), &event);
            const bool isShown = QToolTip::isVisible() || isHelpVisible();
            QToolTip::hideText();
            QWhatsThis::hideText();
            return qMakePair(isShown, opened.take());
        };
        const QByteArray rich = "<img src='" + root.toUtf8() + "/outside/picture.png'>";
        QCOMPARE(show(nullptr, rich), qMakePair(true, true));
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        QCOMPARE(show(guard, rich), qMakePair(false, false));
        QCOMPARE(guard->told(), QStringList(":0: a rich text as tool tip or help"));
        QCOMPARE(show(guard, "a & b"), qMakePair(true, false));
    }

    void letsGoAgain()
    {
        const QByteArray body = "property bool reached: picture.status == Image.Ready\n"
                                "Image { id: picture; source: '../outside/picture.png' }";
        QDeclarativeView view;
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        view.engine()->setGuard(guard);
        QCOMPARE(view.engine()->guard(), guard);
        view.setSource(scene(body, {}));
        QVERIFY(!view.rootObject()->property("reached").toBool());
        view.engine()->setGuard(nullptr);
        QVERIFY(!view.engine()->guard());
        view.setSource(scene(body, {}));
        QVERIFY(view.rootObject()->property("reached").toBool());
    }

private:
    static bool isHelpVisible()
    {
        const QWidgetList all = QApplication::topLevelWidgets();
        return std::any_of(all.cbegin(), all.cend(), [](const QWidget *widget) {
            return widget->isVisible() && widget->inherits("QWhatsThat");
        });
    }

    using Reader = QPair<QByteArray, QPair<QByteArray, QByteArray>>;

    static QList<QPair<QByteArray, QString>> ways()
    {
        return {{"absolute", "file://ROOT/outside/%1"},     {"up", "../outside/%1"},
                {"escaped", "%2e%2e/outside/%1"},           {"link", "linked/%1"},
                {"another case", "FILE://ROOT/outside/%1"}, {"server", "SERVER/%1"}};
    }

    // A name that begins with an exclamation mark is of an element that reads files alone.
    static QList<Reader> readers()
    {
        const QByteArray picture = "property bool reached: it.status == Image.Ready\n";
        const QByteArray text = "Text { id: it; text: '<p>a<img src=\"ADDRESS\"></p>' }";
        const QByteArray asked = "property bool reached: false\nComponent.onCompleted: {";
        return {
            {"Image", {"picture.png", picture + "Image { id: it; source: 'ADDRESS' }"}},
            {"Image, later",
             {"picture.png", picture + "Image { id: it; asynchronous: true; source: 'ADDRESS' }"}},
            {"BorderImage", {"picture.png", picture + "BorderImage { id: it; source: 'ADDRESS' }"}},
            {"BorderImage, described", {"border.sci", picture + "BorderImage { id: it; source: 'ADDRESS' }"}},
            {"AnimatedImage", {"animation.gif", picture + "AnimatedImage { id: it; source: 'ADDRESS' }"}},
            {"Text", {"picture.png", "property bool reached: it.height > 30\n" + text}},
            {"TextEdit",
             {"picture.png",
              "property bool reached: it.paintedHeight > 30\n"
                  + QByteArray(text).replace("Text {", "TextEdit { textFormat: TextEdit.RichText;")}},
            {"FontLoader",
             {"font.ttf",
              "property bool reached: it.status == FontLoader.Ready\n"
              "FontLoader { id: it; source: 'ADDRESS' }"}},
            {"Loader",
             {"Thing.qml",
              "property bool reached: it.status == Loader.Ready\n"
              "Loader { id: it; source: 'ADDRESS' }"}},
            {"createComponent",
             {"Thing.qml",
              asked
                  + "var c = Qt.createComponent('ADDRESS');"
                    "function look() { reached = c.status == Component.Ready };"
                    "look(); c.statusChanged.connect(look) }"}},
            {"XmlListModel",
             {"list.xml",
              "property bool reached: it.count > 0\n"
              "XmlListModel { id: it; source: 'ADDRESS'; query: '/list/thing' }"}},
            {"include", {"!script.js", asked + "reached = I.reaches('ADDRESS') }"}},
            {"XMLHttpRequest",
             {"list.xml",
              asked
                  + "var r = new XMLHttpRequest;"
                    "r.onreadystatechange = function() { reached = r.responseText.length > 0 };"
                    "r.open('GET', 'ADDRESS'); r.send() }"}},
            {"WorkerScript",
             {"!worker.js",
              "property bool reached: false\n"
              "WorkerScript { id: it; source: 'ADDRESS'; onMessage: reached = true }\n"
              "Component.onCompleted: it.sendMessage({})"}},
            {"FolderListModel",
             {"!.",
              "property bool reached: it.count > 0\n"
              "FolderListModel { id: it; folder: 'ADDRESS' }"}},
        };
    }

    QUrl scene(const QByteArray &body, const QByteArray &imports) const
    {
        write("inside/Main.qml",
              imports
                  + "import QtQuick 1.0\nimport Qt.labs.folderlistmodel 1.0; import \"including.js\" as "
                    "I\nItem {\n"
                  + body + "\n}\n");
        return QUrl::fromLocalFile(root + "/inside/Main.qml");
    }

    /** Tells whether the property "reached" of a scene becomes true before the guard has refused anything. */
    bool reaches(const QByteArray &body, const std::shared_ptr<FolderGuard> &guard,
                 const QByteArray &imports = {}) const
    {
        QDeclarativeView view;
        view.engine()->setOfflineStoragePath(root + "/databases");
        view.rootContext()->setContextProperty("view", &view);
        view.engine()->setGuard(guard);
        const int toldBefore = guard ? guard->told().count() : 0;
        view.setSource(scene(body, imports));
        const auto isReached = [&view] {
            return view.rootObject() && view.rootObject()->property("reached").toBool();
        };
        const auto isSettled = [&] {
            return isReached() || view.status() == QDeclarativeView::Error
                || (guard && guard->told().count() > toldBefore);
        };
        if (!QTest::qWaitFor(isSettled))
            return false;
        // What was refused has its consequences, if any, when events were processed.
        return QTest::qWaitFor(isReached, 50);
    }

    void verifyThatOnlyAGuardRefuses(const QByteArray &body, const FolderServer &server,
                                     const QByteArray &imports = {}) const
    {
        QVERIFY2(reaches(body, nullptr, imports), "does not work without a guard");
        const int connections = server.connections;
        const auto guard = std::make_shared<FolderGuard>(root + "/inside");
        QVERIFY(!reaches(body, guard, imports));
        QCOMPARE(server.connections, connections);
        QVERIFY(!guard->told().isEmpty());
    }

    void write(const QString &name, const QByteArray &content) const
    {
        QFile file(root + '/' + name);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }

    QByteArray read(const QString &name) const
    {
        QFile file(root + '/' + name);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    QString root;
};

QTEST_MAIN(tst_QDeclarativeGuard)
#include "tst_qdeclarativeguard.moc"
