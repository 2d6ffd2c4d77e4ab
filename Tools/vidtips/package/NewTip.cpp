#include "NewTip.h"

#include "shared/Content.h"
#include "shared/Places.h"
#include "shared/SavedFile.h"
#include "vocabulary/KeyName.h"

#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QRegularExpression>

#include <algorithm>

namespace {

const char documentEnd[] = "</vidtips";

bool isFor(const ControlFile &file, const QString &locale)
{
    return locale.isEmpty() ? file.locale().isEmpty()
                            : !file.locale().isEmpty() && QLocale(file.locale()) == QLocale(locale);
}

const ControlFile *fileFor(const Content &content, const QString &locale)
{
    const auto &files = content.controlFiles();
    const auto found = std::find_if(files.cbegin(), files.cend(), [&](const ControlFile &file) {
        return file.isAdmitted && file.document.root() && isFor(file, locale);
    });
    return found == files.cend() ? nullptr : &*found;
}

bool haveCommonReaders(const ControlFile &one, const ControlFile &other)
{
    return one.locale().isEmpty() || other.locale().isEmpty() || isFor(one, other.locale());
}

// One of two entries that are for the same reader would vanish.
QString placeOfKey(const Content &content, const ControlFile &file, const QString &key)
{
    for (const ControlFile &other : content.controlFiles()) {
        if (other.isAdmitted && other.hasKey(key) && haveCommonReaders(file, other))
            return Places::shown(other.path);
    }
    return {};
}

// "draw.free-hand" is probably called "Free hand".
QString titleFrom(const QString &key)
{
    static const QRegularExpression separators("[-_]+");
    QString title = key.section('.', -1).replace(separators, " ");
    if (!title.isEmpty())
        title[0] = title.at(0).toUpper();
    return title;
}

// That in which catalogues have the texts of the file's other tips.
QString contextIn(const ControlFile &file)
{
    const auto entries = file.entries();
    return entries.empty() ? QString() : entries.back()->attribute("context");
}

// The text is written as UTF-8, which changes no byte of the rest only where that is UTF-8, too.
bool isUtf8(const ControlFile &file)
{
    QFile bytes(file.path);
    return bytes.open(QIODevice::ReadOnly) && bytes.readAll() == file.document.text().toUtf8();
}

} // namespace

QString NewTip::choose(const Content &content, const QStringList &locales,
                       QVector<const ControlFile *> &files) const
{
    if (content.packages().size() != 1)
        return "name the folder of one package";
    const ControlFile *const usual =
        fileFor(content, "en_US") ? fileFor(content, "en_US") : fileFor(content, {});
    if (locales.isEmpty() && !usual)
        return "the package has no control file for en_US or every locale: name a locale with --locale";
    if (locales.isEmpty())
        files << usual;
    for (const QString &locale : locales) {
        const ControlFile *const file = fileFor(content, locale);
        if (!file)
            return QString("the package has no control file for %1").arg(locale);
        if (!files.contains(file))
            files << file;
    }
    for (const ControlFile *file : qAsConst(files)) {
        const QString path = Places::shown(file->path);
        const QString present = placeOfKey(content, *file, m_key);
        if (!present.isEmpty())
            return QString("%1 has a tip \"%2\" already").arg(present, m_key);
        if (!file->document.error().isEmpty() || !file->document.encodingProblem().message.isEmpty())
            return QString("%1 has mistakes: see \"vidtips check\"").arg(path);
        if (!isUtf8(*file))
            return QString("%1 is not UTF-8 without a mark of it: save it as that").arg(path);
    }
    return {};
}

QString NewTip::entryFor(const ControlFile &file) const
{
    const QString context = file.locale().isEmpty() ? contextIn(file) : QString();
    return QString("  <vidtip key=\"%1\" title=\"%2\"%3>\n"
                   "    <summary>Says in a sentence what the command does.</summary>\n"
                   "  </vidtip>\n")
        .arg(m_key.toHtmlEscaped(), titleFrom(m_key).toHtmlEscaped(),
             context.isEmpty() ? QString() : QString(" context=\"%1\"").arg(context.toHtmlEscaped()));
}

// The text of the file is the author's: it stays as it is but for the entry.
QString NewTip::textWith(const ControlFile &file) const
{
    QString text = file.document.text();
    int end = text.lastIndexOf(documentEnd);
    if (end < 0) {
        const int slash = text.lastIndexOf("/>");
        return text.replace(slash, 2, QString(">\n%1</vidtips>").arg(entryFor(file)));
    }
    const bool isLineBegun = end > 0 && text.at(end - 1) != '\n';
    return text.insert(end, (isLineBegun ? "\n" : "") + entryFor(file));
}

QString NewTip::add(const Content &content, const QStringList &locales)
{
    QString problem = KeyName::problemWith(m_key);
    QVector<const ControlFile *> files;
    if (problem.isEmpty())
        problem = choose(content, locales, files);
    for (const ControlFile *file : qAsConst(files)) {
        if (!problem.isEmpty())
            return problem;
        const QString text = textWith(*file);
        problem = SavedFile::write(file->path, text.toUtf8());
        const int line = text.leftRef(text.lastIndexOf(entryFor(*file))).count('\n') + 1;
        m_places << Places::shown(file->path, {line, 0});
    }
    return problem;
}
