#include "HostilePictures.h"
#include "MessageRecorder.h"
#include "QmlScene.h"

/** Fonts that are large, or say so. */
class tst_QDeclarativeFontFile : public QObject
{
    Q_OBJECT

private slots:
    void fonts_data();
    void fonts();
    void addressOfFont();
};

namespace {

constexpr int bound = 64 * 1024 * 1024; // bytes
const QString tooLarge = QStringLiteral("Font too large: more than 64 MiB: ");

/** The begin of a packed font that says how large it is. */
QByteArray claiming(const QByteArray &kind, int size)
{
    return kind + QByteArray(12, 0) + HostilePictures::big<quint32>(quint32(size)) + QByteArray(99, 0);
}

QByteArray sceneOf(const QByteArray &source)
{
    return "import QtQuick 1.1\nItem { property int status: f.status\nFontLoader { id: f; source: '" + source
        + "' } }";
}

} // namespace

void tst_QDeclarativeFontFile::fonts_data()
{
    QTest::addColumn<QByteArray>("begin");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("isTooLarge");
    QTest::newRow("large") << QByteArray("OTTO") << bound << false;
    QTest::newRow("larger") << QByteArray("OTTO") << bound + 1 << true;
    QTest::newRow("packed") << claiming("wOFF", bound) << 200 << false;
    QTest::newRow("packed, larger") << claiming("wOFF", bound + 1) << 200 << true;
    QTest::newRow("packed otherwise, larger") << claiming("wOF2", bound + 1) << 200 << true;
    QTest::newRow("not packed") << claiming("OTTO", bound + 1) << 200 << false;
    QTest::newRow("cut off") << QByteArray("wOFF") << 4 << false;
}

void tst_QDeclarativeFontFile::fonts()
{
    QFETCH(QByteArray, begin);
    QFETCH(int, size);
    QFETCH(bool, isTooLarge);
    QmlScene scene;
    const QUrl url = scene.addFile(QStringLiteral("font"), begin);
    QVERIFY(QFile::resize(url.toLocalFile(), size));
    MessageRecorder messages;
    scene.load(sceneOf("font"));
    const QString text = messages.texts().join(QLatin1Char('\n'));
    QCOMPARE(text.contains(tooLarge + url.toString()), isTooLarge);
    if (isTooLarge)
        QVERIFY2(text.contains(QLatin1String("Scene1.qml:3:")), qPrintable(text));
    // None of them is a font.
    QCOMPARE(messages.texts().count(), 1);
    QCOMPARE(scene.root()->property("status").toInt(), 3);
}

void tst_QDeclarativeFontFile::addressOfFont()
{
    QmlScene scene;
    MessageRecorder messages;
    scene.load(sceneOf("data:font/woff;base64," + claiming("wOFF", bound + 1).toBase64()));
    QTRY_COMPARE(scene.root()->property("status").toInt(), 3);
    QVERIFY(messages.texts().at(0).contains(tooLarge));
}

QTEST_MAIN(tst_QDeclarativeFontFile)
#include "tst_qdeclarativefontfile.moc"
