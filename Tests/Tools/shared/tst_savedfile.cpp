#include "shared/SavedFile.h"

#include "TestPackage.h"

#include <QtTest/QTest>

class tst_SavedFile : public QObject
{
    Q_OBJECT

private slots:
    void writesAllOrNothing();
};

void tst_SavedFile::writesAllOrNothing()
{
    const TestPackages folder;
    const QString file = folder.filePath("file");
    QCOMPARE(SavedFile::write(file, "a\r\n"), QString());
    QCOMPARE(TestPackages::read(file), QByteArray("a\r\n"));
    QCOMPARE(SavedFile::write(file, "b"), QString());
    QCOMPARE(TestPackages::read(file), QByteArray("b"));
    const QString lost = folder.filePath("no/folder");
    QVERIFY(SavedFile::write(lost, "c").startsWith("cannot write " + lost + ": "));
    QVERIFY(SavedFile::write(folder.path(), "d").startsWith("cannot write " + folder.path() + ": "));
    QCOMPARE(folder.files(), QStringList("file"));
}

QTEST_GUILESS_MAIN(tst_SavedFile)
#include "tst_savedfile.moc"
