#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTXmlElement.h>

#include "OpenedFiles.h"

#include <QtCore/QDir>
#include <QtCore/QSaveFile>
#include <QtCore/QStorageInfo>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <map>
#include <memory>

using Vidtips::VTIndex;
using Vidtips::VTXmlElement;

namespace {

QByteArray document(const QByteArray &key)
{
    return "<vidtips><vidtip key='" + key + "'/></vidtips>";
}

const QByteArray oldContent = document("old");
const QByteArray newContent = document("new");

void check(bool isDone, const QString &path)
{
    if (!isDone)
        qFatal("cannot save %s", qUtf8Printable(path));
}

void writeInto(const QString &path, const QByteArray &content, QIODevice::OpenMode mode)
{
    QFile file(path);
    check(file.open(mode) && file.write(content) == content.size(), path);
}

void replace(const QString &path, const QString &with)
{
    check(rename(QFile::encodeName(with).constData(), QFile::encodeName(path).constData()) == 0, path);
}

QString written(const QString &path, const QByteArray &content)
{
    writeInto(path, content, QIODevice::WriteOnly);
    return path;
}

QString linked(const QString &path, const QString &target)
{
    check(QFile::link(target, path), path);
    return path;
}

void keepTimes(const QString &path, const std::function<void()> &save)
{
    struct stat before;
    check(stat(QFile::encodeName(path).constData(), &before) == 0, path);
    save();
    const timespec times[] = {before.st_atim, before.st_mtim};
    check(utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, 0) == 0, path);
}

void saveByMapping(const QString &path)
{
    QFile file(path);
    check(file.open(QIODevice::ReadWrite), path);
    uchar *const bytes = file.map(0, file.size());
    check(bytes != nullptr, path);
    memcpy(bytes, newContent.constData(), size_t(newContent.size()));
}

void replaceFolder(const QString &path, const std::function<void(const QString &folder)> &replacement)
{
    const QString folder = QFileInfo(path).absolutePath();
    check(QDir().rename(folder, folder + ".old"), folder);
    replacement(folder);
}

/** A way of saving the new content at a path where the old one is, or of taking it away. */
struct Way
{
    const char *name;
    std::function<void(const QString &path)> save;
    bool isThere = true; // afterwards
};

const Way ways[] = {
    {"in place", [](const QString &path) { writeInto(path, newContent, QIODevice::ReadWrite); }},
    {"truncated first", [](const QString &path) { writeInto(path, newContent, QIODevice::WriteOnly); }},
    {"longer", [](const QString &path) { writeInto(path, newContent + "<!-- -->", QIODevice::WriteOnly); }},
    {"in place, with the old time",
     [](const QString &path) {
         keepTimes(path, [&] { writeInto(path, newContent, QIODevice::ReadWrite); });
     }},
    {"by mapping its memory", &saveByMapping},
    {"by rename", [](const QString &path) { replace(path, written(path + ".part", newContent)); }},
    {"by rename, with the old time",
     [](const QString &path) {
         keepTimes(path, [&] { replace(path, written(path + ".part", newContent)); });
     }},
    {"as Qt saves",
     [](const QString &path) {
         QSaveFile file(path);
         check(file.open(QIODevice::WriteOnly) && file.write(newContent) > 0 && file.commit(), path);
     }},
    {"removed and made again",
     [](const QString &path) {
         check(QFile::remove(path), path);
         written(path, newContent);
     }},
    {"the old one kept beside it",
     [](const QString &path) {
         check(QFile::rename(path, path + '~'), path);
         written(path, newContent);
     }},
    {"replaced by a link",
     [](const QString &path) {
         replace(path, linked(path + ".link", written(path + ".other", newContent)));
     }},
    {"replaced by an older file", [](const QString &path) { replace(path, path + ".older"); }},
    {"replaced by another name of a file",
     [](const QString &path) {
         check(QFile::remove(path), path);
         check(link(QFile::encodeName(path + ".older").constData(), QFile::encodeName(path).constData()) == 0,
               path);
     }},
    {"through a link that leads to it",
     [](const QString &path) { writeInto(linked(path + ".link", path), newContent, QIODevice::ReadWrite); }},
    {"on another device",
     [](const QString &path) {
         static const QTemporaryDir other("/dev/shm/other-XXXXXX");
         replace(path, linked(path + ".link", written(other.filePath("new.xml"), newContent)));
     }},
    {"its folder replaced",
     [](const QString &path) {
         replaceFolder(path, [&](const QString &folder) {
             check(QDir().mkdir(folder), folder);
             written(path, newContent);
         });
     }},
    {"its folder replaced by a link",
     [](const QString &path) {
         replaceFolder(path, [&](const QString &folder) {
             check(QDir().mkdir(folder + ".new"), folder);
             written(folder + ".new/" + QFileInfo(path).fileName(), newContent);
             linked(folder, folder + ".new");
         });
     }},
    {"removed", [](const QString &path) { check(QFile::remove(path), path); }, false},
    {"emptied", [](const QString &path) { writeInto(path, {}, QIODevice::WriteOnly); }, false},
    {"replaced by a pipe",
     [](const QString &path) {
         check(QFile::remove(path) && mkfifo(QFile::encodeName(path).constData(), 0600) == 0, path);
     },
     false},
    {"replaced by a folder",
     [](const QString &path) { check(QFile::remove(path) && QDir().mkdir(path), path); }, false},
};

