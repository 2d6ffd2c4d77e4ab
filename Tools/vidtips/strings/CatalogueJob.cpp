#include "CatalogueJob.h"

#include "CatalogueName.h"
#include "QmlTextSource.h"
#include "QtTool.h"
#include "shared/Content.h"
#include "shared/Places.h"
#include "shared/SavedFile.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace {

QStringList codeFiles(const Package &package)
{
    QStringList files;
    QDirIterator walk(package.path, {"*.qml", "*.js"}, QDir::Files, QDirIterator::Subdirectories);
    while (walk.hasNext())
        files << walk.next();
    files.sort();
    return files;
}

// Appends the package's texts; returns what keeps a file from being read whole. Without the texts of that
// file their translations would count as vanished.
QString readTexts(const Content &content, const Package &package, QVector<TranslatableText> &texts)
{
    for (const ControlFile &file : content.controlFiles()) {
        if (file.package != package.path || !file.isAdmitted)
            continue;
        if (!file.document.error().isEmpty())
            return QString("%1: %2").arg(Places::shown(file.path, file.document.errorPosition()),
                                         file.document.error());
        texts += TextSource::textsOf(file);
    }
    return QmlTextSource::read(codeFiles(package), texts);
}

// The folder in which the library looks, by the first control file that has a say in it.
QString folderOf(const Content &content, const Package &package)
{
    for (const ControlFile &file : content.controlFiles()) {
        const QString attribute = Content::catalogues.attribute;
        if (file.package == package.path && file.document.root() && file.document.root()->find(attribute))
            return QDir(package.path).absoluteFilePath(file.document.root()->attribute(attribute));
    }
    return package.path + '/' + Content::catalogues.defaultPath;
}

// The other packages whose files this one's entries use.
QStringList sharedFolders(const Content &content, const Package &package)
{
    QStringList folders;
    for (const ControlFile &file : content.controlFiles()) {
        if (file.package != package.path)
            continue;
        for (const QString &location : content.locations(file)) {
            for (const Package &other : content.packages()) {
                if (other.path == location && location != package.path)
                    folders << folderOf(content, other);
            }
        }
    }
    folders.removeDuplicates();
    return folders;
}

QStringList localesIn(const QString &folder)
{
    QStringList locales;
    for (const QString &name :
         QDir(folder).entryList({CatalogueName::of("*", "ts")}, QDir::Files, QDir::Name))
        locales << CatalogueName::localeOf(name);
    return locales;
}

} // namespace

QString CatalogueJobs::plan(const Content &content, const QStringList &locales)
{
    for (const Package &package : content.packages()) {
        QString problem = planPackage(content, package, locales);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString CatalogueJobs::planPackage(const Content &content, const Package &package, const QStringList &locales)
{
    const QString folder = folderOf(content, package);
    QVector<TranslatableText> texts;
    QString unread = readTexts(content, package, texts);
    if (!unread.isEmpty())
        return unread;
    for (const QString &locale : locales.isEmpty() ? localesIn(folder) : locales) {
        CatalogueJob job;
        job.package = package.name;
        job.locale = locale;
        job.translations = QDir(folder).absoluteFilePath(CatalogueName::of(locale, "ts"));
        job.catalogue = QDir(folder).absoluteFilePath(CatalogueName::of(locale, "qm"));
        for (const QString &shared : sharedFolders(content, package))
            job.shared << QDir(shared).absoluteFilePath(CatalogueName::of(locale, "ts"));
        QString problem = planJob(texts, folder, job);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString CatalogueJobs::planJob(const QVector<TranslatableText> &texts, const QString &folder,
                               CatalogueJob job)
{
    TsFile file(job.locale, m_sourceLocale);
    const bool exists = QFileInfo::exists(job.translations);
    if (!exists && texts.isEmpty())
        return {};
    if (!exists && QFileInfo::exists(job.catalogue)) {
        m_skipped << job.catalogue;
        return {};
    }
    QString problem = exists ? file.read(job.translations) : QString();
    if (!problem.isEmpty())
        return problem;
    job.changes = file.merge(texts, folder);
    if (job.locale == m_pseudoLocale) {
        if (!file.pseudotranslate())
            return QString("%1 has translations, which are kept: choose another locale for --pseudo")
                .arg(Places::shown(job.translations));
        job.changes.untranslated = 0;
    }
    job.xml = file.toXml();
    m_jobs.append(job);
    return {};
}

QString CatalogueJobs::write() const
{
    for (const CatalogueJob &job : m_jobs) {
        QFile current(job.translations);
        if (current.open(QIODevice::ReadOnly) && current.readAll() == job.xml)
            continue;
        const QString folder = QFileInfo(job.translations).path();
        if (!QDir().mkpath(folder))
            return QString("cannot make the folder: %1").arg(folder);
        const QString problem = SavedFile::write(job.translations, job.xml);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

QString CatalogueJobs::release() const
{
    const QString lrelease = QtTool::find("lrelease");
    if (lrelease.isEmpty())
        return "lrelease is missing; it comes with Qt's Linguist tools";
    for (const CatalogueJob &job : m_jobs) {
        QString problem = releaseJob(lrelease, job);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

// One catalogue is asked for all texts of a tip, so it needs those of the user interface that the package
// shares.
QString CatalogueJobs::releaseJob(const QString &lrelease, const CatalogueJob &job) const
{
    QStringList arguments{"-silent", job.translations};
    for (const QString &shared : job.shared) {
        if (QFileInfo::exists(shared))
            arguments << shared;
    }
    const QString unfinished = job.catalogue + ".new";
    QString problem = QtTool::run(lrelease, arguments + QStringList{"-qm", unfinished});
    if (problem.isEmpty()) {
        QFile::remove(job.catalogue);
        if (!QFile::rename(unfinished, job.catalogue))
            problem = QString("cannot write %1").arg(job.catalogue);
    }
    QFile::remove(unfinished);
    return problem;
}
