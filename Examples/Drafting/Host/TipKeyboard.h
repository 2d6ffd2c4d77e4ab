#pragma once

#include <QtCore/QObject>

class QKeyEvent;
class TipHost;

/**
 * Calls the tip under the pointer by Ctrl where tips appear only with that held: pressing it is enough, and
 * nobody has to move the pointer.
 */
class TipKeyboard : public QObject
{
    Q_OBJECT

public:
    TipKeyboard(TipHost *host, QObject *parent);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void callTip(const QKeyEvent *event);

    TipHost *m_host;
};
