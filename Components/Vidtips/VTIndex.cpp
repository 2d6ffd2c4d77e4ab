#include "VTIndex.h"

#include "VTBrokenFiles_p.h"
#include "VTContext.h"
#include "VTControlFile_p.h"
#include "VTEntryParser_p.h"
#include "VTKnownFile_p.h"
#include "VTLocale_p.h"
#include "VTLookUp_p.h"
#include "VTShowLog_p.h"
#include "VTXmlElement.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QMap>
#include <QtCore/QPair>
#include <QtCore/QPointer>
#include <QtCore/QRegExp>
#include <QtCore/QSet>

#include <vector>

QT_WARNING_DISABLE_DEPRECATED

namespace Vidtips {

namespace {

QString packageSuffix(const VTContext &context)
{
    return context.get(PackageSuffix, QStringLiteral("vidtips")).toString();
}

/** Returns the attribute of key data that holds the shortcut for this platform alone. */
QString platformShortcut()
{
#if defined(Q_OS_WIN)
    return QStringLiteral("shortcut-windows");
#elif defined(Q_OS_MACOS)
    return QStringLiteral("shortcut-mac");
#else
    return QStringLiteral("shortcut-linux");
#endif
}

VTEntryParser entriesOf(const QString &key)
{
    return {VTEntryParser::contentFormat, key};
}

QString localeOf(const VTXmlElement *root)
{
    return root ? root->attribute(QStringLiteral("locale")) : QString();
}

/** Returns why the control file at @p path does not give the entry of @p key; empty when it has none. */
QString obstacleIn(const QString &path, const QString &key)
{
    QFile file(path);
    if (!openRegular(file))
        return QStringLiteral("cannot be read");
    const VTEntryParser::Result parsed = entriesOf(key).read(file);
    const int entries = parsed.root ? parsed.root->children().size() : 0;
    if (entries > 1)
        return QStringLiteral("has the key %1 times").arg(entries);
    if (entries == 1)
        return QStringLiteral("has it for %1").arg(localeOf(parsed.root.get()));
    return parsed.error.isEmpty() ? QString() : QStringLiteral("is malformed");
}

} // namespace

struct VIDTIPS_NO_EXPORT VTIndex::Private
{
    struct ControlFile
    {
        VTKnownFile content;
        int depth;
    };

    // What is known of the folder and package of the control file before: files come folder by folder, and
    // finding this out takes as long as reading a file.
    struct Place
    {
        QString folder;
        QString package;
        int depth;
    };
    struct PackageName
    {
        QString location;
        QString suffix;
        QString name;
    };

    int depthOf(const QString &controlFile, const QString &package);
    bool contains(const QString &path, int depth) const;
    void append(const QString &path, int depth);
    QString filesWithout(const QString &key) const;

