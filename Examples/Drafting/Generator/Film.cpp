#include "Film.h"

#include "Core/Icons.h"
#include "Core/Tool.h"

#include <QtCore/QEasingCurve>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace {

constexpr qreal magnification = 1.6;
constexpr int rippleFrames = 12;

QRectF field()
{
    const QSizeF size = QSizeF(Film::width, Film::height) / magnification;
    return QRectF(QPointF(-size.width() / 2, -size.height() / 2), size);
}

QPointF onPicture(const QPointF &point)
{
    return (point - field().topLeft()) * magnification;
}

} // namespace

Film::Film(const QString &file, const ClipFormat &format, const QString &icon)
    : m_icon(icon)
{
    m_scene.setColors(CanvasColors::dark());
    if (file.isEmpty())
        return;
    QStringList arguments{"-y",
                          "-loglevel",
                          "error",
                          "-f",
                          "rawvideo",
                          "-pix_fmt",
                          "bgra",
                          "-s",
                          QStringLiteral("%1x%2").arg(width).arg(height),
                          "-r",
                          QString::number(framesPerSecond),
                          "-i",
                          "-",
                          "-an",
                          "-pix_fmt",
                          "yuv420p"};
    arguments += format.encoder;
    arguments << "-map_metadata"
              << "-1"
              << "-fflags"
              << "+bitexact"
              << "-flags:v"
              << "+bitexact" << file + QLatin1Char('.') + format.suffix;
    m_encoder.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_encoder.start(QStringLiteral("ffmpeg"), arguments);
}

Film::~Film() = default;

void Film::use(Tool *tool)
{
    std::unique_ptr<Tool> next(tool);
    m_scene.setTool(tool);
    m_tool = std::move(next);
    m_tool->move(m_pointer);
}

void Film::moveTo(const QPointF &point, qreal seconds)
{
    const QPointF from = m_pointer;
    const QEasingCurve easing(QEasingCurve::InOutCubic);
    const int frames = qRound(seconds * framesPerSecond);
    for (int frame = 1; frame <= frames; ++frame) {
        m_pointer = from + (point - from) * easing.valueForProgress(qreal(frame) / frames);
        m_tool->move(m_pointer);
        shoot();
    }
}

void Film::press()
{
    m_tool->press(m_pointer);
    m_down = true;
    m_sincePress = 0;
}

void Film::release()
{
    m_tool->release(m_pointer);
    m_down = false;
}

void Film::click()
{
    press();
    wait(0.08);
    release();
    wait(0.28);
}

void Film::wait(qreal seconds)
{
    for (int frames = qRound(seconds * framesPerSecond); frames > 0; --frames)
        shoot();
}

bool Film::finish()
{
    m_encoder.closeWriteChannel();
    return m_encoder.waitForFinished(60000) && m_encoder.exitStatus() == QProcess::NormalExit
        && m_encoder.exitCode() == 0;
}

void Film::shoot()
{
    const QImage frame = picture(1);
    m_encoder.write(reinterpret_cast<const char *>(frame.constBits()), frame.sizeInBytes());
    m_encoder.waitForBytesWritten();
    ++m_sincePress;
}

QImage Film::picture(qreal scale, bool withPointer)
{
    QImage image(qRound(width * scale), qRound(height * scale), QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    m_scene.setPenScale(scale);
    m_scene.render(&painter, image.rect(), field());
    painter.scale(scale, scale);
    paintBadge(&painter);
    if (withPointer) {
        paintRipple(&painter);
        paintPointer(&painter);
    }
    return image;
}

void Film::paintBadge(QPainter *painter) const
{
    if (m_icon.isEmpty())
        return;
    const QRectF badge(12, 12, 32, 32);
    QColor fill = m_scene.colors().majorGrid;
    painter->setPen(QPen(fill.lighter(130), 1));
    painter->setBrush(fill);
    painter->drawRoundedRect(badge, 6, 6);
    Icons::paint(painter, m_icon, badge.adjusted(5, 5, -5, -5), m_scene.colors().ink,
                 m_scene.colors().accent);
}

void Film::paintRipple(QPainter *painter) const
{
    if (m_sincePress >= rippleFrames)
        return;
    const qreal progress = qreal(m_sincePress) / rippleFrames;
    QColor color = m_scene.colors().accent;
    color.setAlphaF(0.8 * (1 - progress));
    painter->setPen(QPen(color, 2));
    painter->setBrush(Qt::NoBrush);
    const qreal radius = 5 + 14 * progress;
    painter->drawEllipse(onPicture(m_pointer), radius, radius);
}

void Film::paintPointer(QPainter *painter) const
{
    static const QPolygonF arrow(
        QVector<QPointF>{{0, 0}, {0, 15.5}, {3.7, 12.2}, {6.4, 18.2}, {9.1, 17}, {6.5, 11.2}, {11.4, 10.8}});
    painter->save();
    painter->translate(onPicture(m_pointer));
    painter->setPen(QPen(QColor("#10151b"), 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(m_down ? m_scene.colors().accent : QColor(Qt::white));
    painter->drawPolygon(arrow);
    painter->restore();
}
