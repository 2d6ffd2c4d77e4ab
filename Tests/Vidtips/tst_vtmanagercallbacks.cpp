#include "Patience.h"
#include "TestHost.h"
#include "TipPackages.h"

#include <QtGui/QHelpEvent>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

#include <algorithm>

using namespace Vidtips;

namespace {

const QPoint farAway(5000, 5000);

/** An index that does something after each retrieval. */
class BusyIndex : public TestIndex
{
public:
    using TestIndex::TestIndex;

    VTXmlElement *retrieve(const QString &key, const QLocale &locale, QString &directory, int &depth,
                           VTXmlElement *&root) override
    {
        VTXmlElement *const element = TestIndex::retrieve(key, locale, directory, depth, root);
        if (onRetrieve)
            onRetrieve();
        return element;
    }

    std::function<void()> onRetrieve;
};

const QByteArray askingUserInterface = R"(
    property string title: vidtip ? vidtip.attribute("title") : ""
    onTitleChanged: vidTipView.notification(9, title))";

} // namespace

Q_DECLARE_METATYPE(std::function<void(Vidtips::VTWidget *)>)

/** What a host may do from within its callbacks while a tip is shown. */
class tst_VTManagerCallbacks : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void notificationDeletesTheObject();
    void notificationShowsAnotherKey();
    void notificationClosesTheWindow();
    void notificationDeletesTheWindow();
    void notificationDeletesTheHost();
    void notificationDeletesTheContent();
    void shortcutDeletesTheContent();
    void shortcutDeletesTheView();
    void shortcutShowsAnotherKey();
    void shortcutDeletesTheWindow();
    void shortcutDeletesTheHost();
    void shortcutReservesTheWindow();
    void hideNotificationShowsAnotherKey();
    void hideNotificationDeletesTheHost();
    void keyForObjectDeletesTheObject();
    void keyForObjectDeletesTheHost();
    void retrievalDeletesTheHost_data();
    void retrievalDeletesTheHost();
    void retrievalDeletesTheWindow_data();
    void retrievalDeletesTheWindow();
    void takingTheWindowBackDeletesTheHost();
    void qmlNotificationShowsAnotherUserInterface();
    void fillingShowsAnotherKey();
    void showingShowsOneAfterAnother();
    void fillingRefreshes();
    void refreshingRefreshes();
    void hiddenNotificationDeletesTheWindow_data();
    void hiddenNotificationDeletesTheWindow();
    void windowHiddenWithItsOwnerIsDeleted();
    void deletedWindowIsMadeAnew();
    void windowWithoutAViewGetsOne();

private:
    QScopedPointer<TipPackages> packages;
};

void tst_VTManagerCallbacks::init()
{
    packages.reset(new TipPackages);
}

void tst_VTManagerCallbacks::notificationDeletesTheObject()
{
    TestSession session({packages->path()});
    QPointer<QWidget> button(new QWidget);
    QObject *seen = this;
    session.host->onNotification = [&](int, const QString &) { delete button; };
    session.host->onShortcut = [&](const QString &, QObject *object, const QString &shortcut) {
        seen = object;
        return shortcut;
    };
    QVERIFY(session.host->show("cut", {}, button));
    QVERIFY(!seen);
    QVERIFY(session.window()->isVisible());
}

void tst_VTManagerCallbacks::notificationShowsAnotherKey()
{
    TestSession session({packages->path()});
    session.host->onNotification = [&](int, const QString &key) {
        if (key == "cut")
            QVERIFY(session.host->show("copy", {}, nullptr));
    };
    QVERIFY(session.host->show("cut", {}, nullptr));
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("cut"));
    QCOMPARE(session.view()->rootObject()->property("title").toString(), QStringLiteral("Cut"));
    QCOMPARE(session.host->notificationTexts(), (QStringList{"0 cut", "0 copy"}));
    QCOMPARE(session.index.roots.count(), 2);
    QVERIFY(!session.index.roots.last());
}

void tst_VTManagerCallbacks::notificationClosesTheWindow()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.host->onNotification = [&](int type, const QString &) {
        if (type == VTNotificationShown)
            session.window()->close();
    };
    QVERIFY(session.host->show("copy", {}, nullptr));
    QVERIFY(session.window()->isVisible());
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("copy"));
}

void tst_VTManagerCallbacks::notificationDeletesTheWindow()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.host->onNotification = [&](int, const QString &) { delete session.window(); };
    QVERIFY(!session.host->show("copy", {}, nullptr));
    QVERIFY(!session.window());
    QCOMPARE(session.index.roots.count(), 2);
    QVERIFY(!session.index.roots.first());
    QVERIFY(!session.index.roots.last());
}

