#include "QtTool.h"

#include <QtCore/QLibraryInfo>
#include <QtCore/QProcess>
#include <QtCore/QStandardPaths>

namespace {
constexpr int longestRun = 120000; // milliseconds
}

QString QtTool::find(const QString &name)
{
    const QString own =
        QStandardPaths::findExecutable(name, {QLibraryInfo::location(QLibraryInfo::BinariesPath)});
    return own.isEmpty() ? QStandardPaths::findExecutable(name) : own;
}

QString QtTool::run(const QString &program, const QStringList &arguments, QStringList *warnings)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    const bool isDone = process.waitForFinished(longestRun);
    const QString said = QString::fromLocal8Bit(process.readAll());
    if (isDone && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0) {
        if (warnings)
            *warnings += said.split('\n', Qt::SkipEmptyParts);
        return {};
    }
    const QString reason = said.simplified();
    return reason.isEmpty() ? QString("%1 failed: %2").arg(program, process.errorString()) : reason;
}
