#include "TipProblems.h"

#include "check/ContentCheck.h"
#include "check/FileCheck.h"
#include "check/QmlCheck.h"
#include "findings/FindingReport.h"
#include "shared/Content.h"
#include "shared/Places.h"
#include "stage/PreviewKeys.h"
#include "stage/PreviewSettings.h"
#include "stage/PreviewStage.h"
#include "strings/CatalogueName.h"
#include "strings/TranslationCheck.h"

#include <QtCore/QLocale>
#include <QtCore/QTranslator>

#include <algorithm>

TipProblems::TipProblems(const Content &content, const PreviewSettings &settings)
    : m_content(content)
    , m_settings(settings)
{
    FileCheck files;
    ContentCheck::run(content, files, m_findings);
}

QString TipProblems::userInterface(const PreviewKey &tip) const
{
    const FileCategory &category =
        m_settings.isSimple ? Content::simpleUserInterface : Content::fullUserInterface;
    return tip.file ? m_content.find(*tip.file, tip.entry, category) : QString();
}

// Of the catalogue that translates this tip, and what it is built from.
void TipProblems::checkTranslations(const PreviewKey &tip, Findings &findings) const
{
    if (!tip.file)
        return;
    const QString locale = QLocale(m_settings.locale).name();
    const auto find = [&](const QString &suffix) {
        return m_content.find(*tip.file, tip.entry, Content::catalogues, CatalogueName::of(locale, suffix));
    };
    const QString catalogue = find("qm");
    const QString translations = find("ts");
    const bool isForAll = tip.file->locale().isEmpty() && !tip.entry->attribute("context").isEmpty();
    if (!catalogue.isEmpty())
        TranslationCheck::load(catalogue, findings);
    else if (translations.isEmpty() && isForAll && locale != PreviewKeys::usualLocale)
        findings.add("VT701", tip.file->path, tip.entry->position,
                     QString("the texts of this tip are shown as they are written: there is no %1")
                         .arg(CatalogueName::of(locale, "qm")));
    if (translations.isEmpty())
        return;
    if (catalogue.isEmpty() && isForAll)
        TranslationCheck::reportUnbuilt(translations, findings);
    TranslationCheck::checkFile(translations, findings);
}

void TipProblems::setKey(const QString &key)
{
    QVector<Finding> found = ContentCheck::ofTip(m_content, m_findings, key, m_settings.locale);
    Findings others;
    const PreviewKey tip = PreviewKeys::find(m_content, key, m_settings.locale);
    m_place = tip.file ? Finding{"VT405", tip.file->path, tip.entry->position, {}} : Finding();
    m_isRefused = QmlCheck::importsWhatCannotBe(userInterface(tip), others);
    checkTranslations(tip, others);
    found += others.sorted();
    // Other locales and the other user interface are not on the screen.
    const QStringList elsewhere{"VT304", m_settings.isSimple ? "VT402" : "VT403"};
    m_found.clear();
    for (const Finding &finding : qAsConst(found)) {
        if (!elsewhere.contains(finding.code))
            m_found << finding;
    }
}

QVector<Finding> TipProblems::all(PreviewStage &stage) const
{
    return m_isRefused ? m_found : m_found + stage.problems() + missingClips(stage);
}

// Where the tip names one, that is found already.
QVector<Finding> TipProblems::missingClips(const PreviewStage &stage) const
{
    QVector<Finding> missing;
    for (const QString &clip : stage.missingClips()) {
        const auto isOfClip = [&](const Finding &finding) {
            return finding.message.contains('"' + clip + '"');
        };
        if (clip.contains("%(") || std::any_of(m_found.cbegin(), m_found.cend(), isOfClip))
            continue;
        missing << m_place;
        missing.last().message = QString("the clip \"%1\" of this tip is missing").arg(clip);
    }
    return missing;
}

QStringList TipProblems::lines(PreviewStage &stage) const
{
    QStringList lines;
    const QVector<Finding> problems = all(stage);
    for (int i = 0; i < problems.size(); ++i) {
        const Finding &problem = problems.at(i);
        lines << (i < m_found.size()
                      ? FindingReport::line(problem)
                      : Places::shown(problem.file, problem.position) + ": " + problem.message);
    }
    return lines;
}
