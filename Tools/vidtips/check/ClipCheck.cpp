#include "ClipCheck.h"

#include "ClipProbe.h"
#include "findings/Finding.h"

namespace {

QString megabytes(qint64 bytes)
{
    return QString::number(double(bytes) / ClipCheck::bytesPerMegabyte, 'f', 1) + " MB";
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
