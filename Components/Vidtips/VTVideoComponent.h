#pragma once

#include <Vidtips/VTExport.h>

#include <QtCore/QString>
#include <QtCore/QUrl>
#include <QtDeclarative/QDeclarativeItem>

#include <memory>

namespace Vidtips {

/**
 * The QML item that shows a clip.
 *
 * It owns a video source and a controller, both running from its creation to its destruction, and paints the
 * current frame at its origin, unscaled. A clip is named by the path of a resource, which the VTView that
 * shows the item resolves. It shows no picture of any clip but the one that was named last. GUI thread only.
 */
class VIDTIPS_EXPORT VTVideoComponent : public QDeclarativeItem
{
    Q_OBJECT
    /** The resource name of the clip. */
    Q_PROPERTY(QString source READ source WRITE setSource NOTIFY sourceChanged)
    /** Whether the clip plays. */
    Q_PROPERTY(VideoState state READ state WRITE setState NOTIFY stateChanged)
    /** The index of the frame to show next. */
    Q_PROPERTY(qint64 position READ position WRITE setPosition NOTIFY positionChanged)
    /** The position as a share of the frames, from 0 to 1. */
    Q_PROPERTY(double progress READ progress WRITE setProgress NOTIFY progressChanged)
    /** Kept for QML; it takes no part in finding the clip. */
    Q_PROPERTY(QString searchPath READ searchPath WRITE setSearchPath NOTIFY searchPathChanged)
    /** The user drags the position, so that the end of the stream does not pause. */
    Q_PROPERTY(bool scrubbing READ isScrubbing WRITE setScrubbing NOTIFY scrubbingChanged)
    /** The height of the clip's pictures in pixels, 150 before any clip is open. */
    Q_PROPERTY(double contentHeight READ contentHeight NOTIFY contentHeightChanged)
    /** The width of the clip's pictures in pixels, 200 before any clip is open. */
    Q_PROPERTY(double contentWidth READ contentWidth NOTIFY contentWidthChanged)
    /** The share of the frames that is decoded; not a number without frames. */
    Q_PROPERTY(double loadProgress READ loadProgress NOTIFY loadProgressChanged)
    /** What became of the clip that was named. */
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    /** Why the clip cannot be shown, empty unless the status is Error. */
    Q_PROPERTY(QString errorString READ errorString NOTIFY errorStringChanged)
    /** Whether the clip plays again from the first frame after the last one. */
    Q_PROPERTY(bool loop READ loop WRITE setLoop NOTIFY loopChanged)

public:
    /** The states of playback as QML sees them. */
    enum VideoState {
        resetState = 0,
        pausedState = 1,
        playingState = 2,
    };
    Q_ENUM(VideoState)

    /** What became of the clip that was named. */
    enum Status {
        Null = 0, ///< none is named, or none that a VTView was asked for
        Loading = 1, ///< it is being opened, and there is no picture yet
        Ready = 2, ///< its first picture is there
        Error = 3, ///< there is no such file, or it cannot be opened or has no picture; nothing is shown
    };
    Q_ENUM(Status)

    /** Makes a paused item without a clip and starts its threads. */
    explicit VTVideoComponent(QDeclarativeItem *parent = nullptr);

    /** Ends both threads; a thread that does not end is reported to the debug stream and waited for. */
    ~VTVideoComponent() override;

    /** Returns the name that a VTView was asked for last, empty before any was and after an empty name. */
    QString source() const;

    /**
     * Names the clip. An empty name resets playback. Any other is resolved by every VTView that shows the
     * item's scene: the old picture goes at once, and the clip changes where the name leads to a file. A name
     * given before a VTView shows the item is kept and resolved then; until then source() stays as it was.
     * Where there is no such file playback pauses and nothing is shown. The host gets one message, with the
     * key of the tip, of a clip that is missing or broken. Does not emit sourceChanged().
     */
    void setSource(const QString &name);

    /** Returns the state of playback. */
    VideoState state() const;

    /** Plays, pauses, or, with resetState, ends playback as at the end of the clip. Other values are ignored.
     */
    void setState(VideoState state);

