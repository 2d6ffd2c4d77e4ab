#pragma once

#include "CommandWalk.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <functional>

QT_BEGIN_NAMESPACE
class QJsonObject;
QT_END_NAMESPACE

/** Waits until the windows of a program are up, and writes down what commands they have. */
class Harvest : public QObject
{
    Q_OBJECT

public:
    using Report = std::function<void(const QJsonObject &)>;

    /**
     * Writes commands.json and the icons to @p folder, and reports what it waits for and that it has
     * finished. A window without menus and tool bars is taken for all that there is after @p wait
     * milliseconds.
     */
    Harvest(const QString &folder, int wait, const Report &report);

private:
    void look();
    void finish(bool hasMain);
    void tellWaiting(const QString &window);

    const QString m_folder;
    const int m_wait;
    const Report m_report;
    QTimer m_timer;
    QElapsedTimer m_sinceStart;
    QElapsedTimer m_sinceChange;
    int m_size = -1;
    QString m_waitingFor;
};
