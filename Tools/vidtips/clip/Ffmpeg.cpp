#include "Ffmpeg.h"

#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>

namespace {

constexpr int forEver = -1;

bool meansFullDisk(const QString &said)
{
    return said.contains("No space left on device") || said.contains("File too large")
        || said.contains("Disk quota exceeded");
}

} // namespace

QString Ffmpeg::missing()
{
    return QStandardPaths::findExecutable("ffmpeg").isEmpty()
        ? "there is no command \"ffmpeg\", which does this work: install FFmpeg"
        : QString();
}

QString Ffmpeg::run(const QStringList &arguments)
{
    const QString problem = missing();
    if (!problem.isEmpty())
        return problem;
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start("ffmpeg", QStringList{"-v", "error", "-nostdin"} + arguments);
    const bool isDone = process.waitForFinished(forEver);
    const QString said = QString::fromLocal8Bit(process.readAll());
    if (!isDone || process.exitStatus() != QProcess::NormalExit)
        return QString("ffmpeg failed: %1").arg(process.errorString());
    // Versions differ in whether the last bytes that found no room are a failure.
    return process.exitCode() == 0 && !meansFullDisk(said) ? QString() : reasonFrom(said);
}

QString Ffmpeg::reasonFrom(const QString &said)
{
    if (meansFullDisk(said))
        return "the disk is full";
    static const QRegularExpression speaker("^\\[[^]]*\\] ");
    static const QRegularExpression encoder("Unknown encoder '([^']+)'");
    const QRegularExpressionMatch missing = encoder.match(said);
    if (missing.hasMatch())
        return QString("the ffmpeg of this machine cannot write this kind of clip: it lacks the encoder %1")
            .arg(missing.captured(1));
    // The first line is the cause, the others what followed from it.
    QString cause = said.trimmed().section('\n', 0, 0).remove(speaker).simplified();
    if (cause.endsWith('.'))
        cause.chop(1);
    return cause.isEmpty() ? "ffmpeg failed without saying why" : "ffmpeg failed: " + cause;
}
