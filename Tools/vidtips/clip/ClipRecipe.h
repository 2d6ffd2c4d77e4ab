#pragma once

#include <QtCore/QRect>
#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QStringList>

struct Recording;

/** What an author wants of a clip. */
struct ClipWishes
{
    QRect crop; ///< Of the recording as it is seen; empty for all of it.
    QSize most; ///< The clip fits into this; a smaller recording stays as it is.
    double rate = 0.0; ///< Frames per second; a slower recording stays as it is.
    double from = 0.0; ///< Where the clip begins in the recording, in seconds.
    double length = 0.0; ///< Seconds of the recording; 0 for all that follows.
    double longest = 0.0; ///< Seconds that a clip may last.
    qint64 budget = 0; ///< Bytes that the decoded frames may take.
};

/** How a clip is made of a recording: what is cut away, and what size and rate keep it within its bounds. */
class ClipRecipe
{
public:
    /** Chooses for @p recording what comes nearest to @p wishes; returns why there is no clip that fits, or
     * nothing. */
    QString choose(const Recording &recording, const ClipWishes &wishes);

    QSize size() const { return m_size; }
    double rate() const { return m_rate; }
    double length() const { return m_length; }

    /** What was given up to stay within the budget; empty for nothing. */
    QString concession() const { return m_concession; }

    /** The kinds of clips that are written, which the suffix of the file says. */
    static QStringList suffixes();

    /** How many times a clip can be made smaller than at first by compressing it more. */
    static int steps();

    /** What has ffmpeg write the clip to @p file, compressed more with each @p step from 0. */
    QStringList arguments(const QString &file, int step) const;

private:
    QString chooseTime(const Recording &recording, const ClipWishes &wishes);
    QString chooseCrop(const ClipWishes &wishes);
    QString keepBudget(qint64 budget);
    qint64 memory(QSize size, double rate) const;
    QString filter() const;

    QString m_recording;
    QSize m_whole; ///< The recording as it is seen.
    QRect m_crop;
    QSize m_size;
    double m_rate = 0.0;
    double m_from = 0.0;
    double m_length = 0.0;
    bool m_isUntaggedHd = false;
    QString m_concession;
};
