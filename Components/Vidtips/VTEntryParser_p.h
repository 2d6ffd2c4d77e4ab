#pragma once

#include "VTXmlElement.h"
#include "VTXmlParser.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

QT_BEGIN_NAMESPACE
class QIODevice;
QT_END_NAMESPACE

namespace Vidtips {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

/** Reads the entries that a file has for one key. */
class VTEntryParser
{
public:
    /** What a kind of file is made of. */
    struct Format
    {
        const char *documentElement;
        const char *entry;
        const char *keyAttribute; ///< of an entry
    };
    static constexpr Format contentFormat{"vidtips", "vidtip", "key"}; ///< of control files
    static constexpr Format keyDataFormat{"vidtipkeys", "key", "name"}; ///< of the key-data file

    /** What a file gave. */
    struct Result
    {
        std::unique_ptr<VTXmlElement> root; ///< the document element's object, or null
        QStringList
            keys; ///< of what lies in it as an entry does, in order; entries without a key are left out
        QString error; ///< line, column and reason of what ended the reading; empty for the end of the file
    };

    /** Makes a parser for the entries with @p key in a file of the kind @p format, which must outlive it. */
    VTEntryParser(const Format &format, const QString &key);

    /**
     * Reads @p file, which is open, to its end or its first error. There are objects for the document element
     * and for the entries with the key, complete. The root is null as well where an entry is the document
     * element itself.
     */
    Result read(QIODevice &file);

    /** Reads a file that consists of @p bytes in the same way, and faster. */
    Result read(const QByteArray &bytes);

    /** Returns the first entry of @p root, or null when its first child is none. */
    VTXmlElement *firstEntry(const VTXmlElement *root) const;

private:
    Result read(const QXmlInputSource &source);
    static int filterByKey(const QString &qName, const QXmlAttributes &atts, void *parser);

    const Format &m_format;
    const QString m_key;
};

QT_WARNING_POP

} // namespace Vidtips
