#include "VTFFmpegDecoder_p.h"

#include "VTPictureMemory_p.h"
#include "VTPictures_p.h"
#include "VTPixels_p.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <limits>
#include <memory>
#include <utility>

namespace Vidtips {

namespace {
constexpr int rowAlignment = 64;
constexpr int pixelsPerVector = 64;
constexpr int bytesPerPixel = 4;

constexpr const char *cannotOpenMedia = "Could not open media at: %1";
constexpr const char *refusedFormat = "Restricted content is refused the format of the clip at: %1";
constexpr const char *noStreamInformation = "Could not find any stream information in media at: %1";
constexpr const char *noVideoStream = "Could not find a video stream in %1";
constexpr const char *cannotOpenCodec = "Could not open codec for stream in: %1";
constexpr const char *noOriginalFrame = "Could not allocate original frame in %1";
constexpr const char *noRgbFrame = "Could not allocate rgb frame in %1";
constexpr const char *noScaleContext = "Could not get a swscale context for %1";

// Those of Docs/ContentAuthors.md.
constexpr const char *usualFormats = "mov,matroska,avi";
constexpr const char *usualCodecs = "h264,vp8,vp9,mpeg4";

/** Tells whether the file's format is known, and none of the usual ones. */
bool isOfOtherFormat(const QString &fileName)
{
    constexpr int headSize = 1 << 16;
    QFile file(fileName);
    QByteArray head = file.open(QIODevice::ReadOnly) ? file.read(headSize) : QByteArray();
    // Lists of segments are known by their contents only under their own endings.
    const QByteArray name = QFile::encodeName(fileName);
    AVProbeData probe = {};
    probe.filename = name.constData();
    probe.buf_size = head.size();
    head.append(AVPROBE_PADDING_SIZE, '\0');
    probe.buf = reinterpret_cast<unsigned char *>(head.data());
    const auto *const format = av_probe_input_format(&probe, 1);
    return format && av_match_list(format->name, usualFormats, ',') <= 0;
}

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

struct Pixels
{
    void *memory;
    size_t bytes;
};

// Called with the last copy of an image, on whichever thread lets it go.
void releasePixels(void *info)
{
    const std::unique_ptr<Pixels> pixels(static_cast<Pixels *>(info));
    VTPictureMemory::release(pixels->memory, pixels->bytes);
}

// The scaler may write whole vectors, past the end of the last row, too.
QImage newImage(const QSize &size)
{
    const int bytesPerLine = size.width() * bytesPerPixel;
    const size_t bytes = size_t(bytesPerLine) * size_t(size.height()) + pixelsPerVector * bytesPerPixel;
    auto pixels = std::make_unique<Pixels>(Pixels{VTPictureMemory::allocate(bytes), bytes});
    QImage image(static_cast<uchar *>(pixels->memory), size.width(), size.height(), bytesPerLine,
                 QImage::Format_RGB32, &releasePixels, pixels.get());
    auto *const info = pixels.release();
    if (image.isNull())
        releasePixels(info);
    return image;
}

} // namespace

VTFFmpegDecoder::VTFFmpegDecoder(VTCodecs::Interruption interruption, void *context)
    : interrupt{interruption, context}
{
}

VTFFmpegDecoder::~VTFFmpegDecoder()
{
    close();
}

const char *VTFFmpegDecoder::open(const QString &fileName)
{
    close();
    const char *const problem = openAll(fileName);
    if (problem)
        close();
    return problem;
}

const char *VTFFmpegDecoder::openAll(const QString &fileName)
{
    const char *problem = openContainer(fileName);
    if (!problem)
        problem = openDecoder();
    if (!problem)
        problem = allocatePictures();
    return problem;
}

const char *VTFFmpegDecoder::openContainer(const QString &fileName)
{
    // Opening anything but a regular file, such as a pipe, can block where no interruption reaches.
    if (!QFileInfo(fileName).isFile())
        return cannotOpenMedia;
    formatContext = avformat_alloc_context();
    if (!formatContext)
        return cannotOpenMedia;
    formatContext->interrupt_callback = interrupt;
    // A clip is data of a package: what it refers to is never fetched from anywhere but the file system.
    AVDictionary *options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    const QByteArray url = QByteArrayLiteral("file:") + fileName.toUtf8();
    if (isRestricted) {
        av_dict_set(&options, "format_whitelist", usualFormats, 0);
        av_dict_set(&options, "codec_whitelist", usualCodecs, 0);
    }
    const int opened = avformat_open_input(&formatContext, url.constData(), nullptr, &options);
    av_dict_free(&options);
    if (opened < 0)
        return isRestricted && isOfOtherFormat(fileName) ? refusedFormat : cannotOpenMedia;
    if (avformat_find_stream_info(formatContext, nullptr) < 0)
        return noStreamInformation;
    videoStreamIndex = av_find_best_stream(formatContext, AVMEDIA_TYPE_VIDEO, -1, -1, &codec, 0);
    return videoStreamIndex < 0 ? noVideoStream : nullptr;
}

const char *VTFFmpegDecoder::openDecoder()
{
    for (unsigned int i = 0; i < formatContext->nb_streams; ++i) {
        if (int(i) != videoStreamIndex)
            formatContext->streams[i]->discard = AVDISCARD_ALL;
    }
    if (isRestricted && av_match_list(codec->name, usualCodecs, ',') <= 0)
        return refusedFormat;
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

const char *VTFFmpegDecoder::allocatePictures()
{
    frame = av_frame_alloc();
    shownFrame = av_frame_alloc();
    packet = av_packet_alloc();
    if (!frame || !shownFrame || !packet)
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
    image = newImage(QSize(pixelWidth, pixelHeight));
    return image.isNull() ? noRgbFrame : nullptr;
}

bool VTFFmpegDecoder::isOpen() const
{
    return formatContext;
}

VTClipFacts VTFFmpegDecoder::facts() const
{
    VTClipFacts facts;
    facts.width = codecContext->width;
    facts.height = codecContext->height;
    facts.duration = streamDuration();
    facts.timeBase = decoderTimeBase();
    facts.frameRate = toDouble(stream->r_frame_rate);
    return facts;
}

double VTFFmpegDecoder::streamDuration() const
{
    if (stream->duration != AV_NOPTS_VALUE)
        return double(stream->duration) * toDouble(stream->time_base);
    if (formatContext->duration != AV_NOPTS_VALUE)
        return double(formatContext->duration) / AV_TIME_BASE;
    return 0.0;
}

double VTFFmpegDecoder::decoderTimeBase() const
{
    const double rate = toDouble(codecContext->framerate);
    if (rate > 0.0)
        return 1.0 / (rate * FFmpegCompat::ticksPerFrame(codecContext));
    return toDouble(stream->time_base);
}

void VTFFmpegDecoder::close()
{
    sws_freeContext(scaleContext);
    scaleContext = nullptr;
    av_packet_free(&packet);
    av_frame_free(&rgbFrame);
    av_frame_free(&shownFrame);
    av_frame_free(&frame);
    avcodec_free_context(&codecContext);
    codec = nullptr;
    stream = nullptr;
    avformat_close_input(&formatContext);
    image = QImage();
}

VTVideoDecoder::Outcome VTFFmpegDecoder::nextPicture(QImage *picture, int *repeats)
{
    const int received = avcodec_receive_frame(codecContext, frame);
    if (received == AVERROR_EOF)
        return Outcome::End;
    if (received == AVERROR(EAGAIN))
        return readPacket() ? Outcome::Nothing : Outcome::End;
    if (received < 0)
        return Outcome::Nothing;
    // Where nothing moves, which is most of the time in a recording of a screen, pictures share their pixels.
    const bool isRepeated = shownFrame->data[0] && isSamePicture(*shownFrame, *frame);
    if (!isRepeated && !convertPicture())
        return Outcome::End;
    *picture = image;
    *repeats = frame->repeat_pict;
    std::swap(frame, shownFrame);
    av_frame_unref(frame);
    return Outcome::Picture;
}

// Tells whether the decoder has anything left to give.
bool VTFFmpegDecoder::readPacket()
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

bool VTFFmpegDecoder::convertPicture()
{
    if (!updateScaler() || !newPixels())
        return false;
    if (isDirect) {
        scale(image.bits(), image.bytesPerLine());
        return true;
    }
    scale(rgbFrame->data[0], rgbFrame->linesize[0]);
    const uchar *source = rgbFrame->data[0];
    for (int y = 0; y < image.height(); ++y, source += rgbFrame->linesize[0])
        widenPixels(source, reinterpret_cast<quint32 *>(image.scanLine(y)), image.width());
    return true;
}

// The cache shares the pixels of the last picture; new pixels spare the copy that writing to them would make.
bool VTFFmpegDecoder::newPixels()
{
    if (!image.isDetached())
        image = newImage(image.size());
    return !image.isNull();
}

void VTFFmpegDecoder::scale(uint8_t *target, int bytesPerLine)
{
    uint8_t *const planes[] = {target, nullptr, nullptr, nullptr};
    const int strides[] = {bytesPerLine, 0, 0, 0};
    sws_scale(scaleContext, frame->data, frame->linesize, 0, frame->height, planes, strides);
}

// Tells whether the scaler, asked for pixels of 32 bits, gives those that it gives of packed ones when they
// are widened. It has functions of its own for what most clips are, which take eight pixels of a row at a
// time; the tests compare every colour.
bool VTFFmpegDecoder::fillsDirectly(const ScalerInput &input) const
{
#ifdef Q_PROCESSOR_X86_64
    const bool isUsual = input.format == AV_PIX_FMT_YUV420P || input.format == AV_PIX_FMT_YUVJ420P;
    const bool isUnscaled = input.width == rgbFrame->width && input.height == rgbFrame->height;
    return isUsual && isUnscaled && input.width % 8 == 0 && input.height % 2 == 0;
#else
    Q_UNUSED(input)
    return false;
#endif
}

bool VTFFmpegDecoder::makeScaler(const ScalerInput &input)
{
    sws_freeContext(scaleContext);
    scaleContext = nullptr;
    // The scaler ends the process on a format that it does not know, such as that of a clip without pictures.
    if (!sws_isSupportedInput(input.format))
        return false;
    isDirect = fillsDirectly(input);
    scaleContext = sws_getContext(input.width, input.height, input.format, rgbFrame->width, rgbFrame->height,
                                  isDirect ? AV_PIX_FMT_RGB32 : AV_PIX_FMT_RGB24, SWS_BICUBIC, nullptr,
                                  nullptr, nullptr);
    scalerInput = input;
    return scaleContext;
}

// A stream may change its picture size or format midway; the frames of a clip all have the size it was opened
// with.
bool VTFFmpegDecoder::updateScaler()
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
void VTFFmpegDecoder::followColours(int colourSpace, int colourRange)
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

void VTFFmpegDecoder::seekToStart()
{
    av_seek_frame(formatContext, videoStreamIndex, 0, 0);
}

void VTFFmpegDecoder::seek(double seconds, bool backward)
{
    const qint64 timestamp = truncatedToInteger(seconds / toDouble(stream->time_base));
    av_seek_frame(formatContext, videoStreamIndex, timestamp, backward ? AVSEEK_FLAG_BACKWARD : 0);
    avcodec_flush_buffers(codecContext);
}

} // namespace Vidtips