    QPointer<VTContext> context;
    VTContext emptyContext; // stands in for a context that is gone
    std::vector<ControlFile> controlFiles;
    QSet<QPair<QString, int>> knownFiles;
    QMap<QString, QStringList> packages;
    VTBrokenFiles brokenFiles;
    bool inUpdate = false;
    QRegExp keySeparator{QStringLiteral("[,;\\s]+")};
    Place lastPlace;
    PackageName lastPackage;
};

int VTIndex::Private::depthOf(const QString &controlFile, const QString &package)
{
    const int slash = controlFile.lastIndexOf(QLatin1Char('/'));
    const QStringRef folder = controlFile.leftRef(slash);
    const bool isKnown = !folder.isEmpty() && folder == lastPlace.folder && package == lastPlace.package;
    if (isKnown)
        return lastPlace.depth;
    const int depth = depthInPackage(controlFile, package);
    if (depth > 0)
        lastPlace = {folder.toString(), package, depth};
    return depth;
}

bool VTIndex::Private::contains(const QString &path, int depth) const
{
    return knownFiles.contains({path, depth});
}

void VTIndex::Private::append(const QString &path, int depth)
{
    controlFiles.push_back({VTKnownFile(path), depth});
    knownFiles.insert({path, depth});
}

// Every file that has something to say of the key, and as many of the others as can be read in one line.
QString VTIndex::Private::filesWithout(const QString &key) const
{
    constexpr int readable = 20;
    QStringList files;
    int more = 0;
    for (const ControlFile &file : controlFiles) {
        const QString &path = file.content.path();
        const QString obstacle = key.isEmpty() ? QString() : obstacleIn(path, key);
        if (!obstacle.isEmpty())
            files.append(QStringLiteral("%1 (%2)").arg(path, obstacle));
        else if (files.size() < readable)
            files.append(path);
        else
            ++more;
    }
    if (more > 0)
        files.append(QStringLiteral("%1 more").arg(more));
    return files.isEmpty() ? QStringLiteral("there are none") : files.join(QLatin1String(", "));
}

VTIndex::VTIndex(VTContext *context, const QStringList &)
    : d(new Private)
{
    d->context = context;
}

VTIndex::~VTIndex() = default;

bool VTIndex::open()
{
    return true;
}

bool VTIndex::setup()
{
    if (context().get(ClearIndexOnSetup, true).toBool())
        clear();
    return true;
}

bool VTIndex::clear()
{
    return true;
}

bool VTIndex::close()
{
    return true;
}

bool VTIndex::remove()
{
    return true;
}

VTXmlElement *VTIndex::retrieve(const QString &key, const QLocale &locale, QString &directory, int &depth,
                                VTXmlElement *&root)
{
    VTLookUp lookUp;
    for (Private::ControlFile &file : d->controlFiles) {
        if (VTXmlElement *element = contentIn(file.content, key, locale, lookUp, root)) {
            const QString &path = file.content.path();
            depth = file.depth;
            directory = QFileInfo(path).absolutePath();
            qCDebug(showLog, "\"%s\" for %s: found in %s", qUtf8Printable(key), qUtf8Printable(locale.name()),
                    qUtf8Printable(path));
            return element;
        }
    }
    qCDebug(showLog, "\"%s\" for %s: not found; control files: %s", qUtf8Printable(key),
            qUtf8Printable(locale.name()), qUtf8Printable(d->filesWithout(key)));
    root = nullptr;
    return nullptr;
}

bool VTIndex::store(VTXmlElement *element, const QLocale &locale, const QString &controlFile, int depth)
{
    Q_UNUSED(element)
    Q_UNUSED(locale)
    if (!d->contains(controlFile, depth))
        d->append(controlFile, depth);
    return true;
}

void VTIndex::startUpdate()
{
    d->inUpdate = true;
}

void VTIndex::endUpdate()
{
    d->inUpdate = false;
}

bool VTIndex::isInUpdate()
{
    return d->inUpdate;
}

VTXmlElement *VTIndex::contentIn(VTKnownFile &file, const QString &key, const QLocale &locale,
                                 VTLookUp &lookUp, VTXmlElement *&root)
{
    root = key.isEmpty() ? nullptr : file.entries(key, locale, lookUp).release();
    d->brokenFiles.note(file.path(), file.error());
    if (!root)
        return nullptr;
    VTXmlElement *const element = entriesOf(key).firstEntry(root);
    if (!element || root->children().size() != 1) {
        delete root;
        root = nullptr;
        return nullptr;
    }
    const QString localeName = localeOf(root);
    if (!localeName.isEmpty() && localeNamed(localeName) != locale) {
        delete root;
        return nullptr;
    }
    loadKeyData(key, file.path(), element);
    element->setAttribute(QStringLiteral("VTLocation"), file.path());
    element->setAttribute(QStringLiteral("VTPackagName"), packageNameForLocation(file.path()));
    return element;
}

QStringList VTIndex::keys()
{
    VTLookUp lookUp;
    QStringList keys;
    for (Private::ControlFile &file : d->controlFiles) {
        keys << file.content.keys(lookUp);
        d->brokenFiles.note(file.content.path(), file.content.error());
    }
    return keys;
}

QStringList VTIndex::takeMessages()
{
    return d->brokenFiles.takeMessages();
}

void VTIndex::indexControlFile(const QString &controlFile, const QString &package)
{
    if (!controlFile.startsWith(package))
        return;
    const int depth = d->depthOf(controlFile, package);
    if (depth == outsidePackage || d->contains(controlFile, depth) || !startsWithVidtips(controlFile))
        return;
    d->append(controlFile, depth);
    mapControlFile(controlFile, package);
}

VTContext &VTIndex::context()
{
    return d->context ? *d->context : d->emptyContext;
}

const VTContext &VTIndex::context() const
{
    return d->context ? *d->context : d->emptyContext;
}

void VTIndex::mapControlFile(const QString &controlFile, const QString &package)
{
    Q_UNUSED(controlFile)
    const QString suffix = packageSuffix(context());
    if (d->lastPackage.name.isEmpty() || d->lastPackage.location != package
        || d->lastPackage.suffix != suffix)
        d->lastPackage = {package, suffix, packageNameForLocation(package)};
    QStringList &locations = d->packages[d->lastPackage.name];
    if (!locations.contains(package))
        locations << package;
}

VTXmlElement *VTIndex::load(const QString &key, const QString &controlFile, const QLocale &locale,
                            VTXmlElement *&root)
{
    VTKnownFile file(controlFile);
    VTLookUp lookUp;
    return contentIn(file, key, locale, lookUp, root);
}

void VTIndex::loadKeyData(const QString &key, const QString &controlFile, VTXmlElement *element)
{
    Q_UNUSED(controlFile)
    const QString keyDataFile = context().get(KeyDataFile, QString()).toString();
    if (key.isEmpty() || !element || keyDataFile.isEmpty())
        return;
    QFile file(keyDataFile);
    if (!openRegular(file))
        return;
    VTEntryParser parser(VTEntryParser::keyDataFormat, key);
    const VTEntryParser::Result parsed = parser.read(file);
    d->brokenFiles.note(keyDataFile, VTFileError(file, parsed.error));
    const VTXmlElement *const data = parser.firstEntry(parsed.root.get());
    if (!data)
        return;
    const QStringList names = data->attributeNames();
    for (const QString &name : names) {
        if (name != QLatin1String("name"))
            element->setAttribute(name, data->attribute(name));
    }
    if (data->hasAttribute(platformShortcut()))
        element->setAttribute(QStringLiteral("shortcut"), data->attribute(platformShortcut()));
}

QString VTIndex::packageNameForLocation(const QString &location) const
{
    const QString suffix = packageSuffix(context());
    QString path = location;
    while (!path.isEmpty()) {
        const QFileInfo info(path);
        if (info.isRoot())
            break;
        if (info.suffix() == suffix && info.isDir())
            return info.completeBaseName();
        const QString parent = info.absolutePath();
        if (parent == path)
            break;
        path = parent;
    }
    return {};
}

QStringList VTIndex::componentPathsForPackageNamed(const QString &name) const
{
    QStringList paths = d->packages.value(name);
    const QString extraPath = context().get(ExtraComponentPath, QVariant()).toString();
    if (!extraPath.isEmpty())
        paths << extraPath;
    return paths;
}

QStringList VTIndex::componentPathsForElement(const VTXmlElement *element, const QString &path) const
{
    if (!element)
        return {};
    QStringList paths = componentPathsForPackageNamed(element->attribute(QStringLiteral("VTPackagName")));
    if (const auto *parent = qobject_cast<const VTXmlElement *>(element->parent())) {
        const QString search = parent->attribute(QStringLiteral("search"));
        const QStringList names = search.isEmpty() ? QStringList() : search.split(d->keySeparator);
        for (const QString &name : names)
            paths << d->packages.value(name);
    }
    if (path.isEmpty())
        return paths;
    for (QString &entry : paths)
        entry = QDir(entry).absoluteFilePath(path);
    return paths;
}

int VTIndex::indexDataShouldGenerateElement(const QString &qName, const QXmlAttributes &, void *)
{
    const bool isStructure = qName == QLatin1String("vidtip") || qName == QLatin1String("vidtips");
    return isStructure ? VTXmlParser::GenerateElement : VTXmlParser::SkipElement;
}

} // namespace Vidtips
