#include "DocumentServer.h"
#include "WatchedScene.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTranslator>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>

Q_DECLARE_METATYPE(QtMsgType)

/** What content uses of the language and of the engine's global functions, as QML 1 had it. */
class tst_QDeclarativeLanguage : public QObject
{
    Q_OBJECT

private slots:
    void globalFunctions_data();
    void globalFunctions();
    void wrongArguments_data();
    void wrongArguments();
    void quitAsksTheHost();
    void translates();
    void console_data();
    void console();
    void scripts_data();
    void scripts();
    void includes();
    void imports_data();
    void imports();
    void refusedImports_data();
    void refusedImports();
    void createsComponents();
    void createsObjects();
    void requests_data();
    void requests();
    void requestsTellTheirProgress();
    void workerScripts();
    void workerScriptErrors();

private:
    static void addParts(WatchedScene &scene);
};

void tst_QDeclarativeLanguage::globalFunctions_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *expression, const char *result) {
        QTest::newRow(expression) << QString::fromLatin1(expression) << QString::fromLatin1(result);
    };
    row("Qt.isQtObject(root)", "true");
    row("Qt.isQtObject({})", "false");
    row("Qt.isQtObject(null)", "false");
    row("Qt.rgba(1, 0, 0, 1)", "#ff0000");
    row("Qt.rgba(2, -1, 0, 0.5)", "#80ff0000");
    row("Qt.hsla(0.5, 1, 0.5, 1)", "#00ffff");
    row("Qt.rect(1, 2, 3, 4).width", "3");
    row("Qt.point(1, 2).y", "2");
    row("Qt.size(3, 4).height", "4");
    row("Qt.vector3d(1, 2, 3).z", "3");
    row("Qt.lighter('#400000')", "#600000");
    row("Qt.lighter('#400000', 2)", "#800000");
    row("Qt.darker('#800000')", "#400000");
    row("Qt.darker('#800000', 4)", "#200000");
    row("Qt.tint('red', '#800000ff')", "#7f0080");
    row("Qt.formatDate(new Date(2012, 1, 9), 'yyyy-MM-dd')", "2012-02-09");
    row("Qt.formatTime(new Date(2012, 1, 9, 17, 5, 8), 'hh:mm:ss')", "17:05:08");
    row("Qt.formatDateTime(new Date(2012, 1, 9, 17, 5, 8), 'yyyyMMdd hhmm')", "20120209 1705");
    row("Qt.fontFamilies().length > 0", "true");
    row("Qt.md5('hello')", "5d41402abc4b2a76b9719d911017c592");
    row("Qt.btoa('hello')", "aGVsbG8=");
    row("Qt.atob('aGVsbG8=')", "hello");
    row("Qt.atob(Qt.btoa('a b'))", "a b");
    row("Qt.application.layoutDirection === Qt.LeftToRight", "true");
    row("typeof Qt.openUrlExternally", "function");
    row("qsTr('a %1').arg(3)", "a 3");
    row("qsTr('a', 'why', 3)", "a");
    row("qsTranslate('context', 'a')", "a");
    row("QT_TR_NOOP('a')", "a");
    row("QT_TRANSLATE_NOOP('context', 'a')", "a");
    row("qsTrId('id')", "id");
    row("QT_TRID_NOOP('id')", "id");
    row("typeof print", "function");
    row("typeof XMLHttpRequest", "function");
    row("gc() === undefined", "true");
    row("String(12)", "12");
    row("escape('a b')", "a%20b");
    row("unescape('a%20b')", "a b");
    row("encodeURIComponent('a/b')", "a%2Fb");
    row("eval('1 + 1')", "2");
    row("parseInt('12px')", "12");
    row("[Qt.AlignRight, Qt.Key_Escape, Qt.RightButton, Qt.ControlModifier].join()", "2,16777216,2,67108864");
    // Changing what all content shares is refused.
    row("(function() { try { Qt.md5 = 3 } catch (e) {} return typeof Qt.md5 })()", "function");
}

