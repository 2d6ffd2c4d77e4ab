#include "TestHost.h"
#include "TipPackages.h"

#include <QtCore/QTimer>
#include <QtGui/QHelpEvent>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <algorithm>

using namespace Vidtips;

namespace {

const QPoint farAway(5000, 5000);

} // namespace

/** What the manager makes of the events of the application. */
class tst_VTManagerEvents : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void filterIsInstalledByTheSettingOnly_data();
    void filterIsInstalledByTheSettingOnly();
    void toolTipEventShowsAndConsumes();
    void toolTipEventOfAShownKeyDoesNotReload();
    void toolTipEventAsksForThePlace();
    void referenceRectIsThatOfTheTipOnScreen();
    void toolTipEventWithoutContent();
    void clickOutsideHides_data();
    void clickOutsideHides();
    void clickInsideKeeps();
    void clickWhileStayingOpenKeeps();
    void mouseFiltersIgnoreForeignArguments();
    void moveReachesTheWindow();
    void deactivationHidesAtOnce();
    void externalResource_data();
    void externalResource();
    void settingReachesTheView();
    void errorsOfTheUserInterfaceAreReported();

private:
    QScopedPointer<TipPackages> packages;
};

void tst_VTManagerEvents::init()
{
    packages.reset(new TipPackages);
}

void tst_VTManagerEvents::filterIsInstalledByTheSettingOnly_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<bool>("on");
    QTest::newRow("on") << QVariant(true) << true;
    QTest::newRow("off") << QVariant(false) << false;
    QTest::newRow("unset") << QVariant() << false;
}

void tst_VTManagerEvents::filterIsInstalledByTheSettingOnly()
{
    QFETCH(QVariant, setting);
    QFETCH(bool, on);
    VTContext settings;
    if (setting.isValid())
        settings.set(InstallEventFilter, setting);
    QWidget button;
    button.setObjectName("cut");
    TestSession session({packages->path()}, settings);
    QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), QPoint(100, 100));
    QCoreApplication::sendEvent(&button, &event);
    QCOMPARE(session.window() != nullptr, on);
    delete session.host;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::sendEvent(&button, &event);
}

void tst_VTManagerEvents::toolTipEventShowsAndConsumes()
{
    TestSession session({packages->path()});
    QWidget button;
    button.setObjectName("cut");
    QObject *const filter = session.manager();
    QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), QPoint(100, 200));
    QVERIFY(filter->eventFilter(&button, &event));
    QCOMPARE(session.window()->pos(), QPoint(135, 230));
    button.setObjectName("paste");
    QHelpEvent away(QEvent::ToolTip, QPoint(1, 1), farAway);
    session.set(HideDuration, 0);
    QVERIFY(!filter->eventFilter(&button, &away));
    QVERIFY(!session.window()->isVisible());
}

void tst_VTManagerEvents::toolTipEventOfAShownKeyDoesNotReload()
{
    TestSession session({packages->path()});
    QWidget button;
    button.setObjectName("cut");
    QObject *const filter = session.manager();
    QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), QPoint(100, 200));
    QVERIFY(filter->eventFilter(&button, &event));
    const int requests = session.index.requests.count();
    QVERIFY(filter->eventFilter(&button, &event));
    QCOMPARE(session.index.requests.count(), requests);
}

void tst_VTManagerEvents::toolTipEventAsksForThePlace()
{
    TestSession session({packages->path()});
    session.set(SafeZoneMargin, QSize(0, 0));
    QWidget list;
    QObject *askedFor = nullptr;
    bool wasNull = false;
    session.host->onKeyAt = [&](QObject *object, const QPoint &position, QRect &rect) {
        askedFor = object;
        wasNull = rect.isNull();
        rect = QRect(position, QSize(200, 10));
        return position.y() < 500 ? QStringLiteral("cut") : QStringLiteral("copy");
    };
    QObject *const filter = session.manager();
    QHelpEvent first(QEvent::ToolTip, QPoint(1, 1), QPoint(100, 200));
    QVERIFY(filter->eventFilter(&list, &first));
    QCOMPARE(askedFor, &list);
    QVERIFY(wasNull);
    QCOMPARE(session.content()->attribute("key"), QString("cut"));
    QCOMPARE(session.manager()->referenceRect(), QRect(100, 200, 200, 10));
    QVERIFY(session.window()->isSafe(QPoint(299, 209)));
    QVERIFY(!session.window()->isSafe(QPoint(299, 210)));
    QHelpEvent second(QEvent::ToolTip, QPoint(1, 301), QPoint(100, 500));
    QVERIFY(filter->eventFilter(&list, &second));
    QCOMPARE(session.content()->attribute("key"), QString("copy"));
    QCOMPARE(session.manager()->referenceRect(), QRect(100, 500, 200, 10));
}

