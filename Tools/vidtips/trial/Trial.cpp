#include "Trial.h"

#include "ContrastCheck.h"
#include "DirectionCheck.h"
#include "FitCheck.h"
#include "PressCheck.h"
#include "ShownTip.h"
#include "SourceCheck.h"
#include "stage/PreviewLook.h"
#include "stage/PreviewStage.h"
#include "stage/StageClock.h"

#include <QtCore/QDataStream>
#include <QtCore/QFileInfo>
#include <QtWidgets/QGraphicsObject>

#include <algorithm>

namespace {

constexpr int untilGrown = 2000; // milliseconds
constexpr int longestMotion = 600; // milliseconds
constexpr int step = 20; // milliseconds

} // namespace

Trial::Trial(const Content &content, const PreviewSettings &settings, const Report &report)
    : m_content(content)
    , m_settings(settings)
    , m_report(report)
    , m_clock(std::make_unique<StageClock>())
{
}

Trial::~Trial() = default;

void Trial::setStage(const TrialTip &tip)
{
    if (m_stage && m_staged.sharesStage(tip))
        return;
    m_staged = tip;
    m_stage.reset();
    PreviewLook::apply(tip.isDark);
    PreviewSettings settings = m_settings;
    settings.locale = tip.locale;
    settings.isSimple = tip.isSimple;
    settings.isDark = tip.isDark;
    m_stage = std::make_unique<PreviewStage>(m_content, settings);
}

void Trial::show(const TrialTip &tip)
{
    setStage(tip);
    m_failed.clear();
    m_stage->show(tip.key, {});
    const bool isReplaced = m_stage->isReplaced();
    const QByteArray first = lookAfter(StageClock::untilSeen, {});
    lookAfter(untilGrown, first);
    const bool hasProblems = reportProblems();
    if (isReplaced || (!hasProblems && !m_stage->isShown()))
        m_report({"VT900", tip.userInterface, {}, "the tip is not shown" + reason()});
}

QString Trial::reason() const
{
    return m_stage->warning().isEmpty() ? QString() : ": " + m_stage->warning();
}

// Unless it is as it was. Returns how it is.
QByteArray Trial::lookAfter(int milliseconds, const QByteArray &before)
{
    m_clock->pass(*m_stage, milliseconds);
    const QByteArray now = settle();
    if (m_stage->isShown() && now != before)
        look();
    return now;
}

// What fades in or grows is not judged on its way; what never stops is, as it is.
QByteArray Trial::settle()
{
    QByteArray last = appearance();
    for (int passed = 0; passed < longestMotion; passed += step) {
        m_clock->pass(*m_stage, step);
        const QByteArray now = appearance();
        if (now == last)
            break;
        last = now;
    }
    return last;
}

QByteArray Trial::appearance() const
{
    QByteArray appearance;
    QDataStream stream(&appearance, QIODevice::WriteOnly);
    const QVector<QGraphicsObject *> items = m_stage->items();
    for (const QGraphicsObject *item : items)
        stream << quintptr(item) << item->sceneBoundingRect() << item->effectiveOpacity()
               << item->property("text").toString() << item->property("color").toString();
    return appearance;
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
        // A file that there is not has no line: where it is named has been told.
        const bool isMissing = problem.position.line == 0 && !QFileInfo::exists(problem.file);
        const bool isTold = std::any_of(m_failed.cbegin(), m_failed.cend(), [&](const ItemPlace &place) {
            return isMissing || (place.file == problem.file && place.position.line == problem.position.line);
        });
        // That the tip is not shown is told by show(), which knows why.
        if (!isTold && problem.code != "VT900")
            m_report(problem);
    }
    return !problems.isEmpty();
}
