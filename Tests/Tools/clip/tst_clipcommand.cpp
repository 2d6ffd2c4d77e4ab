#include "TestClips.h"
#include "TestPackage.h"
#include "ToolCall.h"

#include "clip/ClipRequest.h"
#include "clip/Recording.h"
#include "clips/ClipCheck.h"
#include "findings/Finding.h"

#include <QtGui/QImage>
#include <QtTest/QtTest>

namespace {

// Frames that come when they like, in a size and with colours that are not those of a clip.
QString recording()
{
    return TestClips::make(
        "recording-varying.mkv",
        TestClips::moving("640x480", 24,
                          {"-vf", "select='lt(mod(n,20),9)',setsar=4/3", "-fps_mode", "vfr", "-c:v",
                           "libx264", "-preset", "ultrafast", "-pix_fmt", "yuv420p"},
                          "30"));
}

QString red()
{
    return TestClips::make("recording-red.mkv",
                           {"-f", "lavfi", "-i", "color=c=0xE02010:size=320x180:rate=30", "-t", "1", "-c:v",
                            "ffv1", "-pix_fmt", "bgr0"});
}

QVector<Finding> findingsOf(const QString &clip)
{
    Findings findings;
    ClipCheck(64 * 1024 * 1024, 30.0).run({clip}, findings, [](int, int) {});
    return findings.sorted();
}

} // namespace

/** Makes clips of recordings by the command. */
class tst_ClipCommand : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void makesClipsThatPassACheck_data();
    void makesClipsThatPassACheck();
    void makesTheClipBesideTheRecording();
    void keepsTheColours();
    void compressesUntilTheFileIsSmallEnough();
    void tellsWhatWasGivenUp();
    void refusesBadUse_data();
    void refusesBadUse();
    void replacesOnlyWhenAsked();
    void leavesNothingBehindWhereItFails();
    void saysThatFfmpegIsMissing();

private:
    std::unique_ptr<TestPackages> m_folder;
};

void tst_ClipCommand::init()
{
    m_folder = std::make_unique<TestPackages>();
    m_folder->write("recording.mkv", TestClips::read(recording()));
}

void tst_ClipCommand::makesClipsThatPassACheck_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("clip");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("rate");
    QTest::addColumn<double>("seconds");
    QTest::newRow("H.264") << QStringList() << "clip.mp4" << QSize(352, 198) << 20.0 << 1.5;
    QTest::newRow("VP9, of a part") << QStringList{"--crop", "301x200+20+10", "--from",
                                                   "0.5",    "--length",      "0.8"}
                                    << "clip.webm" << QSize(298, 198) << 20.0 << 0.8;
    QTest::newRow("of another size and rate")
        << QStringList{"--size", "160x90", "--rate", "12"} << "clip.mp4" << QSize(160, 90) << 12.0 << 1.5;
}

void tst_ClipCommand::makesClipsThatPassACheck()
{
    QFETCH(QStringList, options);
    QFETCH(QString, clip);
    QFETCH(double, seconds);
    const ToolCall call(QStringList{"clip"} + options + QStringList{"recording.mkv", clip}, m_folder->path());
    QCOMPARE(call.errors, QString());
    QCOMPARE(call.exitCode, 0);
    Recording made;
    QCOMPARE(made.read(m_folder->filePath(clip)), QString());
    QTEST(made.facts.size, "size");
    QTEST(made.facts.rate, "rate");
    QVERIFY(!made.stream.isVariable && !made.stream.hasUntaggedColours && made.stream.pixelAspect.isEmpty());
    QVERIFY2(qAbs(made.seconds() - seconds) < 0.2, qPrintable(QString::number(made.seconds())));
    QCOMPARE(findingsOf(m_folder->filePath(clip)), QVector<Finding>());
    const QStringList lines = call.output.trimmed().split('\n');
    QVERIFY2(lines.value(0).startsWith("recording.mkv: 640 x 480, varying frame rate, 1."),
             qPrintable(lines.value(0)));
    QVERIFY(lines.value(0).contains(", pixels of 4:3, colours of no named kind, "));
    QCOMPARE(lines.value(1), clip + ": " + made.description());
    QCOMPARE(m_folder->files(), QStringList({clip, "recording.mkv"}));
}

