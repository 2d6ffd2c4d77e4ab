#include "KeyName.h"

#include <QtCore/QVector>

namespace {

bool isQuote(const QString &character)
{
    static const QString quotes(
        "\"'`\u2018\u2019\u201A\u201B\u201C\u201D\u201E\u201F\u00AB\u00BB\u2039\u203A");
    return quotes.contains(character);
}

} // namespace

QString KeyName::problemWith(const QString &key)
{
    if (key.isEmpty())
        return "the key is empty";
    for (const uint c : key.toUcs4()) {
        const QString character = QString::fromUcs4(&c, 1);
        if (QChar::isSpace(c))
            return QString("the key \"%1\" holds a blank").arg(key);
        if (isQuote(character))
            return QString("the key \"%1\" holds a quotation mark, %2").arg(key, character);
        if (!QChar::isPrint(c))
            return QString("the key \"%1\" holds the invisible character U+%2")
                .arg(QString(key).remove(character), QString::number(c, 16).rightJustified(4, '0'));
    }
    return {};
}