    /** Returns the index of the frame to show next. */
    qint64 position() const;

    /** Moves to the frame @p position, at most the last one that was decoded. Emits positionChanged(). */
    void setPosition(qint64 position);

    /** Returns the position as a share of the frames, from 0 to 1; 0 without frames. */
    double progress() const;

    /** Moves to the share @p progress, from 0 to 1, of the frames. Emits positionChanged(). */
    void setProgress(double progress);

    /** Returns the search path that was set. */
    QString searchPath() const;

    /** Stores @p path. Emits searchPathChanged() in any case. */
    void setSearchPath(const QString &path);

    /** Tells whether the user drags the position. */
    bool isScrubbing() const;

    /** Sets whether the user drags the position. Emits nothing. */
    void setScrubbing(bool scrubbing);

    /** Returns the height of the clip's pictures in pixels, 150 before any clip is open. */
    double contentHeight() const;

    /** Returns the width of the clip's pictures in pixels, 200 before any clip is open. */
    double contentWidth() const;

    /** Returns the share of the frames that is decoded; not a number without frames. */
    double loadProgress() const;

    /** Returns what became of the clip that was named. */
    Status status() const;

    /** Returns why the clip cannot be shown, in English; empty unless the status is Error. */
    QString errorString() const;

    /** Tells whether the clip plays again from the first frame after the last one. */
    bool loop() const;

    /** Sets whether the clip plays again from the first frame after the last one. Emits loopChanged(). */
    void setLoop(bool loop);

    /** Paints the current frame at the item's origin, unscaled; where it is transformed, smoothly if the item
     * is smooth. */
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

Q_SIGNALS:
    /** Never emitted: the name changes only where it is set. */
    void sourceChanged();
    /** The state of playback was set. */
    void stateChanged();
    /** The position advanced or was set. */
    void positionChanged();
    /** The progress changed with the position. */
    void progressChanged();
    /** A picture of another height is shown. */
    void heightChanged();
    /** The search path was set. */
    void searchPathChanged();
    /** Never emitted: scrubbing changes only where it is set. */
    void scrubbingChanged();
    /** A clip was opened. */
    void contentHeightChanged();
    /** A clip was opened. */
    void contentWidthChanged();
    /** A clip was opened, or its end was reached. */
    void loadProgressChanged();
    /** The status changed. */
    void statusChanged();
    /** The reason of an error changed. It comes before statusChanged(). */
    void errorStringChanged();
    /** Playback was set to begin again after the last frame, or not to. */
    void loopChanged();

public Q_SLOTS:
    /** Shows the controller's current frame, if there is one. */
    void frameReady();
    /** Plays, from the first frame on if the position is past the last one, or as soon as that is there. */
    void play();
    /** Pauses at the position. */
    void pause();
    /** Announces the controller's state. */
    void sourceChangedState();
    /** Pauses at the first frame. */
    void rewindToStart();
    /** Announces the controller's position. */
    void controllerPositionChanged();

protected:
    /** Resolves a clip that was named before the item came into a scene, once it is in one. */
    QVariant itemChange(GraphicsItemChange change, const QVariant &value) override;

private:
    struct Private;

    VIDTIPS_NO_EXPORT void connectController();
    VIDTIPS_NO_EXPORT bool resolve(const QString &name);
    VIDTIPS_NO_EXPORT void resolveAtLast();
    VIDTIPS_NO_EXPORT void nameNothing();
    VIDTIPS_NO_EXPORT void nameMissing(const QString &name);
    VIDTIPS_NO_EXPORT void nameClip(const QUrl &clip);
    VIDTIPS_NO_EXPORT void hear();
    VIDTIPS_NO_EXPORT void conclude(const QUrl &clip, const QString &problem);
    VIDTIPS_NO_EXPORT void fail(const QString &problem);
    VIDTIPS_NO_EXPORT void setStatus(Status status, const QString &problem = QString());

    std::unique_ptr<Private> const d;
};

} // namespace Vidtips
