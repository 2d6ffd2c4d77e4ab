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
        QVERIFY(!files.isBarred(path, package));
        files.add(path, package);
        QVERIFY(!files.isBarred(path, package));
        files.add(other, package);
        QVERIFY(!files.isBarred(path, package));
        files.add(path, package);
        QVERIFY(files.isBarred(path, package));
        QVERIFY(!files.isBarred(other, package));
    }

    // What it was to show may have kept it busy.
    void barsItForTheTipsOfThatPackage()
    {
        VTStoppedFiles files;
        const QString path = packages.write("Tip.qml", "a");
        const QString others = "Other";
        files.add(path, package);
        files.add(path, others);
        QVERIFY(!files.isBarred(path, package));
        files.add(path, package);
        QVERIFY(files.isBarred(path, package));
        QVERIFY(!files.isBarred(path, others));
        QVERIFY(!files.isBarred(path, QString()));
    }

    void forgetsAFileThatChanges()
    {
        VTStoppedFiles files;
        const QString path = packages.write("Tip.qml", "a");
        files.add(path, package);
        packages.write("Tip.qml", "longer");
        files.add(path, package);
        QVERIFY(!files.isBarred(path, package));
        files.add(path, package);
        QVERIFY(files.isBarred(path, package));
        packages.write("Tip.qml", "longer still");
        QVERIFY(!files.isBarred(path, package));
    }

    // An editor that keeps the size replaces the file, or writes to it at another time.
    void noticesAnotherTime()
    {
        VTStoppedFiles files;
        const QString path = packages.write("Tip.qml", "a");
        files.add(path, package);
        files.add(path, package);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDate(2020, 1, 1).startOfDay(), QFileDevice::FileModificationTime));
        QVERIFY(!files.isBarred(path, package));
    }

    void barsNothingThatIsNotThere()
    {
        VTStoppedFiles files;
        const QString path = packages.filePath("None.qml");
        files.add(path, package);
        files.add(path, package);
        QVERIFY(!files.isBarred(path, package));
    }

    void isOneForTheProgram() { QCOMPARE(&VTStoppedFiles::instance(), &VTStoppedFiles::instance()); }

private:
    TestPackages packages;
    const QString package = "Garden";
};

QTEST_GUILESS_MAIN(tst_VTStoppedFiles)
#include "tst_vtstoppedfiles.moc"
