#include "MessageRecorder.h"
#include "Patience.h"
#include "WatchedScene.h"

#include <QtCore/QFile>
#include <QtCore/QScopeGuard>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtDeclarative/QDeclarativeView>
#include <QtQml/QQmlComponent>
#include <QtTest/QTest>

#include <atomic>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/** Lets go whoever has been waiting for a named pipe for too long, and knows that it had to. */
class PipeWatchdog : public QThread
{
public:
    explicit PipeWatchdog(const QString &pipe)
        : m_pipe(QFile::encodeName(pipe))
    {
        start();
    }
    ~PipeWatchdog() override
    {
        requestInterruption();
        wait();
    }

    bool hadToHelp() const { return m_hadToHelp; }

private:
    void run() override
    {
        for (int tenths = 0; tenths < 50; ++tenths) {
            msleep(100);
            if (isInterruptionRequested())
                return;
        }
        while (!isInterruptionRequested()) {
            const int writer = ::open(m_pipe.constData(), O_WRONLY | O_NONBLOCK);
            if (writer >= 0) {
                m_hadToHelp = true;
                ::close(writer);
            }
            msleep(100);
        }
    }

    const QByteArray m_pipe;
    std::atomic<bool> m_hadToHelp{false};
};

} // namespace

/** Local addresses of what is no regular file, given to everything that loads something. */
class tst_QDeclarativeLocalFile : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void refused_data();
    void refused();
    void style();
    void view();
    void code_data();
    void code();
    void fontLoader();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

void tst_QDeclarativeLocalFile::initTestCase()
{
    QVERIFY(m_folder.isValid());
    for (const char *name : {"pipe", "pipe.sci"})
        QCOMPARE(::mkfifo(QFile::encodeName(path(QLatin1String(name))).constData(), 0600), 0);
    QVERIFY(QFile::link(QStringLiteral("/dev/null"), path(QStringLiteral("device"))));
    QVERIFY(QFile::link(QStringLiteral("/dev/null"), path(QStringLiteral("device.sci"))));
    for (const char *name : {"folder", "folder.sci"})
        QVERIFY(QDir(m_folder.path()).mkdir(QLatin1String(name)));
}

void tst_QDeclarativeLocalFile::refused_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<int>("status"); // -1: it has none
    struct Reader
    {
        const char *name;
        const char *element;
        const char *suffix;
        int status;
    };
    const Reader readers[] = {
        {"Image", "Image { objectName: 'reader'; source: '%1' }", "", 3},
        {"asynchronous Image", "Image { objectName: 'reader'; asynchronous: true; source: '%1' }", "", 3},
        {"BorderImage", "BorderImage { objectName: 'reader'; source: '%1' }", "", 3},
        {"grid description", "BorderImage { objectName: 'reader'; source: '%1' }", ".sci", 3},
        {"AnimatedImage", "AnimatedImage { objectName: 'reader'; source: '%1' }", "", 3},
        {"Text", "Text { objectName: 'reader'; text: '<b>a</b><img src=\"%1\">' }", "", -1},
        {"TextEdit", "TextEdit { objectName: 'reader'; text: '<b>a</b><img src=\"%1\">' }", "", -1},
        {"Loader", "Loader { objectName: 'reader'; source: '%1' }", "", 3},
        {"FontLoader", "FontLoader { objectName: 'reader'; source: '%1' }", "", 3},
        {"Particles", "Particles { objectName: 'reader'; source: '%1' }", "", -1},
        {"XmlListModel", "XmlListModel { objectName: 'reader'; query: '/a'; source: '%1' }", "", 3},
    };
    for (const Reader &reader : readers) {
        for (const char *kind : {"pipe", "device", "folder"})
            QTest::addRow("%s, %s", reader.name, kind)
                << QString::fromLatin1(kind) + QLatin1String(reader.suffix) << QByteArray(reader.element)
                << reader.status;
    }
}

void tst_QDeclarativeLocalFile::refused()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, element);
    QFETCH(int, status);
    const QByteArray address = QUrl::fromLocalFile(path(file)).toEncoded();
    const PipeWatchdog watchdog(path(file));
    WatchedScene scene;
    QVERIFY(scene.load("import Qt.labs.particles 1.0\n"
                       "Item { id: root; width: 50; height: 50; property QtObject reader: "
                       + element.replace("%1", address)
                       + "; Component.onCompleted: if ('opacity' in reader) reader.parent = root }"));
    auto *reader = scene.view().rootObject()->property("reader").value<QObject *>();
    if (status >= 0)
        QTRY_COMPARE(reader->property("status").toInt(), status);
    scene.view().grab();
    QVERIFY(!watchdog.hadToHelp());
    const QString message = QStringLiteral("Cannot open: ") + QString::fromLatin1(address);
    const QString error =
        QLatin1String(reader->metaObject()->className()).contains(QLatin1String("XmlListModel"))
        ? scene.evaluate("reader.errorString()").toString()
        : scene.warnings.join(QLatin1Char('\n'));
    QVERIFY2(error.contains(message) || error.contains(QStringLiteral("Error Reading Animated Image File")),
             qPrintable(error));
}

