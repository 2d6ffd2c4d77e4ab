#pragma once

#include <Vidtips/VTVideoFrame.h>

#include <QtCore/QString>
#include <QtCore/QThread>
#include <QtCore/QUrl>

#include <memory>

namespace Vidtips {

class VTVideoFrameCache;

/**
 * A media decoder that runs on a thread of its own; the base of the concrete decoders.
 *
 * Other threads never call the decoder directly. They post changes (an action, a source), which the source's
 * own thread applies one at a time between units of decoding work. Decoded pictures go into the frame cache
 * of the current source, from which every thread may read by index. Every public function may be called from
 * any thread; signals are emitted from the thread that performs the operation, with no lock held.
 */
class VIDTIPS_EXPORT VTVideoSource : public QThread
{
    Q_OBJECT

public:
    /** What the thread does on each pass of its loop. -1 stands for the absence of an action. */
    enum Action : int {
        Stop = 0, ///< leave the loop, so that the thread finishes
        Load = 1, ///< open the current source
        Close = 2, ///< close the media, then go idle
        Seek = 3, ///< reposition the demuxer
        Decode = 4, ///< decode the next picture into the cache
        Idle = 5, ///< sleep
    };

    /** Makes a source that is idle, has no media and whose thread is not started. */
    explicit VTVideoSource(QObject *parent);

    /** Destroys the caches and the changes that were not applied. The thread must have finished. */
    ~VTVideoSource() override;

    /** Closes the media. The base keeps the source: it asks for an empty one, which is refused. */
    virtual void close();

    /** Tells whether media is open. */
    virtual bool isOpen() = 0;

    /** Returns the wall-clock time in seconds. */
    virtual double getTime() = 0;

    /** Makes @p action current and emits actionChanged(); -1 does nothing. Called when a change is applied.
     */
    virtual void changeSetAction(Action action);

    /** Repositions the decoder to the frame at @p frameIndex. */
    virtual void changeSetPosition(quint64 frameIndex) = 0;

    /** Makes @p url the current source. No signal is emitted. Called when a change is applied. */
    virtual void changeSetSource(const QUrl &url);

    /** Returns the length of the media in seconds. */
    virtual double duration() = 0;

    /** Returns the time base of the decoder in seconds. */
    virtual double timeBase() = 0;

    /** Returns the number of frames per second. */
    virtual double frameRate() = 0;

    /** Returns the width of a picture in pixels. */
    virtual double frameWidth() const = 0;

    /** Returns the height of a picture in pixels. */
    virtual double frameHeight() const = 0;

    /** Returns the current action. */
    Action action();

    /** Posts a change to @p action. Never waits for the state or for the frames. */
    void setAction(Action action);

    /**
     * Posts a change to the source @p url, which is then loaded. Returns false and posts nothing where @p url
     * is not valid or is the current source already; a source that is still waiting in the queue is not
     * current.
     */
    bool setSource(const QUrl &url);

    /** Returns the current source. */
    QUrl source();

    /** Asks the thread to end after its current pass. There is no way back. */
    void setShouldQuit();

    /** Tells whether the thread was asked to end. */
    bool shouldQuit();

    /** Drops every change that was posted and not applied yet. */
    void clearChanges();

    /**
     * Makes the cache of the current source current: the one inserted for it, else a new one, which replaces
     * and frees the previous one and after which Decode is posted (Idle without a source). Emits
     * sourceChanged().
     */
    void setupSource();

    /** Appends a copy of @p frame to the current cache. Without a cache nothing happens. */
    void pushFrame(const VTVideoFrame &frame);

    /** Returns the frame at @p index, or a null frame where there is none. */
    VTVideoFrame getFrame(uint index);

    /** Tells whether the frame at @p index was decoded. */
    bool isFrameAvailable(quint64 index);

    /** Returns the number of frames decoded, 0 before a source was set up. */
    quint64 loadedFrameCount();

    /** Returns loadedFrameCount(): the total is not known before the stream has ended. */
    quint64 totalFrameCount();

    /** Emits streamEnded(). */
    void notifyStreamEnded();

    /**
     * Ends the thread: asks it to, waits up to ten seconds, then terminates it and waits as long again. Each
     * wait that runs out is reported to the debug stream. Not to be called from the source's own thread.
     */
    void quit();

Q_SIGNALS:
    /** A frame is ready. For the use of concrete sources; the base never emits it. */
    void frameReady();
    /** The cache of another source became current. */
    void sourceChanged();
    /** The end of the media was reached. */
    void streamEnded();
    /** The media of the current source was opened. */
    void sourceLoaded();
    /** The current action was set. */
    void actionChanged();
    /** The decoder was repositioned. */
    void positionChanged();
    /** More of the media was loaded. For the use of concrete sources; the base never emits it. */
    void loadProgressChanged();

protected:
    /** Opens the media of the current source and tells whether it could. The base emits sourceLoaded(). */
    virtual bool loadSource();

    /** Applies the change that was posted first, if there is one. For the source's own thread. */
    void processActionQueue();

    /**
     * Keeps @p cache for the source whose URL as text is @p source, so that setupSource() finds it. Takes
     * ownership; a cache kept for the same source before is freed unless it is current.
     */
    void insertCache(const QString &source, VTVideoFrameCache *cache);

private:
    friend class VTVideoController;
    friend class VTVideoSourceFFMPEG;

    /** Sleeps for @p milliseconds, less where the thread is asked to end. For the source's own thread. */
    VIDTIPS_NO_EXPORT void idle(int milliseconds);

    /**
     * Posts a change to the source @p url as setSource() does, but compares it with the source that was named
     * last, which may still wait in the queue.
     */
    VIDTIPS_NO_EXPORT bool selectSource(const QUrl &url);

    /**
     * Returns the number of frames of the source that was named last: none for as long as the cache has those
     * of another one. Where the thread does not run, no change is ever applied, and what is there counts.
     */
    VIDTIPS_NO_EXPORT quint64 selectedFrameCount();

    /** Returns the frame at @p index of the source that was named last, null while there is none. */
    VIDTIPS_NO_EXPORT VTVideoFrame selectedFrame(uint index);

    VIDTIPS_NO_EXPORT QUrl selectedSource();
    VIDTIPS_NO_EXPORT QString framesToShow();

    struct Private;
    std::unique_ptr<Private> const d;
};

/** A change posted to a VTVideoSource: the action to make current. The queue owns it. */
struct VIDTIPS_EXPORT VTVideoSourceChange
{
    /** Makes a change to @p newAction; -1 changes nothing. */
    explicit VTVideoSourceChange(VTVideoSource::Action newAction);

    /** Destroys the change, applied or not. */
    virtual ~VTVideoSourceChange();

    /** Returns the kind of change, 1. */
    virtual int type();

    /** Makes the change, on the thread of @p source and with no lock held. */
    virtual void apply(VTVideoSource *source);

    /** The action to make current. */
    VTVideoSource::Action action;
};

} // namespace Vidtips

/** A change posted to a Vidtips::VTVideoSource: the source to make current and to load. */
struct VIDTIPS_EXPORT VTVideoSourceSourceChange : Vidtips::VTVideoSourceChange
{
    /** Makes a change to the source @p newUrl. */
    explicit VTVideoSourceSourceChange(const QUrl &newUrl);
    ~VTVideoSourceSourceChange() override;

    /** Returns the kind of change, 3. */
    int type() override;

    /** Makes the URL current and then lets the thread load it. */
    void apply(Vidtips::VTVideoSource *source) override;

    /** The source to make current. */
    QUrl url;
};
