#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/** A new package: control file, picture, user interface and texts to translate. */
class PackageSkeleton
{
public:
    /** Makes the package @p name in the folder @p folder. */
    PackageSkeleton(const QString &folder, const QString &name)
        : m_folder(folder)
        , m_name(name)
    {
    }

    /** Takes the user interface of the package @p shared instead of one of its own. */
    void setShared(const QString &shared) { m_shared = shared; }

    /** The package's folder. */
    QString path() const { return m_folder + '/' + m_name + ".vidtips"; }

    /** The key of the first tip. */
    QString firstKey() const;

    /** Returns why @p name cannot be a package's, or nothing. */
    static QString problemWith(const QString &name);

    /** Writes the package; returns what is wrong, or nothing. Where it fails, it leaves nothing behind. */
    QString write();

    /**
     * Writes only the user interface into the package's folder, which there is; nothing where another package
     * has it. Returns what is wrong, or nothing.
     */
    QString writeUserInterface();

    /** The files that were written, relative to the package's folder. */
    const QStringList &files() const { return m_files; }

private:
    QString writeAll();
    QString writeTemplate(const QString &resource, const QString &file);
    QString writeFile(const QString &file, const QByteArray &content);
    QString writePicture(const QString &file);

    QString m_folder;
    QString m_name;
    QString m_shared;
    QStringList m_files;
};
