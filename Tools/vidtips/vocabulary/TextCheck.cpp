#include "TextCheck.h"

#include "ShortcutName.h"
#include "findings/Finding.h"
#include "shared/Content.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QTextCodec>

#include <algorithm>

namespace {

constexpr int longestShown = 24;

// The offsets of what begins like a placeholder and is none.
QVector<int> wrongPlaces(const QString &text)
{
    QVector<int> places;
    for (int at = text.indexOf("%("); at >= 0; at = text.indexOf("%(", at + 1)) {
        if (!TextCheck::problemWith(text, at).isEmpty())
            places << at;
    }
    return places;
}

} // namespace

QString TextCheck::problemWith(const QString &text, int offset)
{
    static const QRegularExpression right("\\G%\\([-_a-zA-Z0-9]+\\)s");
    static const QRegularExpression closed("\\G%\\(([^()%\\n]*)\\)");
    static const QRegularExpression name("^[-_a-zA-Z0-9]+$");
    if (right.match(text, offset).hasMatch())
        return {};
    const QRegularExpressionMatch match = closed.match(text, offset);
    if (!match.hasMatch()) {
        static const QRegularExpression word("\\G%\\([-_a-zA-Z0-9]*");
        const QString written = word.match(text, offset).captured().left(longestShown);
        return QString("\"%1\" is not filled in: write \"%2)s\"").arg(written, written);
    }
    const QString written = match.captured().left(longestShown);
    if (!name.match(match.captured(1)).hasMatch())
        return QString(
                   "\"%1\" is not filled in: a name is made of the letters a to z, digits, \"-\" and \"_\"")
            .arg(written);
    return QString("\"%1\" is not filled in: write \"%1s\"").arg(written);
}

namespace {

// Placeholders as other programs write them.
void addForeignPlaceholders(const QString &text, QVector<TextMistake> &mistakes)
{
    static const QRegularExpression named("%\\{\\s*([-\\w]+)\\s*\\}s?|%\\s+\\(\\s*([-\\w]+)\\s*\\)s\\b");
    static const QRegularExpression numbered("(?<![\\d%])%[1-9](?![\\w%])");
    for (auto matches = named.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        mistakes << TextMistake{"VT116", match.capturedStart(),
                                QString("\"%1\" is not filled in: write \"%(%2)s\"")
                                    .arg(match.captured(), match.captured(1) + match.captured(2))};
    }
    for (auto matches = numbered.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        mistakes << TextMistake{
            "VT116", match.capturedStart(),
            QString("\"%1\" is not filled in: write \"%(name)s\", with the name of a value")
                .arg(match.captured())};
    }
}

// Letters of UTF-8 that were taken for two or three of Windows, such as "\u00C3\u00A4" for "\u00E4". Only
// those that stand in no language's words.
void addMisreadLetters(const QString &text, QVector<TextMistake> &mistakes)
{
    static const QRegularExpression misread(
        "\u00C3[\u0080-\u009F\u00A1-\u00BF\u0152\u0153\u0160\u0161\u0178\u017D\u017E\u0192\u02C6\u02DC\u2013-"
        "\u203A"
        "\u20AC\u2122]|\u00C2[\u00A1-\u00BF]|\u00E2\u20AC[\u0080-\u009F\u00A1-"
        "\u00BF\u0153\u02DC\u201C\u201D\u2122\u00A6]?");
    const QRegularExpressionMatch match = misread.match(text);
    const QByteArray bytes = QTextCodec::codecForName("windows-1252")->fromUnicode(match.captured());
    if (match.hasMatch())
        mistakes << TextMistake{"VT120", match.capturedStart(),
                                QString("\"%1\" was \"%2\" before the text was read in another encoding")
                                    .arg(match.captured(), QString::fromUtf8(bytes))};
}

} // namespace

QVector<TextMistake> TextCheck::mistakesIn(const QString &text)
{
    QVector<TextMistake> mistakes;
    for (const int at : wrongPlaces(text))
        mistakes << TextMistake{"VT116", at, problemWith(text, at)};
    addForeignPlaceholders(text, mistakes);
    addMisreadLetters(text, mistakes);
    return mistakes;
}

void TextCheck::run(const Content &content, Findings &findings)
{
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted)
            continue;
        for (const XmlNode *entry : file.entries())
            checkNode(file, *entry, findings);
        checkContexts(file, findings);
    }
}

// Where nothing in a file is translated, nothing is missing.
void TextCheck::checkContexts(const ControlFile &file, Findings &findings)
{
    const auto entries = file.entries();
    const auto isTranslated = [](const XmlNode *entry) { return !entry->attribute("context").isEmpty(); };
    if (!file.locale().isEmpty() || std::none_of(entries.cbegin(), entries.cend(), isTranslated))
        return;
    for (const XmlNode *entry : entries) {
        if (!isTranslated(entry))
            findings.add(
                "VT710", file.path, entry->position,
                QString("the tip \"%1\" is not translated: it has no \"context\", as others of this file")
                    .arg(entry->attribute("key")));
    }
}

void TextCheck::checkNode(const ControlFile &file, const XmlNode &node, Findings &findings)
{
    for (const XmlAttribute &attribute : node.attributes) {
        for (const TextMistake &mistake : mistakesIn(attribute.value))
            findings.add(mistake.code, file.path, attribute.position, mistake.message);
        const QString misspelt =
            attribute.name == "shortcut" ? ShortcutName::problemWith(attribute.value) : QString();
        if (!misspelt.isEmpty())
            findings.add("VT121", file.path, attribute.position, misspelt);
    }
    for (const XmlText &text : node.texts) {
        // The file's own characters, which entities make other than the text, tell the place.
        const QString written = file.document.text().mid(text.offset, text.end - text.offset);
        for (const TextMistake &mistake : mistakesIn(written))
            findings.add(mistake.code, file.path, file.document.positionAt(text.offset + mistake.offset),
                         mistake.message);
    }
    for (const auto &child : node.children)
        checkNode(file, *child, findings);
}
