#include "ClipCheck.h"

#include "ClipProbe.h"
#include "ClipStream.h"
#include "findings/Finding.h"

namespace {

constexpr double leastGap = 0.15; // seconds that must be missing at the end, since durations are rounded

QString inSeconds(double seconds)
{
    return QString::number(seconds, 'f', 1) + " s";
}

QString inMilliseconds(double seconds)
{
    return QString::number(qRound(seconds * 1000));
}

// The library ends its sentence with the path, which the report shows anyway.
QString reasonFrom(const QString &problem, const QString &path)
{
    QString reason = problem;
    reason.remove(path);
    reason = reason.simplified();
    for (const char *ending : {" at:", ":", " in", " for"}) {
        if (reason.endsWith(ending))
            reason.chop(int(qstrlen(ending)));
    }
    return reason.isEmpty() ? "the clip does not open" : "the clip does not open: " + reason;
}

} // namespace

QString ClipCheck::megabytes(qint64 bytes)
{
    return QString::number(double(bytes) / bytesPerMegabyte, 'f', 1) + " MB";
}

void ClipCheck::run(const QStringList &clips, Findings &findings,
                    const std::function<void(int, int)> &progress)
{
    for (int i = 0; i < clips.size(); ++i) {
        progress(i, clips.size());
        check(clips.at(i), findings);
    }
    progress(clips.size(), clips.size());
}

void ClipCheck::check(const QString &path, Findings &findings) const
{
    const ClipFacts facts = ClipProbe(m_budget).probe(path);
    if (!facts.opens) {
        findings.add("VT501", path, {}, reasonFrom(facts.problem, path));
        return;
    }
    if (!facts.hasPicture) {
        findings.add("VT504", path, {}, "the clip opens, but none of its pictures can be decoded");
        return;
    }
    checkSize(path, facts, findings);
    checkStream(path, facts, findings);
}

void ClipCheck::checkSize(const QString &path, const ClipFacts &facts, Findings &findings) const
{
    const QString atLeast = facts.isWhole ? "" : "at least ";
    if (facts.seconds > m_longest)
        findings.add("VT502", path, {},
                     QString("the clip lasts %1%2 s, the limit is %3 s")
                         .arg(atLeast, QString::number(facts.seconds, 'f', 1), QString::number(m_longest)));
    if (facts.memory() > m_budget)
        findings.add(
            "VT503", path, {},
            QString("the clip takes %1%2 of memory (%3 x %4 x 4 bytes x %5 frames), the budget is %6")
                .arg(atLeast, megabytes(facts.memory()))
                .arg(facts.size.width())
                .arg(facts.size.height())
                .arg(facts.frames)
                .arg(megabytes(m_budget)));
}

void ClipCheck::checkStream(const QString &path, const ClipFacts &facts, Findings &findings) const
{
    const ClipStreamFacts stream = ClipStreamFacts::read(path);
    if (!stream.isRead)
        return;
    const auto add = [&](const char *code, const QString &message) { findings.add(code, path, {}, message); };
    const double picture = facts.rate > 0.0 ? 1.0 / facts.rate : 0.0;
    if (stream.promised - stream.found > qMax(leastGap, 2 * picture))
        add("VT505",
            QString("the clip is cut off after %1 of %2")
                .arg(inSeconds(stream.found), inSeconds(stream.promised)));
    else if (stream.isVariable)
        add("VT506",
            QString(
                "the frame rate varies, from %1 to %2 ms a frame, and the clip is played as if it did not")
                .arg(inMilliseconds(stream.shortest), inMilliseconds(stream.longest)));
    if (stream.rotation != 0)
        add("VT507",
            QString("the clip is to be turned by %1 degrees, and is shown as it is stored")
                .arg(qAbs(stream.rotation)));
    if (!stream.pixelAspect.isEmpty())
        add("VT508", QString("the clip's pixels are %1, and are shown square").arg(stream.pixelAspect));
    if (stream.hasUntaggedColours && facts.size.height() >= leastHdHeight)
        add("VT509",
            QString("the clip is HD (%1 x %2) and does not say its colours, which are shown as those of "
                    "small clips")
                .arg(facts.size.width())
                .arg(facts.size.height()));
    if (stream.hasTransparency)
        add("VT510", "the clip has transparency, which is not shown");
}
