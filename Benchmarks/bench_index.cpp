// Loading and looking up 1,000 control files, against the bare file and XML work that this takes.

#include "ControlFiles.h"
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
    const QStringList paths = ControlFiles::writePackage(package);
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
    const QString key =
        QStringLiteral("command.%1.%2").arg(ControlFiles::fileCount - 1).arg(ControlFiles::tipsPerFile - 1);
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
