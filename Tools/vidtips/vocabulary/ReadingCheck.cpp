#include "ReadingCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"
#include "shared/Nearest.h"
#include "shared/Vocabulary.h"

#include <QtCore/QDirIterator>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

namespace {

struct Names
{
    QStringList elements;
    QStringList attributes = Vocabulary::entryAttributes;

    void add(const VocabularyElement &element)
    {
        elements << element.name;
        attributes << element.attributeNames();
        for (const VocabularyElement &child : element.elements)
            add(child);
    }
};

void checkLine(const QString &file, const QString &text, int line, const Names &names, Findings &findings)
{
    static const QRegularExpression reading(
        R"(\b(childElement|childElementList|attribute|hasAttribute)\s*\(\s*(["'])([\w.-]+)\2\s*\))");
    const int comment = text.indexOf("//");
    for (auto matches = reading.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const bool isElement = match.captured(1).startsWith("child");
        const QStringList &known = isElement ? names.elements : names.attributes;
        const QString name = match.captured(3);
        if (known.contains(name) || (comment >= 0 && comment < match.capturedStart()))
            continue;
        const QString nearest = Nearest::to(name, known);
        findings.add(
            "VT615", file, {line, match.capturedStart(3) + 1},
            QString("the %1 \"%2\" is read, which the schema does not have%3")
                .arg(isElement ? "element" : "attribute", name,
                     nearest.isEmpty() ? QString() : QString(": did you mean \"%1\"?").arg(nearest)));
    }
}

void checkFolder(const QString &folder, const Names &names, Findings &findings)
{
    QDirIterator files(folder, {"*.qml", "*.js"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile code(QFileInfo(files.next()).canonicalFilePath());
        if (!code.open(QIODevice::ReadOnly))
            continue;
        for (int line = 1; !code.atEnd(); ++line)
            checkLine(code.fileName(), QString::fromUtf8(code.readLine()), line, names, findings);
    }
}

// The schemas that lie beside user interfaces: one that is named may be for several.
QStringList schemasIn(const Content &content)
{
    QStringList schemas;
    for (const ControlFile &file : content.controlFiles()) {
        for (const XmlNode *entry : file.entries()) {
            const QString schema = Vocabulary::pathFor(content, file, entry);
            const QFileInfo interface(content.find(file, entry, Content::fullUserInterface));
            if (file.isAdmitted && !schema.isEmpty()
                && QFileInfo(schema).path() == QFileInfo(interface.canonicalFilePath()).path())
                schemas << schema;
        }
    }
    schemas.removeDuplicates();
    return schemas;
}

} // namespace

void ReadingCheck::run(const Content &content, Findings &findings)
{
    for (const QString &path : schemasIn(content)) {
        const Vocabulary vocabulary = Vocabulary::read(path);
        if (!vocabulary.isUsable())
            continue;
        Names names;
        names.add(vocabulary.tip());
        checkFolder(QFileInfo(path).path(), names, findings);
    }
}
