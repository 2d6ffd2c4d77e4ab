#include "TipTrace.h"

#include "TipHost.h"

#include <QtCore/QEvent>
#include <QtCore/QTimer>
#include <QtWidgets/QAction>
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
    window->installEventFilter(this);
}

bool TipTrace::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowActivate) {
        watched->removeEventFilter(this);
        // By then the window manager has put the window in its place.
        QTimer::singleShot(200, this, &TipTrace::writeCommands);
    }
    return false;
}

void TipTrace::writeCommands()
{
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
