#include "TranslationCheck.h"

#include "CatalogueName.h"
#include "TsFile.h"
#include "findings/Finding.h"
#include "shared/Content.h"
#include "shared/Places.h"
#include "shared/XmlDocument.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtCore/QTranslator>

namespace {

QString inCatalogue(const QTranslator &catalogue, const TsMessage &message)
{
    return catalogue.translate(message.context.toUtf8().constData(), message.source.toUtf8().constData(),
                               message.comment.toUtf8().constData(), message.isPlural ? 1 : -1);
}

bool isBuilt(const QTranslator &catalogue, const TsMessage &message)
{
    return !message.isTranslated() || message.isGone()
        || message.translations.contains(inCatalogue(catalogue, message));
}

QString whatIsOld(const QTranslator &catalogue, const TsMessage &message)
{
    const QString built = inCatalogue(catalogue, message);
    return built.isEmpty() ? QString("lacks \"%1\"").arg(message.source)
                           : QString("has \"%1\" for \"%2\"").arg(built, message.source);
}

// By what is in them: when files were written says nothing once they have been copied or checked out.
void compare(const QString &path, const TsFile &translations, const QTranslator &catalogue,
             Findings &findings)
{
    QVector<TsMessage> old;
    for (const TsMessage &message : translations.messages()) {
        if (!isBuilt(catalogue, message))
            old << message;
    }
    if (old.isEmpty())
        return;
    const QString others = old.size() > 1 ? QString(", and so on, %1 in all").arg(old.size()) : QString();
    findings.add(
        "VT707", path, {old.constFirst().line, 0},
        QString("%1.qm is older than this file: it %2%3")
            .arg(QFileInfo(path).completeBaseName(), whatIsOld(catalogue, old.constFirst()), others));
}

QStringList placeholdersIn(const QString &text)
{
    static const QRegularExpression placeholder("%\\([-_a-zA-Z0-9]+\\)s");
    QStringList found;
    for (auto matches = placeholder.globalMatch(text); matches.hasNext();)
        found << matches.next().captured();
    found.removeDuplicates();
    found.sort();
    return found;
}

// Of what a translator took for a word, or left out.
void comparePlaceholders(const QString &path, const TsFile &translations, Findings &findings)
{
    for (const TsMessage &message : translations.messages()) {
        const QStringList wanted = placeholdersIn(message.source);
        const QStringList written = placeholdersIn(message.translations.join(' '));
        if (!message.isTranslated() || message.isGone() || wanted == written)
            continue;
        const auto listed = [](const QStringList &names) {
            return names.isEmpty() ? QString("no placeholder") : '"' + names.join("\", \"") + '"';
        };
        findings.add("VT711", path, {message.line, 0},
                     QString("the translation of \"%1\" has %2 in place of %3")
                         .arg(message.source, listed(written), listed(wanted)));
    }
}

// A folder in other letters, or the package itself.
void reportStray(const Package &package, const QStringList &folders, Findings &findings)
{
    QDirIterator files(package.path, {CatalogueName::of("*", "qm"), CatalogueName::of("*", "ts")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QFileInfo file(files.next());
        if (!folders.contains(file.path()))
            findings.add("VT712", file.canonicalFilePath(), {},
                         QString("no catalogue is looked for here: move it to the folder \"%1\"")
                             .arg(Places::shown(folders.constLast())));
    }
}

bool reportBroken(const QString &path, Findings &findings)
{
    const XmlDocument document = XmlDocument::read(path);
    const XmlNode *const root = document.root();
    if (!document.isReadable())
        findings.add("VT708", path, {}, "the translations cannot be read");
    else if (!document.error().isEmpty())
        findings.add("VT708", path, document.errorPosition(), document.error());
    else if (!root || root->name != "TS")
        findings.add("VT708", path, root ? root->position : Position(),
                     QString("the document element of translations is \"TS\", not \"%1\"")
                         .arg(root ? root->name : QString()));
    else
        return false;
    return true;
}

} // namespace

void TranslationCheck::run(const Content &content, Findings &findings)
{
    for (const Package &package : content.packages()) {
        const QStringList folders = CatalogueName::foldersOf(content, package);
        reportStray(package, folders, findings);
        for (const QString &folder : folders) {
            const auto files = QDir(folder).entryInfoList({CatalogueName::of("*", "ts")}, QDir::Files);
            for (const QFileInfo &file : files)
                checkFile(file.canonicalFilePath(), findings);
        }
    }
}

std::unique_ptr<QTranslator> TranslationCheck::load(const QString &path, Findings &findings)
{
    auto catalogue = std::make_unique<QTranslator>();
    if (catalogue->load(path))
        return catalogue;
    findings.add("VT703", path, {}, "the catalogue does not load");
    return nullptr;
}

void TranslationCheck::reportUnbuilt(const QString &path, Findings &findings)
{
    findings.add("VT702", path, {},
                 QString("%1.qm is not built from this file").arg(QFileInfo(path).completeBaseName()));
}

void TranslationCheck::checkFile(const QString &path, Findings &findings)
{
    if (reportBroken(path, findings))
        return;
    TsFile translations({}, {});
    QTranslator catalogue;
    const QFileInfo file(path);
    if (!translations.read(path).isEmpty())
        return;
    comparePlaceholders(path, translations, findings);
    if (catalogue.load(file.path() + '/' + file.completeBaseName() + ".qm"))
        compare(path, translations, catalogue, findings);
}