void tst_VTManagerEvents::referenceRectIsThatOfTheTipOnScreen()
{
    TestSession session({packages->path()});
    const QRect part(10, 20, 30, 40);
    QVERIFY(session.manager()->referenceRect().isNull());
    QVERIFY(session.host->show("cut", QPoint(15, 25), nullptr, part));
    QCOMPARE(session.manager()->referenceRect(), part);
    session.window()->hide();
    QVERIFY(session.manager()->referenceRect().isNull());
    QVERIFY(session.host->show("copy", QPoint(15, 25), nullptr));
    QVERIFY(session.manager()->referenceRect().isNull());
}

void tst_VTManagerEvents::toolTipEventWithoutContent()
{
    TestSession session({packages->path()});
    QWidget button;
    QObject *const filter = session.manager();
    button.setObjectName("cut");
    QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), QPoint(100, 200));
    QVERIFY(filter->eventFilter(&button, &event));
    QWidget plain;
    QHelpEvent inZone(QEvent::ToolTip, QPoint(1, 1), QPoint(136, 231));
    QVERIFY(filter->eventFilter(&plain, &inZone));
    QVERIFY(session.window()->isVisible());
}

void tst_VTManagerEvents::clickOutsideHides_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("press") << int(QEvent::MouseButtonPress);
    QTest::newRow("release") << int(QEvent::MouseButtonRelease);
}

void tst_VTManagerEvents::clickOutsideHides()
{
    QFETCH(int, type);
    TestSession session({packages->path()});
    QWidget button;
    QVERIFY(session.host->show("cut", {}, &button));
    QMouseEvent click(QEvent::Type(type), QPointF(), Qt::LeftButton, Qt::LeftButton, {});
    QObject *const filter = session.manager();
    QVERIFY(!filter->eventFilter(&button, &click));
    QVERIFY(!session.window()->isVisible());
    QCOMPARE(session.host->notificationTexts(), (QStringList{"0 cut", "6 cut"}));
    QVERIFY(!filter->eventFilter(&button, &click));
    QCOMPARE(session.host->notifications.count(), 2);
}

void tst_VTManagerEvents::clickInsideKeeps()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    QMouseEvent click(QEvent::MouseButtonPress, QPointF(), Qt::LeftButton, Qt::LeftButton, {});
    QVERIFY(!session.manager()->mouseButtonEventFilter(session.window(), &click));
    QVERIFY(!session.manager()->mouseButtonEventFilter(session.view(), &click));
    QVERIFY(!session.manager()->mouseButtonEventFilter(session.view()->viewport(), &click));
    QVERIFY(session.window()->isVisible());
}

void tst_VTManagerEvents::clickWhileStayingOpenKeeps()
{
    TestSession session({packages->path()});
    QWidget button;
    QMouseEvent click(QEvent::MouseButtonPress, QPointF(), Qt::LeftButton, Qt::LeftButton, {});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.view()->setStayOpen(true);
    QVERIFY(!session.manager()->mouseButtonEventFilter(&button, &click));
    QVERIFY(session.window()->isVisible());
    session.view()->setStayOpen(false);
    QVERIFY(!session.manager()->mouseButtonEventFilter(&button, &click));
    QVERIFY(!session.window()->isVisible());
    session.window()->setView(nullptr);
    session.window()->show();
    QVERIFY(!session.manager()->mouseButtonEventFilter(&button, &click));
    QVERIFY(!session.window()->isVisible());
}

void tst_VTManagerEvents::mouseFiltersIgnoreForeignArguments()
{
    TestSession session({packages->path()});
    QWidget button;
    QVERIFY(!session.manager()->mouseButtonEventFilter(&button, nullptr));
    QVERIFY(!session.manager()->mouseMoveEventFilter(&button, nullptr));
    QMouseEvent move(QEvent::MouseMove, QPointF(), QPointF(farAway), Qt::NoButton, {}, {});
    QVERIFY(!session.manager()->mouseMoveEventFilter(&button, &move));
    QVERIFY(session.host->show("cut", {}, nullptr));
    QVERIFY(!session.manager()->mouseButtonEventFilter(nullptr, nullptr));
    QVERIFY(!session.manager()->mouseButtonEventFilter(this, nullptr));
    QVERIFY(!session.manager()->mouseMoveEventFilter(nullptr, nullptr));
    QObject *const filter = session.manager();
    QMouseEvent click(QEvent::MouseButtonPress, QPointF(), Qt::LeftButton, Qt::LeftButton, {});
    QVERIFY(!filter->eventFilter(nullptr, &click));
    QHelpEvent help(QEvent::ToolTip, QPoint(1, 1), QPoint(100, 200));
    QVERIFY(!filter->eventFilter(nullptr, &help));
    QVERIFY(session.window()->isVisible());
}

