#include "TestPackage.h"

#include <Vidtips/VTContentGuard_p.h>

#include <QtCore/QUrl>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

using namespace Vidtips;

class tst_VTContentGuard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        opened.clear();
        guard = std::make_shared<VTContentGuard>([this](const QUrl &url) {
            opened.append(url);
            return url.scheme() == "https";
        });
        guard->beginContent("A", "/a/Control/tips.xml");
    }

    void admitsWhatItIsGiven()
    {
        const TestPackages packages;
        const QUrl inside = QUrl::fromLocalFile(packages.write("A.vidtips/picture.png", ""));
        QVERIFY(!guard->admits(inside));
        QDeclarativeEngine engine;
        VTContentGuard::apply(guard, {true, {packages.filePath("A.vidtips")}}, &engine);
        QVERIFY(guard->admits(inside));
        QVERIFY(!guard->admits(QUrl::fromLocalFile(packages.write("picture.png", ""))));
        QCOMPARE(engine.guard(), guard);
        VTContentGuard::apply(guard, {}, &engine);
        QVERIFY(!engine.guard());
    }

    void admitsModules_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("major");
        QTest::addColumn<int>("minor");
        QTest::addColumn<bool>("admitted");
        QTest::newRow("first") << "QtQuick" << 1 << 0 << true;
        QTest::newRow("second") << "QtQuick" << 1 << 1 << true;
        QTest::newRow("by its old name") << "Qt" << 4 << 7 << true;
        QTest::newRow("particles") << "Qt.labs.particles" << 1 << 0 << true;
        QTest::newRow("folders") << "Qt.labs.folderlistmodel" << 1 << 0 << true;
        QTest::newRow("own") << "com.corvale.vidtips.qml" << 1 << 0 << true;
        QTest::newRow("later minor") << "QtQuick" << 1 << 2 << false;
        QTest::newRow("later major") << "QtQuick" << 2 << 0 << false;
        QTest::newRow("without a version") << "QtQuick" << -1 << -1 << false;
        QTest::newRow("other case") << "qtquick" << 1 << 0 << false;
        QTest::newRow("below") << "QtQuick.Controls" << 1 << 0 << false;
        QTest::newRow("language") << "QtQml" << 2 << 0 << false;
        QTest::newRow("other") << "Qt.labs.settings" << 1 << 0 << false;
        QTest::newRow("none") << "" << 1 << 0 << false;
    }

    void admitsModules()
    {
        QFETCH(const QString, name);
        QFETCH(const int, major);
        QFETCH(const int, minor);
        QTEST(guard->admitsModule(name, major, minor), "admitted");
    }

    void opensUntilItIsShut()
    {
        QVERIFY(guard->openUrlExternally(QUrl("https://a.invalid/")));
        QVERIFY(!guard->openUrlExternally(QUrl("file:///a")));
        QCOMPARE(opened.count(), 2);
        guard->shut();
        QVERIFY(!guard->openUrlExternally(QUrl("https://a.invalid/")));
        QCOMPARE(opened.count(), 2);
    }

    void admitsNothingOnceItIsShut()
    {
        QDeclarativeEngine engine;
        VTContentGuard::apply(guard, {true, {"/"}}, &engine);
        QVERIFY(guard->admits(QUrl("file:///tmp")));
        guard->shut();
        QVERIFY(!guard->admits(QUrl("file:///tmp")));
    }

    void tellsWhere()
    {
        QSignalSpy spy(guard.get(), &VTContentGuard::added);
        guard->refused("b", QUrl("file:///a/ui/T%20ip.qml"), 3);
        guard->refused("b", QUrl("file:///a/ui/Tip.qml"), 0);
        guard->refused("b", QUrl(), 0);
        guard->refused("b", QUrl("http://a.invalid/T.qml"), 1);
        QCOMPARE(spy.count(), 4);
        const QString refused = ": restricted content is refused b";
        QCOMPARE(guard->take(),
                 QStringList({"Package \"A\", /a/ui/T ip.qml, line 3" + refused,
                              "Package \"A\", /a/ui/Tip.qml" + refused,
                              "Package \"A\", /a/Control/tips.xml" + refused,
                              "Package \"A\", http://a.invalid/T.qml, line 1" + refused}));
        QCOMPARE(guard->take(), QStringList());
    }

    void tellsOnceForEachContent()
    {
        guard->refused("b", QUrl(), 0);
        guard->refused("b", QUrl(), 0);
        QCOMPARE(guard->take().count(), 1);
        guard->refused("b", QUrl(), 0);
        QCOMPARE(guard->take().count(), 0);
        guard->beginContent("A", "/a/Control/tips.xml");
        guard->refused("b", QUrl(), 0);
        QCOMPARE(guard->take().count(), 1);
    }

    void tellsSoManyThings()
    {
        for (int i = 0; i < 1000; ++i)
            guard->refused(QString::number(i), QUrl(), 0);
        const QStringList messages = guard->take();
        QCOMPARE(messages.count(), 101);
        QVERIFY(messages.at(99).endsWith("refused 99"));
        QVERIFY(messages.last().endsWith("refused more than is told here"));
    }

private:
    std::shared_ptr<VTContentGuard> guard;
    QList<QUrl> opened;
};

QTEST_MAIN(tst_VTContentGuard)
#include "tst_vtcontentguard.moc"
