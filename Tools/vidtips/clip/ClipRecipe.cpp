#include "ClipRecipe.h"

#include "Recording.h"
#include "clips/ClipCheck.h"

#include <QtCore/QFileInfo>
#include <QtCore/QVector>

#include <cmath>

namespace {

constexpr double leastRate = 10.0; // frames per second: what is slower looks broken
constexpr double leastScale = 0.5; // of what was asked for: what is smaller cannot be read

struct Kind
{
    QString suffix;
    QStringList codec;
    QVector<int> qualities; ///< Of the codec's own scale, from the best to the worst that can be looked at.
};

const QVector<Kind> &kinds()
{
    static const QVector<Kind> list{
        {"mp4", {"-c:v", "libx264", "-preset", "slow", "-movflags", "+faststart"}, {23, 28, 33, 38}},
        {"webm", {"-c:v", "libvpx-vp9", "-b:v", "0", "-cpu-used", "2", "-row-mt", "1"}, {32, 38, 45, 52}}};
    return list;
}

const Kind &kindOf(const QString &file)
{
    const QString suffix = QFileInfo(file).suffix().toLower();
    for (const Kind &kind : kinds()) {
        if (kind.suffix == suffix)
            return kind;
    }
    return kinds().constFirst();
}

// Colours are stored for two by two pixels.
QSize even(const QSizeF &size)
{
    const auto floored = [](qreal length) { return qMax(2, int(length / 2.0) * 2); };
    return {floored(size.width()), floored(size.height())};
}

QSizeF fitted(const QSize &size, const QSize &most)
{
    const bool fits = size.width() <= most.width() && size.height() <= most.height();
    // Rounded up by less than a pixel, so that what fits in one direction does not lose two.
    return fits ? QSizeF(size) : QSizeF(size).scaled(most, Qt::KeepAspectRatio) + QSizeF(0.5, 0.5);
}

QString inSeconds(double seconds)
{
    return QString::number(seconds, 'f', 1) + " s";
}

QString number(double value)
{
    return QString::number(value, 'f', 3);
}

} // namespace

QString ClipRecipe::choose(const Recording &recording, const ClipWishes &wishes)
{
    m_recording = recording.path;
    m_whole = recording.shownSize();
    m_isUntaggedHd =
        recording.stream.hasUntaggedColours && recording.facts.size.height() >= ClipCheck::leastHdHeight;
    QString problem = chooseTime(recording, wishes);
    if (problem.isEmpty())
        problem = chooseCrop(wishes);
    if (!problem.isEmpty())
        return problem;
    m_size = even(fitted(m_crop.size(), wishes.most));
    const bool isSlower = !recording.stream.isVariable && recording.facts.rate > 0.0;
    m_rate = isSlower ? qMin(wishes.rate, recording.facts.rate) : wishes.rate;
    return keepBudget(wishes.budget);
}

QString ClipRecipe::chooseTime(const Recording &recording, const ClipWishes &wishes)
{
    const double seconds = recording.seconds();
    if (wishes.from >= seconds)
        return QString("the recording ends after %1, before the clip would begin").arg(inSeconds(seconds));
    m_from = wishes.from;
    m_length = seconds - m_from;
    if (wishes.length > 0.0)
        m_length = qMin(m_length, wishes.length);
    if (m_length > wishes.longest)
        return QString("the clip would last %1, the limit is %2: choose a part by --from and --length")
            .arg(inSeconds(m_length), inSeconds(wishes.longest));
    return {};
}

QString ClipRecipe::chooseCrop(const ClipWishes &wishes)
{
    const QRect whole(QPoint(0, 0), m_whole);
    m_crop = wishes.crop.isEmpty() ? whole : wishes.crop;
    if (whole.contains(m_crop))
        return {};
    return QString("what --crop names is not all in the recording, which is %1 x %2")
        .arg(m_whole.width())
        .arg(m_whole.height());
}

qint64 ClipRecipe::memory(QSize size, double rate) const
{
    return qint64(size.width()) * size.height() * 4 * qint64(std::ceil(m_length * rate));
}

// First slower, then smaller as well: movement suffers less than what is to be read.
QString ClipRecipe::keepBudget(qint64 budget)
{
    const QSize wanted = m_size;
    const double slowest = qMin(m_rate, leastRate);
    double rate = m_rate;
    while (memory(wanted, rate) > budget && rate > slowest)
        rate = qMax(slowest, std::floor(rate - 0.5));
    double scale = 1.0;
    while (memory(m_size, rate) > budget && scale > leastScale) {
        scale -= 0.02;
        m_size = even(QSizeF(wanted) * scale);
    }
    if (memory(m_size, rate) > budget)
        return QString("%1 of this recording do not fit into %2 MB: choose a shorter part by --from and "
                       "--length, or crop more")
            .arg(inSeconds(m_length), QString::number(double(budget) / ClipCheck::bytesPerMegabyte));
    QStringList given;
    if (rate < m_rate)
        given << QString("%1 instead of %2 frames/s").arg(rate).arg(m_rate);
    if (m_size != wanted)
        given << QString("%1 x %2 instead of %3 x %4 pixels")
                     .arg(m_size.width())
                     .arg(m_size.height())
                     .arg(wanted.width())
                     .arg(wanted.height());
    m_concession = given.join(", ");
    m_rate = rate;
    return {};
}

QStringList ClipRecipe::suffixes()
{
    QStringList list;
    for (const Kind &kind : kinds())
        list << kind.suffix;
    return list;
}

int ClipRecipe::steps()
{
    return kinds().constFirst().qualities.size();
}

QString ClipRecipe::filter() const
{
    return QStringList{
        QString("fps=%1").arg(number(m_rate)),
        QString("scale=%1:%2").arg(m_whole.width()).arg(m_whole.height()),
        QString("crop=%1:%2:%3:%4").arg(m_crop.width()).arg(m_crop.height()).arg(m_crop.x()).arg(m_crop.y()),
        QString("scale=%1:%2:flags=lanczos:out_color_matrix=bt709:out_range=tv%3")
            .arg(m_size.width())
            .arg(m_size.height())
            .arg(m_isUntaggedHd ? ":in_color_matrix=bt709" : ""),
        // Even sizes are not quite of the same shape, which is not to be made up for.
        "setsar=1", "format=yuv420p"}
        .join(',');
}

QStringList ClipRecipe::arguments(const QString &file, int step) const
{
    const Kind &kind = kindOf(file);
    return QStringList{"-y",   "-ss",   number(m_from), "-t",  number(m_length), "-i", "file:" + m_recording,
                       "-map", "0:V:0", "-an",          "-vf", filter()}
    + kind.codec
        + QStringList{"-crf",
                      QString::number(kind.qualities.at(step)),
                      "-color_primaries",
                      "bt709",
                      "-color_trc",
                      "bt709",
                      "-colorspace",
                      "bt709",
                      "-color_range",
                      "tv",
                      "-map_metadata",
                      "-1",
                      "file:" + file};
}
