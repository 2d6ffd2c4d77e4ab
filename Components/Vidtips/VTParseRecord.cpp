#include "VTParseRecord_p.h"

#include <QtCore/QCryptographicHash>

#include <algorithm>

namespace Vidtips {

namespace {

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

VTParseRecord::File::File(const QString &filePath, const QByteArray &content)
    : path(filePath)
    , bytes(content)
    , checksum(QCryptographicHash::hash(content, QCryptographicHash::Md5))
{
}

void VTParseRecord::remember(const File &file, const QString &localeName)
{
    if (find(file))
        return;
    Entry entry{file.checksum, isLiteral(file.bytes), {}};
    if (!localeName.isEmpty())
        entry.locale = QLocale(localeName);
    m_entries.insert(file.path, entry);
}

const VTParseRecord::Entry *VTParseRecord::find(const File &file) const
{
    const auto entry = m_entries.constFind(file.path);
    return entry != m_entries.cend() && entry->checksum == file.checksum ? &*entry : nullptr;
}

bool VTParseRecord::rulesOut(const File &file, const QString &key) const
{
    const Entry *const entry = find(file);
    return entry && entry->isLiteral && isLiteral(key) && !file.bytes.contains(key.toLatin1());
}

bool VTParseRecord::isOfOtherLocale(const File &file, const QLocale &locale) const
{
    const Entry *const entry = find(file);
    return entry && entry->locale && *entry->locale != locale;
}

} // namespace Vidtips
