#include "CheckPackages.h"
#include "shared/Content.h"
#include "stage/PreviewStage.h"
#include "stage/StageClock.h"

#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>

#include <QtTest/QtTest>
#include <QtWidgets/QGraphicsObject>

/** Lets the time of tips pass. */
class tst_StageClock : public QObject
{
    Q_OBJECT

private slots:
    void passesForTimersAndAnimations();
    void standsStillByItself();
    void beginsAnew();
};

namespace {

// Counts seconds, and is as wide as it has slid for a minute.
constexpr char ticking[] =
    "import QtQuick 1.1\nItem { id: root; width: 100; height: 20; property int ticks: 0\n"
    "property real slid: 0\n"
    "Timer { interval: 1000; repeat: true; running: true; onTriggered: ++root.ticks }\n"
    "NumberAnimation { target: root; property: 'slid'; to: 60; duration: 60000; running: "
    "true } }";

struct Ticking
{
    Ticking()
    {
        packages.write("Tools.vidtips/Control/T.xml", document("<vidtip key=\"a\"/>"));
        packages.write("Tools.vidtips/ui/VidtipsUI.qml", ticking);
        content.load({packages.path()});
        stage = std::make_unique<PreviewStage>(content, PreviewSettings());
        stage->show("a", {});
    }

    qreal value(const char *name) const
    {
        return stage->window()->view()->rootObject()->property(name).toReal();
    }

    TestPackages packages;
    Content content;
    StageClock clock;
    std::unique_ptr<PreviewStage> stage;
};

} // namespace

void tst_StageClock::passesForTimersAndAnimations()
{
    Ticking tip;
    tip.clock.pass(*tip.stage, 500);
    QCOMPARE(tip.value("ticks"), 0.0);
    tip.clock.pass(*tip.stage, 29600);
    QCOMPARE(tip.value("ticks"), 30.0);
    QVERIFY2(qAbs(tip.value("slid") - 30.1) < 0.1, qPrintable(QString::number(tip.value("slid"))));
    tip.clock.pass(*tip.stage, 31000);
    QCOMPARE(tip.value("slid"), 60.0);
    QCOMPARE(tip.value("ticks"), 61.0);
}

void tst_StageClock::standsStillByItself()
{
    Ticking tip;
    tip.clock.pass(*tip.stage, 100);
    const qreal slid = tip.value("slid");
    QTest::qWait(60); // real time, which must not matter
    QCOMPARE(tip.value("slid"), slid);
}

void tst_StageClock::beginsAnew()
{
    for (int round = 0; round < 2; ++round) {
        Ticking tip;
        tip.clock.pass(*tip.stage, 2500);
        QCOMPARE(tip.value("ticks"), 2.0);
        QVERIFY(qAbs(tip.value("slid") - 2.5) < 0.1);
    }
}

QTEST_MAIN(tst_StageClock)
#include "tst_stageclock.moc"
