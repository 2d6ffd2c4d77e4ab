#pragma once

#include <QtCore/QEvent>
#include <QtCore/QObject>
#include <QtCore/QTimer>

class QWidget;
class QWindow;
class TipHost;

/**
 * Tells a program that drives the application what happens, one line each on standard output: "command KEY X
 * Y" for the middle of every tool button in screen pixels, "ready" after them, then "shown KEY" and "hidden
 * KEY", "tip X Y WIDTH HEIGHT" whenever a tip comes, moves or grows, "language" when that has changed, and
 * "opened TITLE", "active TITLE" and "closed TITLE" for windows, menus among them.
 */
class TipTrace : public QObject
{
    Q_OBJECT

public:
    /** Traces the tips of @p tips and the commands of @p window, once that is active. */
    TipTrace(TipHost *tips, QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void heedWindow(QEvent *event);
    static void heedExposure(QWindow *window);
    static void heedAnyWindow(const QWidget *window, QEvent::Type event);
    static void heedTip(const QWidget *tip, QEvent *event);
    void writeCommands();
    static void write(const QString &line);

    QWidget *const m_window;
    QTimer m_settling;
    bool m_isReady = false;
};
