#pragma once

#include <Vidtips/VTExport.h>

#include <QtGui/QImage>

namespace Vidtips {

/**
 * One decoded picture of a clip: an image with its presentation time.
 *
 * A value type: copies share their pixels until one of them is written to. A frame is null exactly when its
 * image is null, which is how "no frame available" is told.
 */
class VIDTIPS_EXPORT VTVideoFrame : public QImage
{
public:
    /** Makes a null frame with the presentation time 0. */
    VTVideoFrame();

    /** Makes a frame that shares @p image, presented at @p pts seconds. */
    VTVideoFrame(const QImage &image, quint64 pts);

    /**
     * Makes a frame of @p width by @p height pixels in @p format, presented at @p pts seconds. Its pixels are
     * not initialised. The frame is null where the image cannot be allocated.
     */
    VTVideoFrame(int width, int height, QImage::Format format, quint64 pts);

    /** Shares the image of @p other and copies its presentation time. */
    VTVideoFrame(const VTVideoFrame &other);
    ~VTVideoFrame() override;

    /** Shares the image of @p other and copies its presentation time. */
    VTVideoFrame &operator=(const VTVideoFrame &other);

    /** Returns the presentation time in seconds from the start of the stream. */
    double pts() const;

    /** Sets the presentation time to @p pts seconds. */
    void setPts(double pts);

private:
    double m_pts = 0.0;
};

} // namespace Vidtips
