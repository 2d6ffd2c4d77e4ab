#include "FindingCatalogue.h"

#include <QtCore/QFile>

namespace {

Severity severityFrom(const QString &name)
{
    return name == "error" ? Severity::Error : name == "warning" ? Severity::Warning : Severity::Note;
}

void appendLine(QString &paragraph, const QString &line)
{
    paragraph += (paragraph.isEmpty() ? "" : " ") + line.trimmed();
}

// A kind is a line "VT101 error Title", then lines that begin with "why:", "mend:" and "example:", each with
// what follows it up to the next.
class Reader
{
public:
    explicit Reader(QMap<QString, FindingKind> &kinds)
        : m_kinds(kinds)
    {
    }

    void read(const QString &line)
    {
        if (line.startsWith("VT"))
            begin(line);
        else if (line == "why:" || line == "mend:" || line == "example:")
            m_section = line.chopped(1);
        else if (m_section == "why" && !line.isEmpty())
            appendLine(m_kind->why, line);
        else if (m_section == "mend" && !line.isEmpty())
            appendLine(m_kind->mend, line);
        else if (m_section == "example" && !line.isEmpty())
            m_kind->example << line;
    }

private:
    void begin(const QString &line)
    {
        const QString code = line.section(' ', 0, 0);
        m_kind = &m_kinds[code];
        m_kind->code = code;
        m_kind->severity = severityFrom(line.section(' ', 1, 1));
        m_kind->title = line.section(' ', 2);
        m_section.clear();
    }

    QMap<QString, FindingKind> &m_kinds;
    FindingKind *m_kind = nullptr;
    QString m_section;
};

} // namespace

FindingCatalogue::FindingCatalogue()
{
    QFile file(":/vidtips/findings.txt");
    if (!file.open(QIODevice::ReadOnly))
        qFatal("the explanations are missing from the program");
    Reader reader(m_kinds);
    for (const QString &line : QString::fromUtf8(file.readAll()).split('\n'))
        reader.read(line);
}

const FindingCatalogue &FindingCatalogue::instance()
{
    static const FindingCatalogue catalogue;
    return catalogue;
}

const FindingKind *FindingCatalogue::find(const QString &code) const
{
    const auto found = m_kinds.constFind(code.toUpper());
    return found == m_kinds.cend() ? nullptr : &*found;
}

QString FindingCatalogue::severityName(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return "error";
    case Severity::Warning:
        return "warning";
    case Severity::Note:
        return "note";
    }
    return {};
}
