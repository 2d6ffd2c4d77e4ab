#include "VTParseRecord_p.h"

#include <QtCore/QCryptographicHash>

#include <algorithm>

namespace Vidtips {

namespace {

QByteArray checksumOf(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5);
}

/** Whether the key stands in a file as it is: nothing in it can be written in another way than by references.
 */
bool isLiteral(const QString &key)
{
    return std::all_of(key.cbegin(), key.cend(), [](QChar character) {
        return character > QLatin1Char(' ') && character < QChar(0x7f)
            && !QStringLiteral("&<>\"'").contains(character);
    });
}

/** Whether ASCII text in the parsed document stands in the bytes as well. */
bool isLiteral(const QByteArray &bytes)
{
    // The characters of markup have zero bytes in UTF-16 and UTF-32.
    if (bytes.contains('\0') || bytes.contains("&#") || bytes.contains("<!DOCTYPE"))
        return false;
    const QByteArray declaration = bytes.left(qMax(0, bytes.indexOf("?>"))).toLower();
    return !declaration.contains("encoding") || declaration.contains("\"utf-8\"")
        || declaration.contains("'utf-8'");
}

} // namespace

void VTParseRecord::remember(const QString &path, const QByteArray &bytes, const QString &localeName)
{
    m_entries.insert(path, {checksumOf(bytes), localeName});
}

const VTParseRecord::Entry *VTParseRecord::find(const QString &path, const QByteArray &bytes) const
{
    const auto entry = m_entries.constFind(path);
    return entry != m_entries.cend() && entry->checksum == checksumOf(bytes) ? &*entry : nullptr;
}

bool VTParseRecord::rulesOut(const QString &path, const QByteArray &bytes, const QString &key) const
{
    return isLiteral(key) && isLiteral(bytes) && !bytes.contains(key.toLatin1()) && find(path, bytes);
}

bool VTParseRecord::isOfOtherLocale(const QString &path, const QByteArray &bytes, const QLocale &locale) const
{
    const Entry *const entry = find(path, bytes);
    return entry && !entry->localeName.isEmpty() && QLocale(entry->localeName) != locale;
}

} // namespace Vidtips
