#include "Trial.h"

#include "ContrastCheck.h"
#include "DirectionCheck.h"
#include "FitCheck.h"
#include "PressCheck.h"
#include "ShownTip.h"
#include "SourceCheck.h"
#include "shared/Content.h"
#include "stage/PreviewLook.h"
#include "stage/PreviewStage.h"
#include "stage/StageClock.h"

#include <Vidtips/VTWidget.h>

#include <QtCore/QFileInfo>
#include <QtCore/QLocale>

#include <algorithm>

namespace {

constexpr int untilSeen = 60; // milliseconds: what a user interface does once it is loaded
constexpr int untilGrown = 2000; // milliseconds

// The entry that the library shows for the tip, and its file.
const XmlNode *entryOf(const Content &content, const TrialTip &tip, const ControlFile *&found)
{
    for (const ControlFile &file : content.controlFiles()) {
        const bool serves = file.locale().isEmpty() || QLocale(file.locale()) == QLocale(tip.locale);
        if (!file.isAdmitted || !serves)
            continue;
        for (const XmlNode *entry : file.entries()) {
            found = &file;
            if (entry->attribute("key") == tip.key)
                return entry;
        }
    }
    return nullptr;
}

} // namespace

Trial::Trial(const Content &content, const QString &keyData, const Report &report)
    : m_content(content)
    , m_keyData(keyData)
    , m_report(report)
    , m_clock(std::make_unique<StageClock>())
{
}

Trial::~Trial() = default;

QString Trial::userInterface(const Content &content, const TrialTip &tip)
{
    const ControlFile *file = nullptr;
    const XmlNode *const entry = entryOf(content, tip, file);
    const FileCategory &category = tip.isSimple ? Content::simpleUserInterface : Content::fullUserInterface;
    return entry ? QFileInfo(content.find(*file, entry, category)).canonicalFilePath() : QString();
}

void Trial::setStage(const TrialTip &tip)
{
    if (m_stage && m_staged.sharesStage(tip))
        return;
    m_staged = tip;
    m_stage.reset();
    PreviewLook::apply(tip.isDark);
    PreviewSettings settings;
    settings.locale = tip.locale;
    settings.keyData = m_keyData;
    settings.isSimple = tip.isSimple;
    settings.isDark = tip.isDark;
    m_stage = std::make_unique<PreviewStage>(m_content, settings);
}

// Where there is no user interface, the library shows what it can, and a finding of its own says so.
void Trial::show(const TrialTip &tip)
{
    const QString file = userInterface(m_content, tip);
    if (!QFileInfo(file).isFile())
        return;
    setStage(tip);
    m_failed.clear();
    if (!m_stage->show(tip.key, {}) || m_stage->isBroken()) {
        if (!reportProblems())
            m_report({"VT900", file, {}, "the tip is not shown"});
        return;
    }
    m_clock->pass(*m_stage, untilSeen);
    look();
    const QVector<QGraphicsObject *> first = m_stage->items();
    const QSize size = m_stage->window()->size();
    m_clock->pass(*m_stage, untilGrown);
    if (m_stage->items() != first || m_stage->window()->size() != size)
        look();
    reportProblems();
}

// In other colours, everything stands where it stood.
void Trial::look()
{
    const ShownTip tip(m_content, *m_stage, m_report);
    m_failed += SourceCheck::run(tip);
    ContrastCheck::run(tip);
    if (m_staged.isDark)
        return;
    FitCheck::run(tip);
    m_glyphs.run(tip);
    DirectionCheck::run(tip);
    PressCheck::run(tip);
}

bool Trial::reportProblems()
{
    const QVector<Finding> problems = m_stage->problems();
    for (const Finding &problem : problems) {
        const bool isTold = std::any_of(m_failed.cbegin(), m_failed.cend(), [&](const ItemPlace &place) {
            return place.file == problem.file && place.position.line == problem.position.line;
        });
        if (!isTold)
            m_report(problem);
    }
    return !problems.isEmpty();
}
