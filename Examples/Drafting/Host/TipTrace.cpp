#include "TipTrace.h"

#include "TipHost.h"

#include <Vidtips/VTWidget.h>

#include <QtGui/QWindow>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QToolButton>

#include <cstdio>

TipTrace::TipTrace(TipHost *tips, QWidget *window)
    : QObject(window)
    , m_window(window)
{
    connect(tips, &TipHost::tipShown, this,
            [](const QString &key) { write(QStringLiteral("shown %1").arg(key)); });
    connect(tips, &TipHost::tipHidden, this,
            [](const QString &key) { write(QStringLiteral("hidden %1").arg(key)); });
    // By then the window manager has put the window in its place.
    m_settling.setInterval(200);
    m_settling.setSingleShot(true);
    connect(&m_settling, &QTimer::timeout, this, &TipTrace::writeCommands);
    qApp->installEventFilter(this);
}

bool TipTrace::eventFilter(QObject *watched, QEvent *event)
{
    const auto *const widget = qobject_cast<QWidget *>(watched);
    if (event->type() == QEvent::Expose)
        heedExposure(static_cast<QWindow *>(watched));
    if (watched == m_window)
        heedWindow(event);
    else if (const auto *const tip = qobject_cast<Vidtips::VTWidget *>(watched))
        heedTip(tip, event);
    if (widget && widget->isWindow())
        heedAnyWindow(widget, event->type());
    return false;
}

void TipTrace::heedWindow(QEvent *event)
{
    const bool changes = event->type() == QEvent::WindowActivate || event->type() == QEvent::Resize;
    if (changes && !m_isReady && m_window->isActiveWindow())
        m_settling.start();
    if (event->type() == QEvent::LanguageChange)
        write(QStringLiteral("language"));
}

// A window that was asked for is not there yet: a Wayland compositor refuses a menu when keys come before it.
void TipTrace::heedExposure(QWindow *window)
{
    static const char isTold[] = "isTold";
    if (window->isExposed() && !window->property(isTold).toBool())
        write(QStringLiteral("opened %1").arg(window->title()));
    window->setProperty(isTold, window->isExposed());
}

void TipTrace::heedAnyWindow(const QWidget *window, QEvent::Type event)
{
    if (event == QEvent::WindowActivate)
        write(QStringLiteral("active %1").arg(window->windowTitle()));
    else if (event == QEvent::Hide)
        write(QStringLiteral("closed %1").arg(window->windowTitle()));
}

void TipTrace::heedTip(const QWidget *tip, QEvent *event)
{
    const bool changes =
        event->type() == QEvent::Show || event->type() == QEvent::Move || event->type() == QEvent::Resize;
    if (!changes || !tip->isVisible())
        return;
    const QRect place = tip->geometry();
    write(QStringLiteral("tip %1 %2 %3 %4")
              .arg(place.x())
              .arg(place.y())
              .arg(place.width())
              .arg(place.height()));
}

void TipTrace::writeCommands()
{
    m_isReady = true;
    const auto buttons = m_window->findChildren<QToolButton *>();
    for (const QToolButton *button : buttons) {
        if (!button->isVisible() || !button->defaultAction())
            continue;
        const QPoint middle = button->mapToGlobal(button->rect().center());
        write(QStringLiteral("command %1 %2 %3")
                  .arg(button->defaultAction()->objectName())
                  .arg(middle.x())
                  .arg(middle.y()));
    }
    write(QStringLiteral("ready"));
}

void TipTrace::write(const QString &line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}
