#include "TrialFindings.h"

#include <QtCore/QJsonObject>

#include <algorithm>

void TrialFindings::add(const Finding &finding, const TrialTip &tip, int number)
{
    const Place place(finding.code, finding.file, finding.position.line, finding.position.column);
    Found &found = m_found[place];
    if (found.keys.isEmpty() || number < found.number) {
        found.finding = finding;
        found.tip = tip;
        found.number = number;
    }
    found.keys << tip.key;
}

// What is written down tells of most files, and a user interface was loaded by another check.
bool TrialFindings::isKnown(const Finding &finding, const Findings &findings)
{
    static const QMap<QString, QStringList> others{
        {"VT501", {"VT501"}},
        {"VT601", {"VT601"}},
        {"VT606", {"VT606"}},
        {"VT607", {"VT605", "VT607"}},
        {"VT608", {"VT608"}},
        {"VT614", {"VT413", "VT609", "VT611", "VT612", "VT613", "VT614"}},
        {"VT901", {"VT404", "VT405", "VT406", "VT407", "VT412", "VT501", "VT504", "VT605"}}};
    if (findings.says(finding.file, finding.message))
        return true;
    if (finding.code == "VT900")
        return findings.contains(finding.file, {"VT601", "VT602", "VT603", "VT608"});
    const QStringList codes = others.value(finding.code);
    return std::any_of(codes.cbegin(), codes.cend(), [&](const QString &code) {
        return findings.containsAt(finding.file, finding.position.line, code);
    });
}

QString TrialFindings::message(const Found &found)
{
    QStringList words{found.tip.locale};
    if (found.tip.isSimple)
        words << "simple";
    if (found.tip.isDark)
        words << "dark";
    const int others = found.keys.size() - 1;
    const QString more = others == 0 ? QString()
        : others == 1                ? QString(", and another tip")
                                     : QString(", and %1 other tips").arg(others);
    return QString("%1 (\"%2\", %3%4)").arg(found.finding.message, found.tip.key, words.join(", "), more);
}

void TrialFindings::addTo(Findings &findings) const
{
    for (const Found &found : m_found) {
        if (!isKnown(found.finding, findings))
            findings.add(found.finding.code, found.finding.file, found.finding.position, message(found));
    }
}

QJsonObject TrialFindings::toJson(const Finding &finding)
{
    return {{"code", finding.code},
            {"file", finding.file},
            {"line", finding.position.line},
            {"column", finding.position.column},
            {"message", finding.message}};
}

Finding TrialFindings::fromJson(const QJsonObject &object)
{
    return {object.value("code").toString(),
            object.value("file").toString(),
            {object.value("line").toInt(), object.value("column").toInt()},
            object.value("message").toString()};
}
