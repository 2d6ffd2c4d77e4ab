#pragma once

#include "XmlDocument.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>

#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>
#include <memory>
#include <vector>

/** One file of a control folder. */
struct ControlFile
{
    QString path; ///< Canonical.
    QString package; ///< Canonical path of the package's folder.
    XmlDocument document;
    bool isAdmitted = false; ///< Whether the library takes it into its index.

    /** The entries that the library can find: children of the document element that have a key. */
    std::vector<const XmlNode *> entries() const;

    /** Whether one of the entries has @p key. */
    bool hasKey(const QString &key) const;

    /** The "locale" attribute; empty for a file that serves every locale. */
    QString locale() const;

    /** Whether the library finds its entries for @p locale. */
    bool serves(const QString &locale) const;
};

/** A package folder. */
struct Package
{
    QString name;
    QString path; ///< Canonical.

    /** The folder that is searched for control files. */
    QString controlFolder() const { return path + "/Control"; }
};

/** Where in a package files of a kind are looked for; see Content::candidates(). */
struct FileCategory
{
    QString attribute; ///< Attribute of the entry or of the document element that names the place.
    QString defaultPath;
};

/**
 * The content that lies in the folders given on the command line, as the library would load it.
 *
 * A folder may be a package, a data path that holds packages, or hold data paths in turn.
 */
class Content
{
public:
    using Progress = std::function<void(int done, int total)>;

    static const FileCategory fullUserInterface;
    static const FileCategory simpleUserInterface;
    static const FileCategory resources;
    static const FileCategory catalogues;

    Content();
    ~Content();

    /**
     * Finds the packages in the folders @p paths and reads their control files. Returns what is wrong with
     * the arguments; empty where nothing is.
     */
    QString load(const QStringList &paths, const Progress &progress = {});

    /** Does the same, and counts what cannot be read in these folders as wrong. */
    QString loadWhole(const QStringList &paths);

    /** The folders that were named. */
    const QStringList &arguments() const { return m_arguments; }

    const QVector<Package> &packages() const { return m_packages; }
    const std::vector<ControlFile> &controlFiles() const { return m_files; }

    /** The folders that hold packages, in the order in which the host would be given them. */
    const QStringList &dataPaths() const { return m_dataPaths; }

    /** The folders among the arguments in which no package was found. */
    const QStringList &emptyFolders() const { return m_emptyFolders; }

    /** Package folders and control files that are symbolic links, which the library skips. */
    const QStringList &links() const { return m_links; }

    /** Package folders, control folders and control files that cannot be read. */
    const QStringList &unreadable() const { return m_unreadable; }

    /** The XML files in the argument folders and data paths themselves, outside packages. */
    QStringList filesBesidePackages() const;

    /** Those of them whose document element is "vidtipkeys". */
    QStringList keyDataFiles() const;

    /** The index, filled as a host's would be. */
    const Vidtips::VTIndex &index() const { return m_index; }

    /** Tells whether the library knows the package @p name. */
    bool knows(const QString &name) const;

    /** Returns the folders that the library searches for files of the entries in @p file, in order. */
    QStringList locations(const ControlFile &file) const;

    /** Returns the paths that are tried for @p fileName, or for the place itself where that is empty. */
    QStringList candidates(const ControlFile &file, const XmlNode *entry, const FileCategory &category,
                           const QString &fileName = QString()) const;

    /** Returns the first candidate that exists; empty where none does. */
    QString find(const ControlFile &file, const XmlNode *entry, const FileCategory &category,
                 const QString &fileName = QString()) const;

private:
    QString addFolder(const QString &path);
    bool addDataPath(const QString &path);
    void addPackage(const QString &path);
    void addControlFiles(const Package &package);
    bool admits(const ControlFile &file);

    VTContext m_context;
    Vidtips::VTIndex m_index;
    QStringList m_arguments;
    QStringList m_dataPaths;
    QStringList m_emptyFolders;
    QStringList m_links;
    QStringList m_unreadable;
    QVector<Package> m_packages;
    std::vector<ControlFile> m_files;
};
