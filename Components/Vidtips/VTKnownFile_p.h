#pragma once

#include "VTBrokenFiles_p.h"
#include "VTEntryParser_p.h"
#include "VTFileStamp_p.h"

#include <QtCore/QByteArray>
#include <QtCore/QLocale>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <memory>
#include <optional>

namespace Vidtips {

class VTLookUp;

/**
 * A control file that is looked at again and again, and what is known of it from the last time.
 *
 * Of a file that was read without an error its keys and its locale are kept, never content, and what proves
 * that its bytes are still those: its stamp, or a checksum where stamps tell nothing. A file with an error is
 * read each time, so that what the parser reports of it is reported each time. GUI thread only.
 */
class VTKnownFile
{
public:
    /** Knows nothing of the control file at @p path yet. */
    explicit VTKnownFile(const QString &path);

    const QString &path() const { return m_path; }

    /**
     * Returns the document element with the entries that the file has with @p key, or null. It may be null
     * where there is no entry with the key, or where the file is for another locale than @p locale.
     */
    std::unique_ptr<VTXmlElement> entries(const QString &key, const QLocale &locale, VTLookUp &lookUp);

    /** Returns the keys of the entries in their order, as far as the file can be read. */
    QStringList keys(VTLookUp &lookUp);

    /** Returns what kept the last reading from the end of the file. */
    const VTFileError &error() const { return m_error; }

private:
    /** What was found in a file that was read without an error. */
    struct Knowledge
    {
        QStringList keys;
        QVector<uint> hashes; ///< of the keys
        QString locale; ///< the name of the one that is served; empty where all are
        VTFileStamp stamp; ///< null while it would prove nothing
        QByteArray checksum; ///< of the bytes; where there is no stamp
        quint64 lookUp = 0; ///< the last one that found the file so
    };

    struct Content; // the file as it lies there now

    VTEntryParser::Result read(const QString &key, const QLocale &locale, const VTLookUp &lookUp);
    VTEntryParser::Result parse(Content &content, const QString &key, const VTLookUp &lookUp);
    bool isUnchanged(VTLookUp &lookUp);
    bool isUnchanged(const Content &content, const VTLookUp &lookUp);
    bool mayHave(const QString &key, const QLocale &locale) const;

    QString m_path;
    QByteArray m_encodedPath;
    std::optional<Knowledge> m_known;
    VTFileError m_error; // none while anything is known
};

} // namespace Vidtips
