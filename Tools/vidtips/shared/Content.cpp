#include "Content.h"

#include "Places.h"

#include <Vidtips/VTXmlElement.h>

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>

#include <algorithm>

using namespace Vidtips;

namespace {

const QString packageSuffix = QStringLiteral("vidtips");

bool isPackage(const QFileInfo &folder)
{
    return folder.suffix() == packageSuffix;
}

// Without the one permission nothing in it is listed, without the other nothing is opened.
bool isOpen(const QFileInfo &folder)
{
    return folder.isReadable() && folder.isExecutable();
}

QString categoryPath(const ControlFile &file, const XmlNode *entry, const FileCategory &category)
{
    const XmlNode *const holder = entry && entry->find(category.attribute) ? entry : file.document.root();
    const QString value = holder ? holder->attribute(category.attribute) : QString();
    return value.isEmpty() ? category.defaultPath : value;
}

} // namespace

const FileCategory Content::fullUserInterface{"ui", "ui/VidtipsUI.qml"};
const FileCategory Content::simpleUserInterface{"simple", "ui/SimpleTooltip.qml"};
const FileCategory Content::resources{"resources", "Resources"};
const FileCategory Content::catalogues{"l10n_name", "l10n"};

std::vector<const XmlNode *> ControlFile::entries() const
{
    std::vector<const XmlNode *> entries;
    if (!document.root() || document.root()->name != "vidtips")
        return entries;
    for (const auto &child : document.root()->children) {
        if (child->name == "vidtip" && !child->attribute("key").isEmpty())
            entries.push_back(child.get());
    }
    return entries;
}

bool ControlFile::hasKey(const QString &key) const
{
    const auto found = entries();
    return std::any_of(found.cbegin(), found.cend(),
                       [&](const XmlNode *entry) { return entry->attribute("key") == key; });
}

QString ControlFile::locale() const
{
    return document.root() ? document.root()->attribute("locale") : QString();
}

bool ControlFile::serves(const QString &locale) const
{
    return isAdmitted && (this->locale().isEmpty() || QLocale(this->locale()) == QLocale(locale));
}

Content::Content()
    : m_index(&m_context, {})
{
}

Content::~Content() = default;

QString Content::load(const QStringList &paths, const Progress &progress)
{
    m_arguments = paths;
    for (const QString &path : paths) {
        QString problem = addFolder(path);
        if (!problem.isEmpty())
            return problem;
    }
    for (size_t i = 0; i < m_files.size(); ++i) {
        if (progress)
            progress(int(i), int(m_files.size()));
        ControlFile &file = m_files[i];
        file.document = XmlDocument::read(file.path);
        if (!file.document.isReadable())
            m_unreadable << file.path;
        file.isAdmitted = admits(file);
        m_index.indexControlFile(file.path, file.package);
    }
    return {};
}

QString Content::loadWhole(const QStringList &paths)
{
    QString problem = load(paths);
    if (!problem.isEmpty() || m_unreadable.isEmpty())
        return problem;
    return QString("cannot read %1").arg(Places::shown(m_unreadable.constFirst()));
}

QString Content::addFolder(const QString &path)
{
    const QFileInfo folder(path);
    if (!folder.exists())
        return QString("no such folder: %1").arg(path);
    if (!folder.isDir())
        return QString("not a folder: %1").arg(path);
    if (!isOpen(folder))
        return QString("the folder cannot be %1: %2").arg(folder.isReadable() ? "entered" : "read", path);
    const QString canonical = folder.canonicalFilePath();
    if (isPackage(QFileInfo(canonical))) {
        addPackage(canonical);
        return {};
    }
    bool hasPackages = addDataPath(canonical);
    if (!hasPackages) {
        const auto inside = QDir(canonical).entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
        for (const QFileInfo &dataPath : inside)
            hasPackages = addDataPath(dataPath.canonicalFilePath()) || hasPackages;
    }
    if (!hasPackages)
        m_emptyFolders << canonical;
    return {};
}

