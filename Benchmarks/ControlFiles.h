#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QStringList>

/** Content of the size that a large application has: 1,000 control files with 10 tips each. */
namespace ControlFiles {

constexpr int fileCount = 1000;
constexpr int tipsPerFile = 10;

inline QByteArray text(int number)
{
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<vidtips locale=\"en_US\">\n";
    for (int i = 0; i < tipsPerFile; ++i) {
        const QByteArray key = "command." + QByteArray::number(number) + '.' + QByteArray::number(i);
        xml += "  <vidtip key=\"" + key
            + "\" title=\"Command\" shortcut=\"Ctrl+K\">\n"
              "    <summary>Does what the command does, in one or two lines of text.</summary>\n"
              "    <steps><step>Pick the first point.</step><step>Pick the second point.</step></steps>\n"
              "    <video source=\"clip.mp4\"/>\n  </vidtip>\n";
    }
    return xml + "</vidtips>\n";
}

inline void write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
}

/** Writes @p count files into the folder @p package; returns their paths. */
inline QStringList writePackage(const QString &package, int count = fileCount)
{
    QDir().mkpath(package + QStringLiteral("/Control"));
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        paths << QStringLiteral("%1/Control/tips%2.xml").arg(package).arg(i);
        write(paths.constLast(), text(i));
    }
    return paths;
}

} // namespace ControlFiles