void tst_VTManagerCallbacks::notificationDeletesTheHost()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.host->onNotification = [&](int, const QString &) { delete session.host; };
    QVERIFY(!session.host->show("copy", {}, nullptr));
    QVERIFY(!session.index.roots.last());
    QVERIFY(session.index.roots.first());
}

void tst_VTManagerCallbacks::notificationDeletesTheContent()
{
    TestSession session({packages->path()});
    session.host->onNotification = [&](int, const QString &) { session.index.deleteRoots(); };
    QVERIFY(!session.host->show("cut", {}, nullptr));
    QVERIFY(!session.content());
    QVERIFY(!session.window()->isVisible());
}

void tst_VTManagerCallbacks::shortcutDeletesTheContent()
{
    TestSession session({packages->path()});
    session.host->onShortcut = [&](const QString &, QObject *, const QString &) {
        session.index.deleteRoots();
        return QStringLiteral("Ctrl+Q");
    };
    QVERIFY(!session.host->show("cut", {}, nullptr));
    QVERIFY(!session.content());
    QVERIFY(!session.window()->isVisible());
}

void tst_VTManagerCallbacks::shortcutDeletesTheView()
{
    TestSession session({packages->path()});
    session.host->onShortcut = [&](const QString &, QObject *, const QString &shortcut) {
        QString answer = shortcut + QStringLiteral("!");
        session.window()->setView(nullptr);
        return answer;
    };
    QVERIFY(!session.host->show("cut", {}, nullptr));
    QVERIFY(!session.window()->isVisible());
}

void tst_VTManagerCallbacks::shortcutShowsAnotherKey()
{
    TestSession session({packages->path()});
    session.host->onShortcut = [&](const QString &key, QObject *, const QString &shortcut) {
        if (key == "cut")
            session.host->show("copy", {}, nullptr);
        return shortcut;
    };
    QVERIFY(session.host->show("other", {}, nullptr));
    QVERIFY(session.host->show("cut", {}, nullptr));
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("copy"));
    QCOMPARE(session.view()->rootObject()->property("title").toString(), QStringLiteral("Copy"));
    QCOMPARE(session.index.roots.count(), 3);
    QVERIFY(!session.index.roots.at(0));
    QVERIFY(!session.index.roots.at(1));
}

void tst_VTManagerCallbacks::shortcutDeletesTheWindow()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.host->onShortcut = [&](const QString &, QObject *, const QString &shortcut) {
        delete session.window();
        return shortcut;
    };
    QVERIFY(!session.host->show("copy", {}, nullptr));
    QVERIFY(!session.index.roots.at(0));
    QVERIFY(!session.index.roots.at(1));
}

void tst_VTManagerCallbacks::shortcutDeletesTheHost()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QPointer<VTWidget> window(session.window());
    const QPointer<QGraphicsObject> userInterface(session.view()->rootObject());
    session.host->onShortcut = [&](const QString &, QObject *, const QString &shortcut) {
        QString answer = shortcut + QStringLiteral("!");
        delete session.host;
        return answer;
    };
    QVERIFY(!session.host->show("copy", {}, nullptr));
    QVERIFY(window);
    QVERIFY(!session.index.roots.at(0));
    QVERIFY(session.index.roots.at(1));
    QCOMPARE(userInterface->property("title").toString(), QStringLiteral("Copy"));
}

void tst_VTManagerCallbacks::shortcutReservesTheWindow()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QScopedPointer<VTWidget> reserved(session.window());
    session.host->onShortcut = [&](const QString &, QObject *, const QString &shortcut) {
        QWidget *container = nullptr;
        session.manager()->reserve(reserved.data(), container);
        return shortcut;
    };
    QVERIFY(!session.host->show("copy", {}, nullptr));
    QVERIFY(session.window() != reserved.data());
    QVERIFY(!session.index.roots.at(0));
    QCOMPARE(reserved->view()->content()->attribute("key"), QStringLiteral("copy"));
    QCOMPARE(reserved->view()->rootObject()->property("title").toString(), QStringLiteral("Copy"));
}

void tst_VTManagerCallbacks::hideNotificationShowsAnotherKey()
{
    TestSession session({packages->path()});
    session.set(HideDuration, 0);
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.host->onNotification = [&](int type, const QString &) {
        if (type == VTNotificationHidden)
            QVERIFY(session.host->show("copy", {}, nullptr));
    };
    session.window()->hideAnimated();
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("copy"));
    QVERIFY(!session.index.roots.first());
}

void tst_VTManagerCallbacks::hideNotificationDeletesTheHost()
{
    TestSession session({packages->path()});
    session.set(HideDuration, 0);
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QPointer<VTWidget> window(session.window());
    session.host->onNotification = [&](int, const QString &) { delete session.host; };
    QVERIFY(!session.host->show("paste", farAway, nullptr));
    QVERIFY(!session.host);
    QVERIFY(!window->isVisible());
    QVERIFY(!window->manager());
}