void tst_QDeclarativeLocalFile::style()
{
    const QString pipe = path(QStringLiteral("pipe"));
    const PipeWatchdog watchdog(pipe);
    for (const QString &address : {pipe, QUrl::fromLocalFile(pipe).toString()}) {
        WatchedScene scene;
        QVERIFY(scene.load("Text { textFormat: Text.RichText; text: '<html><head><link rel=\"stylesheet\" "
                           "type=\"text/css\" href=\""
                           + address.toLatin1() + "\"></head><body>a</body></html>' }"));
        scene.view().grab();
    }
    QVERIFY(!watchdog.hadToHelp());
}

void tst_QDeclarativeLocalFile::view()
{
    const QString pipe = path(QStringLiteral("pipe"));
    const PipeWatchdog watchdog(pipe);
    const MessageRecorder messages;
    QDeclarativeView view;
    view.setSource(QUrl::fromLocalFile(pipe));
    QCOMPARE(view.status(), QDeclarativeView::Error);
    QCOMPARE(view.errors().count(), 1);
    QCOMPARE(view.errors().constFirst().description(),
             QStringLiteral("Cannot open: ") + QUrl::fromLocalFile(pipe).toString());
    view.setSource(QUrl());
    QCOMPARE(view.status(), QDeclarativeView::Null);
    QVERIFY(!watchdog.hadToHelp());
}

void tst_QDeclarativeLocalFile::code_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<bool>("loads");
    QTest::newRow("script") << QStringLiteral("pipe.js") << QByteArray("import 'pipe.js' as S\nItem { }")
                            << false;
    QTest::newRow("folder") << QStringLiteral("folder/qmldir") << QByteArray("import 'folder'\nItem { }")
                            << false;
    QTest::newRow("component") << QStringLiteral("Pipe.qml") << QByteArray("Item { Pipe { } }") << false;
    // What lies beside a document needs no description.
    QTest::newRow("description beside") << QStringLiteral("qmldir") << QByteArray("Item { }") << true;
}

void tst_QDeclarativeLocalFile::code()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, document);
    QCOMPARE(::mkfifo(QFile::encodeName(path(file)).constData(), 0600), 0);
    const auto remove = qScopeGuard([this, file] { QFile::remove(path(file)); });
    const PipeWatchdog watchdog(path(file));
    QDeclarativeEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick 1.1\n" + document,
                      QUrl::fromLocalFile(path(QStringLiteral("Document.qml"))));
    QVERIFY(!watchdog.hadToHelp());
    QTEST(component.isReady(), "loads");
}

void tst_QDeclarativeLocalFile::fontLoader()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Item { FontLoader { id: font; name: 'Some Font'\n"
        "onSourceChanged: root.said += 'source '; onStatusChanged: root.said += 'status ' + status + ' ' }\n"
        "id: root; property string said }"));
    QCOMPARE(scene.evaluate("font.name + font.status").toString(), QStringLiteral("Some Font1"));
    const QByteArray missing = QUrl::fromLocalFile(path(QStringLiteral("missing.ttf"))).toEncoded();
    const QByteArray pipe = QUrl::fromLocalFile(path(QStringLiteral("pipe"))).toEncoded();
    scene.evaluate("font.source = '" + missing + "'");
    QTRY_COMPARE(scene.evaluate("font.status").toInt(), 3);
    QCOMPARE(scene.warnings.count(), 1);
    QVERIFY2(scene.warnings.constFirst().contains(QStringLiteral("Cannot load font")),
             qPrintable(scene.warnings.constFirst()));
    scene.evaluate("font.source = '" + pipe + "'");
    QCOMPARE(scene.evaluate("font.source").toString(), QString::fromLatin1(pipe));
    scene.evaluate("said = ''; font.source = '" + missing + "'");
    QCOMPARE(scene.evaluate("font.source").toString(), QString::fromLatin1(missing));
    QCOMPARE(scene.evaluate("said").toString(), QStringLiteral("source status 3 "));
}

QTEST_MAIN(tst_QDeclarativeLocalFile)
#include "tst_qdeclarativelocalfile.moc"