void tst_QDeclarativeLanguage::globalFunctions()
{
    QFETCH(QString, expression);
    WatchedScene scene;
    QVERIFY(scene.load("Item { id: root }"));
    QTEST(scene.evaluate(("'' + (" + expression + ")").toUtf8().constData()).toString(), "result");
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeLanguage::wrongArguments_data()
{
    QTest::addColumn<QByteArray>("call");
    for (const char *call :
         {"Qt.rgba()", "Qt.hsla(1, 2)", "Qt.rect(1)", "Qt.point(1)", "Qt.size()", "Qt.vector3d(1)",
          "Qt.lighter()", "Qt.darker()", "Qt.tint('red')", "Qt.formatDate()", "Qt.formatTime()",
          "Qt.formatDateTime()", "Qt.fontFamilies(1)", "Qt.md5()", "Qt.btoa()", "Qt.atob()",
          "Qt.createComponent()", "Qt.createQmlObject()", "qsTr()"})
        QTest::newRow(call) << QByteArray(call);
}

void tst_QDeclarativeLanguage::wrongArguments()
{
    QFETCH(QByteArray, call);
    WatchedScene scene;
    QVERIFY(scene.load("Item {}"));
    scene.evaluate(call.constData());
    QCOMPARE(scene.warnings.count(), 1);
    QVERIFY2(scene.warnings.constFirst().startsWith(QLatin1String("Error: ")),
             qPrintable(scene.warnings.constFirst()));
}

void tst_QDeclarativeLanguage::quitAsksTheHost()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item {}"));
    QSignalSpy quit(scene.view().engine(), &QQmlEngine::quit);
    scene.evaluate("Qt.quit()");
    QTRY_COMPARE(quit.count(), 1);
    QVERIFY(scene.view().isVisible());
}

/** Shouts what it is asked to translate. */
class Shouter : public QTranslator
{
public:
    bool isEmpty() const override { return false; }

    QString translate(const char *context, const char *text, const char *, int number) const override
    {
        const QString shouted = QString::fromLatin1(text).toUpper();
        return qstrcmp(context, "other") == 0 ? shouted + QString::number(number) : shouted;
    }
};

void tst_QDeclarativeLanguage::translates()
{
    Shouter shouter;
    QCoreApplication::installTranslator(&shouter);
    WatchedScene scene;
    QVERIFY(scene.load("Item { property string text: qsTr('save') }"));
    QCOMPARE(scene.value("text").toString(), QStringLiteral("SAVE"));
    QCOMPARE(scene.evaluate("qsTranslate('other', 'n', '', 4)").toString(), QStringLiteral("N4"));
    QCoreApplication::removeTranslator(&shouter);
}

void tst_QDeclarativeLanguage::console_data()
{
    QTest::addColumn<QByteArray>("call");
    QTest::addColumn<QtMsgType>("type");
    QTest::newRow("log") << QByteArray("console.log('a', 1, true)") << QtDebugMsg;
    QTest::newRow("debug") << QByteArray("console.debug('a', 1, true)") << QtDebugMsg;
    QTest::newRow("warn") << QByteArray("console.warn('a', 1, true)") << QtWarningMsg;
    QTest::newRow("error") << QByteArray("console.error('a', 1, true)") << QtCriticalMsg;
    QTest::newRow("print") << QByteArray("print('a', 1, true)") << QtDebugMsg;
}

