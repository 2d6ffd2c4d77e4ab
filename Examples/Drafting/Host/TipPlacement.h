#pragma once

#include <QtCore/QObject>
#include <QtCore/QRect>

class QWidget;

namespace Vidtips {
class VTWidget;
}

/**
 * Keeps the tip on screen. The library puts a tip beside the pointer and lets it grow downwards; where the
 * screen ends is for the host to say.
 */
class TipPlacement : public QObject
{
    Q_OBJECT

public:
    explicit TipPlacement(QObject *parent);

    /** Where a tip of @p tip goes so that it lies inside @p screen and does not cover @p pointer. */
    static QRect placed(const QRect &tip, const QRect &screen, const QPoint &pointer);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void settle(Vidtips::VTWidget *tip) const;
    void holdPlace(QWidget *tip, bool byWindowSystem);
    void place(QWidget *tip, bool isNew);

    QPoint m_place;
    bool m_mayCorrect = false;
};
