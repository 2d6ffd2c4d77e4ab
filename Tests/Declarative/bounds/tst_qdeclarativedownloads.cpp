#include "DocumentServer.h"
#include "HostilePictures.h"
#include "MemoryPeak.h"
#include "MessageRecorder.h"
#include "Patience.h"
#include "QmlScene.h"

#include <sys/stat.h>

using namespace HostilePictures;

namespace {

constexpr int document = 16 * 1024 * 1024; // bytes
const QString documentTooLarge = QStringLiteral("Document too large: more than 16 MiB");
const QString downloadTooLarge = QStringLiteral("Download too large: more than 64 MiB: ");

/** Answers with a document that never ends, or one that says that it will be large. */
class EndlessServer : public LocalServer
{
public:
    explicit EndlessServer(const QByteArray &header)
    {
        connect(this, &QTcpServer::newConnection, this, [this, header] {
            QTcpSocket *socket = nextPendingConnection();
            socket->write("HTTP/1.1 200 OK\r\n" + header + "\r\n");
            connect(socket, &QTcpSocket::bytesWritten, socket, [socket] {
                if (socket->bytesToWrite() == 0)
                    socket->write(QByteArray(1024 * 1024, ' '));
            });
        });
    }
};

const QList<QPair<const char *, const char *>> askers = {
    {"AnimatedImage", "AnimatedImage { source: '%1' }"},
    {"BorderImage", "BorderImage { source: '%1.sci' }"},
    {"FontLoader", "FontLoader { source: '%1' }"},
    {"Image", "Image { source: '%1' }"},
    {"Particles", "Particles { source: '%1' }"},
    {"Text", "Text { text: '<img src=\"%1\">' }"},
    {"XMLHttpRequest",
     "function ask() { var r = new XMLHttpRequest; r.open('GET', '%1'); r.send() } Component.onCompleted: "
     "ask()"},
    {"XmlListModel",
     "XmlListModel { source: '%1'; query: '/a'; XmlRole { name: 'b'; query: 'b/string()' } }"},
};

QByteArray sceneOf(const QByteArray &element, const QByteArray &url)
{
    return "import QtQuick 1.1\nimport Qt.labs.particles 1.0\nItem { "
        + QByteArray(element).replace("%1", url) + "\n}";
}

} // namespace

/** What comes over the network, and files that come in the same way. */
class tst_QDeclarativeDownloads : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void pictures_data();
    void pictures();
    void endless_data();
    void endless();
    void files_data();
    void files();
    void pipe();
    void fileForWorker();
    void text();
    void fileOfQuery_data();
    void fileOfQuery();
};

void tst_QDeclarativeDownloads::initTestCase()
{
    // Qt warns of every local file that is requested otherwise.
    qputenv("QML_XHR_ALLOW_FILE_READ", "1");
}

void tst_QDeclarativeDownloads::pictures_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QByteArray>("content");
    for (const auto &asker : askers) {
        const QByteArray element(asker.second);
        if (element.contains("sci") || element.contains("XML") || element.contains("Xml")
            || element.contains("Font"))
            continue;
        QTest::addRow("%s, PNG", asker.first) << element << png(12000, 12000);
        QTest::addRow("%s, SVG of a PNG", asker.first)
            << element << svg({}, shown(address("png", png(12000, 12000))));
    }
}

void tst_QDeclarativeDownloads::pictures()
{
    QFETCH(QByteArray, element);
    QFETCH(QByteArray, content);
    const DocumentServer server("200 OK", content);
    QmlScene scene;
    const MemoryPeak peak;
    MessageRecorder messages;
    scene.load(sceneOf(element, server.url("picture")));
    scene.picture();
    QTRY_COMPARE(messages.texts().count(), 1);
    const QString text = messages.texts().at(0);
    QVERIFY2(text.contains(QLatin1String("Scene1.qml:3:")), qPrintable(text));
    QVERIFY2(
        text.endsWith(QLatin1String("/picture: Image too large: 144.0 megapixels, where 64 are the most")),
        qPrintable(text));
    QVERIFY2(peak.growth() < 300, qPrintable(QString::number(peak.growth())));
}

void tst_QDeclarativeDownloads::endless_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("element");
    for (const auto &asker : askers) {
        QTest::addRow("%s, large", asker.first)
            << QByteArray("Content-Length: 67108865\r\n") << QByteArray(asker.second);
        QTest::addRow("%s, endless", asker.first) << QByteArray() << QByteArray(asker.second);
    }
}

void tst_QDeclarativeDownloads::endless()
{
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, element);
    const EndlessServer server(header);
    QmlScene scene;
    MessageRecorder messages;
    scene.load(sceneOf(element, server.url("thing")));
    scene.picture();
    QTRY_VERIFY_WITH_TIMEOUT(!messages.texts().isEmpty(), 60000);
    const QString text = messages.texts().at(0);
    QVERIFY2(text.contains(downloadTooLarge + QString::fromLatin1(server.url("thing"))), qPrintable(text));
}

void tst_QDeclarativeDownloads::files_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("element");
    for (const auto &asker : askers) {
        const QByteArray element(asker.second);
        if (!element.contains("XML") && !element.contains("Xml"))
            continue;
        QTest::addRow("%s, as large as may be", asker.first) << document << element;
        QTest::addRow("%s, larger", asker.first) << document + 1 << element;
    }
}