void tst_QDeclarativeLanguage::console()
{
    QFETCH(QByteArray, call);
    QFETCH(QtMsgType, type);
    WatchedScene scene;
    QVERIFY(scene.load("Item {}"));
    QTest::ignoreMessage(type, "a 1 true");
    scene.evaluate(call.constData());
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeLanguage::addParts(WatchedScene &scene)
{
    QDir folder(QFileInfo(scene.url(QStringLiteral("x")).toLocalFile()).path());
    for (const char *name : {"parts", "shapes", "scripts"})
        folder.mkdir(QString::fromLatin1(name));
    scene.addFile(QStringLiteral("Near.qml"),
                  QByteArray("import QtQuick 1.0\nItem { property string id2: 'near' }"));
    scene.addFile(QStringLiteral("parts/Badge.qml"),
                  QByteArray("import QtQuick 1.0\nItem { property string kind: 'badge' }"));
    scene.addFile(QStringLiteral("shapes/RoundDisc.qml"),
                  QByteArray("import QtQuick 1.0\nItem { property string kind: 'disc' }"));
    scene.addFile(QStringLiteral("shapes/Hidden.qml"), QByteArray("import QtQuick 1.0\nItem {}"));
    scene.addFile(QStringLiteral("shapes/helpers.js"), QByteArray("function twice(n) { return 2 * n }"));
    scene.addFile(QStringLiteral("shapes/qmldir"),
                  QByteArray("Disc 1.0 RoundDisc.qml\nHelpers 1.0 helpers.js\n"
                             "internal Hidden Hidden.qml\n"));
    scene.addFile(QStringLiteral("scripts/shared.js"),
                  QByteArray(".pragma library\nvar n = 0\nfunction next() { return ++n }"));
    scene.addFile(
        QStringLiteral("scripts/own.js"),
        QByteArray("var n = 0\nfunction next() { return ++n }\nfunction width() { return root.width }"));
    scene.addFile(QStringLiteral("scripts/base.js"),
                  QByteArray("var unit = 5\nfunction triple(n) { return 3 * n }"));
    scene.addFile(QStringLiteral("scripts/outer.js"),
                  QByteArray("var got = Qt.include('base.js')\nvar missing = Qt.include('nosuch.js')\n"
                             "function six(n) { return 2 * triple(n) }"));
}

void tst_QDeclarativeLanguage::scripts_data()
{
    QTest::addColumn<QByteArray>("import");
    QTest::addColumn<QByteArray>("use");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *name, const char *import, const char *use, const char *result) {
        QTest::newRow(name) << QByteArray(import) << QByteArray(use) << QString::fromLatin1(result);
    };
    row("own state", "import 'scripts/own.js' as S", "[S.next(), S.next()].join()", "1,2");
    row("sees the importing file", "import 'scripts/own.js' as S", "S.width()", "70");
    row("library", "import 'scripts/shared.js' as S", "[S.next(), S.next()].join()", "1,2");
    row("variable", "import 'scripts/base.js' as S", "S.unit", "5");
    row("included", "import 'scripts/outer.js' as S", "S.six(2)", "12");
    row("included variable", "import 'scripts/outer.js' as S", "S.unit", "5");
    row("included status", "import 'scripts/outer.js' as S", "S.got.status == S.got.OK", "true");
    row("included missing", "import 'scripts/outer.js' as S", "S.missing.status == S.missing.OK", "false");
    row("of a module", "import 'shapes' as M", "M.Helpers.twice(4)", "8");
}

