#include "TestPackage.h"

#include <Vidtips/VTReach_p.h>

#include <QtTest/QTest>

using Vidtips::VTReach;

class tst_VTReach : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void admitsFiles()
    {
        const TestPackages packages;
        const QString inside = packages.write("A.vidtips/picture.png", "");
        const QString outside = packages.write("picture.png", "");
        const VTReach everything;
        QVERIFY(everything.admitsFile(inside) && everything.admitsFile(outside));
        const VTReach package{true, {packages.filePath("A.vidtips")}};
        QVERIFY(package.admitsFile(inside));
        QVERIFY(!package.admitsFile(outside));
        const VTReach nothing{true, {}};
        QVERIFY(!nothing.admitsFile(inside));
    }

    void compares()
    {
        const VTReach everything;
        const VTReach nothing{true, {}};
        const VTReach package{true, {"/a"}};
        QVERIFY(everything == VTReach());
        QVERIFY(everything != nothing);
        QVERIFY(nothing != package);
        QVERIFY((package == VTReach{true, {"/a"}}));
        QVERIFY((package != VTReach{true, {"/a", "/b"}}));
    }
};

QTEST_GUILESS_MAIN(tst_VTReach)
#include "tst_vtreach.moc"
