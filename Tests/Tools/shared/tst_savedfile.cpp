#include "shared/SavedFile.h"

#include "TestPackage.h"

#include <QtTest/QTest>

#include <csignal>
#include <sys/resource.h>

/** Writes files, also where there is no room for them. */
class tst_SavedFile : public QObject
{
    Q_OBJECT

private slots:
    void writesAllOrNothing();
    void keepsWhatIsThereWhereThereIsNoRoom_data();
    void keepsWhatIsThereWhereThereIsNoRoom();
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

void tst_SavedFile::keepsWhatIsThereWhereThereIsNoRoom_data()
{
    QTest::addColumn<int>("size");
    // Qt keeps the first ones back and writes the others at once.
    QTest::newRow("few bytes") << 2000;
    QTest::newRow("many bytes") << 200000;
}

// Files may be no larger than some are, which is as good as a full disk.
void tst_SavedFile::keepsWhatIsThereWhereThereIsNoRoom()
{
    QFETCH(int, size);
    const TestPackages folder;
    const QString file = folder.write("file", "a");
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before;
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit little{1000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &little);
    const QString problem = SavedFile::write(file, QByteArray(size, 'b'));
    setrlimit(RLIMIT_FSIZE, &before);
    QCOMPARE(problem, "cannot write " + file + ": there is no room for it");
    QCOMPARE(TestPackages::read(file), QByteArray("a"));
    QCOMPARE(folder.files(), QStringList("file"));
}

QTEST_GUILESS_MAIN(tst_SavedFile)
#include "tst_savedfile.moc"