void tst_QDeclarativeLanguage::scripts()
{
    QFETCH(QByteArray, import);
    QFETCH(QByteArray, use);
    WatchedScene scene;
    addParts(scene);
    QVERIFY(scene.load(QByteArray(import).replace('\'', '"')
                       + "\nItem { id: root; width: 70\nfunction use() { return " + use + " } }"));
    QTEST(scene.evaluate("'' + use()").toString(), "result");
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeLanguage::includes()
{
    WatchedScene scene;
    addParts(scene);
    // Each component that imports a script has its own, while a library is one for all.
    scene.addFile(
        QStringLiteral("Counter.qml"),
        QByteArray("import QtQuick 1.0\nimport \"scripts/own.js\" as Own\n"
                   "import \"scripts/shared.js\" as Shared\n"
                   "Item { id: root; function next() { return Own.next() + '/' + Shared.next() } }"));
    QVERIFY(scene.load("Item { Counter { id: a } Counter { id: b } }"));
    QCOMPARE(scene.evaluate("[a.next(), a.next(), b.next()].join()").toString(),
             QStringLiteral("1/1,2/2,1/3"));
}

void tst_QDeclarativeLanguage::imports_data()
{
    QTest::addColumn<QByteArray>("imports");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QString>("kind");
    QTest::newRow("beside") << QByteArray() << QByteArray("Near { property string kind: id2 }") << "near";
    QTest::newRow("directory") << QByteArray("import \"parts\"") << QByteArray("Badge {}") << "badge";
    QTest::newRow("qualified directory")
        << QByteArray("import \"parts\" as P") << QByteArray("P.Badge {}") << "badge";
    QTest::newRow("qmldir") << QByteArray("import \"shapes\"") << QByteArray("Disc {}") << "disc";
    QTest::newRow("qmldir and file name")
        << QByteArray("import \"shapes\"") << QByteArray("RoundDisc {}") << "disc";
    QTest::newRow("both") << QByteArray("import \"parts\"\nimport \"shapes\" as S")
                          << QByteArray("S.Disc { property string kind2: b.kind; Badge { id: b } }")
                          << "disc";
    QTest::newRow("Qt 4.7") << QByteArray("import Qt 4.7")
                            << QByteArray("Item { property string kind: 'old' }") << "old";
    QTest::newRow("module by path") << QByteArray("import Shapes.Basic 1.0")
                                    << QByteArray("Block { property string kind: 'block' }") << "block";
}

void tst_QDeclarativeLanguage::imports()
{
    QFETCH(QByteArray, imports);
    QFETCH(QByteArray, type);
    WatchedScene scene;
    addParts(scene);
    QDir folder(QFileInfo(scene.url(QStringLiteral("x")).toLocalFile()).path());
    QVERIFY(folder.mkpath(QStringLiteral("modules/Shapes/Basic")));
    scene.addFile(QStringLiteral("modules/Shapes/Basic/qmldir"),
                  QByteArray("module Shapes.Basic\nBlock 1.0 Block.qml\n"));
    scene.addFile(QStringLiteral("modules/Shapes/Basic/Block.qml"),
                  QByteArray("import QtQuick 1.0\nItem {}"));
    scene.view().engine()->addImportPath(folder.filePath(QStringLiteral("modules")));
    QVERIFY(scene.load(imports + "\nItem { property string kind: children[0].kind\n" + type + " }"));
    QTEST(scene.value("kind").toString(), "kind");
}

void tst_QDeclarativeLanguage::refusedImports_data()
{
    QTest::addColumn<QByteArray>("import");
    QTest::addColumn<QString>("message");
    QTest::newRow("file") << QByteArray("import \"parts/Badge.qml\"")
                          << QStringLiteral("\"parts/Badge.qml\": no such directory");
    QTest::newRow("missing directory")
        << QByteArray("import \"nosuch\"") << QStringLiteral("\"nosuch\": no such directory");
    QTest::newRow("missing module") << QByteArray("import No.Such 1.0")
                                    << QStringLiteral("module \"No.Such\" is not installed");
    QTest::newRow("missing version") << QByteArray("import QtQuick 1.7")
                                     << QStringLiteral("module \"QtQuick\" version 1.7 is not installed");
    QTest::newRow("missing script") << QByteArray("import \"scripts/nosuch.js\" as S")
                                    << QStringLiteral("Script file:");
}

void tst_QDeclarativeLanguage::refusedImports()
{
    QFETCH(QByteArray, import);
    QFETCH(QString, message);
    WatchedScene scene;
    addParts(scene);
    scene.view().engine()->setOutputWarningsToStandardError(false);
    QQmlComponent component(scene.view().engine());
    component.setData("import QtQuick 1.0\n" + import + "\nItem {}", scene.url(QStringLiteral("Bad.qml")));
    QTRY_VERIFY(component.isError());
    const QString said = component.errors().constFirst().description();
    QVERIFY2(said.startsWith(message), qPrintable(said));
}

void tst_QDeclarativeLanguage::createsComponents()
{
    WatchedScene scene;
    addParts(scene);
    QVERIFY(scene.load(R"(Item {
        id: root
        function make(file) { return Qt.createComponent(file) }
        function made() { var o = make("parts/Badge.qml").createObject(root, { width: 5 }); return o.kind + o.width + (o.parent === root) }
        function states() { return [Component.Null, Component.Ready, Component.Loading, Component.Error].join() }
    })"));
    QCOMPARE(scene.evaluate("states()").toString(), QStringLiteral("0,1,2,3"));
    QCOMPARE(scene.evaluate("made()").toString(), QStringLiteral("badge5true"));
    QCOMPARE(scene.evaluate("make('parts/Badge.qml').status").toInt(), 1);
    QCOMPARE(scene.evaluate("make('parts/Missing.qml').status").toInt(), 3);
    QVERIFY(scene.evaluate("make('parts/Missing.qml').errorString()")
                .toString()
                .contains("parts/Missing.qml:-1"));
    QVERIFY(scene.evaluate("make('')").value<QObject *>() == nullptr);
}

void tst_QDeclarativeLanguage::createsObjects()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { id: root; function make(text) { return Qt.createQmlObject("
                       "'import QtQuick 1.0; Item { ' + text + ' }', root, 'made') }\n"
                       "function wrong() { try { make('nothere: 1') } catch (e) {"
                       " return e.qmlErrors.length + ' ' + e.qmlErrors[0].lineNumber } } }"));
    QCOMPARE(scene.evaluate("make('width: 4').width").toInt(), 4);
    QCOMPARE(scene.evaluate("make('').parent === root").toBool(), true);
    QCOMPARE(scene.evaluate("wrong()").toString(), QStringLiteral("1 1"));
    scene.evaluate("make(\"objectName: 'gone'\").destroy()");
    QTRY_VERIFY(!scene.item("gone"));
}

void tst_QDeclarativeLanguage::requests_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QByteArray>("status");
    QTest::addColumn<QString>("result");
    QTest::newRow("network") << "http" << QByteArray("200 OK") << "200 OK <a b='1'>x</a> a 1 x";
    QTest::newRow("not found") << "http" << QByteArray("404 Not Found") << "404 Not Found <a b='1'>x</a>";
    QTest::newRow("file") << "file" << QByteArray() << "200 OK <a b='1'>x</a> a 1 x";
}

