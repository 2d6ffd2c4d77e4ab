#include "EditedFile.h"

#include "shared/SavedFile.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QTextCodec>
#include <QtCore/QXmlStreamReader>

namespace {

QString commentOf(const QString &text)
{
    // Two hyphens would end the comment.
    return "<!-- " + QString(text).replace("--", "- -") + " -->";
}

QString indentOf(const QString &line)
{
    static const QRegularExpression blanks("^[ \t]*");
    return blanks.match(line).captured();
}

// Text that says nothing of its encoding is in UTF-8.
bool isUtf8(const QByteArray &bytes)
{
    static const QRegularExpression declaration("^[^<]*<\\?xml[^>]*encoding\\s*=\\s*[\"']([^\"']+)");
    const QString encoding = declaration.match(QString::fromLatin1(bytes.left(200))).captured(1);
    return encoding.isEmpty() || encoding.compare("utf-8", Qt::CaseInsensitive) == 0;
}

QString xmlProblem(const QString &text)
{
    QXmlStreamReader reader(text);
    while (!reader.atEnd())
        reader.readNext();
    return reader.hasError() ? reader.errorString() : QString();
}

} // namespace

EditedFile::EditedFile(const QString &path, const QString &root)
    : m_path(path)
    , m_root(root)
{
}

QString EditedFile::read()
{
    QFile file(m_path);
    if (!file.exists()) {
        const QString name = m_root.section(' ', 0, 0).mid(1).remove('>');
        m_text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + m_root + "\n</" + name + ">\n";
        return {};
    }
    if (!file.open(QIODevice::ReadOnly))
        return QString("cannot read %1: %2").arg(m_path, file.errorString());
    const QByteArray bytes = file.readAll();
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    m_text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    if (!isUtf8(bytes) || state.invalidChars > 0 || state.remainingChars > 0)
        return QString("cannot add to %1: it is not in UTF-8").arg(m_path);
    if (m_text.contains("\r\n"))
        m_lineEnd = "\r\n";
    return {};
}

void EditedFile::append(const QString &lines)
{
    m_added += lines;
}

// Comments stand close above their element, perhaps with others.
int EditedFile::lineOfComment(int line, const QString &text) const
{
    const QStringList lines = m_text.split('\n');
    for (int i = line - 2; i >= 0 && i < lines.size(); --i) {
        const QString above = lines.at(i).trimmed();
        if (above == commentOf(text))
            return i + 1;
        if (!above.startsWith("<!--") || !above.endsWith("-->"))
            break;
    }
    return 0;
}

void EditedFile::comment(int line, const QString &text)
{
    const QString element = m_text.section('\n', line - 1, line - 1);
    // In the middle of another element there is no room.
    if (element.trimmed().startsWith('<') && lineOfComment(line, text) == 0)
        m_changes.append({line, indentOf(element) + commentOf(text)});
}

void EditedFile::uncomment(int line, const QString &text)
{
    const int place = lineOfComment(line, text);
    if (place > 0)
        m_changes.append({place, QString()});
}

QString EditedFile::changed() const
{
    const QStringList lines = m_text.split('\n');
    QStringList result;
    for (int i = 0; i < lines.size(); ++i) {
        bool isKept = true;
        for (const Change &change : m_changes) {
            if (change.line == i + 1 && change.text.isEmpty())
                isKept = false;
            else if (change.line == i + 1)
                result << change.text + m_lineEnd.chopped(1);
        }
        if (isKept)
            result << lines.at(i);
    }
    return result.join('\n');
}

QString EditedFile::write()
{
    if (m_added.isEmpty() && m_changes.isEmpty())
        return {};
    QString text = changed();
    const int end = text.lastIndexOf("</");
    if (!m_added.isEmpty() && end < 0)
        return QString("cannot add to %1: its document element has no end").arg(m_path);
    if (!m_added.isEmpty())
        text.insert(end, QString(m_added).replace("\n", m_lineEnd));
    const QString broken = xmlProblem(text);
    if (!broken.isEmpty())
        return QString("cannot add to %1: %2").arg(m_path, broken);
    QDir().mkpath(QFileInfo(m_path).path());
    return SavedFile::write(m_path, text.toUtf8());
}
