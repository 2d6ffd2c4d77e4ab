#pragma once

#include "findings/Finding.h"

#include <QtCore/QStringList>

class Content;
class PreviewStage;
struct PreviewKey;
struct PreviewSettings;

/** What is wrong with the tip on a stage: what a check finds in its content, and what its QML complains
 * about. */
class TipProblems
{
public:
    TipProblems(const Content &content, const PreviewSettings &settings);

    /** Begins with the tip of @p key. */
    void setKey(const QString &key);

    /** Returns everything that is known by now. */
    QVector<Finding> all(PreviewStage &stage) const;

    /** Returns the same, a line each. */
    QStringList lines(PreviewStage &stage) const;

private:
    QVector<Finding> missingClips(const PreviewStage &stage) const;
    QString userInterface(const PreviewKey &tip) const;
    void checkTranslations(const PreviewKey &tip, Findings &findings) const;

    const Content &m_content;
    const PreviewSettings &m_settings;
    Findings m_findings;
    QVector<Finding> m_found; ///< What is not QML's, of the tip that is shown.
    Finding m_place; ///< Of the tip, for what has none of its own.
    bool m_isRefused =
        false; ///< The user interface cannot be one, which is told in better words than the engine's.
};