void tst_QDeclarativeDownloads::files()
{
    QFETCH(int, size);
    QFETCH(QByteArray, element);
    QmlScene scene;
    const QUrl url = scene.addFile(QStringLiteral("document"), QByteArray("<a/>"));
    QVERIFY(QFile::resize(url.toLocalFile(), size));
    MessageRecorder messages;
    scene.load(sceneOf(element, url.toEncoded()));
    if (size <= document) {
        QTRY_VERIFY(scene.run(QStringLiteral("true")).toBool());
        QVERIFY(!messages.texts().join(QLatin1Char('\n')).contains(documentTooLarge));
        return;
    }
    QTRY_COMPARE(messages.texts().count(), 1);
    const QString text = messages.texts().at(0);
    QVERIFY2(text.contains(QLatin1String("Scene1.qml:3")), qPrintable(text));
    QVERIFY2(text.endsWith(documentTooLarge + QLatin1String(": ") + url.toString()), qPrintable(text));
}

void tst_QDeclarativeDownloads::pipe()
{
    QmlScene scene;
    const QUrl url = scene.url(QStringLiteral("pipe"));
    QCOMPARE(mkfifo(qPrintable(url.toLocalFile()), S_IRUSR | S_IWUSR), 0);
    MessageRecorder messages;
    scene.load("import QtQuick 1.1\nItem { property int state: -1\nComponent.onCompleted: {\n"
               "var r = new XMLHttpRequest; r.onreadystatechange = function() { root = r.readyState }\n"
               "r.open('GET', 'pipe'); r.send() } property int root: -1 }");
    QTRY_COMPARE(scene.root()->property("root").toInt(), 4);
    QCOMPARE(messages.texts().count(), 1);
    QVERIFY(messages.texts().at(0).endsWith(QLatin1String("Scene1.qml:5: Cannot open: ") + url.toString()));
}

void tst_QDeclarativeDownloads::fileForWorker()
{
    QmlScene scene;
    const QUrl url = scene.addFile(QStringLiteral("document"), QByteArray("<a/>"));
    QVERIFY(QFile::resize(url.toLocalFile(), document + 1));
    scene.addFile(QStringLiteral("worker.js"),
                  "WorkerScript.onMessage = function(url) { var r = new XMLHttpRequest\n"
                  "r.onreadystatechange = function() { if (r.readyState == 4) "
                  "WorkerScript.sendMessage(r.responseText.length) }\n"
                  "r.open('GET', url); r.send() }");
    MessageRecorder messages;
    scene.load(
        "import QtQuick 1.1\nItem { property int length: -1\nWorkerScript { id: w; source: 'worker.js'; "
        "onMessage: length = messageObject }\nComponent.onCompleted: w.sendMessage('"
        + url.toEncoded() + "') }");
    QTRY_COMPARE(scene.root()->property("length").toInt(), 0);
    QTRY_COMPARE(messages.texts().count(), 1);
    QVERIFY(messages.texts().at(0).endsWith(documentTooLarge + QLatin1String(": ") + url.toString()));
}

void tst_QDeclarativeDownloads::text()
{
    QmlScene scene;
    scene.load("import QtQuick 1.1\nItem { property int status: m.status\n"
               "XmlListModel { id: m; query: '/a'; XmlRole { name: 'b'; query: 'b/string()' } }\n"
               "function fill() { m.xml = '<a>' + new Array(16 * 1024 * 1024 + 1).join(' ') + '</a>' } }");
    MessageRecorder messages;
    scene.run(QStringLiteral("fill()"));
    QCOMPARE(scene.root()->property("status").toInt(), 3);
    QCOMPARE(messages.texts().count(), 1);
    QVERIFY(messages.texts().at(0).endsWith(QLatin1String("Scene1.qml:3:1: QML XmlListModel: ")
                                            + documentTooLarge));
}

void tst_QDeclarativeDownloads::fileOfQuery_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("count");
    QTest::newRow("as large as may be") << document << 1;
    QTest::newRow("larger") << document + 1 << 0;
}

void tst_QDeclarativeDownloads::fileOfQuery()
{
    QFETCH(int, size);
    QFETCH(int, count);
    QmlScene scene;
    const QByteArray root = "<a/>";
    const QUrl url = scene.addFile(QStringLiteral("other"), root + QByteArray(size - root.size(), ' '));
    MessageRecorder messages;
    scene.load("import QtQuick 1.1\nItem { property int status: m.status; property int count: m.count\n"
               "XmlListModel { id: m; xml: '<b/>'; query: '/doc(\""
               + url.toEncoded()
               + "\")/a'; "
                 "XmlRole { name: 'c'; query: 'c/string()' } } }");
    QTRY_COMPARE_WITH_TIMEOUT(scene.root()->property("status").toInt(), 1, 60000);
    QCOMPARE(scene.root()->property("count").toInt(), count);
    QCOMPARE(messages.texts().count(), 1 - count);
    if (count == 0)
        QVERIFY(messages.texts().at(0).endsWith(documentTooLarge + QLatin1String(": ") + url.toString()));
}

QTEST_MAIN(tst_QDeclarativeDownloads)
#include "tst_qdeclarativedownloads.moc"
