#include "Harvest.h"

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QWidget>

#include <algorithm>

namespace {

constexpr int lookEvery = 200; // milliseconds
constexpr int quietFor = 1000; // milliseconds: then nothing more is added to the windows

bool isOrdinary(const QWidget *window)
{
    const Qt::WindowType type = window->windowType();
    return window->isVisible() && (type == Qt::Window || type == Qt::Dialog || type == Qt::Sheet);
}

bool isMain(const QWidget *window)
{
    return window->findChild<QMenuBar *>() || window->findChild<QToolBar *>();
}

// Returns the windows that a user would see as such.
QWidgetList ordinaryWindows()
{
    QWidgetList windows;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (isOrdinary(window))
            windows << window;
    }
    return windows;
}

int sizeOf(const QWidgetList &windows)
{
    int size = windows.size();
    for (const QWidget *window : windows)
        size += window->findChildren<QObject *>().size();
    return size;
}

} // namespace

Harvest::Harvest(const QString &folder, int wait, const Report &report)
    : m_folder(folder)
    , m_wait(wait)
    , m_report(report)
{
    m_sinceStart.start();
    m_sinceChange.start();
    connect(&m_timer, &QTimer::timeout, this, &Harvest::look);
    m_timer.start(lookEvery);
}

void Harvest::look()
{
    const QWidgetList windows = ordinaryWindows();
    const int size = sizeOf(windows);
    if (size != m_size)
        m_sinceChange.restart();
    m_size = size;
    const bool hasMain = std::any_of(windows.begin(), windows.end(), isMain);
    const bool isPatient = !hasMain && !m_sinceStart.hasExpired(m_wait);
    if (!windows.isEmpty() && !isPatient && m_sinceChange.hasExpired(quietFor))
        return finish(hasMain);
    if (windows.isEmpty() && m_sinceStart.hasExpired(m_wait)) {
        m_timer.stop();
        return m_report({{"event", "noWindow"}});
    }
    // A dialog that comes first has to be answered by who started the program.
    if (!hasMain)
        tellWaiting(windows.isEmpty() ? QString() : windows.constFirst()->windowTitle());
}

void Harvest::tellWaiting(const QString &window)
{
    if (window == m_waitingFor)
        return;
    m_waitingFor = window;
    m_report({{"event", "waiting"}, {"window", window}});
}

void Harvest::finish(bool hasMain)
{
    m_timer.stop();
    CommandWalk walk(m_folder);
    const QJsonArray commands = walk.walk(ordinaryWindows());
    QFile file(m_folder + "/commands.json");
    const QByteArray content = QJsonDocument(commands).toJson();
    const bool isWritten =
        file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
    file.close();
    m_report({{"event", "harvested"},
              {"isMain", hasMain},
              {"problem", isWritten ? QString() : file.errorString()}});
}
