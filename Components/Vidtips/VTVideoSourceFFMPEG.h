#pragma once

#include <Vidtips/VTVideoSource.h>

#include <memory>

namespace Vidtips {

class VTClipReports;
class VTVideoSourceFFMPEGPrivate;

/**
 * Decodes the first video stream of a local media file, with FFmpeg and on a thread of its own.
 *
 * FFmpeg comes with a module of the library that is loaded when the first clip is opened; a clip fails to
 * open where the module is missing or damaged.
 *
 * Every picture becomes a 32-bit RGB frame in the cache of the source. Decoding runs ahead of presentation as
 * fast as the decoder allows. At the end of the media the decoder is drained, streamEnded() is emitted once
 * and the media is closed; the frames stay. A file that cannot be opened is reported to the debug stream.
 */
class VIDTIPS_EXPORT VTVideoSourceFFMPEG : public VTVideoSource
{
    Q_OBJECT

public:
    /** Makes a source named "FFMPEG" without media. FFmpeg's own log is silenced when it is loaded. */
    explicit VTVideoSourceFFMPEG(QObject *parent);

    /**
     * Ends the thread and frees the media and the frames. A derived class must quit() in its own destructor,
     * before the thread could call what is gone.
     */
    ~VTVideoSourceFFMPEG() override;

    /** Closes the media. The frames stay, and so does what the getters report. */
    void close() override;

    /** Tells whether media is open. */
    bool isOpen() override;

    /** Returns the wall-clock time in seconds. */
    double getTime() override;

    /**
     * Moves the clock and the demuxer to the frame at @p frameIndex; without media the clock and the progress
     * go back to 0. Emits positionChanged() either way.
     */
    void changeSetPosition(quint64 frameIndex) override;

    /** Returns the length of the clip opened last in seconds, 0 where neither stream nor container says one.
     */
    double duration() override;

    /** Returns the time base of the clip opened last in seconds. */
    double timeBase() override;

    /** Returns the frame rate of the clip opened last, 0 before any was. */
    double frameRate() override;

    /** Returns the width of the clip opened last in pixels, 200 before any was. */
    double frameWidth() const override;

    /** Returns the height of the clip opened last in pixels, 150 before any was. */
    double frameHeight() const override;

    /** Returns 0: the controller keeps the position. */
    virtual quint64 position();

    /** Returns the presentation time of the last picture as a share of the duration; 0 where that is not
     * known. */
    virtual double progress();

protected:
    /** Applies changes and does what the current action asks for, until the thread is to end. */
    void run() override;

    /** Opens the clip of the current source. A clip that cannot be opened is reported to the debug stream. */
    bool loadSource() override;

    /**
     * Bounds the decoded pictures of one clip to @p bytes; 2 GiB unless set. A clip ends where its next
     * picture would pass the bound. To be set before the thread is started.
     */
    void setMemoryLimit(quint64 bytes);

    /**
     * Has clips that are opened from now on be of the usual formats, which name no other files, if
     * @p isRestricted. For any thread.
     */
    void setRestricted(bool isRestricted);

private:
    friend class VTVideoComponent;

    /**
     * Has the source's own thread add a report to @p reports for each clip, once it knows what becomes of it.
     * To be set before the thread is started, which they have to outlive.
     */
    VIDTIPS_NO_EXPORT void setClipReports(VTClipReports *reports);

    std::unique_ptr<VTVideoSourceFFMPEGPrivate> const d;
};

} // namespace Vidtips
