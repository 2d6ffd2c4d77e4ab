#include "VTKnownFile_p.h"

#include "VTControlFile_p.h"
#include "VTLocale_p.h"
#include "VTLookUp_p.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QFile>

namespace Vidtips {

struct VTKnownFile::Content
{
    explicit Content(const QString &path)
        : file(path)
        , isReadable(openRegular(file))
    {
    }

    /** Takes what tells whether the file changes later, and the bytes unless they are too many. */
    void take(bool isChecksumNeeded);

    QFile file;
    const bool isReadable;
    VTFileStamp stamp;
    QByteArray bytes;
    QByteArray checksum;
};

// A large file is parsed piece by piece, and known by its stamp only.
void VTKnownFile::Content::take(bool isChecksumNeeded)
{
    constexpr qint64 sizeLimit = 1024 * 1024;
    stamp = VTFileStamp::settledOf(file);
    if (file.size() > sizeLimit)
        return;
    bytes = file.readAll();
    if (isChecksumNeeded || stamp.isNull())
        checksum = QCryptographicHash::hash(bytes, QCryptographicHash::Md5);
}

VTKnownFile::VTKnownFile(const QString &path)
    : m_path(path)
    , m_encodedPath(QFile::encodeName(path))
{
}

std::unique_ptr<VTXmlElement> VTKnownFile::entries(const QString &key, const QLocale &locale,
                                                   VTLookUp &lookUp)
{
    if (isUnchanged(lookUp) && !mayHave(key, locale))
        return nullptr;
    return read(key, locale, lookUp).root;
}

QStringList VTKnownFile::keys(VTLookUp &lookUp)
{
    return isUnchanged(lookUp) ? m_known->keys : read(QString(), QLocale::c(), lookUp).keys;
}

VTEntryParser::Result VTKnownFile::read(const QString &key, const QLocale &locale, const VTLookUp &lookUp)
{
    Content content(m_path);
    m_error = {};
    if (!content.isReadable) {
        m_known.reset();
        return {};
    }
    content.take(m_known && m_known->stamp.isNull());
    if (isUnchanged(content, lookUp) && !mayHave(key, locale))
        return {nullptr, m_known->keys, {}};
    return parse(content, key, lookUp);
}

VTEntryParser::Result VTKnownFile::parse(Content &content, const QString &key, const VTLookUp &lookUp)
{
    VTEntryParser parser(VTEntryParser::contentFormat, key);
    const bool isWhole = !content.bytes.isNull();
    VTEntryParser::Result parsed = isWhole ? parser.read(content.bytes) : parser.read(content.file);
    m_known.reset();
    m_error = VTFileError(content.file, parsed.error);
    if (!parsed.error.isEmpty())
        return parsed;
    const QString locale = parsed.root ? parsed.root->attribute(QStringLiteral("locale")) : QString();
    QVector<uint> hashes;
    for (const QString &entryKey : qAsConst(parsed.keys))
        hashes.append(qHash(entryKey));
    m_known = Knowledge{parsed.keys, hashes, locale, content.stamp, content.checksum, lookUp.number()};
    return parsed;
}

bool VTKnownFile::isUnchanged(VTLookUp &lookUp)
{
    if (!m_known || m_known->lookUp == lookUp.number())
        return m_known.has_value();
    if (m_known->stamp.isNull() || !(m_known->stamp == lookUp.stampOf(m_encodedPath)))
        return false;
    m_known->lookUp = lookUp.number();
    return true;
}

bool VTKnownFile::isUnchanged(const Content &content, const VTLookUp &lookUp)
{
    if (!m_known || m_known->checksum.isEmpty() || m_known->checksum != content.checksum)
        return false;
    m_known->lookUp = lookUp.number();
    if (!content.stamp.isNull()) {
        m_known->stamp = content.stamp;
        m_known->checksum.clear();
    }
    return true;
}

bool VTKnownFile::mayHave(const QString &key, const QLocale &locale) const
{
    return !key.isEmpty() && m_known->hashes.contains(qHash(key))
        && (m_known->locale.isEmpty() || localeNamed(m_known->locale) == locale);
}

} // namespace Vidtips
