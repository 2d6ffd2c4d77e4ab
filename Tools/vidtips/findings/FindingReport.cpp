#include "FindingReport.h"

#include "shared/Console.h"
#include "shared/Places.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace {

constexpr int jsonVersion = 1;

Severity severityOf(const Finding &finding)
{
    const FindingKind *const kind = FindingCatalogue::instance().find(finding.code);
    return kind ? kind->severity : Severity::Error;
}

Console::Colour colourOf(Severity severity)
{
    return severity == Severity::Error  ? Console::Red
        : severity == Severity::Warning ? Console::Yellow
                                        : Console::Cyan;
}

QString counted(int count, const QString &one, const QString &many)
{
    return QString("%1 %2").arg(count).arg(count == 1 ? one : many);
}

QString placeText(Position position)
{
    return position.line > 0 ? QString("%1:%2").arg(position.line).arg(position.column) : QString("-");
}

} // namespace

FindingReport::FindingReport(const QVector<Finding> &findings, int packages, int files)
    : m_findings(findings)
    , m_packages(packages)
    , m_files(files)
{
    for (const Finding &finding : findings)
        ++m_counts[int(severityOf(finding))];
}

QString FindingReport::column(Severity severity, const Console &console)
{
    return console.in(colourOf(severity), FindingCatalogue::severityName(severity).leftJustified(7));
}

bool FindingReport::hasFindings() const
{
    return m_counts.value(int(Severity::Error)) + m_counts.value(int(Severity::Warning)) > 0;
}

QString FindingReport::summary() const
{
    const QString looked =
        counted(m_packages, "package", "packages") + ", " + counted(m_files, "control file", "control files");
    QStringList found;
    if (const int errors = m_counts.value(int(Severity::Error)))
        found << counted(errors, "error", "errors");
    if (const int warnings = m_counts.value(int(Severity::Warning)))
        found << counted(warnings, "warning", "warnings");
    if (const int notes = m_counts.value(int(Severity::Note)))
        found << counted(notes, "note", "notes");
    return looked + ": " + (found.isEmpty() ? "nothing found" : found.join(", "));
}

void FindingReport::writeText(Console &console) const
{
    if (console.isTerminal())
        writeGrouped(console);
    else
        writeLines(console);
    console.writeLine(console.in(hasFindings() ? Console::Bold : Console::Plain, summary()));
    if (console.isTerminal() && hasFindings())
        console.writeLine(console.in(Console::Dim, "\"vidtips explain CODE\" says what to do."));
}

void FindingReport::writeGrouped(Console &console) const
{
    QString file;
    for (const Finding &finding : m_findings) {
        if (finding.file != file) {
            if (!file.isEmpty())
                console.writeLine();
            file = finding.file;
            console.writeLine(console.in(Console::Bold, Places::shown(file)));
        }
        const QString place = placeText(finding.position).rightJustified(8);
        constexpr int indent = 26;
        const QString message = Console::wrapped(finding.message, indent, console.width()).trimmed();
        console.writeLine(QString("%1  %2  %3  %4")
                              .arg(place, column(severityOf(finding), console),
                                   console.in(Console::Dim, finding.code), message));
    }
    if (!m_findings.isEmpty())
        console.writeLine();
}

QString FindingReport::line(const Finding &finding)
{
    return QString("%1: %2: %3 [%4]")
        .arg(Places::shown(finding.file, finding.position),
             FindingCatalogue::severityName(severityOf(finding)), finding.message, finding.code);
}

void FindingReport::writeLines(Console &console) const
{
    for (const Finding &finding : m_findings)
        console.writeLine(line(finding));
}

void FindingReport::writeJson(Console &console) const
{
    QJsonArray list;
    for (const Finding &finding : m_findings)
        list.append(QJsonObject{{"code", finding.code},
                                {"severity", FindingCatalogue::severityName(severityOf(finding))},
                                {"file", finding.file},
                                {"line", finding.position.line},
                                {"column", finding.position.column},
                                {"message", finding.message}});
    const QJsonObject counts{{"error", m_counts.value(int(Severity::Error))},
                             {"warning", m_counts.value(int(Severity::Warning))},
                             {"note", m_counts.value(int(Severity::Note))}};
    const QJsonObject report{{"version", jsonVersion},
                             {"packages", m_packages},
                             {"controlFiles", m_files},
                             {"counts", counts},
                             {"findings", list}};
    console.write(QString::fromUtf8(QJsonDocument(report).toJson()));
}
