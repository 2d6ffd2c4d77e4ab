// Loading and looking up 1,000 control files, against the bare file and XML work that this takes.

#include "Measure.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTXmlElement.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtXml/QXmlSimpleReader>

QT_WARNING_DISABLE_DEPRECATED

namespace {

constexpr int fileCount = 1000;
constexpr int tipsPerFile = 10;

QByteArray controlFile(int number)
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

QStringList writePackage(const QString &package)
{
    QDir().mkpath(package + QStringLiteral("/Control"));
    QStringList paths;
    for (int i = 0; i < fileCount; ++i) {
        QFile file(QStringLiteral("%1/Control/tips%2.xml").arg(package).arg(i));
        if (!file.open(QIODevice::WriteOnly) || file.write(controlFile(i)) < 0)
            qFatal("cannot write %s", qPrintable(file.fileName()));
        paths << file.fileName();
    }
    return paths;
}

void readHeads(const QStringList &paths)
{
    for (const QString &path : paths) {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        QString head;
        while (!head.contains(QLatin1String("<vidtips")))
            head = QString::fromUtf8(file.readLine(1024));
    }
}

void readAll(const QStringList &paths)
{
    for (const QString &path : paths) {
        QFile file(path);
        file.open(QIODevice::ReadOnly);
        QXmlSimpleReader reader;
        QXmlDefaultHandler handler;
        reader.setContentHandler(&handler);
        reader.parse(QXmlInputSource(&file));
    }
}

} // namespace

int main()
{
    const QTemporaryDir folder;
    const QString package = QDir(folder.path()).canonicalPath() + QStringLiteral("/Bench.vidtips");
    const QStringList paths = writePackage(package);
    VTContext settings;

    compare(
        "loading 1,000 control files", 15, 1.5,
        [&] {
            Vidtips::VTIndex index(&settings, {});
            for (const QString &path : paths)
                index.indexControlFile(path, package);
        },
        [&] { readHeads(paths); });

    Vidtips::VTIndex index(&settings, {});
    for (const QString &path : paths)
        index.indexControlFile(path, package);
    const QString key = QStringLiteral("command.%1.%2").arg(fileCount - 1).arg(tipsPerFile - 1);
    compare(
        "retrieving the last file's key", 7, 1.2,
        [&] {
            QString directory;
            int depth = 0;
            Vidtips::VTXmlElement *root = nullptr;
            if (!index.retrieve(key, QLocale(QStringLiteral("en_US")), directory, depth, root))
                qFatal("the key was not found");
            delete root;
        },
        [&] { readAll(paths); });
}
