#include "TipPlacement.h"

#include <Vidtips/VTWidget.h>

#include <QtCore/QEvent>
#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

namespace {

constexpr int distance = 12;

} // namespace

TipPlacement::TipPlacement(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool TipPlacement::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Resize && event->type() != QEvent::Show)
        return false;
    auto *tip = qobject_cast<Vidtips::VTWidget *>(watched);
    // A pinned tip has a title and goes where the user drags it.
    if (tip && tip->isWindow() && !(tip->windowFlags() & Qt::WindowTitleHint))
        place(tip);
    return false;
}

void TipPlacement::place(QWidget *tip) const
{
    const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        return;
    const QPoint place = placed(tip->geometry(), screen->availableGeometry(), QCursor::pos()).topLeft();
    if (place != tip->pos())
        tip->move(place);
}

QRect TipPlacement::placed(const QRect &tip, const QRect &screen, const QPoint &pointer)
{
    QRect result = tip;
    result.moveRight(qMin(result.right(), screen.right()));
    result.moveBottom(qMin(result.bottom(), screen.bottom()));
    if (result.contains(pointer))
        result.moveRight(pointer.x() - distance);
    result.moveLeft(qMax(result.left(), screen.left()));
    if (result.contains(pointer))
        result.moveBottom(pointer.y() - distance);
    result.moveTop(qMax(result.top(), screen.top()));
    return result;
}
