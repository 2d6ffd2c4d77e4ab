#include <Vidtips/VTControlFile_p.h>

#include "TestPackage.h"

#include <QtCore/QFile>
#include <QtTest/QTest>

#include <sys/stat.h>

using namespace Vidtips;

/** What is asked of a file before it is parsed; how it is admitted with that is tested with the index. */
class tst_VTControlFile : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void opensRegularFilesOnly_data();
    void opensRegularFilesOnly();
    void firstElement_data();
    void firstElement();
    void depth_data();
    void depth();
    void depthThroughALink();

private:
    QScopedPointer<TestPackages> folder;
};

void tst_VTControlFile::init()
{
    folder.reset(new TestPackages);
}

void tst_VTControlFile::opensRegularFilesOnly_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("opens");
    QTest::newRow("a file") << "file" << true;
    QTest::newRow("a link to one") << "link" << true;
    QTest::newRow("a folder") << "folder" << false;
    QTest::newRow("missing") << "missing" << false;
    QTest::newRow("a pipe that nobody writes to") << "pipe" << false;
    QTest::newRow("a device") << "/dev/zero" << false;
}

void tst_VTControlFile::opensRegularFilesOnly()
{
    QFETCH(QString, name);
    const QString target = folder->write("file", "content");
    QVERIFY(QFile::link(target, folder->filePath("link")));
    folder->write("folder/file", "");
    QCOMPARE(mkfifo(QFile::encodeName(folder->filePath("pipe")).constData(), 0600), 0);
    QFile file(QDir(folder->path()).absoluteFilePath(name));
    QTEST(openRegular(file), "opens");
    QCOMPARE(file.isReadable(), file.isOpen());
}

void tst_VTControlFile::firstElement_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isVidtips");
    QTest::newRow("by itself") << QByteArray("<vidtips>") << true;
    QTest::newRow("after a declaration") << QByteArray("<?xml version='1.0'?><vidtips/>") << true;
    QTest::newRow("after empty lines") << QByteArray("\n\n\r\n <vidtips a='b'>") << true;
    QTest::newRow("attributes on the next line") << QByteArray("<vidtips\n  locale='de'>") << true;
    QTest::newRow("blanks to the end of the line") << QByteArray("<vidtips  \t\n>") << true;
    QTest::newRow("longer name") << QByteArray("<vidtipsx>") << false;
    QTest::newRow("shorter name") << QByteArray("<vidtip>") << false;
    QTest::newRow("another element before") << QByteArray("<tips/><vidtips>") << false;
    QTest::newRow("in a comment before") << QByteArray("<!-- <tips> -->\n<vidtips>") << false;
    QTest::newRow("a mark that opens nothing") << QByteArray("< <- << \n<vidtips>") << true;
    QTest::newRow("other characters after the name") << QByteArray("<vidtips-2>") << false;
    QTest::newRow("a slash by itself") << QByteArray("<vidtips/ >") << false;
    QTest::newRow("closing only") << QByteArray("</vidtips>") << false;
    QTest::newRow("nothing") << QByteArray() << false;
    QTest::newRow("no element") << QByteArray("vidtips\nvidtips\n") << false;
    QTest::newRow("name beyond ASCII") << QByteArray("<vidtips\xc3\xa4>") << false;
    QTest::newRow("after much that is none") << QByteArray(5000, ' ') + "\n<vidtips>" << true;
}

void tst_VTControlFile::firstElement()
{
    QFETCH(QByteArray, content);
    QTEST(startsWithVidtips(folder->write("a.xml", content)), "isVidtips");
}

void tst_VTControlFile::depth_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("package");
    QTest::addColumn<int>("expected");
    QTest::newRow("beside its folder") << "p.vidtips/a.xml"
                                       << "p.vidtips" << 1;
    QTest::newRow("in the control folder") << "p.vidtips/Control/a.xml"
                                           << "p.vidtips" << 2;
    QTest::newRow("deeper") << "p.vidtips/a/b/c/a.xml"
                            << "p.vidtips" << 4;
    QTest::newRow("the folder itself") << "p.vidtips"
                                       << "p.vidtips" << 0;
    QTest::newRow("path begins with the folder's") << "p.vidtips2/a.xml"
                                                   << "p.vidtips" << outsidePackage;
    QTest::newRow("elsewhere") << "q.vidtips/a.xml"
                               << "p.vidtips" << outsidePackage;
    QTest::newRow("above") << "a.xml"
                           << "p.vidtips" << outsidePackage;
    QTest::newRow("folder that does not exist") << "p.vidtips/a.xml"
                                                << "r.vidtips" << outsidePackage;
    QTest::newRow("a detour") << "p.vidtips/Control/../Control/a.xml"
                              << "p.vidtips" << 2;
    QTest::newRow("slash at the end") << "p.vidtips/Control/a.xml"
                                      << "p.vidtips/" << 2;
}

void tst_VTControlFile::depth()
{
    QFETCH(QString, path);
    QFETCH(QString, package);
    for (const char *file : {"a.xml", "p.vidtips/a.xml", "p.vidtips/Control/a.xml", "p.vidtips/a/b/c/a.xml",
                             "p.vidtips2/a.xml", "q.vidtips/a.xml"})
        folder->write(file, "");
    QTEST(depthInPackage(folder->filePath(path), folder->filePath(package)), "expected");
}

// It counts where a link leads.
void tst_VTControlFile::depthThroughALink()
{
    folder->write("p.vidtips/Control/a.xml", "");
    folder->write("p.vidtips/x/y/z/a.xml", "");
    folder->write("elsewhere/a.xml", "");
    const QString package = folder->filePath("p.vidtips");
    QVERIFY(QFile::link(folder->filePath("elsewhere"), package + "/away"));
    QVERIFY(QFile::link(package, folder->filePath("linked.vidtips")));
    QCOMPARE(depthInPackage(package + "/away/a.xml", package), 2);
    QCOMPARE(depthInPackage(folder->filePath("linked.vidtips/Control/a.xml"), package), 2);
    QCOMPARE(depthInPackage(folder->filePath("elsewhere/a.xml"), package), outsidePackage);
}

QTEST_GUILESS_MAIN(tst_VTControlFile)
#include "tst_vtcontrolfile.moc"