void tst_ClipCommand::makesTheClipBesideTheRecording()
{
    const ToolCall call({"clip", "recording.mkv", "--poster", "poster.png"}, m_folder->path());
    QCOMPARE(call.exitCode, 0);
    QCOMPARE(m_folder->files(), QStringList({"poster.png", "recording.mkv", "recording.mp4"}));
    QCOMPARE(QImage(m_folder->filePath("poster.png")).size(), QSize(352, 198));
    QVERIFY(call.output.contains("\nposter.png: the poster\n"));
}

void tst_ClipCommand::keepsTheColours()
{
    m_folder->write("red.mkv", TestClips::read(red()));
    QCOMPARE(ToolCall({"clip", "red.mkv", "--poster", "red.png"}, m_folder->path()).exitCode, 0);
    const QColor colour = QImage(m_folder->filePath("red.png")).pixelColor(100, 90);
    for (const int off : {colour.red() - 0xE0, colour.green() - 0x20, colour.blue() - 0x10})
        QVERIFY2(qAbs(off) <= 4, qPrintable(colour.name()));
}

void tst_ClipCommand::compressesUntilTheFileIsSmallEnough()
{
    QCOMPARE(ToolCall({"clip", "recording.mkv", "large.mp4"}, m_folder->path()).exitCode, 0);
    const qint64 large = QFileInfo(m_folder->filePath("large.mp4")).size();
    const QString most = QString::number(double(large) / ClipRequest::bytesPerKilobyte * 0.7);
    QCOMPARE(ToolCall({"clip", "--file-size", most, "recording.mkv", "small.mp4"}, m_folder->path()).exitCode,
             0);
    QVERIFY(QFileInfo(m_folder->filePath("small.mp4")).size() <= large * 0.7);
    const ToolCall call({"clip", "--file-size", "1", "recording.mkv", "none.mp4"}, m_folder->path());
    QVERIFY2(call.errors.contains("kB at its worst, the limit is 1 kB"), qPrintable(call.errors));
    QVERIFY(!m_folder->files().contains("none.mp4"));
}

void tst_ClipCommand::tellsWhatWasGivenUp()
{
    const ToolCall call({"clip", "--budget", "2", "recording.mkv", "clip.mp4"}, m_folder->path());
    QCOMPARE(call.exitCode, 0);
    QVERIFY2(call.output.contains("\nTo stay within the budget: 10 instead of 20 frames/s, "),
             qPrintable(call.output));
}

