#include <Vidtips/VTTipContainer_p.h>
#include <Vidtips/VTTipKeeping_p.h>

#include "TestHost.h"
#include "TestPackage.h"

#include <QtTest/QTest>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSplitter>

using namespace Vidtips;

/** What the user interface has of it is tested with the window; here, who owns whom. */
class tst_VTTipKeeping : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void canMoveInto();
    void obstacleIsTold();
    void containerThatTheTipOwns();
    void movesIntoAContainer();
    void becomesAWindow();

private:
    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
    QWidget host;
    QPushButton *button = nullptr;
    VTWidget *tip = nullptr;
};

void tst_VTTipKeeping::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic", "", 100, 60);
    packages->writeControl("Basic", "tips.xml", R"(<vidtip key="cut" title="Cut"/>)");
    session.reset(new TestSession({packages->path()}));
    button = new QPushButton(&host);
    host.show();
    QVERIFY(session->host->show("cut", QPoint(300, 200), button));
    tip = session->window();
}

void tst_VTTipKeeping::cleanup()
{
    session.reset();
    delete button;
}

void tst_VTTipKeeping::canMoveInto()
{
    const VTTipKeeping keeping(tip, button);
    QWidget container;
    QVERIFY(keeping.canMoveInto(&container));
    QVERIFY(!keeping.canMoveInto(nullptr));
    QVERIFY(!keeping.canMoveInto(tip));
    QVERIFY(!keeping.canMoveInto(tip->view()));
    QVERIFY(session->host->messages.isEmpty());
}

void tst_VTTipKeeping::obstacleIsTold()
{
    QSplitter container;
    QVERIFY(!VTTipKeeping(tip, button).canMoveInto(&container));
    QCOMPARE(session->host->messages,
             (QList<QPair<int, QString>>{
                 {200,
                  "A kept tip becomes a window by itself, as the one of createWindow() cannot take it in: "
                      + VTTipContainer(&container).obstacle()}}));
}

void tst_VTTipKeeping::containerThatTheTipOwns()
{
    const VTTipKeeping keeping(tip, button);
    auto *const inner = new QWidget(tip, Qt::Tool);
    const QPointer<QWidget> container(new QWidget(inner, Qt::Tool));
    keeping.prepare(container);
    QCOMPARE(container->parentWidget(), &host);
    QVERIFY(container->isWindow());
    // One that the tip does not own stays whose it is.
    QWidget other;
    QWidget of(&other, Qt::Tool);
    keeping.prepare(&of);
    QCOMPARE(of.parentWidget(), &other);
    delete container;
}

void tst_VTTipKeeping::movesIntoAContainer()
{
    QWidget container;
    tip->hide();
    VTTipKeeping(tip, button).moveInto(VTTipContainer(&container), QPoint(50, 60));
    QVERIFY(container.isAncestorOf(tip));
    QVERIFY(container.isVisible());
    QVERIFY(tip->isVisible());
    QCOMPARE(container.windowTitle(), QString("Cut"));
    tip->setParent(nullptr);
}

void tst_VTTipKeeping::becomesAWindow()
{
    tip->hide();
    VTTipKeeping(tip, button).becomeWindow(QPoint(50, 60));
    QVERIFY(tip->isVisible());
    QVERIFY(tip->isWindow());
    QCOMPARE(tip->parentWidget(), &host);
    QCOMPARE(tip->windowTitle(), QString("Cut"));
    QVERIFY(tip->windowFlags() & Qt::WindowCloseButtonHint);
    QVERIFY(tip->testAttribute(Qt::WA_DeleteOnClose));
    QCOMPARE(tip->geometry().topLeft(), QPoint(50, 60));
}

QTEST_MAIN(tst_VTTipKeeping)
#include "tst_vttipkeeping.moc"
