#pragma once

#include <QtCore/QEvent>
#include <QtGui/QPaintEvent>
#include <QtWidgets/QWidget>

/** Notes what a widget paints. */
class PaintLog : public QObject
{
public:
    explicit PaintLog(QWidget *widget) { widget->installEventFilter(this); }

    int count(const QRect &area) const
    {
        int touching = 0;
        for (const QRegion &region : m_painted)
            touching += region.intersects(area);
        return touching;
    }

    void clear() { m_painted.clear(); }

private:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            m_painted.append(static_cast<QPaintEvent *>(event)->region());
        return false;
    }

    QVector<QRegion> m_painted;
};
