#pragma once

#include <Vidtips/VTVideoSourceFFMPEG.h>

#include "SignalCounter.h"
#include "TestClips.h"

#include <QtCore/QProcess>
#include <QtGui/QImage>
#include <QtTest/QTest>

#include <memory>

/** Runs the steps of the thread in the test's own thread, one at a time. */
class SteppedSource : public Vidtips::VTVideoSourceFFMPEG
{
public:
    SteppedSource()
        : VTVideoSourceFFMPEG(nullptr)
    {
    }
    ~SteppedSource() override { quit(); }
    bool load(const QString &path)
    {
        changeSetSource(QUrl::fromLocalFile(path));
        return loadSource();
    }
    using Vidtips::VTVideoSourceFFMPEG::loadSource;
    using Vidtips::VTVideoSourceFFMPEG::processActionQueue;
    using Vidtips::VTVideoSourceFFMPEG::setMemoryLimit;
};

/** Decodes on the source's thread; the destructor ends it. */
struct Playback
{
    explicit Playback(const QString &path, Vidtips::VTVideoSourceFFMPEG *decoder = new SteppedSource)
        : source(decoder)
        , ended(decoder, &Vidtips::VTVideoSource::streamEnded)
    {
        source->setSource(QUrl::fromLocalFile(path));
        source->start();
    }
    bool finish()
    {
        return QTest::qWaitFor([this] { return ended.count() > 0; }, 30000);
    }
    std::unique_ptr<Vidtips::VTVideoSourceFFMPEG> source;
    SignalCounter ended;
};

/** Returns the pictures that the ffmpeg command decodes, as packed RGB. */
inline QByteArray reference(const QString &path, const QStringList &options = {})
{
    QProcess ffmpeg;
    ffmpeg.start("ffmpeg",
                 QStringList{"-v", "error", "-nostdin", "-i", path, "-map", "0:v:0", "-vsync", "passthrough"}
                     + options
                     + QStringList{"-f", "rawvideo", "-pix_fmt", "rgb24", "-sws_flags", "bicubic", "-"});
    ffmpeg.waitForFinished(60000);
    return ffmpeg.readAllStandardOutput();
}

/** Returns the pixels of @p image as packed RGB. */
inline QByteArray packed(const QImage &image)
{
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    QByteArray bytes;
    for (int y = 0; y < rgb.height(); ++y)
        bytes.append(reinterpret_cast<const char *>(rgb.constScanLine(y)), rgb.width() * 3);
    return bytes;
}
