#pragma once

#include "VTVideoDecoder_p.h"
#include "VTVideoSourceFFMPEG.h"

#include <QtCore/QMutex>
#include <QtCore/QUrl>

#include <atomic>
#include <memory>

namespace Vidtips {

/**
 * The clip of a VTVideoSourceFFMPEG: its decoder, the clock that times its pictures, and what is known of it.
 *
 * Its functions belong to the source's own thread, except release(), which any thread may call.
 */
class VTVideoSourceFFMPEGPrivate
{
public:
    explicit VTVideoSourceFFMPEGPrivate(VTVideoSourceFFMPEG *source);
    ~VTVideoSourceFFMPEGPrivate();

    /** Opens the clip at @p url and tells whether it could; a failure is reported to the debug stream. */
    bool open(const QUrl &url);

    /** Closes the clip and frees all that belongs to it. What is published stays. */
    void release();

    /** Decodes the next picture into the cache; false without a clip, at its end or when the thread ends. */
    bool decode();

    /** Repositions the demuxer to the start of the clip; false without one. */
    bool seek();

    /** Moves clock and demuxer to the frame at @p frameIndex; without a clip both clock and progress go to 0.
     */
    void setPosition(quint64 frameIndex);

private:
    QString openDecoder(VTCodecs *codecs);
    void publish();
    bool isFull(quint64 frames) const;
    VTVideoDecoder::Outcome nextFrame(VTVideoFrame *frame);
    double stepClock(int repeats);
    void conclude(const QString &problem);

public:
    VTVideoSourceFFMPEG *const owner;
    VTClipReports *reports = nullptr;
    quint64 memoryLimit = Q_UINT64_C(2) << 30;
    // Guards the decoder and its clock, for as long as a file is opened or a picture is decoded. Taken before
    // the source's stateLock, which the decoder's question whether to give up takes; never together with its
    // frameLock.
    QRecursiveMutex lock;

    std::atomic<bool> isRestricted{false};

    // Read by threads that present the clip, which must not wait while a picture is decoded: no lock needed.
    std::atomic<bool> isOpen{false};
    std::atomic<double> progress{0.0};
    std::atomic<double> duration{0.0};
    std::atomic<double> timeBase{0.0};
    std::atomic<double> frameRate{0.0};
    std::atomic<double> width{200.0};
    std::atomic<double> height{150.0};

private:
    // What is opened, and whether that is still to be reported; for the source's own thread.
    QUrl clip;
    QString fileName;
    bool isReportDue = false;
    // Made with the first clip, and made by the module that brings the codecs.
    std::unique_ptr<VTVideoDecoder> decoder;
    double videoClock = 0.0;
    // The different pictures among the frames; those that are equal to the one before share its pixels.
    quint64 pictures = 0;
    qint64 lastPicture = 0;
};

} // namespace Vidtips
