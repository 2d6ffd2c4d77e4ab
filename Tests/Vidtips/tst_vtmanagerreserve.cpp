#include "TestHost.h"
#include "TipPackages.h"

#include <QtTest/QTest>

using namespace Vidtips;

namespace {

const QPoint farAway(5000, 5000);

/** Writes down which objects are raised; raising tells the object so. */
class RaiseLog : public QObject
{
public:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::ZOrderChange)
            raised << watched;
        return false;
    }

    QList<QObject *> raised;
};

} // namespace

/** Windows that the host reserves, and their order. */
class tst_VTManagerReserve : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void reserveRefusesOtherWindows();
    void reserveMakesAFreshWindow();
    void reservedWindowOutlivesTheManager();
    void createWindowDeletesTheWindow();
    void createWindowDeletesTheHost();
    void escapeClosesAKeptWindow();
    void escapeIsForTheUserInterfaceFirst();
    void escapeLeavesWindowsOfTheHostAlone();
    void raiseForgetsDeletedWindows();
    void raiseBeginsWithTheLast();
    void stayOnTopOfReservedWindowsOnly();

private:
    QScopedPointer<TipPackages> packages;
};

void tst_VTManagerReserve::init()
{
    packages.reset(new TipPackages);
}

void tst_VTManagerReserve::reserveRefusesOtherWindows()
{
    TestSession session({packages->path()});
    QWidget marker;
    QWidget *container = &marker;
    QVERIFY(!session.manager()->reserve(nullptr, container));
    VTWidget foreign(session.manager(), nullptr, nullptr, QRect());
    QVERIFY(!session.manager()->reserve(&foreign, container));
    QVERIFY(!session.window());
    QVERIFY(session.host->show("cut", {}, nullptr));
    QVERIFY(!session.manager()->reserve(&foreign, container));
    QVERIFY(!session.manager()->reserve(nullptr, container));
    QCOMPARE(container, &marker);
    QVERIFY(session.host->windowTypes.isEmpty());
}

void tst_VTManagerReserve::reserveMakesAFreshWindow()
{
    TestSession session({packages->path()});
    QWidget box;
    session.host->onCreateWindow = [&] { return &box; };
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QScopedPointer<VTWidget> reserved(session.window());
    QWidget *container = nullptr;
    QVERIFY(session.manager()->reserve(reserved.data(), container));
    QCOMPARE(container, &box);
    QCOMPARE(session.host->windowTypes, QList<int>{1});
    QVERIFY(session.window() != reserved.data());
    QVERIFY(session.view() && !session.content());
    QVERIFY(!session.window()->isVisible());
    QVERIFY(reserved->isVisible());
    QVERIFY(!session.manager()->reserve(reserved.data(), container));
    QVERIFY(session.host->show("copy", {}, nullptr));
    QCOMPARE(reserved->view()->content()->attribute("key"), QStringLiteral("cut"));
}

void tst_VTManagerReserve::reservedWindowOutlivesTheManager()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QPointer<VTWidget> reserved(session.window());
    QWidget *container = nullptr;
    QVERIFY(session.manager()->reserve(reserved, container));
    delete session.host;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(reserved);
    QVERIFY(reserved->isVisible());
    QVERIFY(!reserved->manager());
    reserved->setTimer();
    reserved->checkMousePosition(farAway);
    reserved->view()->debugLog("text");
    reserved->view()->openExternalResource("topic");
    QCOMPARE(reserved->view()->interpolate("%(a)s"), QStringLiteral("%(a)s"));
    QCOMPARE(reserved->view()->findResource("a.png"), QStringLiteral("Resources"));
    QVERIFY(!reserved->view()->documentationAvailable());
    reserved->close();
    QVERIFY(!reserved->isVisible());
    delete reserved;
    QVERIFY(!session.index.roots.first());
}

void tst_VTManagerReserve::createWindowDeletesTheWindow()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.host->onCreateWindow = [&]() -> QWidget * {
        delete session.window();
        return nullptr;
    };
    QWidget *container = nullptr;
    QVERIFY(!session.manager()->reserve(session.window(), container));
    QVERIFY(!session.window());
}

