#pragma once

#include "EditedFile.h"
#include "HarvestState.h"
#include "HarvestedCommand.h"
#include "shared/Content.h"

#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <memory>

/**
 * The package that is made of a program's commands, and brought up to date with them. Entries that are there,
 * also pictures and key data, are never changed: what the program says otherwise stands in comments beside
 * them.
 */
class HarvestedPackage
{
public:
    /** A text of the program that is not what it was. */
    struct Change
    {
        QString key;
        QString what; ///< "title", "summary" or "shortcut".
        QString before;
        QString now;
    };

    /** The package @p name in the folder @p folder, for tips in @p locale. */
    HarvestedPackage(const QString &folder, const QString &name, const QString &locale);

    /** Takes the user interface of the package @p shared instead of one of its own. */
    void setShared(const QString &shared) { m_shared = shared; }

    QString path() const { return m_path; }

    /** Takes in what the program has; returns what is wrong, or nothing. */
    QString update(const QVector<HarvestedCommand> &commands);

    /** Tells whether there is an entry for @p key that has been there before. */
    bool hasTip(const QString &key) const { return m_entries.contains(key); }

    const QStringList &added() const { return m_added; }
    const QStringList &gone() const { return m_gone; }
    const QVector<Change> &changes() const { return m_changes; }

    /** How many commands were there before. */
    int kept() const { return m_kept; }

private:
    QString make();
    QString readEntries();
    QString readKeyData();
    void takeIn(const HarvestedCommand &command);
    void addEntry(const HarvestedCommand &command);
    void addKeyData(const HarvestedCommand &command);
    void compare(const HarvestedCommand &before, const HarvestedCommand &now);
    void markGone(const QVector<HarvestedCommand> &commands);
    QString writeIcon(const HarvestedCommand &command);
    EditedFile *file(const QString &path, const QString &root);
    QString write();

    struct Entry
    {
        QString path;
        int line = 0;
    };
    QString m_folder;
    QString m_name;
    QString m_path;
    QString m_locale;
    QString m_shared;
    HarvestState m_state;
    QMap<QString, Entry> m_entries;
    QMap<QString, Entry> m_keyData;
    std::map<QString, std::unique_ptr<EditedFile>> m_files;
    QStringList m_added;
    QStringList m_gone;
    QVector<Change> m_changes;
    QString m_problem;
    int m_kept = 0;
};
