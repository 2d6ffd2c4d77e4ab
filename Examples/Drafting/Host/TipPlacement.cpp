#include "TipPlacement.h"

#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>
#include <Vidtips/VTXmlElement.h>

#include <QtCore/QEvent>
#include <QtGui/QCursor>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>

namespace {

constexpr int distance = 12;

// To the right of the menu, or to its left where the screen ends before.
QRect beside(const QRect &menu, QRect tip, const QRect &screen)
{
    tip.moveLeft(menu.right() + distance);
    if (tip.right() > screen.right())
        tip.moveRight(menu.left() - distance);
    return tip;
}

} // namespace

TipPlacement::TipPlacement(QObject *parent)
    : QObject(parent)
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool TipPlacement::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::Resize && event->type() != QEvent::Show && event->type() != QEvent::Move)
        return false;
    auto *tip = qobject_cast<Vidtips::VTWidget *>(watched);
    if (!tip || !tip->isWindow())
        return false;
    // A pinned tip has a title and goes where the user drags it.
    if (tip->windowFlags() & Qt::WindowTitleHint)
        settle(tip);
    else if (event->type() == QEvent::Move)
        holdPlace(tip, event->spontaneous());
    else
        place(tip, event->type() == QEvent::Show);
    return false;
}

void TipPlacement::settle(Vidtips::VTWidget *tip) const
{
    const Vidtips::VTXmlElement *content = tip->view() ? tip->view()->content() : nullptr;
    if (!content || !tip->windowTitle().isEmpty())
        return;
    tip->setWindowTitle(content->attribute(QStringLiteral("title")));
    // The user has just clicked it: from now on the keyboard is for the pinned tip.
    tip->activateWindow();
    tip->view()->setFocus();
}

// Some window managers report the place of a new window while it is still on its way there; believing them
// once would make the next change of size bring it there. Nobody can drag a tip, so its place is where it was
// put.
void TipPlacement::holdPlace(QWidget *tip, bool byWindowSystem)
{
    if (!byWindowSystem)
        m_place = tip->pos();
    else if (m_mayCorrect && tip->isVisible() && tip->pos() != m_place) {
        m_mayCorrect = false;
        tip->move(m_place);
    }
}

void TipPlacement::place(QWidget *tip, bool isNew)
{
    m_mayCorrect = m_mayCorrect || isNew;
    m_place = tip->pos();
    const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        return;
    QRect geometry = tip->geometry();
    const QWidget *menu = QApplication::activePopupWidget();
    if (menu && menu->geometry().intersects(geometry))
        geometry = beside(menu->geometry(), geometry, screen->availableGeometry());
    const QPoint place = placed(geometry, screen->availableGeometry(), QCursor::pos()).topLeft();
    if (place != tip->pos())
        tip->move(place);
    m_place = place;
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
