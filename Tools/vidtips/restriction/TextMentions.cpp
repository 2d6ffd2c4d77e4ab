#include "TextMentions.h"

#include <QtCore/QRegularExpression>

namespace {

// One line of a module, word for word.
void addLine(const QStringList &words, Position position, Mentions &mentions)
{
    const QString first = words.constFirst();
    const QString version = words.value(2);
    if (first == "plugin" || first == "classname")
        mentions.append({Mention::Plugin, {}, position});
    else if (first == "import" || first == "depends")
        mentions.append({Mention::Module, words.value(1), position, version.section('.', 0, 0).toInt(),
                         version.section('.', 1, 1).toInt()});
    else if (first != "module" && first != "typeinfo" && first != "designersupported" && words.size() > 1)
        mentions.append({Mention::Address, words.constLast(), position});
}

} // namespace

QStringList TextMentions::addressesInMarkup(const QString &text)
{
    static const QRegularExpression named(
        R"re((?:<img\b[^>]*?\ssrc\s*=\s*|\bdoc\s*\(\s*)(?:"([^"]*)"|'([^']*)'|([^\s"'>)]+)))re",
        QRegularExpression::CaseInsensitiveOption);
    QStringList addresses;
    auto matches = named.globalMatch(text);
    while (matches.hasNext())
        addresses << matches.next().capturedTexts().mid(1).join(QString());
    return addresses;
}

Mentions TextMentions::inModule(const QString &text)
{
    static const QRegularExpression blanks("\\s+");
    Mentions mentions;
    const QStringList lines = text.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QStringList words = lines.at(i).section('#', 0, 0).split(blanks, Qt::SkipEmptyParts);
        if (!words.isEmpty())
            addLine(words, {i + 1, 1}, mentions);
    }
    return mentions;
}

Mentions TextMentions::inBorders(const QString &text)
{
    static const QRegularExpression source("^\\s*source\\s*:\\s*\"?([^\"]*)\"?\\s*$");
    Mentions mentions;
    const QStringList lines = text.split('\n');
    for (int i = 0; i < lines.size(); ++i) {
        const QRegularExpressionMatch match = source.match(lines.at(i));
        if (match.hasMatch())
            mentions.append({Mention::Address, match.captured(1), {i + 1, match.capturedStart(1) + 1}});
    }
    return mentions;
}
