#include "CatalogueCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"
#include "shared/Places.h"
#include "strings/CatalogueName.h"
#include "strings/QmlTextSource.h"
#include "strings/TranslationCheck.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

namespace {

bool isTranslated(const QTranslator &texts, const TranslatableText &text)
{
    return !texts.translate(text.context.toUtf8().constData(), text.source.toUtf8().constData()).isEmpty();
}

// A catalogue whose name has the language alone is one that the library does not know.
QString otherName(const Content &content, const ControlFile &file, const QString &locale)
{
    for (const QString &folder : content.candidates(file, nullptr, Content::catalogues)) {
        for (const QString &name : QDir(folder).entryList({CatalogueName::of("*", "qm")}, QDir::Files)) {
            if (QLocale(CatalogueName::localeOf(name)).name() == locale)
                return QString(", and \"%1\" is not read").arg(name);
        }
    }
    return {};
}

} // namespace

CatalogueCheck::CatalogueCheck(const QString &sourceLocale)
    : m_sourceLocale(QLocale(sourceLocale).name())
{
}

CatalogueCheck::~CatalogueCheck() = default;

void CatalogueCheck::run(const Content &content, Findings &findings)
{
    m_locales = CatalogueName::localesIn(content);
    m_locales.removeAll(m_sourceLocale);
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.isAdmitted || file.entries().empty())
            continue;
        const QString own = QLocale(file.locale()).name();
        for (const QString &locale : qAsConst(m_locales)) {
            const bool hasTexts = !TextSource::textsOf(file).isEmpty();
            if (hasTexts)
                checkFile(content, file, locale, findings);
            // Tips that nobody translates are in one language with the words around them.
            if (hasTexts || own == locale)
                checkWords(content, file, locale, findings);
        }
    }
    reportMissing(findings);
}

void CatalogueCheck::checkFile(const Content &content, const ControlFile &file, const QString &locale,
                               Findings &findings)
{
    const Position place = file.document.root()->position;
    const QString name = CatalogueName::of(locale, "qm");
    const QString catalogue = content.find(file, nullptr, Content::catalogues, name);
    if (!catalogue.isEmpty()) {
        checkTexts(file, catalogue, locale, findings);
        return;
    }
    const QString source = content.find(file, nullptr, Content::catalogues, CatalogueName::of(locale, "ts"));
    if (!source.isEmpty())
        reportUnbuilt(source, findings);
    else
        findings.add("VT701", file.path, place,
                     QString("the texts of this file are not translated: there is no %1%2")
                         .arg(name, otherName(content, file, locale)));
}

// Every file with texts misses the same catalogue, which needs telling once.
void CatalogueCheck::reportUnbuilt(const QString &source, Findings &findings)
{
    if (m_unbuilt.contains(source))
        return;
    m_unbuilt << source;
    TranslationCheck::reportUnbuilt(source, findings);
}

const QTranslator *CatalogueCheck::translator(const QString &path, Findings &findings)
{
    const auto known = m_translators.find(path);
    if (known != m_translators.end())
        return known->second.get();
    return (m_translators[path] = TranslationCheck::load(path, findings)).get();
}

void CatalogueCheck::checkTexts(const ControlFile &file, const QString &catalogue, const QString &locale,
                                Findings &findings)
{
    const QTranslator *const texts = translator(catalogue, findings);
    if (!texts)
        return;
    for (const TranslatableText &text : TextSource::textsOf(file)) {
        if (isTranslated(*texts, text))
            continue;
        Missing &missing = m_missing[{text.context, text.source}];
        const QPair<QString, Position> place(text.file, text.position);
        if (!missing.places.contains(place))
            missing.places << place;
        if (!missing.locales.contains(locale))
            missing.locales << locale;
    }
}

// A text that many tips use is one thing to translate.
void CatalogueCheck::reportMissing(Findings &findings) const
{
    for (auto it = m_missing.cbegin(); it != m_missing.cend(); ++it) {
        const auto &first = it->places.constFirst();
        QStringList others;
        for (const auto &place : it->places.mid(1))
            others << (place.first == first.first ? QString("line %1").arg(place.second.line)
                                                  : Places::shown(place.first, {place.second.line, 0}));
        const QString also =
            others.isEmpty() ? QString() : QString("; it also stands in %1").arg(others.join(", "));
        findings.add(
            "VT704", first.first, first.second,
            QString("\"%1\" is not translated in %2%3").arg(it.key().second, it->locales.join(", "), also));
    }
}

const QVector<TranslatableText> &CatalogueCheck::wordsOf(const QString &userInterface)
{
    const QString folder = QFileInfo(userInterface).path();
    const auto known = m_words.find(folder);
    if (known != m_words.end())
        return known->second;
    QVector<TranslatableText> words;
    for (const QFileInfo &info : QDir(folder).entryInfoList({"*.qml", "*.js"}, QDir::Files, QDir::Name)) {
        QFile code(info.canonicalFilePath());
        if (info.isFile() && code.open(QIODevice::ReadOnly))
            words += QmlTextSource::scan(info.canonicalFilePath(), QString::fromUtf8(code.readAll()), false);
    }
    return m_words[folder] = words;
}

// Tips are in one language with the words around them only where their catalogue has these words.
void CatalogueCheck::checkWords(const Content &content, const ControlFile &file, const QString &locale,
                                Findings &findings)
{
    const QString userInterface = content.find(file, nullptr, Content::fullUserInterface);
    if (userInterface.isEmpty() || wordsOf(userInterface).isEmpty())
        return;
    const QString name = CatalogueName::of(locale, "qm");
    const QString catalogue = content.find(file, nullptr, Content::catalogues, name);
    if (!catalogue.isEmpty()) {
        checkWordsIn(catalogue, userInterface, locale, findings);
        return;
    }
    const QString source = content.find(file, nullptr, Content::catalogues, CatalogueName::of(locale, "ts"));
    if (!source.isEmpty())
        reportUnbuilt(source, findings);
    else if (!findings.contains(file.path, {"VT701"}))
        findings.add(
            "VT705", file.path, file.document.root()->positionOf("locale"),
            QString(
                "the words of the user interface, such as \"%1\", are not translated in %2: there is no %3")
                .arg(wordsOf(userInterface).constFirst().source, locale, name));
}

void CatalogueCheck::checkWordsIn(const QString &catalogue, const QString &userInterface,
                                  const QString &locale, Findings &findings)
{
    const QTranslator *const texts = translator(catalogue, findings);
    const QString identity = catalogue + ' ' + userInterface;
    if (!texts || m_checkedWords.contains(identity))
        return;
    m_checkedWords << identity;
    for (const TranslatableText &word : wordsOf(userInterface)) {
        if (!isTranslated(*texts, word))
            findings.add("VT705", word.file, word.position,
                         QString("\"%1\" is not translated in %2: %3 lacks it")
                             .arg(word.source, locale, Places::shown(catalogue)));
    }
}
