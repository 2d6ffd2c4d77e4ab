// Decoding a clip, comparing its pictures, widening its pixels, keeping it in memory and playing it.

#include "Measure.h"

#include <Vidtips/VTVideoController.h>
#include <Vidtips/VTVideoSourceFFMPEG.h>

#include "VTPictures_p.h"
#include "VTPixels_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDirIterator>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUrl>

#include <atomic>
#include <cstring>
#include <ctime>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

using namespace Vidtips;

namespace {

constexpr int width = 1280;
constexpr int height = 720;
constexpr int frames = 250;

bool runFFmpeg(const QStringList &arguments)
{
    QProcess ffmpeg;
    ffmpeg.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    ffmpeg.start(QStringLiteral("ffmpeg"),
                 QStringList{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-nostdin"),
                             QStringLiteral("-y")}
                     + arguments);
    return ffmpeg.waitForFinished(-1) && ffmpeg.exitCode() == 0;
}

QString makeClip(const QString &path, const QString &size, int count, const QStringList &codec,
                 const QString &rate = QStringLiteral("25"))
{
    const QStringList picture{
        QStringLiteral("-f"),        QStringLiteral("lavfi"),
        QStringLiteral("-i"),        QStringLiteral("testsrc2=size=%1:rate=%2,fps=25").arg(size, rate),
        QStringLiteral("-frames:v"), QString::number(count),
        QStringLiteral("-pix_fmt"),  QStringLiteral("yuv420p")};
    if (!runFFmpeg(picture + codec + QStringList{path}))
        qFatal("ffmpeg cannot make %s", qPrintable(path));
    return path;
}

/** Decodes all of @p clip and returns the source, which holds its frames. */
std::unique_ptr<VTVideoSourceFFMPEG> decode(const QString &clip)
{
    auto source = std::make_unique<VTVideoSourceFFMPEG>(nullptr);
    QEventLoop loop;
    QObject::connect(source.get(), &VTVideoSource::streamEnded, &loop, &QEventLoop::quit);
    source->setSource(QUrl::fromLocalFile(clip));
    source->start();
    loop.exec();
    return source;
}

/** Returns how many of the frames of @p source have pixels of their own. */
int differentPictures(VTVideoSource *source)
{
    QSet<qint64> pictures;
    for (quint64 i = 0; i < source->loadedFrameCount(); ++i)
        pictures << source->getFrame(uint(i)).cacheKey();
    return pictures.size();
}

/** What FFmpeg alone decodes of a clip, picture by picture. */
class Decoder
{
public:
    explicit Decoder(const QString &clip)
    {
        if (avformat_open_input(&m_media, clip.toUtf8().constData(), nullptr, nullptr) < 0)
            qFatal("cannot open %s", qPrintable(clip));
        const AVCodec *codec = nullptr;
        m_stream = av_find_best_stream(m_media, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
        m_context = avcodec_alloc_context3(codec);
        avcodec_parameters_to_context(m_context, m_media->streams[m_stream]->codecpar);
        avcodec_open2(m_context, codec, nullptr);
    }
    ~Decoder()
    {
        av_packet_free(&m_packet);
        avcodec_free_context(&m_context);
        avformat_close_input(&m_media);
    }
    bool next(AVFrame *frame)
    {
        int received = avcodec_receive_frame(m_context, frame);
        while (received == AVERROR(EAGAIN)) {
            const bool isRead = av_read_frame(m_media, m_packet) >= 0;
            if (!isRead || m_packet->stream_index == m_stream)
                avcodec_send_packet(m_context, isRead ? m_packet : nullptr);
            av_packet_unref(m_packet);
            received = avcodec_receive_frame(m_context, frame);
        }
        return received >= 0;
    }

private:
    Q_DISABLE_COPY(Decoder)

    AVFormatContext *m_media = nullptr;
    AVCodecContext *m_context = nullptr;
    AVPacket *m_packet = av_packet_alloc();
    int m_stream = -1;
};

double threadSeconds()
{
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

/** Returns the milliseconds that it takes to compare each picture of @p clip with the one before. */
double comparing(const QString &clip)
{
    Decoder decoder(clip);
    AVFrame *frame = av_frame_alloc();
    AVFrame *before = av_frame_alloc();
    double seconds = 0.0;
    while (decoder.next(frame)) {
        const double start = threadSeconds();
        const bool isSame = before->data[0] && isSamePicture(*before, *frame);
        seconds += threadSeconds() - start;
        // So that nothing is left out because nobody needs it.
        before->opaque = isSame ? frame : nullptr;
        std::swap(frame, before);
        av_frame_unref(frame);
    }
    av_frame_free(&before);
    av_frame_free(&frame);
    return seconds * 1000.0;
}

qint64 residentBytes()
{
    QFile statm(QStringLiteral("/proc/self/statm"));
    statm.open(QIODevice::ReadOnly);
    return statm.readAll().split(' ').value(1).toLongLong() * sysconf(_SC_PAGESIZE);
}

void compareWidening()
{
    std::vector<uchar> rgb(size_t(width) * height * 3, 0x5a);
    std::vector<quint32> wide(size_t(width) * height);
    std::vector<quint32> copied(wide.size());
    compare(
        "widening RGB24 to RGB32, 1280x720", 51, 2.5,
        [&] { widenPixels(rgb.data(), wide.data(), width * height); },
        [&] { std::memcpy(copied.data(), wide.data(), wide.size() * sizeof(quint32)); });
}

double childSeconds()
{
    rusage use;
    getrusage(RUSAGE_CHILDREN, &use);
    const auto seconds = [](const timeval &time) { return double(time.tv_sec) + double(time.tv_usec) / 1e6; };
    return seconds(use.ru_utime) + seconds(use.ru_stime);
}

void decodeByCommand(const QString &clip)
{
    runFFmpeg({QStringLiteral("-i"), clip, QStringLiteral("-sws_flags"), QStringLiteral("bicubic"),
               QStringLiteral("-pix_fmt"), QStringLiteral("rgb24"), QStringLiteral("-f"),
               QStringLiteral("rawvideo"), QStringLiteral("/dev/null")});
}

void compareDecoding(const char *what, const QString &clip)
{
    // Giving up the source waits for its thread, which may be idling; that is not decoding.
    std::unique_ptr<VTVideoSourceFFMPEG> source;
    compare(
        what, 7, 1.0, [&] { source = decode(clip); }, [&] { decodeByCommand(clip); },
        [&] { source.reset(); });
}

/** Compares in processor time with decoding by the command, which shares nothing. */
void compareComparing(const char *what, const QString &clip)
{
    compareMeasured(
        what, "ms", 5, 0.03, [&] { return comparing(clip); },
        [&] {
            const double start = childSeconds();
            decodeByCommand(clip);
            return (childSeconds() - start) * 1000.0;
        });
}

void measureMemory(const char *what, const QString &clip)
{
    const qint64 before = residentBytes();
    const auto source = decode(clip);
    const auto grown = double(residentBytes() - before);
    const double pixels = double(width) * height * 4 * differentPictures(source.get());
    std::printf("%-44s %9.1f MiB against %9.1f MiB ratio %5.3f  goal 1.05 %s\n", what, grown / 1048576,
                pixels / 1048576, grown / pixels, grown / pixels <= 1.05 ? "met" : "MISSED");
}

/** Says how much of their memory the clips of the example save, as equal pictures share it. */
void measureSharing()
{
    int shown = 0;
    int different = 0;
    QDirIterator clips(QStringLiteral(CLIPS_DIR), {QStringLiteral("*.mp4"), QStringLiteral("*.webm")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (clips.hasNext()) {
        const auto source = decode(clips.next());
        shown += int(source->loadedFrameCount());
        different += differentPictures(source.get());
    }
    std::printf("%-44s %d of %d pictures differ, which saves %.0f %%\n", "the clips of the example",
                different, shown, 100.0 - 100.0 * different / qMax(1, shown));
}

/** Plays @p clip with one core kept busy and counts the frames announced over one interval late. */
void measurePlayback(const QString &clip)
{
    const auto source = decode(clip);
    std::atomic<bool> isOver{false};
    std::thread busy([&isOver] {
        while (!isOver) { }
    });
    auto *const controller = new VTVideoController(source.get(), nullptr);
    const double interval = 1000.0 / source->frameRate();
    std::atomic<int> announced{0};
    std::atomic<int> late{0};
    QElapsedTimer sinceLast;
    QObject::connect(
        controller, &VTVideoController::displayFrame, controller,
        [&] {
            if (sinceLast.isValid() && sinceLast.nsecsElapsed() / 1e6 > 2 * interval)
                ++late;
            sinceLast.start();
            ++announced;
            controller->currentFrame();
        },
        Qt::DirectConnection);
    QEventLoop loop;
    QObject::connect(controller, &VTVideoController::stateChanged, &loop, [&] {
        if (controller->state() == VTVideoController::Paused && announced > 1)
            loop.quit();
    });
    controller->start();
    controller->play();
    loop.exec();
    controller->quit();
    isOver = true;
    busy.join();
    const double share = 100.0 * late / qMax(1, int(announced));
    std::printf("%-44s %d of %d frames late (%.2f %%)  goal < 1 %% %s\n",
                "playback at 25 frames a second, one busy core", int(late), int(announced), share,
                share < 1.0 ? "met" : "MISSED");
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString size = QStringLiteral("%1x%2").arg(width).arg(height);
    const QString h264 = makeClip(folder.filePath(QStringLiteral("h264.mp4")), size, frames,
                                  {QStringLiteral("-c:v"), QStringLiteral("libx264")});
    const QString vp9 =
        makeClip(folder.filePath(QStringLiteral("vp9.webm")), size, frames / 2,
                 {QStringLiteral("-c:v"), QStringLiteral("libvpx-vp9"), QStringLiteral("-cpu-used"),
                  QStringLiteral("8"), QStringLiteral("-deadline"), QStringLiteral("realtime")});
    const QString small = makeClip(folder.filePath(QStringLiteral("small.mp4")), QStringLiteral("360x200"),
                                   frames, {QStringLiteral("-c:v"), QStringLiteral("libx264")});
    // A picture in ten is another, as in a recording of a screen that loses nothing.
    const QString resting = makeClip(
        folder.filePath(QStringLiteral("resting.mp4")), size, frames,
        {QStringLiteral("-c:v"), QStringLiteral("libx264"), QStringLiteral("-qp"), QStringLiteral("0")},
        QStringLiteral("5/2"));
    // Loads the codecs, which are no part of a clip.
    decode(small);
    measureMemory("memory of a clip", h264);
    measureMemory("memory of a clip that rests", resting);
    measureSharing();
    compareWidening();
    compareComparing("comparing moving pictures, of decoding", h264);
    compareComparing("comparing resting pictures, of decoding", resting);
    compareDecoding("decoding H.264, 250 frames of 1280x720", h264);
    compareDecoding("decoding H.264 that rests", resting);
    compareDecoding("decoding VP9, 125 frames of 1280x720", vp9);
    measurePlayback(small);
}
