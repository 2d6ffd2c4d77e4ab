#pragma once

#include "TextSource.h"
#include "TsFile.h"

#include <QtCore/QStringList>

class Content;
struct Package;

/** The translations of one package into one locale: what they are made of, and the files they are written to.
 */
struct CatalogueJob
{
    QString package; ///< Name.
    QString locale;
    QString translations; ///< Path of the .ts file.
    QString catalogue; ///< Path of the .qm file, where the library looks for it.
    QStringList shared; ///< The .ts files of the packages that this one searches, whose texts its catalogue
                        ///< needs too.
    QByteArray xml; ///< The new content of the .ts file.
    TsFile::Changes changes;
};

/** Plans and does the work of the command "strings". */
class CatalogueJobs
{
public:
    /** Texts are written in @p sourceLocale. */
    explicit CatalogueJobs(const QString &sourceLocale)
        : m_sourceLocale(sourceLocale)
    {
    }

    /** Translates into @p locale by machine: see PseudoText. */
    void setPseudoLocale(const QString &locale) { m_pseudoLocale = locale; }

    /**
     * Makes a job for each package that has texts, and each of @p locales; with none of these, for the
     * locales that the package has translations for. Writes nothing. Returns what is wrong, or nothing.
     */
    QString plan(const Content &content, const QStringList &locales);

    /** Writes the translations that changed; returns what is wrong, or nothing. */
    QString write() const;

    /** Builds the catalogues with Qt's lrelease; returns what is wrong, or nothing. */
    QString release() const;

    const QVector<CatalogueJob> &jobs() const { return m_jobs; }

    /**
     * The catalogues that are there without the translations that they were built from, as in packages of
     * others. They are left alone: what could be built anew would hold no translation.
     */
    const QStringList &skipped() const { return m_skipped; }

private:
    QString planPackage(const Content &content, const Package &package, const QStringList &locales);
    QString planJob(const QVector<TranslatableText> &texts, const QString &folder, CatalogueJob job);
    QString releaseJob(const QString &lrelease, const CatalogueJob &job) const;

    QString m_sourceLocale;
    QString m_pseudoLocale;
    QVector<CatalogueJob> m_jobs;
    QStringList m_skipped;
};
