#include "VTVideoFrame.h"

namespace Vidtips {

VTVideoFrame::VTVideoFrame() = default;

VTVideoFrame::VTVideoFrame(const QImage &image, quint64 pts)
    : QImage(image)
    , m_pts(double(pts))
{
}

VTVideoFrame::VTVideoFrame(int width, int height, QImage::Format format, quint64 pts)
    : QImage(width, height, format)
    , m_pts(double(pts))
{
}

VTVideoFrame::VTVideoFrame(const VTVideoFrame &other) = default;

VTVideoFrame::~VTVideoFrame() = default;

VTVideoFrame &VTVideoFrame::operator=(const VTVideoFrame &other) = default;

double VTVideoFrame::pts() const
{
    return m_pts;
}

void VTVideoFrame::setPts(double pts)
{
    m_pts = pts;
}

} // namespace Vidtips
