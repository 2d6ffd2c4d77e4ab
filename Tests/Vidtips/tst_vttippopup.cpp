#include "TestHost.h"
#include "TestPackage.h"
#include "TipWindow.h"

#include <Vidtips/VTTipPopup_p.h>
#include <Vidtips/VTWindowKind_p.h>

#include <QtCore/QVector>
#include <QtTest/QTest>

using namespace Vidtips;

namespace {

/** Writes down how often a tip was hidden and shown, and what its popup said then. */
class Movements : public QObject
{
public:
    Movements(QWidget *tip, const VTTipPopup *popup)
        : m_popup(popup)
    {
        tip->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Hide || event->type() == QEvent::Show)
            whileMoving.append(m_popup->isMoving());
        return false;
    }

    QVector<bool> whileMoving;

private:
    const VTTipPopup *const m_popup;
};

const QVector<bool> awayAndBack{true, true};

} // namespace

class tst_VTTipPopup : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void standsBeforeItComesUp();
    void comesUpElsewhere();
    void growsAwayFromThePointer();
    void staysWhereItMay_data();
    void staysWhereItMay();
    void refusesWithoutFooting();

private:
    static VTPlacement::Surroundings around(const QPoint &pointer)
    {
        VTPlacement::Surroundings around;
        around.pointer = pointer;
        around.offset = QSize(20, 20);
        return around;
    }

    QScopedPointer<QWidget> window;
};

/** A tip that is a popup. */
class PopupWindow : public TipWindow
{
public:
    PopupWindow()
        : TipWindow(QStringLiteral("cut"))
        , popup(this)
        , movements(this, &popup)
    {
        setWindowFlags(Qt::ToolTip);
        setFixedSize(80, 40);
    }

    VTTipPopup popup;
    Movements movements;
};

void tst_VTTipPopup::init()
{
    window.reset(new QWidget);
    window->setGeometry(100, 100, 400, 300);
    window->show();
    QVERIFY(QTest::qWaitForWindowExposed(window.data()));
}

void tst_VTTipPopup::standsBeforeItComesUp()
{
    PopupWindow tip;
    tip.popup.ask(around(QPoint(200, 150)), window.data());
    QVERIFY(tip.popup.stand());
    QCOMPARE(tip.pos(), QPoint(220, 170));
    QVERIFY(!tip.isVisible());
    QVERIFY(tip.movements.whileMoving.isEmpty());
    QVERIFY(!tip.popup.isMoving());
}

void tst_VTTipPopup::comesUpElsewhere()
{
    PopupWindow tip;
    tip.popup.ask(around(QPoint(200, 150)), window.data());
    QVERIFY(tip.popup.stand());
    tip.show();
    tip.movements.whileMoving.clear();
    QVERIFY(tip.popup.stand());
    QVERIFY(tip.movements.whileMoving.isEmpty());
    tip.popup.ask(around(QPoint(300, 250)), window.data());
    QVERIFY(tip.popup.stand());
    QCOMPARE(tip.movements.whileMoving, awayAndBack);
    QCOMPARE(tip.pos(), QPoint(320, 270));
    QVERIFY(tip.isVisible());
    QVERIFY(!tip.popup.isMoving());
}

void tst_VTTipPopup::growsAwayFromThePointer()
{
    PopupWindow tip;
    tip.popup.ask(around(QPoint(400, 350)), window.data());
    QVERIFY(tip.popup.stand());
    tip.show();
    tip.movements.whileMoving.clear();
    tip.setFixedSize(200, 100);
    tip.popup.handleResize();
    QTRY_COMPARE(tip.movements.whileMoving, awayAndBack);
    QVERIFY(tip.isVisible());
    const QRect place(tip.pos(), tip.size());
    QVERIFY(window->geometry().contains(place));
    QVERIFY(!place.contains(QPoint(400, 350)));
}

void tst_VTTipPopup::staysWhereItMay_data()
{
    QTest::addColumn<QString>("change");
    for (const char *change :
         {"nothing", "little growth", "hidden", "tool window", "no footing", "asked again"})
        QTest::newRow(change) << QString(change);
}

// Another tip, whose popup hears of its size later, says when this one would have moved.
void tst_VTTipPopup::staysWhereItMay()
{
    QFETCH(QString, change);
    PopupWindow tip;
    PopupWindow other;
    for (PopupWindow *const each : {&tip, &other}) {
        each->popup.ask(around(QPoint(400, 250)), window.data());
        QVERIFY(each->popup.stand());
        each->show();
    }
    if (change == "little growth")
        tip.setFixedSize(80, 44);
    else if (change != "nothing")
        tip.setFixedSize(200, 100);
    tip.popup.handleResize();
    if (change == "hidden")
        tip.hide();
    else if (change == "tool window")
        tip.setWindowFlags(Qt::Tool), tip.show();
    else if (change == "no footing")
        tip.popup.ask(around(QPoint(400, 250)), nullptr);
    tip.movements.whileMoving.clear();
    if (change == "asked again") {
        QVERIFY(tip.popup.stand());
        QCOMPARE(tip.movements.whileMoving, awayAndBack);
        tip.movements.whileMoving.clear();
    }
    const QPoint place = tip.pos();
    other.movements.whileMoving.clear();
    other.setFixedSize(200, 100);
    other.popup.handleResize();
    QTRY_COMPARE(other.movements.whileMoving, awayAndBack);
    QVERIFY(tip.movements.whileMoving.isEmpty());
    QCOMPARE(tip.pos(), place);
}

void tst_VTTipPopup::refusesWithoutFooting()
{
    TestPackages packages;
    packages.writeUserInterface("Basic", "", 100, 60);
    packages.writeControl("Basic", "tips.xml", R"(<vidtip key="cut" title="Cut"/>)");
    TestSession session({packages.path()});
    QVERIFY(session.host->show("cut", QPoint(300, 200), nullptr));
    VTWidget *const tip = session.window();
    const QPoint place = tip->pos();
    session.host->messages.clear();
    session.host->notifications.clear();
    VTTipPopup popup(tip);
    QVERIFY(!popup.stand());
    popup.ask(around(QPoint(200, 150)), window.data());
    window.reset();
    QVERIFY(!popup.stand());
    QCOMPARE(tip->pos(), place);
    QCOMPARE(session.host->messages.size(), 1);
    QCOMPARE(session.host->messages.at(0).first, int(VTMessageWarning));
    QVERIFY(session.host->messages.at(0).second.startsWith("No tip is shown"));
    QCOMPARE(session.host->notifications.size(), 2);
    QCOMPARE(session.host->notifications.at(1).type, int(VTNotificationHidden));
}

QTEST_MAIN(tst_VTTipPopup)
#include "tst_vttippopup.moc"
