#include "TextCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"

#include <QtCore/QRegularExpression>

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

void TextCheck::run(const Content &content, Findings &findings)
{
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted)
            continue;
        for (const XmlNode *entry : file.entries())
            checkNode(file, *entry, findings);
    }
}

void TextCheck::checkNode(const ControlFile &file, const XmlNode &node, Findings &findings)
{
    for (const XmlAttribute &attribute : node.attributes) {
        for (const int at : wrongPlaces(attribute.value))
            findings.add("VT116", file.path, attribute.position, problemWith(attribute.value, at));
    }
    for (const XmlText &text : node.texts) {
        // The file's own characters, which entities make other than the text, tell the place.
        const QString written = file.document.text().mid(text.offset, text.end - text.offset);
        for (const int at : wrongPlaces(written))
            findings.add("VT116", file.path, file.document.positionAt(text.offset + at),
                         problemWith(written, at));
    }
    for (const auto &child : node.children)
        checkNode(file, *child, findings);
}
