#pragma once

#include "Core/DraftingScene.h"

#include <QtCore/QProcess>
#include <QtGui/QImage>

#include <map>
#include <memory>

class Tool;

/** How a clip is stored. */
struct ClipFormat
{
    QString suffix;
    QStringList encoder;
};

/**
 * Films commands at work: the very tools of the application act on a drawing, led by a pointer that the
 * script moves and clicks, and every picture is the drawing as the application paints it.
 */
class Film
{
public:
    static constexpr int width = 352;
    static constexpr int height = 198;
    static constexpr int framesPerSecond = 25;

    /** Starts a clip in @p file that shows the command named @p icon. */
    Film(const QString &file, const ClipFormat &format, const QString &icon);
    ~Film();

    DraftingScene &scene() { return m_scene; }

    /** Puts the pointer at @p point without filming. */
    void start(const QPointF &point) { m_pointer = point; }
    void use(Tool *tool);

    /** Films the pointer's way to @p point, easing in and out. */
    void moveTo(const QPointF &point, qreal seconds);
    void press();
    void release();
    void click();
    void wait(qreal seconds);

    /** Ends the clip; false when the encoder failed. */
    bool finish();

    /** The drawing as the camera sees it, @p scale pixels of the picture to one of the clip. */
    QImage picture(qreal scale, bool withPointer = true);

private:
    void shoot();
    void paintBadge(QPainter *painter) const;
    void paintPointer(QPainter *painter) const;
    void paintRipple(QPainter *painter) const;

    DraftingScene m_scene;
    QProcess m_encoder;
    QString m_icon;
    QPointF m_pointer;
    std::unique_ptr<Tool> m_tool;
    bool m_down = false;
    int m_sincePress = 1000;
};
