#include "ClipStream.h"

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/display.h>
#include <libavutil/pixdesc.h>
}

#include <QtCore/QFileInfo>
#include <QtCore/QScopeGuard>

#include <algorithm>
#include <cmath>

namespace {

constexpr double seenDeviation = 0.1; // seconds of pictures that come too early or too late
constexpr double sameDuration = 0.25; // of the usual one: the clocks of containers are coarse
constexpr int quarterTurn = 90; // degrees

double seconds(int64_t time, AVRational base)
{
    return time == AV_NOPTS_VALUE ? 0.0 : double(time) * av_q2d(base);
}

const int32_t *displayMatrix(const AVStream *stream)
{
#if LIBAVCODEC_VERSION_INT >= AV_VERSION_INT(60, 31, 100)
    const AVPacketSideData *const data = av_packet_side_data_get(
        stream->codecpar->coded_side_data, stream->codecpar->nb_coded_side_data, AV_PKT_DATA_DISPLAYMATRIX);
    return data ? reinterpret_cast<const int32_t *>(data->data) : nullptr;
#else
    return reinterpret_cast<const int32_t *>(
        av_stream_get_side_data(stream, AV_PKT_DATA_DISPLAYMATRIX, nullptr));
#endif
}

void readFormat(AVFormatContext *file, AVStream *stream, ClipStreamFacts &facts)
{
    const AVCodecParameters &parameters = *stream->codecpar;
    const int32_t *const matrix = displayMatrix(stream);
    const double turned = matrix ? av_display_rotation_get(matrix) : 0.0;
    facts.rotation = std::isnan(turned) ? 0 : qRound(-turned / quarterTurn) * quarterTurn;
    const AVRational aspect = av_guess_sample_aspect_ratio(file, stream, nullptr);
    if (aspect.num > 0 && aspect.den > 0 && aspect.num != aspect.den)
        facts.pixelAspect = QString("%1:%2").arg(aspect.num).arg(aspect.den);
    const AVPixFmtDescriptor *const format = av_pix_fmt_desc_get(AVPixelFormat(parameters.format));
    if (!format)
        return;
    const AVDictionaryEntry *const alpha = av_dict_get(stream->metadata, "alpha_mode", nullptr, 0);
    facts.hasTransparency =
        (format->flags & AV_PIX_FMT_FLAG_ALPHA) || (alpha && qstrcmp(alpha->value, "1") == 0);
    const bool isVideo = !(format->flags & AV_PIX_FMT_FLAG_RGB) && format->nb_components > 2;
    facts.hasUntaggedColours = isVideo && parameters.color_space == AVCOL_SPC_UNSPECIFIED;
}

// Pictures are stored in another order than they are shown in.
void readRate(QVector<double> times, ClipStreamFacts &facts)
{
    std::sort(times.begin(), times.end());
    QVector<double> durations;
    for (int i = 1; i < times.size(); ++i)
        durations << times.at(i) - times.at(i - 1);
    if (durations.isEmpty())
        return;
    std::sort(durations.begin(), durations.end());
    const double usual = durations.at(durations.size() / 2);
    double deviation = 0.0;
    for (const double duration : qAsConst(durations)) {
        if (std::abs(duration - usual) > usual * sameDuration)
            deviation += std::abs(duration - usual);
    }
    facts.shortest = durations.constFirst();
    facts.longest = durations.constLast();
    facts.isVariable = deviation > seenDeviation;
}

// A duration that was reckoned from the size of the file says nothing of what should be in it.
double promisedBy(const AVFormatContext *file, const AVStream *stream)
{
    if (stream->duration > 0)
        return seconds(stream->duration, stream->time_base);
    const bool isReckoned = file->duration_estimation_method == AVFMT_DURATION_FROM_BITRATE;
    return file->duration > 0 && !isReckoned ? double(file->duration) / AV_TIME_BASE : 0.0;
}

double framesPromisedBy(const AVStream *stream)
{
    const AVRational rate = stream->avg_frame_rate;
    return rate.num > 0 && rate.den > 0 ? double(stream->nb_frames) / av_q2d(rate) : 0.0;
}

void readPackets(AVFormatContext *file, const AVStream *stream, ClipStreamFacts &facts)
{
    AVPacket *packet = av_packet_alloc();
    const auto freePacket = qScopeGuard([&packet] { av_packet_free(&packet); });
    const bool isOfStream = stream->duration > 0;
    const double start = isOfStream ? seconds(stream->start_time, stream->time_base)
                                    : std::max(0.0, seconds(file->start_time, {1, AV_TIME_BASE}));
    QVector<double> times;
    while (packet && av_read_frame(file, packet) >= 0) {
        const AVStream *const its = file->streams[packet->stream_index];
        const int64_t time = packet->pts != AV_NOPTS_VALUE ? packet->pts : packet->dts;
        const bool isWhole = !(packet->flags & AV_PKT_FLAG_CORRUPT) && time != AV_NOPTS_VALUE;
        if (isWhole && its == stream)
            times << seconds(time, its->time_base);
        if (isWhole && (its == stream || !isOfStream))
            facts.found = std::max(facts.found, seconds(time + packet->duration, its->time_base) - start);
        av_packet_unref(packet);
    }
    // Some containers reckon their duration from what is there, and their frames from what was.
    if (!times.isEmpty() && stream->nb_frames > times.size())
        facts.promised = std::max(facts.promised, framesPromisedBy(stream));
    readRate(times, facts);
}

} // namespace

ClipStreamFacts ClipStreamFacts::read(const QString &path)
{
    ClipStreamFacts facts;
    AVFormatContext *file = nullptr;
    // What a clip refers to is never fetched from anywhere but the file system.
    AVDictionary *options = nullptr;
    av_dict_set(&options, "protocol_whitelist", "file", 0);
    av_log_set_level(AV_LOG_QUIET);
    const QByteArray url = "file:" + path.toUtf8();
    const int opened =
        QFileInfo(path).isFile() ? avformat_open_input(&file, url.constData(), nullptr, &options) : -1;
    av_dict_free(&options);
    const auto close = qScopeGuard([&file] { avformat_close_input(&file); });
    if (opened < 0 || avformat_find_stream_info(file, nullptr) < 0)
        return facts;
    const int index = av_find_best_stream(file, AVMEDIA_TYPE_VIDEO, -1, -1, nullptr, 0);
    if (index < 0)
        return facts;
    AVStream *const stream = file->streams[index];
    facts.isRead = true;
    facts.promised = promisedBy(file, stream);
    readFormat(file, stream, facts);
    readPackets(file, stream, facts);
    return facts;
}
