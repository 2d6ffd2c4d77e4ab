#include "CatalogueCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"
#include "strings/CatalogueName.h"
#include "strings/TextSource.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QLocale>
#include <QtCore/QTranslator>

CatalogueCheck::CatalogueCheck(const QString &sourceLocale)
    : m_sourceLocale(QLocale(sourceLocale).name())
{
}

CatalogueCheck::~CatalogueCheck() = default;

void CatalogueCheck::run(const Content &content, Findings &findings)
{
    collectLocales(content);
    for (const ControlFile &file : content.controlFiles()) {
        if (TextSource::textsOf(file).isEmpty())
            continue;
        for (const QString &locale : qAsConst(m_locales))
            checkFile(content, file, locale, findings);
    }
}

void CatalogueCheck::collectLocales(const Content &content)
{
    for (const ControlFile &file : content.controlFiles()) {
        if (file.isAdmitted && !file.locale().isEmpty())
            m_locales << QLocale(file.locale()).name();
    }
    for (const Package &package : content.packages()) {
        const QDir folder(package.path + '/' + Content::catalogues.defaultPath);
        for (const QString &name :
             folder.entryList({CatalogueName::of("*", "qm"), CatalogueName::of("*", "ts")}, QDir::Files))
            m_locales << QLocale(CatalogueName::localeOf(name)).name();
    }
    m_locales.removeDuplicates();
    m_locales.removeAll(m_sourceLocale);
    m_locales.removeAll("C");
    m_locales.sort();
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
                     QString("the texts of this file are not translated: there is no %1").arg(name));
}

// Every file with texts misses the same catalogue, which needs telling once.
void CatalogueCheck::reportUnbuilt(const QString &source, Findings &findings)
{
    if (m_unbuilt.contains(source))
        return;
    m_unbuilt << source;
    findings.add("VT702", source, {},
                 QString("%1.qm is not built from this file").arg(QFileInfo(source).completeBaseName()));
}

const QTranslator *CatalogueCheck::translator(const QString &path, Findings &findings)
{
    const auto known = m_translators.find(path);
    if (known != m_translators.end())
        return known->second.get();
    auto loaded = std::make_unique<QTranslator>();
    if (!loaded->load(path)) {
        findings.add("VT703", path, {}, "the catalogue does not load");
        loaded.reset();
    }
    return (m_translators[path] = std::move(loaded)).get();
}

void CatalogueCheck::checkTexts(const ControlFile &file, const QString &catalogue, const QString &locale,
                                Findings &findings)
{
    const QTranslator *const texts = translator(catalogue, findings);
    if (!texts)
        return;
    for (const TranslatableText &text : TextSource::textsOf(file)) {
        if (texts->translate(text.context.toUtf8().constData(), text.source.toUtf8().constData()).isEmpty())
            findings.add("VT704", text.file, text.position,
                         QString("\"%1\" is not translated in %2").arg(text.source, locale));
    }
}