bool Content::addDataPath(const QString &path)
{
    const QDir::Filters filters = QDir::Dirs | QDir::NoDotAndDotDot;
    const auto packages = QDir(path).entryInfoList({"*." + packageSuffix}, filters, QDir::Name);
    if (!packages.isEmpty() && !m_dataPaths.contains(path))
        m_dataPaths << path;
    for (const QFileInfo &package : packages) {
        if (package.isSymLink())
            m_links << package.absoluteFilePath();
        else if (!isOpen(package))
            m_unreadable << package.absoluteFilePath();
        else
            addPackage(package.canonicalFilePath());
    }
    return !packages.isEmpty();
}

void Content::addPackage(const QString &path)
{
    for (const Package &known : qAsConst(m_packages)) {
        if (known.path == path)
            return;
    }
    m_packages.append({m_index.packageNameForLocation(path), path});
    addControlFiles(m_packages.constLast());
}

void Content::addControlFiles(const Package &package)
{
    const QFileInfo folder(package.controlFolder());
    if (folder.isDir() && !isOpen(folder)) {
        m_unreadable << folder.filePath();
        return;
    }
    const QDir::Filters filters = QDir::Files | QDir::NoDotAndDotDot;
    const auto files = QDir(folder.filePath()).entryInfoList({"*.xml"}, filters, QDir::Name);
    for (const QFileInfo &info : files) {
        if (info.isSymLink()) {
            m_links << info.absoluteFilePath();
            continue;
        }
        ControlFile file;
        file.path = info.canonicalFilePath();
        file.package = package.path;
        m_files.push_back(std::move(file));
    }
}

// An index of its own tells by the package whether it admitted the file.
bool Content::admits(const ControlFile &file)
{
    VTIndex index(&m_context, {});
    index.indexControlFile(file.path, file.package);
    return !index.componentPathsForPackageNamed(index.packageNameForLocation(file.package)).isEmpty();
}

QStringList Content::filesBesidePackages() const
{
    QStringList folders = m_dataPaths;
    for (const QString &argument : m_arguments) {
        const QString folder = QFileInfo(argument).canonicalFilePath();
        if (!isPackage(QFileInfo(folder)))
            folders << folder;
    }
    folders.removeDuplicates();
    QStringList found;
    for (const QString &folder : qAsConst(folders)) {
        for (const QFileInfo &file : QDir(folder).entryInfoList({"*.xml"}, QDir::Files, QDir::Name))
            found << file.canonicalFilePath();
    }
    found.removeDuplicates();
    return found;
}

QStringList Content::keyDataFiles() const
{
    QStringList found;
    for (const QString &path : filesBesidePackages()) {
        const XmlDocument document = XmlDocument::read(path);
        if (document.root() && document.root()->name == "vidtipkeys")
            found << path;
    }
    return found;
}

bool Content::knows(const QString &name) const
{
    return !m_index.componentPathsForPackageNamed(name).isEmpty();
}

QStringList Content::locations(const ControlFile &file) const
{
    VTXmlElement root;
    auto *const entry = new VTXmlElement(&root);
    entry->setAttribute("VTPackagName", m_index.packageNameForLocation(file.path));
    if (file.document.root())
        root.setAttribute("search", file.document.root()->attribute("search"));
    return m_index.componentPathsForElement(entry, QString());
}

QStringList Content::candidates(const ControlFile &file, const XmlNode *entry, const FileCategory &category,
                                const QString &fileName) const
{
    const QString place = categoryPath(file, entry, category);
    QStringList paths;
    for (const QString &location : locations(file)) {
        const QString path = QDir(location).absoluteFilePath(place);
        paths << (fileName.isEmpty() ? path : QDir(path).absoluteFilePath(fileName));
    }
    return paths;
}

QString Content::find(const ControlFile &file, const XmlNode *entry, const FileCategory &category,
                      const QString &fileName) const
{
    for (const QString &path : candidates(file, entry, category, fileName)) {
        if (QFileInfo::exists(path))
            return QFileInfo(path).absoluteFilePath();
    }
    return {};
}
