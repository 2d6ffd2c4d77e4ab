#pragma once

#include "GlyphCheck.h"
#include "ItemPlace.h"
#include "TrialPlan.h"
#include "findings/Finding.h"
#include "stage/PreviewSettings.h"

#include <QtCore/QByteArray>

#include <functional>
#include <memory>

class Content;
class PreviewStage;
class StageClock;

/** Shows tips without a display, each until it has grown, and looks at what is shown. */
class Trial
{
public:
    using Report = std::function<void(const Finding &)>;

    /** Shows tips as @p settings say, but for what each tip of the plan says itself. */
    Trial(const Content &content, const PreviewSettings &settings, const Report &report);
    ~Trial();

    /** Shows @p tip. One that the same host can show as the one before takes less time. */
    void show(const TrialTip &tip);

private:
    void setStage(const TrialTip &tip);
    void look();
    QByteArray lookAfter(int milliseconds, const QByteArray &before);
    QString reason() const;
    QByteArray settle();
    QByteArray appearance() const;
    bool reportProblems();

    const Content &m_content;
    const PreviewSettings m_settings;
    const Report m_report;
    GlyphCheck m_glyphs;
    TrialTip m_staged;
    QVector<ItemPlace> m_failed; ///< Items of the tip whose files are missing.
    std::unique_ptr<StageClock> m_clock;
    std::unique_ptr<PreviewStage> m_stage;
};