void tst_QDeclarativeLanguage::requests()
{
    QFETCH(QString, kind);
    QFETCH(QByteArray, status);
    const QByteArray document = "<a b='1'>x</a>";
    const DocumentServer server(status, document);
    WatchedScene scene;
    const QUrl file = scene.addFile(QStringLiteral("document.xml"), document);
    // Allowed as in QML 1, though the engine says that it will not always be.
    if (kind == QLatin1String("file"))
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("^XMLHttpRequest: Using GET on a local")));
    QVERIFY(scene.load(R"(Item {
        id: root
        property string result
        function get(address) {
            var request = new XMLHttpRequest()
            request.onreadystatechange = function() {
                if (request.readyState != XMLHttpRequest.DONE)
                    return
                var xml = request.responseXML
                var root = xml ? xml.documentElement : null
                result = request.status + " " + request.statusText + " " + request.responseText
                    + (root ? " " + root.tagName + " " + root.attributes[0].value + " " + root.firstChild.nodeValue : "")
            }
            request.open("GET", address)
            request.send()
        }
    })"));
    const QByteArray address = kind == QLatin1String("http") ? server.url("d.xml") : file.toEncoded();
    scene.evaluate("get('" + address + "')");
    QTRY_VERIFY(!scene.value("result").toString().isEmpty());
    QTEST(scene.value("result").toString(), "result");
}

void tst_QDeclarativeLanguage::requestsTellTheirProgress()
{
    const DocumentServer server("200 OK", "text");
    WatchedScene scene;
    QVERIFY(scene.load(R"(Item {
        id: root
        property string states
        function get(address) {
            var request = new XMLHttpRequest()
            request.onreadystatechange = function() { states += request.readyState }
            request.open("POST", address)
            request.setRequestHeader("Content-Type", "text/plain")
            request.send("body")
        }
        function early() { try { new XMLHttpRequest().send() } catch (e) { return e.code } }
    })"));
    scene.evaluate("get('" + server.url("d") + "')");
    QTRY_VERIFY(scene.value("states").toString().endsWith('4'));
    QVERIFY(scene.value("states").toString().startsWith(QStringLiteral("12")));
    QCOMPARE(scene.evaluate("early() === DOMException.INVALID_STATE_ERR").toBool(), true);
}

void tst_QDeclarativeLanguage::workerScripts()
{
    WatchedScene scene;
    scene.addFile(QStringLiteral("add.js"), QByteArray("function add(a, b) { return a + b }"));
    scene.addFile(QStringLiteral("work.js"),
                  QByteArray("Qt.include('add.js')\n"
                             "WorkerScript.onMessage = function(message) {"
                             " WorkerScript.sendMessage({ sum: add(message.a, message.b), text: message.text,"
                             " list: message.list.length, when: message.when.getFullYear() }) }"));
    QVERIFY(scene.load(R"(Item {
        id: root
        property string answer
        WorkerScript {
            id: worker; source: "work.js"
            onMessage: root.answer = [messageObject.sum, messageObject.text, messageObject.list, messageObject.when].join()
        }
    })"));
    scene.evaluate(
        "worker.sendMessage({ a: 2, b: 3.5, text: 'x', list: [1, 2], when: new Date(2012, 1, 9) })");
    QTRY_COMPARE(scene.value("answer").toString(), QStringLiteral("5.5,x,2,2012"));
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeLanguage::workerScriptErrors()
{
    WatchedScene scene;
    scene.addFile(QStringLiteral("work.js"),
                  QByteArray("WorkerScript.onMessage = function(message) { nothing.here() }"));
    QVERIFY(scene.load("Item { WorkerScript { id: worker; source: 'work.js' } }"));
    scene.evaluate("worker.sendMessage({})");
    QTRY_COMPARE(scene.warnings, QStringList{QStringLiteral("ReferenceError: nothing is not defined")});
}

QTEST_MAIN(tst_QDeclarativeLanguage)
#include "tst_qdeclarativelanguage.moc"
