#include "TestPackage.h"

#include <Vidtips/VTStoppedFiles_p.h>

#include <QtTest/QTest>

using Vidtips::VTStoppedFiles;

class tst_VTStoppedFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void barsAFileThatWasStoppedTwice()
    {
        VTStoppedFiles files;
        const QString path = packages.write("Tip.qml", "a");
        const QString other = packages.write("Other.qml", "a");
        QVERIFY(!files.isBarred(path));
        files.add(path);
        QVERIFY(!files.isBarred(path));
        files.add(other);
        QVERIFY(!files.isBarred(path));
        files.add(path);
        QVERIFY(files.isBarred(path));
        QVERIFY(!files.isBarred(other));
    }

    void forgetsAFileThatChanges()
    {
        VTStoppedFiles files;
        const QString path = packages.write("Tip.qml", "a");
        files.add(path);
        packages.write("Tip.qml", "longer");
        files.add(path);
        QVERIFY(!files.isBarred(path));
        files.add(path);
        QVERIFY(files.isBarred(path));
        packages.write("Tip.qml", "longer still");
        QVERIFY(!files.isBarred(path));
    }

    // An editor that keeps the size replaces the file, or writes to it at another time.
    void noticesAnotherTime()
    {
        VTStoppedFiles files;
        const QString path = packages.write("Tip.qml", "a");
        files.add(path);
        files.add(path);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDate(2020, 1, 1).startOfDay(), QFileDevice::FileModificationTime));
        QVERIFY(!files.isBarred(path));
    }

    void barsNothingThatIsNotThere()
    {
        VTStoppedFiles files;
        const QString path = packages.filePath("None.qml");
        files.add(path);
        files.add(path);
        QVERIFY(!files.isBarred(path));
    }

    void isOneForTheProgram() { QCOMPARE(&VTStoppedFiles::instance(), &VTStoppedFiles::instance()); }

private:
    TestPackages packages;
};

QTEST_GUILESS_MAIN(tst_VTStoppedFiles)
#include "tst_vtstoppedfiles.moc"