void tst_VTManagerCallbacks::keyForObjectDeletesTheObject()
{
    class Host : public TestHost
    {
    public:
        using TestHost::TestHost;
        QString keyForObject(QObject *object) override
        {
            object->deleteLater();
            QCoreApplication::sendPostedEvents(object, QEvent::DeferredDelete);
            return QStringLiteral("cut");
        }
    };
    VTContext settings;
    TestIndex index(&settings, {});
    Host host(settings, {packages->path()}, &index);
    QPointer<QObject> object(new QObject);
    QHelpEvent event(QEvent::ToolTip, {}, {});
    QObject *const manager = host.manager();
    // Consumed, because the object that it would be delivered to is gone.
    QVERIFY(manager->eventFilter(object, &event));
    QVERIFY(!host.manager()->widget());
}

void tst_VTManagerCallbacks::keyForObjectDeletesTheHost()
{
    class Host : public TestHost
    {
    public:
        using TestHost::TestHost;
        QString keyForObject(QObject *) override
        {
            delete this;
            return QStringLiteral("cut");
        }
    };
    VTContext settings;
    TestIndex index(&settings, {});
    const QPointer<Host> host(new Host(settings, {packages->path()}, &index));
    QHelpEvent event(QEvent::ToolTip, {}, {});
    QObject *const manager = host->manager();
    QVERIFY(!manager->eventFilter(this, &event));
    QVERIFY(!host);
    QVERIFY(index.requests.isEmpty());
}

void tst_VTManagerCallbacks::retrievalDeletesTheHost_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("with content") << "cut";
    QTest::newRow("without content") << "paste";
}

void tst_VTManagerCallbacks::retrievalDeletesTheHost()
{
    QFETCH(QString, key);
    VTContext settings;
    settings.set(FallbackKey, "copy");
    BusyIndex index(&settings, {});
    const QPointer<TestHost> host(new TestHost(settings, {packages->path()}, &index));
    index.onRetrieve = [&] { delete host; };
    QVERIFY(!host->show(key, {}, nullptr));
    QVERIFY(!host);
    for (const QPointer<VTXmlElement> &root : std::as_const(index.roots))
        QVERIFY(!root);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_VTManagerCallbacks::retrievalDeletesTheWindow_data()
{
    retrievalDeletesTheHost_data();
}

void tst_VTManagerCallbacks::retrievalDeletesTheWindow()
{
    QFETCH(QString, key);
    VTContext settings;
    BusyIndex index(&settings, {});
    TestHost host(settings, {packages->path()}, &index);
    index.onRetrieve = [&] { delete host.manager()->widget(); };
    QVERIFY(!host.show(key, {}, nullptr));
    QVERIFY(!host.manager()->widget());
}

void tst_VTManagerCallbacks::takingTheWindowBackDeletesTheHost()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    QWidget owner;
    const QPointer<VTWidget> window(session.window());
    window->setParent(&owner, window->windowFlags());
    window->show();
    session.host->onNotification = [&](int, const QString &) { delete session.host; };
    QVERIFY(!session.host->show("copy", {}, nullptr));
    QVERIFY(!session.host);
    QVERIFY(!window->manager());
    QVERIFY(!window->parent());
}

void tst_VTManagerCallbacks::qmlNotificationShowsAnotherUserInterface()
{
    packages->writeUserInterface("Basic", R"(
        property string title: vidtip.attribute("title")
        signal asked()
        onAsked: vidTipView.notification(77, title))");
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.host->onNotification = [&](int type, const QString &) {
        if (type == 77)
            QVERIFY(session.host->show("other", {}, nullptr));
    };
    QVERIFY(QMetaObject::invokeMethod(session.view()->rootObject(), "asked"));
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("other"));
    QTRY_COMPARE(session.view()->rootObject()->objectName(), QStringLiteral("other"));
}

// The QML takes the new content, and asks the host while it does.
void tst_VTManagerCallbacks::fillingShowsAnotherKey()
{
    packages->writeUserInterface("Basic", askingUserInterface);
    TestSession session({packages->path()});
    QVERIFY(session.host->show("copy", {}, nullptr));
    session.host->onNotification = [&](int type, const QString &key) {
        if (type == 9 && key == "cut")
            QVERIFY(session.host->show("copy", QPoint(300, 200), nullptr));
    };
    QVERIFY(session.host->show("cut", {}, nullptr));
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("copy"));
    QCOMPARE(session.view()->rootObject()->property("title").toString(), QStringLiteral("Copy"));
    QCOMPARE(session.window()->pos(), QPoint(335, 230));
    QVERIFY(session.window()->isVisible());
    QCOMPARE(session.index.roots.count(), 3);
    QVERIFY(!session.index.roots.at(0));
    QVERIFY(!session.index.roots.at(1));
}

