#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QLocale>
#include <QtCore/QString>

#include <optional>

namespace Vidtips {

/**
 * Remembers which control files parsed without an error, to tell which need no parsing for a key.
 *
 * No content is kept: a file counts as known only as long as its bytes have the checksum that they had when
 * it was parsed, so its bytes must be read each time. In doubt a file is not ruled out. GUI thread only.
 */
class VTParseRecord
{
public:
    /** A file as it was read. */
    struct File
    {
        File(const QString &filePath, const QByteArray &content);

        QString path;
        QByteArray bytes;
        QByteArray checksum; ///< of the bytes
    };

    /** The most bytes of a file that are looked at here; a larger one is never ruled out. */
    static constexpr qint64 sizeLimit = 1024 * 1024;

    /** Remembers that @p file parsed to an element whose locale attribute is @p localeName. */
    void remember(const File &file, const QString &localeName);

    /** Returns whether parsing @p file can neither give an entry with @p key nor report anything. */
    bool rulesOut(const File &file, const QString &key) const;

    /** Returns whether @p file parsed before, to entries for another locale than @p locale. */
    bool isOfOtherLocale(const File &file, const QLocale &locale) const;

private:
    struct Entry
    {
        QByteArray checksum;
        bool isLiteral; ///< whether ASCII text in the parsed document stands in the bytes as well
        std::optional<QLocale> locale; ///< the one that is served; without it, all are
    };

    const Entry *find(const File &file) const;

    QHash<QString, Entry> m_entries;
};

} // namespace Vidtips
