#pragma once

#include <QtCore/QObject>

class QKeyEvent;
class TipHost;

/** Lets the keyboard reach the tip on screen: F1 opens its help, Escape hides it, Ctrl calls it. */
class TipKeyboard : public QObject
{
    Q_OBJECT

public:
    TipKeyboard(TipHost *host, QObject *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool handles(const QKeyEvent *event) const;
    void callTip(const QKeyEvent *event);

    TipHost *m_host;
};