void tst_VTManagerCallbacks::showingShowsOneAfterAnother()
{
    TestSession session({packages->path()});
    session.host->onNotification = [&](int type, const QString &key) {
        if (type == VTNotificationShown)
            session.host->show(key == "cut" ? "copy" : "cut", {}, nullptr);
    };
    QVERIFY(session.host->show("cut", {}, nullptr));
    QVERIFY(session.window()->isVisible());
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("cut"));
    QCOMPARE(session.host->messages.count(), 1);
    QVERIFY(session.host->messages.first().second.contains("without end"));
    session.host->onNotification = nullptr;
    QVERIFY(session.host->show("other", {}, nullptr));
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("other"));
}

void tst_VTManagerCallbacks::fillingRefreshes()
{
    packages->writeUserInterface("Basic", askingUserInterface);
    TestSession session({packages->path()});
    QVERIFY(session.host->show("copy", {}, nullptr));
    bool hasAsked = false;
    session.host->onNotification = [&](int type, const QString &) {
        if (type != 9 || hasAsked)
            return;
        hasAsked = true;
        session.manager()->refresh();
    };
    const QPoint place(40, 50);
    QVERIFY(session.host->show("cut", place, nullptr));
    QCOMPARE(session.window()->pos(), session.manager()->tooltipPosition(place, nullptr));
    QCOMPARE(session.index.roots.count(), 2);
    // It waits until the tip is there.
    QTRY_COMPARE(session.index.roots.count(), 3);
    QVERIFY(!session.index.roots.at(1));
    QVERIFY(session.window()->isVisible());
}

void tst_VTManagerCallbacks::refreshingRefreshes()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("copy", {}, nullptr));
    session.host->onShortcut = [&](const QString &, QObject *, const QString &shortcut) {
        session.manager()->refresh();
        return shortcut;
    };
    session.manager()->refresh();
    QCOMPARE(session.index.roots.count(), 2);
    QVERIFY(!session.index.roots.first());
    session.manager()->refresh();
    QCOMPARE(session.index.roots.count(), 3);
    QVERIFY(session.window()->isVisible());
}

void tst_VTManagerCallbacks::hiddenNotificationDeletesTheWindow_data()
{
    QTest::addColumn<std::function<void(VTWidget *)>>("hide");
    const auto row = [](const char *name, const std::function<void(VTWidget *)> &hide) {
        QTest::newRow(name) << hide;
    };
    row("hidden", [](VTWidget *window) { window->hide(); });
    row("closed", [](VTWidget *window) { window->close(); });
    row("hidden by the manager", [](VTWidget *window) { window->manager()->hide(); });
    row("faded out", [](VTWidget *window) { window->hideAnimated(); });
}

void tst_VTManagerCallbacks::hiddenNotificationDeletesTheWindow()
{
    QFETCH(std::function<void(VTWidget *)>, hide);
    TestSession session({packages->path()});
    session.set(HideDuration, 0);
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.host->onNotification = [&](int type, const QString &) {
        if (type == VTNotificationHidden)
            delete session.window();
    };
    hide(session.window());
    QVERIFY(!session.window());
    QVERIFY(session.host->show("cut", {}, nullptr));
    QVERIFY(session.window()->isVisible());
}

// Qt goes on with a window whose owner is hidden, so the host hears of it afterwards.
void tst_VTManagerCallbacks::windowHiddenWithItsOwnerIsDeleted()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    QWidget owner;
    owner.show();
    session.window()->setParent(&owner, {});
    session.window()->show();
    session.host->notifications.clear();
    session.host->onNotification = [&](int, const QString &) { delete session.window(); };
    owner.hide();
    QTRY_VERIFY(!session.window());
    QCOMPARE(session.host->notificationTexts(), QStringList{"6 cut"});
}

void tst_VTManagerCallbacks::deletedWindowIsMadeAnew()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    delete session.window();
    QVERIFY(!session.index.roots.first());
    QVERIFY(session.host->show("cut", {}, nullptr));
    QVERIFY(session.window()->isVisible());
}

void tst_VTManagerCallbacks::windowWithoutAViewGetsOne()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.window()->setView(nullptr);
    QVERIFY(!session.index.roots.first());
    QVERIFY(session.host->show("cut", {}, nullptr));
    QVERIFY(session.view());
    QCOMPARE(session.view()->rootObject()->property("title").toString(), QStringLiteral("Cut"));
}

QTEST_MAIN(tst_VTManagerCallbacks)

#include "tst_vtmanagercallbacks.moc"
