#include "clip/ClipRecipe.h"
#include "clip/Ffmpeg.h"
#include "clip/Recording.h"

#include <QtTest/QtTest>

/** What becomes of recordings of every shape, without one of them; and what ffmpeg's complaints mean. */
class tst_ClipRecipe : public QObject
{
    Q_OBJECT

private slots:
    void keepsWithinTheBounds_data();
    void keepsWithinTheBounds();
    void refusesWhatFitsNowhere_data();
    void refusesWhatFitsNowhere();
    void compressesMoreWithEachStep();
    void takesUntaggedHdForHd_data();
    void takesUntaggedHdForHd();
    void tellsWhatFfmpegMeans_data();
    void tellsWhatFfmpegMeans();
};

namespace {

constexpr qint64 megabyte = 1024 * 1024;

Recording recordingOf(const QSize &size, double seconds, double rate = 30.0)
{
    Recording recording;
    recording.path = "recording.mkv";
    recording.facts.size = size;
    recording.facts.rate = rate;
    recording.stream.found = seconds;
    return recording;
}

ClipWishes usualWishes()
{
    ClipWishes wishes;
    wishes.most = QSize(352, 198);
    wishes.rate = 20.0;
    wishes.longest = 30.0;
    wishes.budget = 64 * megabyte;
    return wishes;
}

} // namespace
Q_DECLARE_METATYPE(Recording)
Q_DECLARE_METATYPE(ClipWishes)

void tst_ClipRecipe::keepsWithinTheBounds_data()
{
    QTest::addColumn<Recording>("recording");
    QTest::addColumn<ClipWishes>("wishes");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("rate");
    QTest::addColumn<double>("length");
    QTest::addColumn<QString>("concession");
    const auto row = [](const char *name, const Recording &recording, const ClipWishes &wishes,
                        const QSize &size, double rate, double length, const char *concession = "") {
        QTest::newRow(name) << recording << wishes << size << rate << length << QString(concession);
    };
    const ClipWishes usual = usualWishes();
    row("screen", recordingOf({1920, 1080}, 8.0), usual, {352, 198}, 20.0, 8.0);
    row("upright", recordingOf({1080, 1920}, 8.0), usual, {110, 198}, 20.0, 8.0);
    row("small one, which is not enlarged", recordingOf({200, 100}, 8.0), usual, {200, 100}, 20.0, 8.0);
    row("odd size", recordingOf({201, 99}, 8.0), usual, {200, 98}, 20.0, 8.0);
    row("one pixel high", recordingOf({201, 1}, 8.0), usual, {200, 2}, 20.0, 8.0);
    row("slow one", recordingOf({1920, 1080}, 8.0, 12.5), usual, {352, 198}, 12.5, 8.0);

    Recording varying = recordingOf({1920, 1080}, 8.0, 12.5);
    varying.stream.isVariable = true;
    row("varying rate", varying, usual, {352, 198}, 20.0, 8.0);
    Recording turned = recordingOf({720, 576}, 3.0);
    turned.stream.rotation = 90;
    row("turned", turned, usual, {158, 198}, 20.0, 3.0);
    turned.stream.pixelAspect = "16:11";
    row("turned, with oblong pixels", turned, usual, {108, 198}, 20.0, 3.0);

    ClipWishes part = usual;
    part.crop = QRect(10, 20, 100, 60);
    part.from = 2.0;
    part.length = 3.0;
    row("part", recordingOf({640, 360}, 8.0), part, {100, 60}, 20.0, 3.0);
    part.length = 30.0;
    row("part beyond the end", recordingOf({640, 360}, 8.0), part, {100, 60}, 20.0, 6.0);

    row("slower for the budget", recordingOf({1920, 1080}, 16.0), usual, {352, 198}, 15.0, 16.0,
        "15 instead of 20 frames/s");
    row("slower and smaller", recordingOf({1920, 1080}, 30.0), usual, {308, 174}, 10.0, 30.0,
        "10 instead of 20 frames/s, 308 x 174 instead of 352 x 198 pixels");
    row("slow one, smaller", recordingOf({1920, 1080}, 30.0, 8.0), usual, {352, 198}, 8.0, 30.0);
}

