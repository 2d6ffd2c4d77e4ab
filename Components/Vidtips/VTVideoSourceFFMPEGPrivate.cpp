#include "VTVideoSourceFFMPEGPrivate_p.h"

#include "VTPixels_p.h"
#include "VTVideoSourceFFMPEG.h"

#include <QtCore/QDebug>
#include <QtCore/QFileInfo>

#include <limits>

namespace Vidtips {

namespace {
constexpr int rowAlignment = 64;
constexpr int pixelsPerVector = 64;

constexpr const char *cannotOpenMedia = "Could not open media at: %1";
constexpr const char *noStreamInformation = "Could not find any stream information in media at: %1";
constexpr const char *noVideoStream = "Could not find a video stream in %1";
constexpr const char *cannotOpenCodec = "Could not open codec for stream in: %1";
constexpr const char *noOriginalFrame = "Could not allocate original frame in %1";
constexpr const char *noRgbFrame = "Could not allocate rgb frame in %1";
constexpr const char *noScaleContext = "Could not get a swscale context for %1";
constexpr const char *noPicture = "Could not decode any picture of %1";

double toDouble(const AVRational &rational)
{
    return rational.den ? av_q2d(rational) : 0.0;
}

qint64 truncatedToInteger(double value)
{
    constexpr double bound = 9223372036854775808.0;
    if (value >= bound)
        return std::numeric_limits<qint64>::max();
    return value > -bound ? qint64(value) : std::numeric_limits<qint64>::min();
}

int isInterrupted(void *source)
{
    return static_cast<VTVideoSourceFFMPEG *>(source)->shouldQuit();
}

} // namespace

VTVideoSourceFFMPEGPrivate::VTVideoSourceFFMPEGPrivate(VTVideoSourceFFMPEG *source)
    : owner(source)
{
}

VTVideoSourceFFMPEGPrivate::~VTVideoSourceFFMPEGPrivate()
{
    release();
}

bool VTVideoSourceFFMPEGPrivate::open(const QUrl &url)
{
    QMutexLocker locker(&lock);
    release();
    clip = url;
    fileName = url.toLocalFile();
    isReportDue = true;
    const char *const problem = openAll();
    if (!problem) {
        publish();
        return true;
    }
    release();
    locker.unlock();
    // An open that was given up because the thread ends says nothing about the media.
    if (owner->shouldQuit())
        return false;
    const QString message = QString::fromLatin1(problem).arg(fileName);
    qDebug().noquote() << message;
    conclude(message);
    return false;
}

// Reports once what becomes of the clip.
void VTVideoSourceFFMPEGPrivate::conclude(const QString &problem)
{
    if (isReportDue && report)
        report(clip, problem);
    isReportDue = false;
}

const char *VTVideoSourceFFMPEGPrivate::openAll()
{
    const char *problem = openContainer();
    if (!problem)
        problem = openDecoder();
    if (!problem)
        problem = allocatePictures();
    return problem;
}

const char *VTVideoSourceFFMPEGPrivate::openContainer()
{
    // Opening anything but a regular file, such as a pipe, can block where no interruption reaches.
    if (!QFileInfo(fileName).isFile())
        return cannotOpenMedia;
    formatContext = avformat_alloc_context();
    if (!formatContext)
        return cannotOpenMedia;
    formatContext->interrupt_callback = {&isInterrupted, owner};
    // A clip is data of a package: what it refers to is never fetched from anywhere but the file system.
    AVDictionary *options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    const QByteArray url = QByteArrayLiteral("file:") + fileName.toUtf8();
    const int opened = avformat_open_input(&formatContext, url.constData(), nullptr, &options);
    av_dict_free(&options);
    if (opened < 0)
        return cannotOpenMedia;
    if (avformat_find_stream_info(formatContext, nullptr) < 0)
        return noStreamInformation;
    videoStreamIndex = av_find_best_stream(formatContext, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    return videoStreamIndex < 0 ? noVideoStream : nullptr;
}

const char *VTVideoSourceFFMPEGPrivate::openDecoder()
{
    for (unsigned int i = 0; i < formatContext->nb_streams; ++i) {
        if (int(i) != videoStreamIndex)
            formatContext->streams[i]->discard = AVDISCARD_ALL;
    }
    stream = formatContext->streams[videoStreamIndex];
    codecContext = avcodec_alloc_context3(codec);
    if (!codecContext || avcodec_parameters_to_context(codecContext, stream->codecpar) < 0)
        return cannotOpenCodec;
    codecContext->pkt_timebase = stream->time_base;
    codecContext->framerate = av_guess_frame_rate(formatContext, stream, nullptr);
    FFmpegCompat::keepColours(codecContext);
    // As many threads as there are cores.
    codecContext->thread_count = 0;
    return avcodec_open2(codecContext, codec, nullptr) < 0 ? cannotOpenCodec : nullptr;
}

const char *VTVideoSourceFFMPEGPrivate::allocatePictures()
{
    frame = av_frame_alloc();
    packet = av_packet_alloc();
    if (!frame || !packet)
        return noOriginalFrame;
    rgbFrame = av_frame_alloc();
    if (!rgbFrame)
        return noRgbFrame;
    const int pixelWidth = codecContext->width;
    const int pixelHeight = codecContext->height;
    // The scaler writes whole vectors of pixels, past the end of a row whose width they do not divide.
    rgbFrame->format = AV_PIX_FMT_RGB24;
    rgbFrame->width = FFALIGN(pixelWidth, pixelsPerVector);
    rgbFrame->height = pixelHeight;
    if (av_frame_get_buffer(rgbFrame, rowAlignment) < 0)
        return noRgbFrame;
    rgbFrame->width = pixelWidth;
    if (!makeScaler({pixelWidth, pixelHeight, codecContext->pix_fmt}))
        return noScaleContext;
    image = VTVideoFrame(pixelWidth, pixelHeight, QImage::Format_RGB32, 0);
    return image.isNull() ? noRgbFrame : nullptr;
}

void VTVideoSourceFFMPEGPrivate::publish()
{
    duration = streamDuration();
    timeBase = decoderTimeBase();
    frameRate = toDouble(stream->r_frame_rate);
    width = codecContext->width;
    height = codecContext->height;
    isOpen = true;
}

double VTVideoSourceFFMPEGPrivate::streamDuration() const
{
    if (stream->duration != AV_NOPTS_VALUE)
        return double(stream->duration) * toDouble(stream->time_base);
    if (formatContext->duration != AV_NOPTS_VALUE)
        return double(formatContext->duration) / AV_TIME_BASE;
    return 0.0;
}

double VTVideoSourceFFMPEGPrivate::decoderTimeBase() const
{
    const double rate = toDouble(codecContext->framerate);
    if (rate > 0.0)
        return 1.0 / (rate * FFmpegCompat::ticksPerFrame(codecContext));
    return toDouble(stream->time_base);
}

void VTVideoSourceFFMPEGPrivate::release()
{
    const QMutexLocker locker(&lock);
    isOpen = false;
    sws_freeContext(scaleContext);
    scaleContext = nullptr;
    av_packet_free(&packet);
    av_frame_free(&rgbFrame);
    av_frame_free(&frame);
    avcodec_free_context(&codecContext);
    codec = nullptr;
    stream = nullptr;
    avformat_close_input(&formatContext);
    image = VTVideoFrame();
}

bool VTVideoSourceFFMPEGPrivate::decode()
{
    while (!owner->shouldQuit()) {
        const quint64 frames = owner->loadedFrameCount() + 1;
        QMutexLocker locker(&lock);
        if (!formatContext)
            break;
        const bool isFull = frames > memoryLimit / quint64(image.sizeInBytes());
        const Outcome outcome = isFull ? Outcome::End : nextPicture();
        if (outcome == Outcome::Picture) {
            const VTVideoFrame picture = image;
            locker.unlock();
            owner->pushFrame(picture);
            conclude(QString());
            return true;
        }
        if (outcome == Outcome::End) {
            release();
            locker.unlock();
            conclude(QString::fromLatin1(noPicture).arg(fileName));
            owner->notifyStreamEnded();
        }
    }
    if (owner->action() != VTVideoSource::Idle)
        owner->setAction(VTVideoSource::Idle);
    return false;
}

VTVideoSourceFFMPEGPrivate::Outcome VTVideoSourceFFMPEGPrivate::nextPicture()
{
    const int received = avcodec_receive_frame(codecContext, frame);
    if (received == AVERROR_EOF)
        return Outcome::End;
    if (received == AVERROR(EAGAIN))
        return readPacket() ? Outcome::Nothing : Outcome::End;
    if (received < 0)
        return Outcome::Nothing;
    if (!convertPicture())
        return Outcome::End;
    const double time = stepClock();
    image.setPts(time);
    const double length = duration;
    progress = length > 0.0 ? time / length : 0.0;
    return Outcome::Picture;
}

// Tells whether the decoder has anything left to give.
bool VTVideoSourceFFMPEGPrivate::readPacket()
{
    const int read = av_read_frame(formatContext, packet);
    if (read == AVERROR(EAGAIN))
        return true;
    // After the last packet the decoder still holds the pictures that it delays; an empty packet drains it. A
    // packet that it refuses is damaged, and the next one may not be.
    if (read < 0)
        return avcodec_send_packet(codecContext, nullptr) >= 0;
    if (packet->stream_index == videoStreamIndex)
        avcodec_send_packet(codecContext, packet);
    av_packet_unref(packet);
    return true;
}

bool VTVideoSourceFFMPEGPrivate::convertPicture()
{
    if (!updateScaler())
        return false;
    sws_scale(scaleContext, frame->data, frame->linesize, 0, frame->height, rgbFrame->data,
              rgbFrame->linesize);
    // The cache shares the pixels of the last picture; new pixels spare the copy that writing to them would
    // make.
    if (!image.isDetached())
        image = VTVideoFrame(image.width(), image.height(), QImage::Format_RGB32, 0);
    if (image.isNull())
        return false;
    const uchar *source = rgbFrame->data[0];
    for (int y = 0; y < image.height(); ++y, source += rgbFrame->linesize[0])
        widenPixels(source, reinterpret_cast<quint32 *>(image.scanLine(y)), image.width());
    return true;
}

bool VTVideoSourceFFMPEGPrivate::makeScaler(const ScalerInput &input)
{
    sws_freeContext(scaleContext);
    scaleContext = nullptr;
    // The scaler ends the process on a format that it does not know, such as that of a clip without pictures.
    if (!sws_isSupportedInput(input.format))
        return false;
    scaleContext = sws_getContext(input.width, input.height, input.format, rgbFrame->width, rgbFrame->height,
                                  AV_PIX_FMT_RGB24, SWS_BICUBIC, nullptr, nullptr, nullptr);
    scalerInput = input;
    return scaleContext;
}

// A stream may change its picture size or format midway; the frames of a clip all have the size it was opened
// with.
bool VTVideoSourceFFMPEGPrivate::updateScaler()
{
    const auto format = AVPixelFormat(frame->format);
    const bool fits = frame->width == scalerInput.width && frame->height == scalerInput.height
        && format == scalerInput.format;
    if (!fits && !makeScaler({frame->width, frame->height, format}))
        return false;
    const FFmpegCompat::Colours colours = FFmpegCompat::coloursOf(frame, codecContext);
    if (colours.space != scalerInput.colourSpace || colours.range != scalerInput.colourRange)
        followColours(colours.space, colours.range);
    return true;
}

// Sets the matrix and the range that the picture names; the scaler's defaults stand for what it does not
// name.
void VTVideoSourceFFMPEGPrivate::followColours(int colourSpace, int colourRange)
{
    scalerInput.colourSpace = colourSpace;
    scalerInput.colourRange = colourRange;
    int *inverse = nullptr;
    int *table = nullptr;
    int isSourceFull = 0;
    int isTargetFull = 0;
    int brightness = 0;
    int contrast = 0;
    int saturation = 0;
    if (sws_getColorspaceDetails(scaleContext, &inverse, &isSourceFull, &table, &isTargetFull, &brightness,
                                 &contrast, &saturation)
        < 0)
        return;
    if (colourRange != AVCOL_RANGE_UNSPECIFIED)
        isSourceFull = colourRange == AVCOL_RANGE_JPEG;
    sws_setColorspaceDetails(scaleContext, sws_getCoefficients(colourSpace), isSourceFull, table,
                             isTargetFull, brightness, contrast, saturation);
}

// Every picture is timed by the clock, which counts from the first one on; returns the time of this picture.
double VTVideoSourceFFMPEGPrivate::stepClock()
{
    const double time = videoClock;
    const double rate = frameRate;
    const double frameDelay = rate > 0.0 ? 1.0 / rate : 0.0;
    videoClock = time + frameDelay + frame->repeat_pict * frameDelay * 0.5;
    return time;
}

bool VTVideoSourceFFMPEGPrivate::seek()
{
    const QMutexLocker locker(&lock);
    if (!formatContext)
        return false;
    av_seek_frame(formatContext, videoStreamIndex, 0, 0);
    return true;
}

void VTVideoSourceFFMPEGPrivate::setPosition(quint64 frameIndex)
{
    const QMutexLocker locker(&lock);
    if (!formatContext) {
        videoClock = 0.0;
        progress = 0.0;
        return;
    }
    const double rate = frameRate;
    const double seconds = rate > 0.0 ? double(frameIndex) / rate : 0.0;
    const int flags = videoClock > seconds ? AVSEEK_FLAG_BACKWARD : 0;
    videoClock = seconds;
    const qint64 timestamp = truncatedToInteger(seconds / toDouble(stream->time_base));
    av_seek_frame(formatContext, videoStreamIndex, timestamp, flags);
    avcodec_flush_buffers(codecContext);
}

} // namespace Vidtips
