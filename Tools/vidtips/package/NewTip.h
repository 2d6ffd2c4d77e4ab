#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

class Content;
struct ControlFile;

/** Adds an entry to the control files of a package. */
class NewTip
{
public:
    explicit NewTip(const QString &key)
        : m_key(key)
    {
    }

    /**
     * Adds it to the files of @p content for each of @p locales; without these, to the first file that is
     * written in en_US or for every locale. Returns what is wrong, or nothing. Where the content cannot take
     * it, nothing changes.
     */
    QString add(const Content &content, const QStringList &locales);

    /** Where the entries are now: "file:line". */
    const QStringList &places() const { return m_places; }

private:
    QString choose(const Content &content, const QStringList &locales,
                   QVector<const ControlFile *> &files) const;
    QString textWith(const ControlFile &file) const;
    QString entryFor(const ControlFile &file) const;

    QString m_key;
    QStringList m_places;
};
