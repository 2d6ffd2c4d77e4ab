#include <TestHost.h>
#include <TestPackage.h>

#include <QtTest/QTest>

using namespace Vidtips;

class tst_VTManagerShow : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void showsContentOfAControlFile();

private:
    QScopedPointer<TestPackages> packages;
};

void tst_VTManagerShow::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic", R"(property string title: vidtip.attribute("title"))");
    packages->writeControl("Basic", "tips.xml", R"(
        <vidtip key="cut" title="Cut" shortcut="Ctrl+X"/>
        <vidtip key="copy" title="Copy"/>)");
}

void tst_VTManagerShow::showsContentOfAControlFile()
{
    TestSession session({packages->path()});
    QWidget button;
    QVERIFY(session.host->show("cut", QPoint(10, 20), &button));
    QVERIFY(session.window()->isVisible());
    QCOMPARE(session.window()->pos(), QPoint(45, 50));
    QCOMPARE(session.window()->size(), QSize(121, 81));
    QCOMPARE(session.view()->rootObject()->property("title").toString(), QStringLiteral("Cut"));
    QCOMPARE(session.host->notificationTexts(), QStringList{"0 cut"});
    QVERIFY(session.host->show("copy", QPoint(10, 20), &button));
    QCOMPARE(session.view()->rootObject()->property("title").toString(), QStringLiteral("Copy"));
}

QTEST_MAIN(tst_VTManagerShow)
#include "tst_vtmanagershow.moc"
