#include "VTPointerWatch_p.h"

#include "VTPointer_p.h"

#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QWidget>

namespace Vidtips {

namespace {

/** Milliseconds between looks at a pointer that is elsewhere: well below the time after which a tip goes. */
constexpr int elsewhereInterval = 500;

/** Tells whether @p window gets events beside the modal window, so: whether it belongs to that. */
bool belongsTo(const QWindow *window, const QWindow *modal)
{
    while (window && window != modal)
        window = window->parent() ? window->parent() : window->transientParent();
    return window;
}

bool hears(const QWidget *widget)
{
    const QWidget *const modal = QApplication::activeModalWidget();
    return widget && (!modal || belongsTo(widget->window()->windowHandle(), modal->windowHandle()));
}

} // namespace

VTPointerWatch::VTPointerWatch(QObject *parent)
    : QObject(parent)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &VTPointerWatch::look);
}

void VTPointerWatch::lookSoon()
{
    m_timer.start(0);
}

void VTPointerWatch::rest()
{
    m_timer.stop();
}

void VTPointerWatch::look()
{
    const VTPointer pointer = VTPointer::now();
    if (!hears(pointer.widget))
        m_timer.start(elsewhereInterval);
    // Last, as who hears of it may do anything.
    Q_EMIT looked(pointer.widget, pointer.position);
}

} // namespace Vidtips
