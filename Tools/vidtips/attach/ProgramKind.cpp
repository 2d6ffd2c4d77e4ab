#include "ProgramKind.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtCore/QProcessEnvironment>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>

namespace {

constexpr int longestListing = 30000; // milliseconds
constexpr int headerSize = 20; // bytes: up to the kind of processor

QByteArray headerOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(headerSize) : QByteArray();
}

bool isForThisProcessor(const QByteArray &header)
{
    const QByteArray own = headerOf(QStringLiteral("/proc/self/exe"));
    return own.size() < headerSize || header.size() < headerSize
        || (own.at(4) == header.at(4) && own.mid(18, 2) == header.mid(18, 2));
}

// What keeps a program in a file system of its own, where neither Qt nor this module is the one out here.
QString sandboxOf(const QString &path)
{
    const QString target = QFileInfo(path).canonicalFilePath();
    const QString name = QFileInfo(target).fileName();
    if (name == "snap" || path.startsWith("/snap/") || target.startsWith("/snap/"))
        return "snap";
    if (name == "flatpak" || target.contains("/flatpak/exports/"))
        return "Flatpak";
    return {};
}

/** The libraries that a program is linked with: names and paths, as "ldd" lists them. */
struct Libraries
{
    QString text;
    bool isStatic = false;

    bool has(const QString &name) const { return text.contains('\t' + name); }

    QString pathOf(const QString &name) const
    {
        const QRegularExpression line(QRegularExpression::escape(name) + "[^ ]* => ([^ ]+)");
        return line.match(text).captured(1);
    }
};

Libraries librariesOf(const QString &path)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C");
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start("ldd", {path});
    Libraries libraries;
    if (!process.waitForFinished(longestListing))
        return libraries;
    libraries.text = QString::fromLocal8Bit(process.readAll());
    libraries.isStatic =
        libraries.text.contains("statically linked") || libraries.text.contains("not a dynamic executable");
    return libraries;
}

// The minor version stands in the name of the file that "libQt5Core.so.5" is a link to.
QString versionProblem(const Libraries &libraries)
{
    const QString file =
        QFileInfo(QFileInfo(libraries.pathOf("libQt5Core.so.5")).canonicalFilePath()).fileName();
    static const QRegularExpression version("\\.so\\.(\\d+)\\.(\\d+)");
    const QRegularExpressionMatch match = version.match(file);
    if (!match.hasMatch() || match.captured(2).toInt() == (QT_VERSION >> 8 & 0xff))
        return {};
    return QString("it uses Qt %1.%2, and the tips need Qt " QT_VERSION_STR)
        .arg(match.captured(1), match.captured(2));
}

QString linkingProblem(const QString &path)
{
    const Libraries libraries = librariesOf(path);
    if (libraries.isStatic)
        return "it is linked statically, so nothing can be added to the Qt that it may have inside";
    if (libraries.has("libQt6Core.so"))
        return "it is a program of Qt 6, and the tips need Qt 5";
    if (libraries.has("libQt5Core.so.5"))
        return versionProblem(libraries);
    return libraries.has("libQtCore.so.4") ? "it is a program of Qt 4, and the tips need Qt 5" : QString();
}

QString unfitness(const QString &path)
{
    const QString sandbox = sandboxOf(path);
    if (!sandbox.isEmpty())
        return QString("%1 runs its programs in a sandbox with a Qt of its own").arg(sandbox);
    const QByteArray header = headerOf(path);
    if (!header.startsWith("\177ELF"))
        return {};
    if (header.mid(8, 2) == "AI")
        return "it is an AppImage, which has a Qt of its own inside";
    if (!isForThisProcessor(header))
        return "it is made for another kind of processor";
    return linkingProblem(path);
}

} // namespace

QString ProgramKind::find(const QString &command)
{
    if (!command.contains('/'))
        return QStandardPaths::findExecutable(command);
    const QFileInfo file(command);
    return file.isFile() && file.isExecutable() ? file.absoluteFilePath() : QString();
}

QString ProgramKind::problemWith(const QString &command, const QString &path)
{
    if (path.isEmpty())
        return QString("there is no command \"%1\"").arg(command);
    const QString reason = unfitness(path);
    return reason.isEmpty() ? QString() : QString("nothing can be added to %1: %2").arg(command, reason);
}
