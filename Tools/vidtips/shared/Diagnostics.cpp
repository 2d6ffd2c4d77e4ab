#include "Diagnostics.h"

#include "Console.h"

#include <QtCore/QMutex>
#include <QtCore/QtGlobal>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int mostMessages = 1000;

QMutex lock;
QStringList messages;

void keep(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtFatalMsg) {
        const bool isDisplay = message.contains("platform plugin");
        const QString problem = isDisplay ? "the display cannot be opened" : message.section('\n', 0, 0);
        std::fputs(("vidtips: " + problem + '\n').toUtf8().constData(), stderr);
        std::_Exit(ExitBadInput);
    }
    const QMutexLocker locker(&lock);
    if (messages.size() < mostMessages)
        messages << message;
}

} // namespace

void Diagnostics::capture()
{
    qInstallMessageHandler(&keep);
}

QStringList Diagnostics::take()
{
    const QMutexLocker locker(&lock);
    QStringList taken;
    taken.swap(messages);
    return taken;
}
