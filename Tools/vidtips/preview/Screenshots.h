#pragma once

#include "stage/PreviewKeys.h"
#include "stage/PreviewSettings.h"

#include <QtGui/QImage>

class Console;
class Content;

/** Pictures of tips, taken without a display. */
class Screenshots
{
public:
    /** A tip's picture is taken @p delay milliseconds of its own time after it was shown. */
    Screenshots(const Content &content, const PreviewSettings &settings, int delay)
        : m_content(content)
        , m_settings(settings)
        , m_delay(delay)
    {
    }

    /** Writes the picture of the tip @p key to @p file; returns an ExitCode. */
    int one(const QString &key, const QString &file, Console &console);

    /** Writes a picture of each tip and the page index.html that shows them to @p folder; returns an
     * ExitCode. */
    int all(const QVector<PreviewKey> &keys, const QString &folder, Console &console);

private:
    struct Shot
    {
        PreviewKey key;
        QString file;
        QImage image;
        QStringList problems;
    };

    Shot take(class StageClock &clock, class PreviewStage &stage, class TipProblems &problems,
              const PreviewKey &key) const;
    void pass(StageClock &clock, PreviewStage &stage) const;
    QString page(const QVector<Shot> &shots) const;

    const Content &m_content;
    PreviewSettings m_settings;
    int m_delay;
};
