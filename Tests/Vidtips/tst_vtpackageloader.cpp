#include <Vidtips/VTPackageLoader_p.h>

#include "TestHost.h"
#include "TestPackage.h"

#include <QtTest/QTest>

using namespace Vidtips;

class tst_VTPackageLoader : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void offersTheControlFilesOfPackages();
    void otherNames();
    void namesEachFolderOnceNewestFirst();
    void whatIsNoFolderIsSkipped_data();
    void whatIsNoFolderIsSkipped();
    void tellsWhatItDoes();

private:
    QStringList indexed() const;

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
};

void tst_VTPackageLoader::init()
{
    packages.reset(new TestPackages);
    session.reset(new TestSession({}));
}

// The control files that the index was offered, in no certain order, as no folder has one.
QStringList tst_VTPackageLoader::indexed() const
{
    QStringList files;
    for (const auto &file : std::as_const(session->index.indexed))
        files << QDir(file.second).relativeFilePath(file.first) + " of " + QFileInfo(file.second).fileName();
    files.sort();
    return files;
}

void tst_VTPackageLoader::offersTheControlFilesOfPackages()
{
    const QString file = packages->writeControl("A", "a.xml", "");
    packages->writeControl("A", "b.xml", "");
    packages->write("A.vidtips/Control/c.txt", "");
    packages->write("A.vidtips/Control/deeper/d.xml", "");
    packages->write("A.vidtips/e.xml", "");
    packages->writeControl("B", "f.xml", "");
    packages->write("C.other/Control/g.xml", "");
    packages->write("D.vidtips", "a file");
    packages->write("outside/Control/h.xml", "");
    QVERIFY(QFile::link(packages->filePath("outside"), packages->filePath("E.vidtips")));
    QVERIFY(QFile::link(file, packages->filePath("A.vidtips/Control/i.xml")));
    QStringList loaded;
    VTPackageLoader(session->manager()).loadFolders({packages->path()}, &loaded);
    QCOMPARE(indexed(),
             (QStringList{"Control/a.xml of A.vidtips", "Control/b.xml of A.vidtips",
                          "Control/f.xml of B.vidtips"}));
}

void tst_VTPackageLoader::otherNames()
{
    session->set(PackageSuffix, "tips");
    session->set(ControlFolder, "Texts");
    packages->write("A.tips/Texts/a.xml", "");
    packages->write("A.tips/Control/b.xml", "");
    packages->writeControl("B", "c.xml", "");
    QStringList loaded;
    VTPackageLoader(session->manager()).loadFolders({packages->path()}, &loaded);
    QCOMPARE(indexed(), QStringList{"Texts/a.xml of A.tips"});
}

void tst_VTPackageLoader::namesEachFolderOnceNewestFirst()
{
    packages->write("first/A.vidtips/Control/a.xml", "");
    packages->write("second/B.vidtips/Control/b.xml", "");
    const QString first = packages->filePath("first");
    const QString second = packages->filePath("second");
    QStringList loaded{"/there/before"};
    const VTPackageLoader loader(session->manager());
    loader.loadFolders({first, second, first + "/../first/"}, &loaded);
    QCOMPARE(loaded, (QStringList{second, first, "/there/before"}));
    QCOMPARE(indexed().size(), 3);
}

void tst_VTPackageLoader::whatIsNoFolderIsSkipped_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("a file") << "file";
    QTest::newRow("missing") << "missing";
}

void tst_VTPackageLoader::whatIsNoFolderIsSkipped()
{
    QFETCH(QString, path);
    packages->write("file", "");
    packages->write("good/A.vidtips/Control/a.xml", "");
    QStringList loaded;
    VTPackageLoader(session->manager())
        .loadFolders({packages->filePath(path), packages->filePath("good")}, &loaded);
    QCOMPARE(loaded, QStringList{packages->filePath("good")});
    QCOMPARE(indexed().size(), 1);
}

void tst_VTPackageLoader::tellsWhatItDoes()
{
    const QString file = packages->writeControl("A", "a.xml", "");
    session->set(MessageThreshold, int(VTMessageInformation));
    session->host->messages.clear();
    QStringList loaded;
    VTPackageLoader(session->manager()).loadFolders({packages->path()}, &loaded);
    const QString package = packages->filePath("A.vidtips");
    const QList<QPair<int, QString>> expected{
        {300, "indexing packages (*.vidtips) in " + packages->path() + ' '},
        {300, "indexing control files in " + package},
        {300, "looking for control files in :" + package + "/Control"},
        {300, "found control file :" + file},
    };
    QCOMPARE(session->host->messages, expected);
}

QTEST_MAIN(tst_VTPackageLoader)
#include "tst_vtpackageloader.moc"
