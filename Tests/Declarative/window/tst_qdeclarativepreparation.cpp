// What is loaded before it is shown: it is in Qt's cache of compiled QML then, and nothing else has happened.

#include "MessageRecorder.h"
#include "TestPackage.h"

#include <QtDeclarative/QDeclarativeView>
#include <QtDeclarative/qdeclarativepreparation.h>

#include <QtCore/QDateTime>
#include <QtNetwork/QTcpServer>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

namespace {

class Documents : public TestPackages
{
public:
    QUrl add(const QString &name, const QByteArray &text) const
    {
        return QUrl::fromLocalFile(write(name, "import QtQuick 1.1\n" + text));
    }
};

} // namespace

class tst_QDeclarativePreparation : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private slots:
    void whatIsLoadedIsCached();
    void changedFileIsDue();
    void withoutCache();
    void nothingToPrepare();
    void brokenFile();
    void noObjectIsMade();
    void nothingIsFetched();
    void destroyedWhileAtWork_data();
    void destroyedWhileAtWork();

private:
    void prepare(const QUrl &url);
};

// A cache of its own, which has nothing in it.
void tst_QDeclarativePreparation::initMain()
{
    static const QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", cache.path().toLocal8Bit());
    qunsetenv("QML_DISABLE_DISK_CACHE");
}

void tst_QDeclarativePreparation::prepare(const QUrl &url)
{
    QDeclarativePreparation preparation(url);
    QSignalSpy finished(&preparation, &QDeclarativePreparation::finished);
    QCOMPARE(finished.size(), 0);
    QVERIFY(finished.wait(30000));
    QCOMPARE(finished.size(), 1);
}

void tst_QDeclarativePreparation::whatIsLoadedIsCached()
{
    const Documents documents;
    const QUrl part = documents.add(QStringLiteral("Part.qml"), "Item { width: 20; height: 2 * width }");
    const QUrl main = documents.add(QStringLiteral("Main.qml"), "Part { height: width + 1 }");
    QVERIFY(QDeclarativePreparation::isDue(main));
    QVERIFY(QDeclarativePreparation::isDue(part));
    prepare(main);
    QVERIFY(!QDeclarativePreparation::isDue(main));
    QVERIFY(!QDeclarativePreparation::isDue(part));
    const QDeclarativeView view(main);
    QVERIFY(view.rootObject());
    QCOMPARE(view.rootObject()->property("height").toInt(), 21);
}

void tst_QDeclarativePreparation::changedFileIsDue()
{
    const Documents documents;
    const QUrl main = documents.add(QStringLiteral("Main.qml"), "Item { width: 20 }");
    prepare(main);
    QVERIFY(!QDeclarativePreparation::isDue(main));
    QFile file(main.toLocalFile());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-60), QFileDevice::FileModificationTime));
    QVERIFY(QDeclarativePreparation::isDue(main));
}

void tst_QDeclarativePreparation::withoutCache()
{
    const Documents documents;
    const QUrl main = documents.add(QStringLiteral("Main.qml"), "Item { width: 20 }");
    prepare(main);
    qputenv("QML_DISABLE_DISK_CACHE", "1");
    QVERIFY(QDeclarativePreparation::isDue(main));
    qunsetenv("QML_DISABLE_DISK_CACHE");
}

void tst_QDeclarativePreparation::nothingToPrepare()
{
    const Documents documents;
    QVERIFY(!QDeclarativePreparation::isDue(QUrl()));
    QVERIFY(!QDeclarativePreparation::isDue(QUrl(QStringLiteral("http://127.0.0.1/Main.qml"))));
    QVERIFY(!QDeclarativePreparation::isDue(QUrl::fromLocalFile(documents.path())));
    QVERIFY(
        !QDeclarativePreparation::isDue(QUrl::fromLocalFile(documents.filePath(QStringLiteral("None.qml")))));
}

// It is reported when it is shown, and not before.
void tst_QDeclarativePreparation::brokenFile()
{
    const Documents documents;
    const MessageRecorder messages;
    const QUrl main = documents.add(QStringLiteral("Main.qml"), "Item { width: ");
    prepare(main);
    QVERIFY(QDeclarativePreparation::isDue(main));
    QCOMPARE(messages.texts(), QStringList());
}

void tst_QDeclarativePreparation::noObjectIsMade()
{
    const Documents documents;
    const MessageRecorder messages;
    prepare(documents.add(QStringLiteral("Main.qml"), "Item { Component.onCompleted: console.log('made') }"));
    QCOMPARE(messages.texts(), QStringList());
}

void tst_QDeclarativePreparation::nothingIsFetched()
{
    const Documents documents;
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const QSignalSpy visitors(&server, &QTcpServer::newConnection);
    const QByteArray folder = "http://127.0.0.1:" + QByteArray::number(server.serverPort());
    prepare(documents.add(QStringLiteral("Main.qml"), "import \"" + folder + "\"\nItem { }"));
    prepare(documents.add(QStringLiteral("Script.qml"), "import \"" + folder + "/a.js\" as A\nItem { }"));
    QVERIFY(!server.waitForNewConnection(100));
    QCOMPARE(visitors.size(), 0);
}

void tst_QDeclarativePreparation::destroyedWhileAtWork_data()
{
    QTest::addColumn<int>("passes");
    for (int passes = 0; passes < 5; ++passes)
        QTest::addRow("after %d passes through the event loop", passes) << passes;
}

void tst_QDeclarativePreparation::destroyedWhileAtWork()
{
    const Documents documents;
    QFETCH(int, passes);
    documents.add(QStringLiteral("Part.qml"), "Item { width: 20; height: 2 * width }");
    for (int i = 0; i < 5; ++i) {
        const QUrl main = documents.add(QStringLiteral("Main%1.qml").arg(i), "Part { Part { } }");
        const QDeclarativePreparation preparation(main);
        for (int pass = 0; pass < passes; ++pass)
            QCoreApplication::processEvents();
    }
}

QTEST_MAIN(tst_QDeclarativePreparation)

#include "tst_qdeclarativepreparation.moc"
