#include "Patience.h"
#include "WatchedScene.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

/** Qt.application, and what content may do to the program by it, wherever its scripts stand. */
class tst_QDeclarativeApplication : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void leavesTheProgramAlone_data();
    void leavesTheProgramAlone();
    void followsTheProgram();
    void leavesOtherEnginesAlone();
    void workersReachNoWindows();

private:
    void write(const QString &name, const QByteArray &content) const;

    QTemporaryDir folder;
};

void tst_QDeclarativeApplication::write(const QString &name, const QByteArray &content) const
{
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

void tst_QDeclarativeApplication::initTestCase()
{
    QVERIFY(folder.isValid());
    // Tries all that Qt's own has, and gives what there is.
    const QByteArray attack = R"(
        function attempt(step) { try { step() } catch (error) {} }
        function attack() {
            var target = Qt.application
            var found = []
            for (var name in target)
                found.push(name)
            var names = ["name", "version", "organization", "domain", "displayName", "layoutDirection"]
            for (var i = 0; i < names.length; ++i) {
                attempt(function() { target[names[i]] = 1 })
                attempt(function() { target["set" + names[i].charAt(0).toUpperCase() + names[i].slice(1)]("a") })
            }
            attempt(function() { Qt.application = { active: 3 } })
            return found.sort().join()
        })";
    write("attack.js", attack);
    write("library.js", ".pragma library\n" + attack);
    write("including.js", "function run(url) { Qt.include(url); return attack() }");
    write("worker.js",
          "WorkerScript.onMessage = function(m) { WorkerScript.sendMessage(attack()) }" + attack);
    write("including-worker.js",
          "WorkerScript.onMessage = function(m) { Qt.include(m); WorkerScript.sendMessage(attack()) }");
}

void tst_QDeclarativeApplication::leavesTheProgramAlone_data()
{
    QTest::addColumn<QByteArray>("body");
    const auto row = [](const char *name, const QByteArray &body) {
        QTest::newRow(name) << "property string found; " + body;
    };
    const auto worker = [](const QByteArray &source) {
        return "WorkerScript { id: worker; source: '" + source
            + "'; onMessage: found = messageObject }\nComponent.onCompleted: "
              "worker.sendMessage(Qt.resolvedUrl('attack.js').toString())";
    };
    row("script of a document", "Component.onCompleted: found = Attack.attack()");
    row("library", "Component.onCompleted: found = Library.attack()");
    row("included script", "Component.onCompleted: found = Including.run(Qt.resolvedUrl('attack.js'))");
    row("document made of a text",
        "Component.onCompleted: found = Qt.createQmlObject('import QtQuick 1.1; import \"attack.js\" as A;"
        "Item { property string found: A.attack() }', root).found");
    row("worker script", worker("worker.js"));
    row("script that a worker includes", worker("including-worker.js"));
}

void tst_QDeclarativeApplication::leavesTheProgramAlone()
{
    QFETCH(const QByteArray, body);
    const auto namesOfProgram = [] {
        return QStringList{QApplication::applicationName(), QApplication::applicationVersion(),
                           QApplication::organizationName(), QApplication::organizationDomain(),
                           QApplication::applicationDisplayName()};
    };
    const QStringList before = namesOfProgram();
    write("Main.qml",
          "import QtQuick 1.1\nimport 'attack.js' as Attack\nimport 'library.js' as Library\n"
          "import 'including.js' as Including\nItem { id: root\n"
              + body + "\n}\n");
    QDeclarativeView view(QUrl::fromLocalFile(folder.filePath("Main.qml")));
    QVERIFY(view.rootObject());
    QTRY_VERIFY(!view.rootObject()->property("found").toString().isEmpty());
    QCOMPARE(namesOfProgram(), before);
    QCOMPARE(QApplication::layoutDirection(), Qt::LeftToRight);
    const QString found = view.rootObject()->property("found").toString();
    const QString all =
        "active,activeChanged,layoutDirection,layoutDirectionChanged,objectName,objectNameChanged";
    QCOMPARE(found, all);
}

void tst_QDeclarativeApplication::followsTheProgram()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { property bool active: Qt.application.active\n"
                       "property bool mirrored: Qt.application.layoutDirection == Qt.RightToLeft }"));
    QTRY_COMPARE(scene.value("active").toBool(), true);
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    QTRY_COMPARE(scene.value("mirrored").toBool(), true);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    QTRY_COMPARE(scene.value("mirrored").toBool(), false);
}

void tst_QDeclarativeApplication::leavesOtherEnginesAlone()
{
    const QDeclarativeView view;
    QQmlEngine engine;
    QQmlComponent component(&engine);
    write("naming.js",
          "WorkerScript.onMessage = function(m) { WorkerScript.sendMessage(Qt.application.name) }");
    component.setData("import QtQml 2.15\nimport QtQml.WorkerScript 2.15\n"
                      "WorkerScript { source: 'naming.js'; property string name: Qt.application.name;"
                      "property string found; onMessage: found = messageObject;"
                      "Component.onCompleted: sendMessage(1) }",
                      QUrl::fromLocalFile(folder.filePath("Main.qml")));
    const QScopedPointer<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QCOMPARE(object->property("name").toString(), QApplication::applicationName());
    QTRY_COMPARE(object->property("found").toString(), QApplication::applicationName());
}

// What moves the keyboard's panel is used on another thread than it may be.
void tst_QDeclarativeApplication::workersReachNoWindows()
{
    write("reaching.js",
          "WorkerScript.onMessage = function(m) { WorkerScript.sendMessage("
          "'' + Qt.inputMethod + Qt.styleHints + (Qt.fontFamilies().length > 0)) }");
    write(
        "Main.qml",
        "import QtQuick 1.1\nItem { property string found\nWorkerScript { id: worker; source: "
        "'reaching.js'; onMessage: found = messageObject }\nComponent.onCompleted: worker.sendMessage(1) }");
    const QDeclarativeView view(QUrl::fromLocalFile(folder.filePath("Main.qml")));
    QVERIFY(view.rootObject());
    QTRY_COMPARE(view.rootObject()->property("found").toString(), QString("nullnulltrue"));
}

QTEST_MAIN(tst_QDeclarativeApplication)
#include "tst_qdeclarativeapplication.moc"
