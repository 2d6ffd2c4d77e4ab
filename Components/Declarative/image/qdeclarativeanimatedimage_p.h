#pragma once

#include "qdeclarativeimage_p.h"

class QDeclarativeAnimatedImagePrivate;

/**
 * Shows the frames of an animated picture one after the other, as fast as the picture says.
 *
 * A picture that is not animated is shown as Image shows it. Nothing runs while the item is not playing or
 * paused, or once the animation has done all of its rounds.
 */
class QDeclarativeAnimatedImage : public QDeclarativeImage
{
    Q_OBJECT
    Q_PROPERTY(bool playing READ isPlaying WRITE setPlaying NOTIFY playingChanged)
    Q_PROPERTY(bool paused READ isPaused WRITE setPaused NOTIFY pausedChanged)
    Q_PROPERTY(int currentFrame READ currentFrame WRITE setCurrentFrame NOTIFY frameChanged)
    Q_PROPERTY(int frameCount READ frameCount)
    // Frames are shown in their own size.
    Q_PROPERTY(QSize sourceSize READ sourceSize NOTIFY sourceSizeChanged)

public:
    explicit QDeclarativeAnimatedImage(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeAnimatedImage() override;

    bool isPlaying() const;
    void setPlaying(bool);
    bool isPaused() const;
    void setPaused(bool);
    /** The number of the frame shown, from 0; also where playing starts, if set before the item is complete.
     */
    int currentFrame() const;
    void setCurrentFrame(int);
    int frameCount() const;

Q_SIGNALS:
    void playingChanged();
    void pausedChanged();
    void frameChanged();

protected:
    void load() override;
    void componentComplete() override;

private:
    Q_DISABLE_COPY(QDeclarativeAnimatedImage)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeAnimatedImage)
};