void tst_ClipRecipe::keepsWithinTheBounds()
{
    QFETCH(Recording, recording);
    QFETCH(ClipWishes, wishes);
    ClipRecipe recipe;
    QCOMPARE(recipe.choose(recording, wishes), QString());
    QTEST(recipe.size(), "size");
    QTEST(recipe.rate(), "rate");
    QTEST(recipe.length(), "length");
    QTEST(recipe.concession(), "concession");
    const double pixels = recipe.size().width() * recipe.size().height();
    QVERIFY(pixels * 4 * recipe.rate() * recipe.length() <= double(wishes.budget));
}

void tst_ClipRecipe::refusesWhatFitsNowhere_data()
{
    QTest::addColumn<ClipWishes>("wishes");
    QTest::addColumn<QString>("problem");
    ClipWishes wishes = usualWishes();
    wishes.longest = 5.0;
    QTest::newRow("too long") << wishes
                              << "the clip would last 8.0 s, the limit is 5.0 s: choose a part by --from and "
                                 "--length";
    wishes = usualWishes();
    wishes.budget = megabyte;
    QTest::newRow("too much memory") << wishes
                                     << "8.0 s of this recording do not fit into 1 MB: choose a shorter part "
                                        "by --from and --length, or crop more";
    wishes = usualWishes();
    wishes.from = 8.0;
    QTest::newRow("from the end on") << wishes
                                     << "the recording ends after 8.0 s, before the clip would begin";
    wishes = usualWishes();
    wishes.crop = QRect(1900, 0, 40, 40);
    QTest::newRow("part beyond the edge")
        << wishes << "what --crop names is not all in the recording, which is 1920 x 1080";
}

void tst_ClipRecipe::refusesWhatFitsNowhere()
{
    QFETCH(ClipWishes, wishes);
    ClipRecipe recipe;
    QTEST(recipe.choose(recordingOf({1920, 1080}, 8.0), wishes), "problem");
}

void tst_ClipRecipe::compressesMoreWithEachStep()
{
    ClipRecipe recipe;
    QCOMPARE(recipe.choose(recordingOf({640, 360}, 8.0), usualWishes()), QString());
    for (const QString &suffix : ClipRecipe::suffixes()) {
        int last = 0;
        for (int step = 0; step < ClipRecipe::steps(); ++step) {
            const QStringList arguments = recipe.arguments("clip." + suffix, step);
            const int quality = arguments.value(arguments.indexOf("-crf") + 1).toInt();
            QVERIFY(quality > last);
            last = quality;
        }
    }
}

void tst_ClipRecipe::takesUntaggedHdForHd_data()
{
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("isUntagged");
    QTest::addColumn<bool>("isTakenForHd");
    QTest::newRow("HD without a kind") << 720 << true << true;
    QTest::newRow("HD of a kind") << 720 << false << false;
    QTest::newRow("small without a kind") << 576 << true << false;
}

void tst_ClipRecipe::takesUntaggedHdForHd()
{
    QFETCH(int, height);
    QFETCH(bool, isUntagged);
    Recording recording = recordingOf({1280, height}, 1.0);
    recording.stream.hasUntaggedColours = isUntagged;
    ClipRecipe recipe;
    QCOMPARE(recipe.choose(recording, usualWishes()), QString());
    QTEST(recipe.arguments("clip.mp4", 0).join(' ').contains("in_color_matrix=bt709"), "isTakenForHd");
}

void tst_ClipRecipe::tellsWhatFfmpegMeans_data()
{
    QTest::addColumn<QString>("said");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const char *said, const char *reason) {
        QTest::newRow(name) << QString(said) << QString(reason);
    };
    row("full disk", "av_interleaved_write_frame(): No space left on device\nError writing trailer\n",
        "the disk is full");
    row("full disk, told last", "Error writing trailer of a: No space left on device\n", "the disk is full");
    row("quota", "a.mp4: Disk quota exceeded\n", "the disk is full");
    row("encoder", "Unknown encoder 'libx264'\n",
        "the ffmpeg of this machine cannot write this kind of clip: it lacks the encoder libx264");
    row("cause and what follows",
        "[x11grab @ 0x55d] Cannot open display :9, error 1.\n:9: Input/output error\n",
        "ffmpeg failed: Cannot open display :9, error 1");
    row("nothing", "", "ffmpeg failed without saying why");
}

void tst_ClipRecipe::tellsWhatFfmpegMeans()
{
    QFETCH(QString, said);
    QTEST(Ffmpeg::reasonFrom(said), "reason");
}

QTEST_GUILESS_MAIN(tst_ClipRecipe)

#include "tst_cliprecipe.moc"