void tst_ClipCommand::refusesBadUse_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char *name, const QStringList &arguments, const char *error) {
        QTest::newRow(name) << arguments << QString(error);
    };
    row("nothing", {}, "clip needs a recording, or --record; see \"vidtips clip --help\"");
    row("window without a clip", {"--record", "Garden"},
        "clip needs the name of the clip; see \"vidtips clip --help\"");
    row("two clips", {"recording.mkv", "a.mp4", "b.mp4"}, "clip makes one clip, and \"b.mp4\" is too much");
    row("missing recording", {"missing.mkv"}, "no such recording: missing.mkv");
    row("text", {"text.mkv"}, "the recording is no video: text.mkv");
    row("sound", {"sound.wav"}, "the recording is no video: sound.wav");
    row("picture", {"picture.png"}, "the recording is a single picture: picture.png");
    row("other kind", {"recording.mkv", "clip.avi"},
        "clips are written as .mp4 or .webm, not as \"clip.avi\"");
    row("poster of another kind", {"recording.mkv", "--poster", "a.jpg"},
        "posters are written as .png, not as \"a.jpg\"");
    row("missing folder", {"recording.mkv", "missing/clip.mp4"}, "no such folder: missing");
    row("folder", {"recording.mkv", "folder.mp4"}, "a folder has this name: folder.mp4");
    row("itself", {"own.mp4", "--force"}, "the clip would replace the recording: give it another name");
    row("what exists", {"recording.mkv", "own.mp4"}, "own.mp4 exists; --force replaces it");
    row("poster that exists", {"recording.mkv", "--poster", "picture.png"},
        "picture.png exists; --force replaces it");
    row("size", {"recording.mkv", "--size", "large"}, "--size takes WIDTHxHEIGHT in pixels, not \"large\"");
    row("size of nothing", {"recording.mkv", "--size", "0x10"},
        "--size takes WIDTHxHEIGHT in pixels, not \"0x10\"");
    row("part", {"recording.mkv", "--crop", "10x10"},
        "--crop takes WIDTHxHEIGHT+X+Y in pixels, not \"10x10\"");
    row("rate", {"recording.mkv", "--rate", "0"}, "--rate takes frames per second from 1 to 120, not \"0\"");
    row("budget", {"recording.mkv", "--budget", "much"},
        "--budget takes megabytes from 0.1 to 1.04858e+06, not \"much\"");
    row("beginning", {"recording.mkv", "--from", "-1"}, "--from takes seconds from 0 to 86400, not \"-1\"");
}

void tst_ClipCommand::refusesBadUse()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    m_folder->write("text.mkv", "no video");
    m_folder->write("sound.wav", TestClips::read(TestClips::audioOnly()));
    m_folder->write("own.mp4", TestClips::read(TestClips::h264()));
    QDir(m_folder->path()).mkdir("folder.mp4");
    QImage picture(64, 48, QImage::Format_RGB32);
    picture.fill(Qt::green);
    QVERIFY(picture.save(m_folder->filePath("picture.png")));
    const QStringList before = m_folder->files();
    const ToolCall call(QStringList{"clip"} + arguments, m_folder->path());
    QCOMPARE(call.errors, "vidtips: " + error + '\n');
    QCOMPARE(call.exitCode, 2);
    QCOMPARE(m_folder->files(), before);
}

void tst_ClipCommand::replacesOnlyWhenAsked()
{
    m_folder->write("clip.mp4", "mine");
    QCOMPARE(ToolCall({"clip", "recording.mkv", "clip.mp4"}, m_folder->path()).exitCode, 2);
    QCOMPARE(TestPackages::read(m_folder->filePath("clip.mp4")), QByteArray("mine"));
    QCOMPARE(ToolCall({"clip", "--force", "recording.mkv", "clip.mp4"}, m_folder->path()).exitCode, 0);
    QCOMPARE(findingsOf(m_folder->filePath("clip.mp4")), QVector<Finding>());
}

// A recording whose end is not what its beginning says.
void tst_ClipCommand::leavesNothingBehindWhereItFails()
{
    m_folder->write("clip.mp4", "mine");
    const ToolCall call({"clip", "--force", "--file-size", "1", "recording.mkv", "clip.mp4"},
                        m_folder->path());
    QCOMPARE(call.exitCode, 2);
    QCOMPARE(m_folder->files(), QStringList({"clip.mp4", "recording.mkv"}));
    QCOMPARE(TestPackages::read(m_folder->filePath("clip.mp4")), QByteArray("mine"));
}

void tst_ClipCommand::saysThatFfmpegIsMissing()
{
    const QByteArray before = qgetenv("PATH");
    qputenv("PATH", m_folder->path().toLocal8Bit());
    const ToolCall call({"clip", "recording.mkv", "clip.mp4"}, m_folder->path());
    qputenv("PATH", before);
    QCOMPARE(call.errors,
             QString("vidtips: there is no command \"ffmpeg\", which does this work: install FFmpeg\n"));
    QCOMPARE(call.exitCode, 2);
}

QTEST_GUILESS_MAIN(tst_ClipCommand)

#include "tst_clipcommand.moc"
