#include "HostilePictures.h"
#include "MemoryPeak.h"
#include "MessageRecorder.h"
#include "QmlScene.h"

#include <sys/stat.h>

using namespace HostilePictures;

/** Vector pictures that are large themselves, packed, or made of others. */
class tst_QDeclarativeDrawing : public QObject
{
    Q_OBJECT

private slots:
    void drawings_data();
    void drawings();
    void pipeInside();
};

namespace {

constexpr int bound = 8 * 1024 * 1024; // bytes

/** Returns @p data as gzip packs it. */
QByteArray packed(const QByteArray &data)
{
    // Qt's own form has its length before, and a header and a checksum around, what both of them have.
    const QByteArray stream = qCompress(data).mid(6).chopped(4);
    return QByteArray::fromHex("1f8b0800000000000003") + stream + little<quint32>(checksum(data))
        + little<quint32>(quint32(data.size()));
}

/** A picture of exactly @p size bytes. */
QByteArray drawingOf(int size)
{
    const QByteArray empty = svg("width='9' height='9'");
    return svg("width='9' height='9'", QByteArray(size - empty.size(), ' '));
}

QStringList messagesOf(QmlScene *scene)
{
    MessageRecorder messages;
    scene->load("import QtQuick 1.1\nImage { objectName: 'i'; source: 'drawing.svg' }");
    return messages.texts();
}

} // namespace

void tst_QDeclarativeDrawing::drawings_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("message");
    const QString tooLarge = QStringLiteral("Drawing too large: more than 8 MiB");
    const QString tooMany = QStringLiteral("Drawing of too many pictures");
    const QString hugeInside = QStringLiteral("Image too large: 144.0 megapixels, where 64 are the most");
    const auto row = [](const char *name, const QByteArray &content, const QString &message) {
        QTest::newRow(name) << content << message;
    };
    row("as large as may be", drawingOf(bound), {});
    row("larger", drawingOf(bound + 1), tooLarge);
    row("packed", packed(drawingOf(1000)), {});
    row("packed, as large as may be", packed(drawingOf(bound)), {});
    row("packed, larger", packed(drawingOf(bound + 1)), tooLarge);
    row("shows a file", svg("width='9' height='9'", shown("small.png")), {});
    row("shows an address of a file", svg("width='9' height='9'", shown("file:///nowhere/at/all.png")), {});
    row("shows a huge file", svg("width='9' height='9'", shown("huge.png")), hugeInside);
    row("shows a huge file, packed", packed(svg("width='9' height='9'", shown("huge.png"))), hugeInside);
    row("shows a huge file, by a prefix",
        "<?xml version='1.0'?><s:svg xmlns:s='http://www.w3.org/2000/svg' "
        "xmlns:xlink='http://www.w3.org/1999/xlink'>"
        "<s:image width='4' height='4' xlink:href='huge.png'/></s:svg>",
        hugeInside);
    row("shows one of two files", svg("width='9' height='9'", shown("small.png' href='huge.png")),
        hugeInside);
    row("shows the other of two files",
        svg("width='9' height='9'", "<image href='small.png' xlink:href='huge.png'/>"), hugeInside);
    row("shows itself", svg("width='9' height='9'", shown("drawing.svg")), tooMany);
    row("shows itself again and again", svg({}, shown("drawing.svg").repeated(20)), tooMany);
    row("shows a thousand", svg("width='9' height='9'", shown(address("png", png(8, 8))).repeated(1000)), {});
    row("shows more", svg({}, shown(address("png", png(8, 8))).repeated(1001)), tooMany);
    row("shows what is no picture", svg("width='9' height='9'", shown("data:text/plain,text") + shown({})),
        {});
    row("is huge in another encoding",
        QByteArray("\xFF\xFE")
            + QByteArray(
                reinterpret_cast<const char *>(QString::fromLatin1(svg({}, shown("huge.png"))).utf16()),
                2 * svg({}, shown("huge.png")).size()),
        hugeInside);
}

void tst_QDeclarativeDrawing::drawings()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, message);
    QmlScene scene;
    scene.addFile(QStringLiteral("small.png"), small());
    scene.addFile(QStringLiteral("huge.png"), png(12000, 12000));
    scene.addFile(QStringLiteral("drawing.svg"), content);
    const MemoryPeak peak;
    const QStringList texts = messagesOf(&scene);
    const QString all = texts.join(QLatin1Char('\n'));
    QCOMPARE(scene.root()->property("status").toInt(), message.isEmpty() ? 1 : 3);
    // What is shown and is not there is none of ours to report.
    if (message.isEmpty())
        QVERIFY2(!all.contains(QLatin1String("Error")), qPrintable(all));
    else
        QVERIFY2(texts.count() == 1 && all.endsWith(message), qPrintable(all));
    QVERIFY2(peak.growth() < 300, qPrintable(QString::number(peak.growth())));
}

void tst_QDeclarativeDrawing::pipeInside()
{
    QmlScene scene;
    const QString path = scene.url(QStringLiteral("pipe")).toLocalFile();
    QCOMPARE(mkfifo(qPrintable(path), S_IRUSR | S_IWUSR), 0);
    scene.addFile(QStringLiteral("drawing.svg"), svg({}, shown("pipe")));
    const QStringList texts = messagesOf(&scene);
    QCOMPARE(texts.count(), 1);
    QVERIFY(texts.at(0).endsWith(QLatin1String("Drawing shows what must not be read: ") + path));
}

QTEST_MAIN(tst_QDeclarativeDrawing)
#include "tst_qdeclarativedrawing.moc"
