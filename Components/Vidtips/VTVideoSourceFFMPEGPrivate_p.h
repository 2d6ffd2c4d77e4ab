#pragma once

#include "VTFFmpegCompat_p.h"
#include "VTVideoFrame.h"
#include "VTVideoSourceFFMPEG.h"

#include <QtCore/QMutex>
#include <QtCore/QString>

#include <atomic>

namespace Vidtips {

/**
 * The FFmpeg side of a VTVideoSourceFFMPEG: the open media, its decoder and the conversion of its pictures.
 *
 * Its functions belong to the source's own thread, except release(), which any thread may call.
 */
class VTVideoSourceFFMPEGPrivate
{
public:
    explicit VTVideoSourceFFMPEGPrivate(VTVideoSourceFFMPEG *source);
    ~VTVideoSourceFFMPEGPrivate();

    /** Opens the media at @p url and tells whether it could; a failure is reported to the debug stream. */
    bool open(const QUrl &url);

    /** Closes the media and frees all that belongs to it. What is published stays. */
    void release();

    /** Decodes the next picture into the cache; false without media, at its end or when the thread ends. */
    bool decode();

    /** Repositions the demuxer to the start of the media; false without media. */
    bool seek();

    /** Moves clock and demuxer to the frame at @p frameIndex; without media both clock and progress go to 0.
     */
    void setPosition(quint64 frameIndex);

private:
    enum class Outcome { Picture, Nothing, End };

    // What the scaler is set up for.
    struct ScalerInput
    {
        int width = 0;
        int height = 0;
        AVPixelFormat format = AV_PIX_FMT_NONE;
        int colourSpace = AVCOL_SPC_UNSPECIFIED;
        int colourRange = AVCOL_RANGE_UNSPECIFIED;
    };

    void conclude(const QString &problem);
    const char *openAll();
    const char *openContainer();
    const char *openDecoder();
    const char *allocatePictures();
    void publish();
    double streamDuration() const;
    double decoderTimeBase() const;
    Outcome nextPicture();
    bool readPacket();
    bool convertPicture();
    bool makeScaler(const ScalerInput &input);
    bool updateScaler();
    void followColours(int colourSpace, int colourRange);
    double stepClock();

public:
    VTVideoSourceFFMPEG *const owner;
    VTVideoSourceFFMPEG::ClipReport report;
    quint64 memoryLimit = Q_UINT64_C(2) << 30;
    // Guards the fields below, for as long as a file is opened or a picture is decoded. Taken before the
    // source's stateLock, which FFmpeg's question whether to give up takes; never together with its
    // frameLock.
    QRecursiveMutex lock;

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
    AVFormatContext *formatContext = nullptr;
    AVCodecContext *codecContext = nullptr;
    FFmpegCompat::Codec *codec = nullptr;
    AVFrame *frame = nullptr;
    AVFrame *rgbFrame = nullptr;
    AVPacket *packet = nullptr;
    AVStream *stream = nullptr;
    VTVideoFrame image;
    int videoStreamIndex = -1;
    SwsContext *scaleContext = nullptr;
    ScalerInput scalerInput;
    double videoClock = 0.0;
};

} // namespace Vidtips
