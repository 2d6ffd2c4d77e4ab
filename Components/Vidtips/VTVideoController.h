#pragma once

#include <Vidtips/VTVideoFrame.h>

#include <QtCore/QDateTime>
#include <QtCore/QThread>
#include <QtCore/QUrl>

#include <memory>

namespace Vidtips {

class VTVideoSource;

/**
 * The playback clock of a video source, on a thread of its own.
 *
 * It keeps the position, which is an index into the frames that the source has decoded, decides when the next
 * frame is due and announces each with displayFrame(); whoever shows the clip then fetches currentFrame(). It
 * never decodes. Once its thread has finished it deletes itself. Every function but quit() may be called from
 * any thread; signals are emitted from the thread that performs the operation, with no lock held.
 */
class VIDTIPS_EXPORT VTVideoController : public QThread
{
    Q_OBJECT

public:
    /** Whether the position advances. */
    enum State : int {
        Paused = 0,
        Playing = 1,
    };

    /**
     * Makes a paused clock for @p source, which is not owned and must outlive the thread. The first frame
     * that becomes available is announced as a still picture.
     */
    VTVideoController(VTVideoSource *source, QObject *parent);

    /** Ends the thread. */
    ~VTVideoController() override;

    /**
     * Pauses at the first frame and selects the clip @p url. Until the source has turned to it there are no
     * frames: none of another clip is announced or returned. Returns false where it is refused, as it is not
     * valid or was named last already; the position is then what it was before.
     */
    bool setSource(const QUrl &url);

    /** Returns the URL of the current clip. */
    QUrl source();

    /** Plays, from the first frame on if the position is past the last one. Emits stateChanged() in any case.
     */
    void play();

    /** Pauses. Emits stateChanged() in any case. */
    void pause();

    /** Sets the state. Emits stateChanged() in any case. */
    void setState(State state);

    /** Returns the state. */
    State state();

    /**
     * Moves to the frame @p position, at most the last one that was decoded, and has it announced. Emits
     * positionChanged(). Without frames the position wraps to the largest number.
     */
    void setPosition(quint64 position);

    /** Returns the index of the frame to show next. */
    quint64 position();

    /** Moves to the share @p progress, from 0 to 1, of the frames. */
    void setProgress(double progress);

    /** Returns the position as a share of the frames, 0 without frames. */
    double progress();

    /** Returns the share of the frames that is decoded: not a number without frames, 0 without a source. */
    double loadProgress() const;

    /** Sets whether the user drags the position; the end of the stream then does not pause. */
    void setScrubbing(bool scrubbing);

    /** Tells whether the user drags the position. */
    bool isScrubbing();

    /**
     * Sets whether playback goes on with the first frame after the last one. It then waits where it has
     * caught up with the decoder, and the end of the stream does not pause. A clip of one frame pauses at its
     * end.
     */
    void setLooping(bool looping);

    /** Tells whether playback goes on with the first frame after the last one. */
    bool isLooping();

    /** Sets whether a still frame is to be announced. */
    void setNeedFrame(bool needFrame);

    /** Sets the time at which the last frame was announced. */
    void setLastFrameDisplayTime(const QDateTime &time);

    /** Returns the time at which the last frame was announced, null before any was. */
    QDateTime lastFrameDisplayTime();

    /** Returns the frame at the position and takes it for displayed; null where it is not decoded. */
    VTVideoFrame currentFrame();

    /** Returns the frame at @p index, null where it is not decoded. */
    VTVideoFrame getFrame(quint64 index);

    /** Returns the number of frames. */
    quint64 frameCount();

    /** Returns the width of the source's pictures in pixels. */
    double frameWidth() const;

    /** Returns the height of the source's pictures in pixels. */
    double frameHeight() const;

    /** Closes the media of the source. */
    void close();

    /** Asks the thread to end after its current pass, without waiting for it. There is no way back. */
    void setShouldQuit();

    /** Tells whether the thread was asked to end; false also when the lock is not free within 100 ms. */
    bool shouldQuit();

    /**
     * Ends the thread: asks it to, waits up to ten seconds, then terminates it and waits as long again. Each
     * wait that runs out is reported to the debug stream. Not to be called from the controller's own thread.
     */
    void quit();

    /**
     * Returns for how many seconds to wait after a frame: at least one frame at @p frameRate frames per
     * second, and up to @p dueFrames frames where the last one was announced, at @p last, less than a
     * millisecond before
     * @p now.
     */
    static double presentationWait(quint64 dueFrames, double frameRate, const QDateTime &last,
                                   const QDateTime &now);

Q_SIGNALS:
    /** A frame is due; currentFrame() gives it. */
    void displayFrame();
    /** The state was set. */
    void stateChanged();
    /** The position advanced or was set. */
    void positionChanged();
    /** The width of the pictures may have changed. */
    void widthChanged();
    /** The height of the pictures may have changed. */
    void heightChanged();
    /** More of the clip was decoded, or its end was reached. */
    void loadProgressChanged();

public Q_SLOTS:
    /** Pauses unless the user is scrubbing or the clip is looped, and has a still frame announced. */
    void streamEnded();

    /** Has a still frame of the newly loaded clip announced, and its size. */
    void sourceLoaded();

protected:
    /** Announces each frame when it is due, until the thread is to end. */
    void run() override;

private:
    struct Private;

    VIDTIPS_NO_EXPORT void presentFrame();

    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
