#include "TipProblems.h"

#include "check/ContentCheck.h"
#include "check/FileCheck.h"
#include "check/QmlCheck.h"
#include "findings/FindingReport.h"
#include "shared/Content.h"
#include "shared/Places.h"
#include "stage/PreviewSettings.h"
#include "stage/PreviewStage.h"

TipProblems::TipProblems(const Content &content, const PreviewSettings &settings)
    : m_content(content)
    , m_settings(settings)
{
    FileCheck files;
    ContentCheck::run(content, files, m_findings);
}

QString TipProblems::userInterface(const QString &key) const
{
    const FileCategory &category =
        m_settings.isSimple ? Content::simpleUserInterface : Content::fullUserInterface;
    for (const ControlFile &file : m_content.controlFiles()) {
        for (const XmlNode *entry : file.entries()) {
            if (file.isAdmitted && entry->attribute("key") == key)
                return m_content.find(file, entry, category);
        }
    }
    return {};
}

void TipProblems::setKey(const QString &key)
{
    QVector<Finding> found = ContentCheck::ofTip(m_content, m_findings, key, m_settings.locale);
    Findings imports;
    m_isRefused = QmlCheck::importsWhatCannotBe(userInterface(key), imports);
    found += imports.sorted();
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
    return m_isRefused ? m_found : m_found + stage.problems();
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
