#include <Vidtips/VTFFmpegCodecs_p.h>

#include "TestClips.h"

#include <QtTest/QTest>

extern "C" {
#include <libavutil/log.h>
}

#include <memory>

using namespace Vidtips;

class tst_VTFFmpegCodecs : public QObject
{
    Q_OBJECT

private slots:
    void silencesFFmpeg();
    void decodersAreTheCallers();
    void interruptionIsTheDecoders();
};

void tst_VTFFmpegCodecs::silencesFFmpeg()
{
    av_log_set_level(AV_LOG_INFO);
    const VTFFmpegCodecs codecs;
    QCOMPARE(av_log_get_level(), AV_LOG_QUIET);
}

void tst_VTFFmpegCodecs::decodersAreTheCallers()
{
    auto codecs = std::make_unique<VTFFmpegCodecs>();
    const auto goOn = [](void *) { return 0; };
    const std::unique_ptr<VTVideoDecoder> first(codecs->makeDecoder(goOn, nullptr));
    const std::unique_ptr<VTVideoDecoder> second(codecs->makeDecoder(goOn, nullptr));
    codecs.reset();
    QCOMPARE(first->open(TestClips::h264()), nullptr);
    QVERIFY(!second->isOpen());
    QCOMPARE(second->open(TestClips::oddSize()), nullptr);
    QCOMPARE(first->facts().width, 160);
    QCOMPARE(second->facts().width, 161);
}

void tst_VTFFmpegCodecs::interruptionIsTheDecoders()
{
    VTFFmpegCodecs codecs;
    int isOver = 1;
    const std::unique_ptr<VTVideoDecoder> decoder(
        codecs.makeDecoder([](void *context) { return *static_cast<int *>(context); }, &isOver));
    QVERIFY(decoder->open(TestClips::h264()));
    isOver = 0;
    QCOMPARE(decoder->open(TestClips::h264()), nullptr);
}

QTEST_GUILESS_MAIN(tst_VTFFmpegCodecs)
#include "tst_vtffmpegcodecs.moc"
