#include <Vidtips/VTVideoFrameCache.h>

#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <limits>

using Vidtips::VTVideoFrame;
using Vidtips::VTVideoFrameCache;

class tst_VTVideoFrameCache : public QObject
{
    Q_OBJECT

private slots:
    void freshCacheIsEmpty();
    void framesComeBackByIndex();
    void indexPastTheEndGivesNullFrame_data();
    void indexPastTheEndGivesNullFrame();
    void framesShareTheirPixels();
    void frameOfAnEmptyCacheIsFatal();
};

namespace {
const char readEmptyCache[] = "--read-empty-cache";

VTVideoFrame frameAt(double pts)
{
    VTVideoFrame frame(2, 2, QImage::Format_RGB32, 0);
    frame.setPts(pts);
    return frame;
}
} // namespace

void tst_VTVideoFrameCache::freshCacheIsEmpty()
{
    VTVideoFrameCache cache("file:///clip.mp4");
    QCOMPARE(cache.length(), quint64(0));
    QVERIFY(!cache.parent());
}

void tst_VTVideoFrameCache::framesComeBackByIndex()
{
    VTVideoFrameCache cache("clip");
    for (int i = 0; i < 5; ++i) {
        cache.addFrame(frameAt(i * 0.5));
        QCOMPARE(cache.length(), quint64(i + 1));
        QCOMPARE(cache.frame(quint64(i)).pts(), i * 0.5);
    }
    QCOMPARE(cache.frame(0).pts(), 0.0);
}

void tst_VTVideoFrameCache::indexPastTheEndGivesNullFrame_data()
{
    QTest::addColumn<quint64>("index");
    QTest::newRow("one past") << quint64(2);
    QTest::newRow("past a list's range") << (quint64(1) << 32);
    QTest::newRow("largest") << std::numeric_limits<quint64>::max();
}

void tst_VTVideoFrameCache::indexPastTheEndGivesNullFrame()
{
    QFETCH(quint64, index);
    VTVideoFrameCache cache("clip");
    cache.addFrame(frameAt(1));
    cache.addFrame(frameAt(2));
    QVERIFY(cache.frame(index).isNull());
    QCOMPARE(cache.frame(index).pts(), 0.0);
}

void tst_VTVideoFrameCache::framesShareTheirPixels()
{
    VTVideoFrameCache cache("clip");
    VTVideoFrame working = frameAt(1);
    working.fill(0xFFABCDEF);
    const uchar *const pixels = working.constBits();
    cache.addFrame(working);
    QCOMPARE(cache.frame(0).constBits(), pixels);
    working.fill(0xFF000000);
    QCOMPARE(cache.frame(0).pixel(0, 0), 0xFFABCDEF);
}

void tst_VTVideoFrameCache::frameOfAnEmptyCacheIsFatal()
{
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {readEmptyCache});
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitStatus(), QProcess::CrashExit);
    const QByteArray output = process.readAllStandardError();
    QVERIFY2(output.contains("the cache of \"file:///clip.mp4\" is empty"), output);
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    if (app.arguments().contains(readEmptyCache)) {
        VTVideoFrameCache cache("file:///clip.mp4");
        return cache.frame(0).isNull() ? 0 : 1;
    }
    tst_VTVideoFrameCache test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_vtvideoframecache.moc"