void tst_VTManagerReserve::createWindowDeletesTheHost()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QPointer<VTWidget> window(session.window());
    session.host->onCreateWindow = [&]() -> QWidget * {
        delete session.host;
        return nullptr;
    };
    session.view()->setReserved(true);
    QVERIFY(!session.host);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!window);
}

void tst_VTManagerReserve::escapeClosesAKeptWindow()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QPointer<VTWidget> kept(session.window());
    VTView *const view = kept->view();
    QTest::keyClick(view, Qt::Key_Escape);
    QVERIFY(kept->isVisible());
    view->setReserved(true);
    QTest::keyClick(view, Qt::Key_Escape, Qt::ShiftModifier);
    QTest::keyClick(view, Qt::Key_A);
    QVERIFY(kept->isVisible());
    QTest::keyClick(view, Qt::Key_Escape);
    QTRY_VERIFY(!kept);
}

void tst_VTManagerReserve::escapeIsForTheUserInterfaceFirst()
{
    packages->writeUserInterface("Basic", "focus: true; Keys.onEscapePressed: event.accepted = true");
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QScopedPointer<VTWidget> kept(session.window());
    kept->view()->setReserved(true);
    QVERIFY(QTest::qWaitForWindowActive(kept.data()));
    QTest::keyClick(kept->view(), Qt::Key_Escape);
    QVERIFY(kept->isVisible());
}

void tst_VTManagerReserve::escapeLeavesWindowsOfTheHostAlone()
{
    TestSession session({packages->path()});
    QWidget box;
    session.host->onCreateWindow = [&box] { return &box; };
    QVERIFY(session.host->show("cut", {}, nullptr));
    VTView *const view = session.view();
    view->setReserved(true);
    QVERIFY(box.isVisible());
    QTest::keyClick(view, Qt::Key_Escape);
    QVERIFY(box.isVisible());
    QVERIFY(view->isVisible());
}

void tst_VTManagerReserve::raiseForgetsDeletedWindows()
{
    TestSession session({packages->path()});
    QWidget *container = nullptr;
    QList<QPointer<VTWidget>> windows;
    for (int i = 0; i < 3; ++i) {
        QVERIFY(session.host->show("cut", {}, nullptr));
        windows << session.window();
        QVERIFY(session.manager()->reserve(session.window(), container));
    }
    delete windows.at(1);
    session.manager()->raise();
    session.manager()->setStayOnTop(true);
    QVERIFY(windows.at(0)->isVisible());
    QVERIFY(windows.at(2)->isVisible());
    qDeleteAll(windows);
    session.manager()->raise();
    session.manager()->setStayOnTop(false);
}

void tst_VTManagerReserve::raiseBeginsWithTheLast()
{
    TestSession session({packages->path()});
    QWidget *container = nullptr;
    RaiseLog log;
    QList<QObject *> expected;
    for (int i = 0; i < 3; ++i) {
        QVERIFY(session.host->show("cut", {}, nullptr));
        session.window()->installEventFilter(&log);
        expected.prepend(session.window());
        QVERIFY(session.manager()->reserve(session.window(), container));
    }
    QVERIFY(session.host->show("copy", {}, nullptr));
    session.window()->installEventFilter(&log);
    log.raised.clear();
    session.manager()->raise();
    QCOMPARE(log.raised, expected);
    qDeleteAll(expected);
}

void tst_VTManagerReserve::stayOnTopOfReservedWindowsOnly()
{
    TestSession session({packages->path()});
    QWidget *container = nullptr;
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QScopedPointer<VTWidget> reserved(session.window());
    QVERIFY(session.manager()->reserve(reserved.data(), container));
    QVERIFY(session.host->show("copy", {}, nullptr));
    const Qt::WindowFlags before = session.window()->windowFlags();
    session.manager()->setStayOnTop(false);
    QVERIFY(!(reserved->windowFlags() & Qt::WindowStaysOnTopHint));
    QVERIFY(reserved->windowFlags() & Qt::FramelessWindowHint);
    QVERIFY(reserved->isVisible());
    reserved->hide();
    session.manager()->setStayOnTop(true);
    QVERIFY(reserved->windowFlags() & Qt::WindowStaysOnTopHint);
    QVERIFY(reserved->isVisible());
    QCOMPARE(session.window()->windowFlags(), before);
}

QTEST_MAIN(tst_VTManagerReserve)

#include "tst_vtmanagerreserve.moc"