/** A folder on one file system, with a file to be saved in each way. */
struct Place
{
    explicit Place(const QString &folder)
        : directory(folder + "/saving-XXXXXX")
    {
        for (const Way &way : ways) {
            const QString path = pathFor(way);
            check(QDir().mkpath(QFileInfo(path).absolutePath()), path);
            written(path, oldContent);
            written(path + ".older", newContent);
            // A neighbour on each side: files of a folder are looked at together.
            for (const char *name : {"a.xml", "z.xml"})
                written(QFileInfo(path).absolutePath() + '/' + name, document("neighbour"));
        }
    }

    QString pathFor(const Way &way) const
    {
        return directory.filePath(QString(way.name).replace(' ', '-') + "/Control/file.xml");
    }

    QTemporaryDir directory;
};

bool has(VTIndex &index, const QString &key)
{
    QString directory;
    int depth = 0;
    VTXmlElement *root = nullptr;
    const bool isThere = index.retrieve(key, QLocale("en_US"), directory, depth, root) != nullptr;
    delete root;
    return isThere;
}

} // namespace

/** That a look-up sees what was saved before it, on each kind of file system that the machine has. */
class tst_VTIndexSaving : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void nextLookUpSeesIt_data();
    void nextLookUpSeesIt();

private:
    OpenedFiles m_opened;
    std::map<QByteArray, std::unique_ptr<Place>> m_places; // by the kind of file system
};

void tst_VTIndexSaving::initTestCase()
{
    for (const QString &folder :
         {QDir::tempPath(), QDir::currentPath(), QString("/dev/shm"), QString("/var/tmp")}) {
        const QByteArray kind = QStorageInfo(folder).fileSystemType();
        if (QFileInfo(folder).isWritable() && m_places.count(kind) == 0)
            m_places.emplace(kind, std::make_unique<Place>(folder));
    }
    QVERIFY(!m_places.empty());
}

void tst_VTIndexSaving::nextLookUpSeesIt_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<int>("way");
    for (const auto &place : m_places) {
        for (size_t way = 0; way < std::size(ways); ++way)
            QTest::addRow("%s, %s", place.first.constData(), ways[way].name) << place.first << int(way);
    }
}

void tst_VTIndexSaving::nextLookUpSeesIt()
{
    QFETCH(QByteArray, kind);
    QFETCH(int, way);
    const QString path = m_places.at(kind)->pathFor(ways[way]);
    VTContext context;
    VTIndex index(&context, {});
    for (const char *name : {"a.xml", "file.xml", "z.xml"})
        index.store(nullptr, QLocale(), QFileInfo(path).absolutePath() + '/' + name, 1);
    m_opened.watch(path);
    // Where it goes on being opened the file system tells nothing of changes.
    (void)QTest::qWaitFor(
        [&] {
            m_opened.take();
            return !has(index, "new") && !m_opened.take();
        },
        3000);
    QVERIFY(has(index, "old") && !has(index, "new"));

    ways[way].save(path);
    QCOMPARE(has(index, "new"), ways[way].isThere);
    QVERIFY(!has(index, "old"));
    QCOMPARE(index.keys().contains("new"), ways[way].isThere);
    QCOMPARE(index.keys().count("neighbour"), index.keys().size() - int(ways[way].isThere));
}

QTEST_GUILESS_MAIN(tst_VTIndexSaving)
#include "tst_vtindexsaving.moc"
