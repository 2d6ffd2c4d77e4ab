#include "HarvestedPackage.h"

#include "package/PackageSkeleton.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QSet>

namespace {

constexpr int longestName = 200; // of a file, before its endings: at most 255 bytes with them
constexpr char goneComment[] = "harvest: the program no longer has this command";

QString fileNameOf(const QString &text)
{
    static const QRegularExpression unfit("[^A-Za-z0-9_.]+");
    QString name = QString(text).replace(unfit, "-");
    while (name.startsWith('-') || name.startsWith('.'))
        name.remove(0, 1);
    return name.isEmpty() ? QString("Other") : name.left(longestName);
}

QString attribute(const char *name, const QString &value)
{
    return QString(" %1=\"%2\"").arg(name, value.toHtmlEscaped());
}

QString changeComment(const HarvestedPackage::Change &change)
{
    return QString("harvest: the program's %1 was \"%2\" and is \"%3\"")
        .arg(change.what, change.before, change.now);
}

} // namespace

HarvestedPackage::HarvestedPackage(const QString &folder, const QString &name, const QString &locale)
    : m_folder(folder)
    , m_name(name)
    , m_path(folder + '/' + name + ".vidtips")
    , m_locale(locale)
    , m_state(m_path, locale)
{
}

QString HarvestedPackage::update(const QVector<HarvestedCommand> &commands)
{
    QString problem = QFileInfo(m_path).isDir() ? QString() : make();
    if (problem.isEmpty())
        problem = m_state.read();
    if (problem.isEmpty())
        problem = readEntries();
    if (problem.isEmpty())
        problem = readKeyData();
    if (!problem.isEmpty())
        return problem;
    for (const HarvestedCommand &command : commands) {
        if (command.hasUsableKey)
            takeIn(command);
    }
    markGone(commands);
    return m_problem.isEmpty() ? write() : m_problem;
}

QString HarvestedPackage::make()
{
    if (!QDir().mkpath(m_path))
        return QString("cannot make the folder: %1").arg(m_path);
    PackageSkeleton skeleton(m_folder, m_name);
    skeleton.setShared(m_shared);
    return skeleton.writeUserInterface();
}

// Entries of files that serve every locale have the command's tip, too.
QString HarvestedPackage::readEntries()
{
    Content content;
    QString problem = content.load({m_path});
    if (!problem.isEmpty())
        return problem;
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.document.error().isEmpty())
            return QString("cannot add to %1: %2").arg(file.path, file.document.error());
        if (!file.locale().isEmpty() && file.locale() != m_locale)
            continue;
        for (const XmlNode *entry : file.entries())
            m_entries.insert(entry->attribute("key"), {file.path, entry->position.line});
    }
    return {};
}

QString HarvestedPackage::readKeyData()
{
    const QString path = m_folder + '/' + m_name + ".keys.xml";
    if (!QFileInfo::exists(path))
        return {};
    const XmlDocument document = XmlDocument::read(path);
    if (!document.error().isEmpty() || !document.root())
        return QString("cannot add to %1: %2").arg(path, document.error());
    for (const auto &key : document.root()->children)
        m_keyData.insert(key->attribute("name"), {path, key->position.line});
    return {};
}

// Entries know their file by its whole path, additions by the folder as it was named: it is written once.
EditedFile *HarvestedPackage::file(const QString &path, const QString &root)
{
    const QFileInfo info(path);
    std::unique_ptr<EditedFile> &file = m_files[info.exists() ? info.canonicalFilePath() : path];
    if (!file) {
        file = std::make_unique<EditedFile>(path, root);
        const QString problem = file->read();
        if (m_problem.isEmpty())
            m_problem = problem;
    }
    return file.get();
}

// What an author has taken out stays out.
void HarvestedPackage::takeIn(const HarvestedCommand &command)
{
    bool isKnown = false;
    const HarvestedCommand before = m_state.command(command.key, &isKnown);
    const bool hasEntry = m_entries.contains(command.key);
    // As long as there is nothing to say, it may yet be new.
    if (!hasEntry && !isKnown && command.isSilent())
        return;
    m_kept += hasEntry ? 1 : 0;
    if (!hasEntry && !isKnown)
        addEntry(command);
    if (isKnown)
        compare(before, command);
    if (!command.shortcut.isEmpty() && !m_keyData.contains(command.key) && before.shortcut.isEmpty())
        addKeyData(command);
    if (hasEntry) {
        const Entry entry = m_entries.value(command.key);
        file(entry.path, QString())->uncomment(entry.line, goneComment);
    }
    m_state.set(command);
}

void HarvestedPackage::addEntry(const HarvestedCommand &command)
{
    const QString search = m_shared.isEmpty() ? QString() : attribute("search", m_shared);
    const QString path = m_path + "/Control/" + fileNameOf(command.group) + '.' + m_locale + ".xml";
    const QString title = command.title.isEmpty() ? command.key : command.title;
    QString content;
    if (!command.summary.isEmpty())
        content += "    <summary>" + command.summary.toHtmlEscaped() + "</summary>\n";
    const QString icon = writeIcon(command);
    if (!icon.isEmpty())
        content += "    <icon" + attribute("source", icon) + "/>\n";
    const QString tag = "  <vidtip" + attribute("key", command.key) + attribute("title", title);
    file(path, "<vidtips" + attribute("locale", m_locale) + search + '>')
        ->append(content.isEmpty() ? tag + "/>\n" : tag + ">\n" + content + "  </vidtip>\n");
    m_added << command.key;
}

void HarvestedPackage::addKeyData(const HarvestedCommand &command)
{
    const QString text =
        "  <key" + attribute("name", command.key) + attribute("shortcut", command.shortcut) + "/>\n";
    file(m_folder + '/' + m_name + ".keys.xml", "<vidtipkeys>")->append(text);
}

void HarvestedPackage::compare(const HarvestedCommand &before, const HarvestedCommand &now)
{
    const Change changes[] = {{now.key, "title", before.title, now.title},
                              {now.key, "summary", before.summary, now.summary},
                              {now.key, "shortcut", before.shortcut, now.shortcut}};
    for (const Change &change : changes) {
        if (change.before == change.now)
            continue;
        m_changes << change;
        const Entry entry = change.what == "shortcut" ? m_keyData.value(now.key) : m_entries.value(now.key);
        if (entry.line > 0)
            file(entry.path, QString())->comment(entry.line, changeComment(change));
    }
}

void HarvestedPackage::markGone(const QVector<HarvestedCommand> &commands)
{
    QSet<QString> present;
    for (const HarvestedCommand &command : commands)
        present.insert(command.key);
    for (const QString &key : m_state.keys()) {
        if (present.contains(key) || !m_entries.contains(key))
            continue;
        m_gone << key;
        const Entry entry = m_entries.value(key);
        file(entry.path, QString())->comment(entry.line, goneComment);
    }
}

// A picture that is there may be an author's.
QString HarvestedPackage::writeIcon(const HarvestedCommand &command)
{
    if (command.icon.isEmpty())
        return {};
    const QString name = fileNameOf(command.key);
    QDir().mkpath(m_path + "/Resources");
    for (const char *ending : {".png", "@2x.png"}) {
        const QString target = m_path + "/Resources/" + name + ending;
        if (!QFileInfo::exists(target) && !QFile::copy(command.icon + ending, target))
            m_problem = QString("cannot write %1").arg(target);
    }
    return name + ".png";
}

QString HarvestedPackage::write()
{
    for (const auto &file : m_files) {
        const QString problem = file.second->write();
        if (!problem.isEmpty())
            return problem;
    }
    return m_state.write();
}
