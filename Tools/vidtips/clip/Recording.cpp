#include "Recording.h"

#include "clips/ClipCheck.h"

#include <QtCore/QFileInfo>
#include <QtCore/QtMath>

namespace {

constexpr qint64 decodedToMeasure = 16 * 1024 * 1024; // bytes, of a file that does not say how long it is
constexpr int halfTurn = 180; // degrees
constexpr double bytesPerKilobyte = 1024.0;

QString rateOf(const ClipFacts &facts, const ClipStreamFacts &stream)
{
    return stream.isVariable ? "varying frame rate"
                             : QString("%1 frames/s").arg(QString::number(facts.rate, 'g', 4));
}

} // namespace

QString Recording::read(const QString &file)
{
    path = file;
    const QFileInfo info(file);
    if (!info.isFile())
        return QString("no such recording: %1").arg(file);
    if (!info.isReadable())
        return QString("the recording cannot be read: %1").arg(file);
    bytes = info.size();
    facts = ClipProbe(decodedToMeasure).probe(info.absoluteFilePath());
    stream = ClipStreamFacts::read(info.absoluteFilePath());
    if (!facts.opens || !facts.hasPicture || facts.size.isEmpty())
        return QString("the recording is no video: %1").arg(file);
    if (facts.frames < 2 && !(stream.longest > 0.0))
        return QString("the recording is a single picture: %1").arg(file);
    return {};
}

qint64 Recording::memory() const
{
    return qint64(facts.size.width()) * facts.size.height() * 4 * qRound64(seconds() * facts.rate);
}

QSize Recording::shownSize() const
{
    QSize size = facts.size;
    const double across = stream.pixelAspect.section(':', 0, 0).toDouble();
    const double down = stream.pixelAspect.section(':', 1).toDouble();
    if (across > 0.0 && down > 0.0)
        size.setWidth(qMax(1, qRound(size.width() * across / down)));
    return stream.rotation % halfTurn != 0 ? size.transposed() : size;
}

QString Recording::description() const
{
    QStringList parts{QString("%1 x %2").arg(facts.size.width()).arg(facts.size.height()),
                      rateOf(facts, stream), QString::number(seconds(), 'f', 1) + " s"};
    if (stream.rotation != 0)
        parts << QString("to be turned by %1 degrees").arg(qAbs(stream.rotation));
    if (!stream.pixelAspect.isEmpty())
        parts << "pixels of " + stream.pixelAspect;
    if (stream.hasUntaggedColours)
        parts << "colours of no named kind";
    parts << ClipCheck::megabytes(memory()) + " in memory"
          << QString("a file of %1 kB").arg(qCeil(double(bytes) / bytesPerKilobyte));
    return parts.join(", ");
}
