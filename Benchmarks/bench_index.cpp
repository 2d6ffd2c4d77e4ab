// Loading and looking up 1,000 control files, against the bare file and XML work that this takes.

#include "ControlFiles.h"
#include "Measure.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTXmlElement.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtXml/QXmlSimpleReader>

#include <memory>

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

/** What an index has of a package's control files. */
class Content
{
public:
    explicit Content(int files)
        : paths(ControlFiles::writePackage(package, files))
        , lastKey(QStringLiteral("command.%1.%2").arg(files - 1).arg(ControlFiles::tipsPerFile - 1))
    {
    }

    void fill(Vidtips::VTIndex &index) const
    {
        for (const QString &path : paths)
            index.indexControlFile(path, package);
    }

private:
    const QTemporaryDir m_folder;

public:
    const QString package = QDir(m_folder.path()).canonicalPath() + QStringLiteral("/Bench.vidtips");
    const QStringList paths;
    const QString lastKey;
};

void lookUp(Vidtips::VTIndex &index, const QString &key, bool isThere)
{
    QString directory;
    int depth = 0;
    Vidtips::VTXmlElement *root = nullptr;
    if ((index.retrieve(key, QLocale(QStringLiteral("en_US")), directory, depth, root) != nullptr) != isThere)
        qFatal("%s was %s", qPrintable(key), isThere ? "not found" : "found");
    delete root;
}

// Files that were written just now are read again, as the next change might not show in their times.
void waitUntilSettled()
{
    QThread::sleep(2);
}

void measureLoading(VTContext &settings, const Content &content)
{
    compare(
        "loading 1,000 control files", 15, 1.5,
        [&] {
            Vidtips::VTIndex index(&settings, {});
            content.fill(index);
        },
        [&] { readHeads(content.paths); });
}

/** Returns the processor time of each of @p count times that @p piece is done: it never waits for anything.
 */
template <typename Piece>
double milliseconds(Piece piece, int count = 1)
{
    const double before = processSeconds();
    for (int i = 0; i < count; ++i)
        piece();
    return (processSeconds() - before) * 1e3 / count;
}

// Several look-ups in turn: a pass of the reader leaves the processor's caches without anything of the file
// system.
template <typename Work>
void compareWithReading(const char *what, const Content &content, Work work)
{
    constexpr int times = 20;
    compareMeasured(
        what, "ms", 15, 0.02, [&] { return milliseconds(work, times); },
        [&] { return milliseconds([&] { readAll(content.paths); }); });
}

void measureLookUps(VTContext &settings, const Content &content)
{
    const QString absent = QStringLiteral("command.absent");
    std::unique_ptr<Vidtips::VTIndex> index;
    compareMeasured(
        "the first look-up, of the last file's key", "ms", 15, 1.2,
        [&] {
            index = std::make_unique<Vidtips::VTIndex>(&settings, QStringList());
            content.fill(*index);
            return milliseconds([&] { lookUp(*index, content.lastKey, true); });
        },
        [&] { return milliseconds([&] { readAll(content.paths); }); });
    compareWithReading("looking the last file's key up", content,
                       [&] { lookUp(*index, content.lastKey, true); });
    compareWithReading("looking a key up that is in no file", content,
                       [&] { lookUp(*index, absent, false); });
    compareWithReading("listing all keys", content, [&] { index->keys(); });
}

void measureManyFiles(VTContext &settings, const Content &content)
{
    constexpr double mostMilliseconds = 15.0;
    Vidtips::VTIndex index(&settings, {});
    content.fill(index);
    lookUp(index, content.lastKey, true);
    compareMeasured(
        "the last of 10,000 files, against 15 ms", "ms", 25, 1.0,
        [&] { return milliseconds([&] { lookUp(index, content.lastKey, true); }); },
        [] { return mostMilliseconds; });
}

} // namespace

int main()
{
    const Content content(1000);
    const Content large(10000);
    VTContext settings;
    measureLoading(settings, content);
    waitUntilSettled();
    measureLookUps(settings, content);
    measureManyFiles(settings, large);
}
