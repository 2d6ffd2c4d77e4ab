#include "XmlHints.h"

#include "XmlDocument.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QVector>

namespace {

struct Place
{
    QString words;
    QString text;
    int offset = 0;
    const XmlNode *open = nullptr;

    // The parser has read the character that it does not take.
    QChar unexpected() const { return offset > 0 ? text.at(offset - 1) : QChar(); }
    QString before() const { return text.left(qMax(0, offset)); }
    int line(int at) const { return text.leftRef(at).count('\n') + 1; }
};

using Hint = QString (*)(const Place &place);

bool isTypographicQuote(QChar c)
{
    return c.category() == QChar::Punctuation_InitialQuote || c.category() == QChar::Punctuation_FinalQuote
        || c == QChar(0x201E) || c == QChar(0x201A);
}

// Where the last thing began that is still open, be it a comment or a section of characters.
int openSince(const Place &place, const char *begin, const char *end)
{
    const QString before = place.before();
    const int from = before.lastIndexOf(begin);
    return from >= 0 && before.indexOf(end, from) < 0 ? from : -1;
}

QString comment(const Place &place)
{
    const int from = openSince(place, "<!--", "-->");
    if (from < 0)
        return {};
    if (place.words.startsWith("Premature"))
        return QString("the comment of line %1 is not closed: write \"-->\"").arg(place.line(from));
    return "a comment cannot hold \"--\"";
}

QString section(const Place &place)
{
    const int from = openSince(place, "<![CDATA[", "]]>");
    return from < 0 ? QString()
                    : QString("the section of line %1 is not closed: write \"]]>\"").arg(place.line(from));
}

QString openElement(const Place &place)
{
    if (!place.open)
        return {};
    return QString("\"%1\" of line %2 is not closed: write \"</%1>\"")
        .arg(place.open->name)
        .arg(place.open->position.line);
}

QString ampersand(const Place &place)
{
    const int at = place.before().lastIndexOf('&');
    static const QRegularExpression known("\\G&(lt|gt|amp|quot|apos)\\b");
    const QRegularExpressionMatch match = known.match(place.text, qMax(0, at));
    if (at < 0)
        return {};
    return match.hasMatch() ? QString("write \"&%1;\" with its semicolon").arg(match.captured(1))
                            : QString("write \"&amp;\" for \"&\"");
}

QString entity(const Place &)
{
    return "write the character itself: XML knows only &amp; &lt; &gt; &quot; and &apos;";
}

QString reference(const Place &)
{
    return "XML has no such character: leave it out";
}

QString value(const Place &place)
{
    if (isTypographicQuote(place.unexpected()))
        return "write straight quotes (\") around a value";
    return "write the value in quotes, name=\"value\"";
}

QString equals(const Place &)
{
    return "write an attribute as name=\"value\"";
}

QString behindValue(const Place &place)
{
    static const QRegularExpression word("<([^\\s<>]*)[^<>]*<$");
    const QRegularExpressionMatch tag = word.match(place.before());
    if (tag.hasMatch())
        return QString("close the tag \"<%1\" by \">\", or write \"&lt;\" for \"<\" where none is meant")
            .arg(tag.captured(1));
    static const QRegularExpression attribute("\\G([-\\w.:]+)\\s*=");
    const QRegularExpressionMatch match = attribute.match(place.text, qMax(0, place.offset - 1));
    const bool isJoined = place.offset > 1 && place.text.at(place.offset - 2) == '"';
    if (isJoined && match.hasMatch())
        return QString("write a blank before \"%1\"").arg(match.captured(1));
    return isJoined ? "write \"&quot;\" for a quotation mark inside a value, or close the value before"
                    : QString();
}

// A "<" inside a value: where the value began on another line, its closing quote is what is missing.
QString lessThan(const Place &place)
{
    const QString before = place.before().chopped(1);
    const int opened = qMax(before.lastIndexOf("=\""), before.lastIndexOf("='"));
    if (opened >= 0 && place.line(opened) < place.line(before.size()))
        return QString("the value that begins in line %1 is not closed").arg(place.line(opened));
    return "write \"&lt;\" for \"<\"";
}

QString unexpectedCharacter(const Place &place)
{
    const QChar c = place.unexpected();
    if (c == '<')
        return lessThan(place);
    if (c.unicode() < ' ' && !QString("\t\n\r").contains(c))
        return QString("delete the control character U+%1").arg(c.unicode(), 4, 16, QChar('0'));
    const bool isBehindTag = place.offset > 1 && place.text.at(place.offset - 2) == '<';
    return isBehindTag ? "write \"&lt;\" for \"<\"; a tag has no blank behind it" : QString();
}

QString twice(const Place &)
{
    return "write the attribute once";
}

QString behindEnd(const Place &)
{
    return "the document element is closed before this";
}

QString declaration(const Place &)
{
    return "delete what stands before \"<?xml\", be it a blank line";
}

QString prefix(const Place &)
{
    return "leave the prefix out, or declare it by an attribute \"xmlns:…\"";
}

} // namespace

QString XmlHints::hintFor(const QString &words, const QString &text, int offset, const XmlNode *open)
{
    // The beginnings of what the parser says; of several with the same one, the first that has a hint counts.
    static const QVector<QPair<QString, Hint>> hints{
        {"Premature end", &comment},
        {"Premature end", &section},
        {"Premature end", &openElement},
        {"Opening and ending tag mismatch", &openElement},
        {"Expected '#'", &ampersand},
        {"Expected ';'", &ampersand},
        {"Entity ", &entity},
        {"Invalid character reference", &reference},
        {"Expected ''' or '\"'", &value},
        {"Expected '>' or '/'", &behindValue},
        {"Expected '>'", &comment},
        {"Expected '='", &equals},
        {"Unexpected ", &unexpectedCharacter},
        {"Attribute ", &twice},
        {"Extra content", &behindEnd},
        {"XML declaration not at start", &declaration},
        {"Namespace prefix", &prefix},
    };
    const Place place{words, text, qMin(offset, text.size()), open};
    for (const auto &candidate : hints) {
        const QString hint = words.startsWith(candidate.first) ? candidate.second(place) : QString();
        if (!hint.isEmpty())
            return hint;
    }
    return {};
}
