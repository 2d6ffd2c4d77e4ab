#include "WatchedScene.h"

#include <QtCore/QDir>
#include <QtTest/QTest>

/** The global function openDatabaseSync(). */
class tst_QDeclarativeDatabases : public QObject
{
    Q_OBJECT

private slots:
    // First: once the module is loaded no import of it fails any more.
    void needsItsModule();
    void opens_data();
    void opens();
    void filesLieInTheOfflineStorage();
};

void tst_QDeclarativeDatabases::needsItsModule()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item {}"));
    scene.view().engine()->setImportPathList({});
    scene.view().engine()->setPluginPathList({});
    scene.evaluate("openDatabaseSync('x', '1.0', '', 1)");
    QCOMPARE(scene.warnings.count(), 1);
    QVERIFY2(
        scene.warnings.first().contains(QLatin1String("module \"QtQuick.LocalStorage\" is not installed")),
        qPrintable(scene.warnings.first()));
}

void tst_QDeclarativeDatabases::opens_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("result");
    const auto row = [](const char *name, const char *script, const char *result) {
        QTest::newRow(name) << QString::fromLatin1(script) << QString::fromLatin1(result);
    };
    row("is a function", "return typeof openDatabaseSync", "function");
    row("rows written can be read",
        "var db = open('1.0');"
        "db.transaction(function(t) { t.executeSql('CREATE TABLE n(v TEXT)');"
        "  t.executeSql('INSERT INTO n VALUES(?)', ['ada']); t.executeSql('INSERT INTO n VALUES(?)', "
        "['bob']) });"
        "var r; db.readTransaction(function(t) { r = t.executeSql('SELECT v FROM n ORDER BY v').rows });"
        "return r.length + ' ' + r.item(0).v + ' ' + r.item(1).v",
        "2 ada bob");
    row("version", "return open('2.5').version", "2.5");
    row("callback",
        "var called; openDatabaseSync('d', '', '', 1, function(db) { called = typeof db.transaction });"
        "return called",
        "function");
    row("another version", "open('1.0'); try { open('2.0') } catch (e) { return 'refused' }", "refused");
    row("faulty statement",
        "try { open('1.0').transaction(function(t) { t.executeSql('nonsense') }) } catch (e) { return "
        "'refused' }",
        "refused");
    row("opened again", "open('1.0'); return open('1.0').version", "1.0");
}

void tst_QDeclarativeDatabases::opens()
{
    QFETCH(QString, script);
    QTemporaryDir folder;
    WatchedScene scene;
    scene.view().engine()->setOfflineStoragePath(folder.path());
    scene.addFile(QStringLiteral("data.js"),
                  // Connections last as long as the process, by name.
                  QByteArray("function open(version) { return openDatabaseSync('") + QTest::currentDataTag()
                      + "', version, 'a test', 1000) }\nfunction run() { " + script.toUtf8() + " }");
    scene.QmlScene::load(
        "import QtQuick 1.1\nimport 'data.js' as Data\nItem { function run() { return Data.run() } }");
    QTEST(scene.evaluate("run()").toString(), "result");
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeDatabases::filesLieInTheOfflineStorage()
{
    QTemporaryDir folder;
    WatchedScene scene;
    scene.view().engine()->setOfflineStoragePath(folder.path());
    QVERIFY(scene.load("Item {}"));
    QVERIFY(QDir(folder.path()).isEmpty());
    scene.evaluate("openDatabaseSync('kept', '1.0', '', 1)");
    QCOMPARE(scene.warnings, QStringList());
    QCOMPARE(
        QDir(folder.filePath(QStringLiteral("Databases"))).entryList({QStringLiteral("*.sqlite")}).count(),
        1);
}

QTEST_MAIN(tst_QDeclarativeDatabases)
#include "tst_qdeclarativedatabases.moc"