void tst_VTManagerEvents::moveReachesTheWindow()
{
    TestSession session({packages->path()});
    session.set(IdleInterval, 1);
    session.set(HideDuration, 0);
    session.set(SafeZoneMargin, QSize(20, 20));
    QVERIFY(session.host->show("cut", QCursor::pos() - QPoint(35, 30), nullptr));
    QObject *const filter = session.manager();
    QMouseEvent away(QEvent::MouseMove, QPointF(), QPointF(farAway), Qt::NoButton, {}, {});
    QVERIFY(!filter->eventFilter(this, &away));
    QTRY_VERIFY(!session.window()->isVisible());
    QVERIFY(!filter->eventFilter(this, &away));
    QVERIFY(!session.window()->findChild<QTimer *>()->isActive());
    QEvent other(QEvent::Enter);
    QVERIFY(!filter->eventFilter(this, &other));
}

void tst_VTManagerEvents::deactivationHidesAtOnce()
{
    TestSession session({packages->path()});
    QObject *const filter = session.manager();
    QEvent deactivation(QEvent::ApplicationDeactivate);
    QVERIFY(!filter->eventFilter(qApp, &deactivation));
    QVERIFY(session.host->show("cut", {}, nullptr));
    QVERIFY(!filter->eventFilter(qApp, &deactivation));
    QVERIFY(!session.window()->isVisible());
    QCOMPARE(session.host->notificationTexts(), (QStringList{"0 cut", "6 cut"}));
}

void tst_VTManagerEvents::externalResource_data()
{
    QTest::addColumn<QString>("resource");
    QTest::addColumn<int>("type");
    QTest::newRow("mail") << "mailto:x" << 2;
    QTest::newRow("web") << "https://example.com/a" << 2;
    QTest::newRow("file") << "file:///tmp/a" << 2;
    QTest::newRow("word") << "printing" << 1;
    QTest::newRow("words") << "printing a page" << 1;
    QTest::newRow("empty") << "" << 1;
    QTest::newRow("relative path") << "docs/page.html" << 3;
    QTest::newRow("absolute path") << "/docs/page.html" << 3;
    QTest::newRow("not strict, with a slash") << "http://a b/" << 3;
    QTest::newRow("not strict, without a slash") << "mailto:a b%" << 1;
}

void tst_VTManagerEvents::externalResource()
{
    QFETCH(QString, resource);
    QFETCH(int, type);
    TestSession session({});
    const QList<QPair<int, QString>> once{{type, resource}};
    QVERIFY(session.manager()->openExternalResource(resource));
    QCOMPARE(session.host->resources, once);
    session.host->opensResources = false;
    QVERIFY(!session.manager()->openExternalResource(resource));
    session.host->opensResources = true;
    session.host->resources.clear();
    session.set(type == 1 ? AllowDocumentation : AllowExternalResources, false);
    QVERIFY(!session.manager()->openExternalResource(resource));
    QVERIFY(session.host->resources.isEmpty());
    session.set(type == 1 ? AllowDocumentation : AllowExternalResources, true);
    session.set(type == 1 ? AllowExternalResources : AllowDocumentation, false);
    QVERIFY(session.manager()->openExternalResource(resource));
    QCOMPARE(session.host->resources, once);
}

void tst_VTManagerEvents::settingReachesTheView()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    QSignalSpy changed(session.view(), &VTView::documentationAvailableChanged);
    session.set(AllowDocumentation, true);
    QCOMPARE(changed.count(), 1);
    session.set(AllowExternalResources, true);
    QCOMPARE(changed.count(), 1);
}

void tst_VTManagerEvents::errorsOfTheUserInterfaceAreReported()
{
    packages->write("Basic.vidtips/ui/VidtipsUI.qml", "import QtQuick 1.0\nItem {\n    nothing: 1\n}\n");
    TestSession session({packages->path()});
    session.set(MessageThreshold, 400);
    QVERIFY(session.host->show("cut", {}, nullptr));
    const auto isError = [](const QPair<int, QString> &message) {
        return message.first == 400 && message.second.startsWith("Error 3:5:");
    };
    QCOMPARE(std::count_if(session.host->messages.cbegin(), session.host->messages.cend(), isError), 1);
}

QTEST_MAIN(tst_VTManagerEvents)

#include "tst_vtmanagerevents.moc"
