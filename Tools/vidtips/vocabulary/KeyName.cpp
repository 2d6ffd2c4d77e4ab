#include "KeyName.h"

namespace {

bool isQuote(QChar c)
{
    static const QString quotes(
        "\"'`\u2018\u2019\u201A\u201B\u201C\u201D\u201E\u201F\u00AB\u00BB\u2039\u203A");
    return quotes.contains(c);
}

} // namespace

QString KeyName::problemWith(const QString &key)
{
    for (const QChar c : key) {
        if (c.isSpace())
            return QString("the key \"%1\" holds a blank").arg(key);
        if (isQuote(c))
            return QString("the key \"%1\" holds a quotation mark, %2").arg(key, c);
        if (!c.isPrint())
            return QString("the key \"%1\" holds the invisible character U+%2")
                .arg(QString(key).remove(c))
                .arg(c.unicode(), 4, 16, QChar('0'));
    }
    return {};
}
