// Checking a package of 1,000 control files with the command-line tool, against what an author may wait.

#include "ControlFiles.h"
#include "Measure.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

namespace {

constexpr double mostMilliseconds = 2000.0;

QString writeContent(const QString &folder)
{
    QString package = folder + QStringLiteral("/Bench.vidtips");
    ControlFiles::writePackage(package);
    for (const char *place : {"/Resources", "/ui"})
        QDir().mkpath(package + QLatin1String(place));
    for (const char *file : {"/ui/VidtipsUI.qml", "/ui/SimpleTooltip.qml"})
        ControlFiles::write(package + QLatin1String(file),
                            "import QtQuick 1.1\nItem { width: 9; height: 9 }\n");
    if (!QFile::copy(QStringLiteral(CLIP), package + QStringLiteral("/Resources/clip.mp4")))
        qFatal("cannot copy %s", CLIP);
    return package;
}

double millisecondsOf(const QStringList &arguments)
{
    QProcess tool;
    QElapsedTimer timer;
    timer.start();
    tool.start(QStringLiteral(VIDTIPS_TOOL), arguments);
    if (!tool.waitForFinished(-1) || tool.exitStatus() != QProcess::NormalExit || tool.exitCode() != 0)
        qFatal("the check failed: %s", tool.readAll().constData());
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    QString package = writeContent(QDir(folder.path()).canonicalPath());
    compareMeasured(
        "checking 1,000 control files", "ms", 7, 1.0,
        [&] {
            return millisecondsOf({QStringLiteral("check"), package});
        },
        [] { return mostMilliseconds; });
}
