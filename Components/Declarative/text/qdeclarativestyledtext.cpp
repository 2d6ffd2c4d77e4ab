#include "qdeclarativestyledtext_p.h"

#include <QtCore/QRegularExpression>

QDeclarativeStyledText::QDeclarativeStyledText(const QString &markup, const QFont &font)
    : markup(markup)
    , font(font)
{
    int position = 0;
    while (position < markup.size()) {
        const QChar c = markup.at(position);
        if (c == QLatin1Char('<')) {
            position = readTag(position);
        } else if (c == QLatin1Char('&')) {
            position = readEntity(position);
        } else {
            // Lines are broken by tags only.
            if (c != QLatin1Char('\n'))
                appendText(c);
            ++position;
        }
    }
}

int QDeclarativeStyledText::readTag(int start)
{
    const int end = markup.indexOf(QLatin1Char('>'), start);
    if (end < 0) {
        appendText(markup.mid(start));
        return markup.size();
    }
    QString content = markup.mid(start + 1, end - start - 1).trimmed();
    const bool closes = content.startsWith(QLatin1Char('/'));
    if (closes)
        content.remove(0, 1);
    if (content.endsWith(QLatin1Char('/')))
        content.chop(1);
    int nameEnd = 0;
    while (nameEnd < content.size() && content.at(nameEnd).isLetterOrNumber())
        ++nameEnd;
    const QString name = content.left(nameEnd).toLower();
    if (closes)
        closeTag(name);
    else
        openTag(name, content.mid(nameEnd));
    return end + 1;
}

int QDeclarativeStyledText::readEntity(int start)
{
    static const struct
    {
        QLatin1String name;
        QChar character;
    } entities[] = {
        {QLatin1String("&amp;"), QLatin1Char('&')},    {QLatin1String("&lt;"), QLatin1Char('<')},
        {QLatin1String("&gt;"), QLatin1Char('>')},     {QLatin1String("&quot;"), QLatin1Char('"')},
        {QLatin1String("&nbsp;"), QChar(QChar::Nbsp)},
    };
    const QStringRef rest = markup.midRef(start);
    for (const auto &entity : entities) {
        if (rest.startsWith(entity.name)) {
            appendText(entity.character);
            return start + entity.name.size();
        }
    }
    appendText(QStringLiteral("&"));
    return start + 1;
}

void QDeclarativeStyledText::openTag(const QString &name, const QString &attributes)
{
    if (name == QLatin1String("br")) {
        plain += QChar::LineSeparator;
        return;
    }
    const bool bold = name == QLatin1String("b");
    const bool italic = name == QLatin1String("i");
    const bool font = name == QLatin1String("font");
    if (!bold && !italic && !font)
        return;
    openTags.append({name, format});
    if (bold)
        format.setFontWeight(QFont::Bold);
    else if (italic)
        format.setFontItalic(true);
    else
        applyFont(attributes);
}

void QDeclarativeStyledText::closeTag(const QString &name)
{
    // Tags have to nest: one that is closed out of order stays open.
    if (openTags.isEmpty() || openTags.constLast().name != name)
        return;
    format = openTags.takeLast().outerFormat;
}

void QDeclarativeStyledText::applyFont(const QString &attributes)
{
    static const QRegularExpression attribute(QStringLiteral("(\\w+)\\s*=\\s*(['\"]?)([^'\"\\s]*)\\2"));
    static const qreal scales[] = {0.7, 0.8, 1.0, 1.2, 1.5, 2.0, 2.4};
    auto matches = attribute.globalMatch(attributes);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const QString name = match.captured(1).toLower();
        const QString value = match.captured(3);
        if (name == QLatin1String("color")) {
            const QColor color(value);
            if (color.isValid())
                format.setForeground(color);
        } else if (name == QLatin1String("size")) {
            const int size = value.toInt();
            if (size < 1 || size > 7)
                continue;
            // Left to the font, which refuses this, with a message, where it has no size in points.
            QFont scaled = font;
            scaled.setPointSizeF(font.pointSizeF() * scales[size - 1]);
            if (scaled.pointSizeF() > 0)
                format.setFontPointSize(scaled.pointSizeF());
        }
    }
}

void QDeclarativeStyledText::appendText(const QString &text)
{
    const int start = plain.size();
    plain += text;
    if (format.isEmpty())
        return;
    if (!ranges.isEmpty()) {
        QTextLayout::FormatRange &last = ranges.last();
        if (last.start + last.length == start && last.format == format) {
            last.length += text.size();
            return;
        }
    }
    ranges.append({start, text.size(), format});
}
