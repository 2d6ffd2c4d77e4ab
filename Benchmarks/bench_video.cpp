// Decoding a clip, widening its pixels, keeping it in memory and playing it.

#include "Measure.h"

#include <Vidtips/VTVideoController.h>
#include <Vidtips/VTVideoSourceFFMPEG.h>

#include "VTPixels_p.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QUrl>

#include <atomic>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

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

QString makeClip(const QString &path, const QString &size, int count, const QStringList &codec)
{
    const QStringList picture{
        QStringLiteral("-f"),        QStringLiteral("lavfi"),
        QStringLiteral("-i"),        QStringLiteral("testsrc2=size=%1:rate=25").arg(size),
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

void compareDecoding(const char *what, const QString &clip)
{
    // Giving up the source waits for its thread, which may be idling; that is not decoding.
    std::unique_ptr<VTVideoSourceFFMPEG> source;
    compare(
        what, 7, 1.1, [&] { source = decode(clip); },
        [&] {
            runFFmpeg({QStringLiteral("-i"), clip, QStringLiteral("-sws_flags"), QStringLiteral("bicubic"),
                       QStringLiteral("-pix_fmt"), QStringLiteral("rgb24"), QStringLiteral("-f"),
                       QStringLiteral("rawvideo"), QStringLiteral("/dev/null")});
        },
        [&] { source.reset(); });
}

void measureMemory(const QString &clip)
{
    const qint64 before = residentBytes();
    const auto source = decode(clip);
    const auto grown = double(residentBytes() - before);
    const double pixels = double(width) * height * 4 * double(source->loadedFrameCount());
    std::printf("%-44s %9.1f MiB against %9.1f MiB ratio %5.3f  goal 1.05 %s\n", "memory of a clip",
                grown / 1048576, pixels / 1048576, grown / pixels, grown / pixels <= 1.05 ? "met" : "MISSED");
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
    measureMemory(h264);
    compareWidening();
    compareDecoding("decoding H.264, 250 frames of 1280x720", h264);
    compareDecoding("decoding VP9, 125 frames of 1280x720", vp9);
    measurePlayback(small);
}
