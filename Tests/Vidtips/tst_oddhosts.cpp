#include "Patience.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <Vidtips/VTXmlElement.h>

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QHelpEvent>
#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

using namespace Vidtips;

namespace {

const QPoint farAway(5000, 5000);

/** A host that does something odd in one of its own operations, which it must not touch itself afterwards. */
class OddHost : public TestHost
{
public:
    using TestHost::TestHost;

    QWidget *createWindow(VTWindowType type) override
    {
        windowTypes.append(type);
        QWidget *const window = nextWindow;
        call("createWindow");
        return window;
    }
    QString keyForObject(QObject *object) override
    {
        QString key = object->objectName();
        call("keyForObject");
        return key;
    }
    QString keyAt(QObject *object, const QPoint &position, QRect &rect) override
    {
        // keyForObject() answers first.
        const QPointer<OddHost> self(this);
        QString key = TestHost::keyAt(object, position, rect);
        if (self)
            call("keyAt");
        return key;
    }
    bool openExternalResource(VTExternalResourceType, const QString &) override
    {
        call("openExternalResource");
        return true;
    }
    void handleMessage(VTMessageType, const QString &) override { call("handleMessage"); }
    QString translateString(const QString &text, const QString &) override
    {
        call("translateString");
        return text;
    }
    QString shortCutForObject(const QString &, QObject *, const QString &) override
    {
        call("shortCutForObject");
        return QStringLiteral("Ctrl+X");
    }
    void notification(VTNotification type, const QVariant &, const QString &) override
    {
        call(type == VTNotificationShown        ? "shown"
                 : type == VTNotificationHidden ? "hidden"
                                                : "notification of the QML");
    }

    void call(const QByteArray &name)
    {
        if (name != trigger)
            return;
        trigger.clear();
        const auto answer = odd;
        answer();
    }

    QByteArray trigger;
    std::function<void()> odd;
    QWidget *nextWindow = nullptr;
};

/** Everything around one such host, and what it may do. */
struct Stage
{
    explicit Stage(const TestPackages &packages)
        : folder(packages.path())
        , index(&settings, {folder})
    {
        settings.set(InstallEventFilter, true);
        settings.set(HideDuration, 0);
        settings.set(MessageThreshold, int(VTMessageDebug));
        host = new OddHost(settings, {folder}, &index);
        command.reset(new QPushButton);
        command->setObjectName("cut");
    }

    ~Stage()
    {
        delete host;
        const QWidgetList widgets = QApplication::topLevelWidgets();
        for (QWidget *widget : widgets) {
            if (qobject_cast<VTWidget *>(widget))
                widget->deleteLater();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        index.deleteRoots();
    }

    VTWidget *window() const { return host ? host->manager()->widget() : nullptr; }
    VTView *view() const { return window() ? window()->view() : nullptr; }
    VTXmlElement *content() const { return view() ? view()->content() : nullptr; }

    void watchSignals()
    {
        if (!host)
            return;
        const auto call = [this](const char *name) {
            return [this, name] {
                if (host)
                    host->call(name);
            };
        };
        QObject::connect(&host->context(), &VTContext::settingWillChange, call("settingWillChange"));
        QObject::connect(&host->context(), &VTContext::settingDidChange, call("settingDidChange"));
        if (!view())
            return;
        QObject::connect(view(), &VTView::stayOpenChanged, call("stayOpenChanged"));
        QObject::connect(view(), &VTView::reservedChanged, call("reservedChanged"));
        QObject::connect(view(), &VTView::contentSizeChanged, call("contentSizeChanged"));
        QObject::connect(view(), &VTView::statusChanged, call("statusChanged"));
        QObject::connect(view()->engine(), &QDeclarativeEngine::warnings, call("warnings"));
    }

    /** A tool-tip event as the application delivers it, with the pointer at @p position. */
    void hover(const QString &key, const QPoint &position = QPoint(100, 100))
    {
        if (!command)
            return;
        command->setObjectName(key);
        QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), position);
        QCoreApplication::sendEvent(command.data(), &event);
    }

    void click()
    {
        if (!command)
            return;
        QMouseEvent press(QEvent::MouseButtonPress, QPointF(1, 1), Qt::LeftButton, Qt::LeftButton, {});
        QCoreApplication::sendEvent(command.data(), &press);
    }

    /** A day in the life of a tip: every operation of the host is called, and every signal sent. */
    void live()
    {
        watchSignals();
        hover("cut");
        watchSignals();
        hover("other");
        hover("failing");
        if (host)
            host->context().set(IdleInterval, 100000);
        if (view())
            view()->setStayOpen(true);
        hover("cut");
        if (view())
            view()->setReserved(true);
        hover("copy");
        hover("nothing", farAway);
        hover("copy");
        click();
        QCoreApplication::processEvents();
    }

    const QString folder;
    VTContext settings;
    TestIndex index;
    QPointer<OddHost> host;
    QScopedPointer<QPushButton> command;
};

using Answer = void (*)(Stage &);

struct Oddity
{
    const char *name;
    Answer answer;
    bool destroysAtOnce; ///< what may call the host is destroyed before it returns
};

void changeSettings(Stage &stage)
{
    const contextKey keys[] = {TipsOff,        UseSimpleUserInterface, PackageSuffix, ControlFolder,
                               ResourceFolder, FullUserInterface,      IdleInterval,  ShowDuration};
    for (contextKey key : keys)
        stage.host->context().set(key, QStringLiteral("odd"));
}

/** Does @p action in an event loop of the host's, such as that of a dialog, where deletions are due as well.
 */
template <typename Action>
void inAnEventLoop(Action action)
{
    QEventLoop loop;
    QTimer::singleShot(0, &loop, action);
    QTimer::singleShot(15, &loop, &QEventLoop::quit);
    loop.exec();
}

void callTheManager(Stage &stage)
{
    VTManager *const manager = stage.host->manager();
    manager->keys();
    manager->vidTipAttribute("cut", "title", "none");
    manager->translateString("word", "context");
    manager->interpolate("%(name)s");
    manager->setGlobalProperty("name", "value");
    manager->raise();
    manager->setStayOnTop(true);
    manager->setStayOnTop(false);
    manager->handleMessage(VTMessageError, "text");
    manager->openExternalResource("topic");
    QMouseEvent move(QEvent::MouseMove, QPointF(1, 1), farAway, Qt::NoButton, Qt::NoButton, {});
    manager->mouseMoveEventFilter(stage.command.data(), &move);
    manager->mouseButtonEventFilter(stage.command.data(), &move);
}

void callTheWindow(Stage &stage)
{
    if (!stage.window())
        return;
    stage.window()->checkMousePosition(farAway);
    stage.window()->setTimer();
    stage.window()->contentResized();
    stage.window()->contentReservedChanged();
    stage.window()->showAnimated();
}

const Oddity oddities[] = {
    {"refreshes", [](Stage &stage) { stage.host->manager()->refresh(); }, false},
    {"hides", [](Stage &stage) { stage.host->hide(); }, false},
    {"calls the manager", callTheManager, false},
    {"calls the window", callTheWindow, false},
    {"hands the window over",
     [](Stage &stage) {
         const QPointer<VTWidget> kept = stage.window();
         QWidget *container = nullptr;
         stage.host->manager()->reserve(kept, container);
     },
     false},
    {"fades the window out",
     [](Stage &stage) {
         stage.host->context().set(HideDuration, 5);
         if (stage.window())
             stage.window()->hideAnimated();
     },
     false},
    {"shows content of its own",
     [](Stage &stage) {
         if (stage.view())
             stage.window()->showWithContent(stage.command.data(), {}, {}, new VTXmlElement, stage.folder);
     },
     false},
    {"loads another user interface",
     [](Stage &stage) {
         if (stage.view())
             stage.view()->loadQML(stage.folder + "/Basic.vidtips/ui/Other.qml");
     },
     false},
    {"unloads the user interface",
     [](Stage &stage) {
         if (stage.view())
             stage.view()->setSource(QUrl());
     },
     false},
    {"gives the window another view",
     [](Stage &stage) {
         if (stage.window())
             stage.window()->setView(new VTView(stage.host->manager(), stage.window()));
     },
     true},
    {"takes the window's view",
     [](Stage &stage) {
         if (stage.window())
             stage.window()->setView(nullptr);
     },
     true},
    {"shows another key in an event loop", [](Stage &stage) { inAnEventLoop([&] { stage.hover("copy"); }); },
     false},
    {"deletes the window in an event loop",
     [](Stage &stage) { inAnEventLoop([&] { delete stage.window(); }); }, true},
    {"deletes the host in an event loop", [](Stage &stage) { inAnEventLoop([&] { delete stage.host; }); },
     false},
    {"shows the same key", [](Stage &stage) { stage.host->show("cut", {}, nullptr); }, false},
    {"shows another key", [](Stage &stage) { stage.host->show("copy", {}, nullptr); }, false},
    {"shows another user interface", [](Stage &stage) { stage.host->show("other", {}, nullptr); }, false},
    {"shows a key without content", [](Stage &stage) { stage.host->show("none", farAway, nullptr); }, false},
    {"hides the window",
     [](Stage &stage) {
         if (stage.window())
             stage.window()->hide();
     },
     false},
    {"closes the window",
     [](Stage &stage) {
         if (stage.window())
             stage.window()->close();
     },
     false},
    {"schedules the window's end",
     [](Stage &stage) {
         if (stage.window())
             stage.window()->deleteLater();
     },
     false},
    {"deletes the window", [](Stage &stage) { delete stage.window(); }, true},
    {"deletes the view", [](Stage &stage) { delete stage.view(); }, true},
    {"deletes the content", [](Stage &stage) { delete stage.content(); }, false},
    {"deletes the hovered object", [](Stage &stage) { stage.command.reset(); }, false},
    {"deletes the host", [](Stage &stage) { delete stage.host; }, false},
    {"changes settings", changeSettings, false},
    {"loads paths",
     [](Stage &stage) {
         stage.host->manager()->loadDataPath({stage.folder, QString(), "/no/such/folder"});
     },
     false},
    {"reserves the window",
     [](Stage &stage) {
         if (stage.view())
             stage.view()->setReserved(true);
     },
     false},
    {"runs an event loop", [](Stage &) { QCoreApplication::processEvents(); }, false},
    {"deactivates the application",
     [](Stage &) {
         QEvent event(QEvent::ApplicationDeactivate);
         QCoreApplication::sendEvent(qApp, &event);
     },
     false},
};

struct Trigger
{
    const char *name;
    bool mayDestroy; ///< the host is called, or nothing of the window is at work
};

const Trigger triggers[] = {
    {"keyForObject", true},
    {"keyAt", true},
    {"shortCutForObject", true},
    {"shown", true},
    {"hidden", true},
    {"createWindow", true},
    {"translateString", true},
    {"openExternalResource", true},
    {"handleMessage", true},
    {"notification of the QML", true},
    {"stayOpenChanged", false},
    {"reservedChanged", false},
    {"contentSizeChanged", false},
    {"statusChanged", false},
    {"warnings", false},
    {"settingWillChange", true},
    {"settingDidChange", true},
};

} // namespace

/** Hosts that answer, configure and destroy as no host should. */
class tst_OddHosts : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void oddAnswers_data();
    void oddAnswers();
    void hostOfASignalIsDeleted();

    void twoHosts();
    void ownIndexGoesFirst();
    void beforeAnyWindow();
    void nothingToWorkWith_data();
    void nothingToWorkWith();
    void oddSettings_data();
    void oddSettings();
    void settingsWhileShown_data();
    void settingsWhileShown();
    void pathsAtRunTime_data();
    void pathsAtRunTime();
    void pathLoadedAtRunTimeServesTheNextTip();

    void reservingAgainAndAgain();
    void oddContainers_data();
    void oddContainers();
    void containerClosesBesideTheNextTip();

    void objectDiesAfterTheTip();
    void clickedObjectDies();
    void foreignWindows_data();
    void foreignWindows();

private:
    void verifyTheNextTip(TestHost *host);

    QScopedPointer<TestPackages> packages;
};

void tst_OddHosts::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic", R"(
        property string key: vidtip ? vidtip.attribute("key") : "none"
        function work() {
            vidTipView.translate("word", "context");
            vidTipView.openExternalResource("topic");
            vidTipView.debugLog("text");
            vidTipView.notification(50, "value");
        }
        onKeyChanged: work()
        Component.onCompleted: work())");
    packages->write("Basic.vidtips/ui/Other.qml", R"(import QtQuick 1.0
        Item {
            width: 70; height: 30
            Component.onCompleted: vidTipView.notification(51, "value")
            Component.onDestruction: vidTipView.notification(52, "value")
        })");
    packages->write("Basic.vidtips/ui/Failing.qml", R"(import QtQuick 1.0
        Item { width: missing.width; height: 20; Component.onCompleted: missing.call() })");
    packages->writeControl("Basic", "tips.xml", R"(
        <vidtip key="cut"/><vidtip key="copy"/>
        <vidtip key="other" ui="ui/Other.qml"/><vidtip key="failing" ui="ui/Failing.qml"/>)");
}

// Whatever has happened, a host that is left shows its next tip.
void tst_OddHosts::verifyTheNextTip(TestHost *host)
{
    const contextKey keys[] = {TipsOff, UseSimpleUserInterface, RequiredModifiers, ShowDuration};
    for (contextKey key : keys)
        host->context().set(key, 0);
    host->context().set(PackageSuffix, "vidtips");
    host->context().set(FullUserInterface, "ui/VidtipsUI.qml");
    QVERIFY(host->show("copy", QPoint(10, 10), nullptr));
    const VTWidget *const window = host->manager()->widget();
    QVERIFY(window->isVisible());
    QCOMPARE(window->view()->content()->attribute("key"), QStringLiteral("copy"));
    QTRY_VERIFY(window->view()->rootObject());
    QTRY_COMPARE(window->view()->rootObject()->property("key").toString(), QStringLiteral("copy"));
}

void tst_OddHosts::oddAnswers_data()
{
    QTest::addColumn<QByteArray>("trigger");
    QTest::addColumn<int>("oddity");
    for (const Trigger &trigger : triggers) {
        for (int i = 0; i < int(std::size(oddities)); ++i) {
            if (trigger.mayDestroy || !oddities[i].destroysAtOnce)
                QTest::addRow("%s %s", trigger.name, oddities[i].name) << QByteArray(trigger.name) << i;
        }
    }
}

void tst_OddHosts::oddAnswers()
{
    QFETCH(QByteArray, trigger);
    QFETCH(int, oddity);
    Stage stage(*packages);
    bool isAsked = false;
    stage.host->trigger = trigger;
    stage.host->odd = [&] {
        isAsked = true;
        oddities[oddity].answer(stage);
    };
    stage.live();
    QVERIFY(isAsked);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    if (stage.host)
        verifyTheNextTip(stage.host);
}

void tst_OddHosts::hostOfASignalIsDeleted()
{
    Stage stage(*packages);
    QObject *const before = stage.host;
    connect(&stage.host->context(), &VTContext::settingWillChange, [&] { delete stage.host; });
    stage.host->context().set(IdleInterval, 5);
    QVERIFY(before && !stage.host);
}

void tst_OddHosts::twoHosts()
{
    const TestPackages others;
    others.writeUserInterface("Basic", "property string key: 'of the other'");
    others.writeControl("Basic", "tips.xml", R"(<vidtip key="cut"/><vidtip key="paste"/>)");
    VTContext settings;
    settings.set(InstallEventFilter, true);
    settings.set(HideDuration, 0);
    TestSession first({packages->path()}, settings);
    TestSession second({others.path()}, settings);
    QPushButton button;
    const auto hover = [&button](const QString &key) {
        button.setObjectName(key);
        QHelpEvent event(QEvent::ToolTip, QPoint(1, 1), farAway);
        QCoreApplication::sendEvent(&button, &event);
    };
    // The filter that was installed last is asked first, and what it shows is consumed.
    hover("cut");
    QVERIFY(second.window()->isVisible());
    QVERIFY(!first.window());
    hover("copy");
    QVERIFY(!second.window()->isVisible());
    QVERIFY(first.window()->isVisible());
    first.set(TipsOff, true);
    QVERIFY(!second.host->context().contains(TipsOff));
    delete first.host;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    hover("paste");
    QVERIFY(second.window()->isVisible());
    QCOMPARE(second.view()->rootObject()->property("key").toString(), QStringLiteral("of the other"));
}

void tst_OddHosts::ownIndexGoesFirst()
{
    VTContext settings;
    auto *const index = new TestIndex(&settings, {packages->path()});
    TestHost host(settings, {packages->path()}, index);
    QVERIFY(host.show("cut", {}, nullptr));
    delete index;
    QVERIFY(host.show("cut", {}, nullptr));
    QVERIFY(host.keys().isEmpty());
    host.manager()->loadDataPath({packages->path()});
    QCOMPARE(host.vidTipAttribute("copy", "key", "default"), QStringLiteral("default"));
    QCOMPARE(host.manager()->widget()->view()->findResource("a.png"), QStringLiteral("Resources"));
    host.context().set(HideDuration, 0);
    QVERIFY(!host.show("copy", farAway, nullptr));
    QVERIFY(!host.manager()->widget()->isVisible());
}

void tst_OddHosts::beforeAnyWindow()
{
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
    VTContext settings;
    settings.set(AlwaysShowToolTips, true);
    TestSession session({packages->path()}, settings);
    QVERIFY(QApplication::topLevelWidgets().isEmpty());
    QCOMPARE(session.manager()->translateString("text", "context"), QStringLiteral("text"));
    session.manager()->raise();
    session.manager()->setStayOnTop(true);
    QEvent deactivation(QEvent::ApplicationDeactivate);
    QCoreApplication::sendEvent(qApp, &deactivation);
    QVERIFY(!session.window());
    verifyTheNextTip(session.host);
}

void tst_OddHosts::nothingToWorkWith_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("null key") << QString();
    QTest::newRow("empty key") << QString("");
    QTest::newRow("unknown key") << QString("no.such.key");
    QTest::newRow("key of markup") << QString("<vidtip key='cut'>&quot;");
    QTest::newRow("huge key") << QString(1 << 20, QLatin1Char('k'));
    QTest::newRow("key with a null character") << QString(QChar(0)) + "cut";
}

void tst_OddHosts::nothingToWorkWith()
{
    QFETCH(QString, key);
    TestSession session({packages->path()});
    session.set(HideDuration, 0);
    QVERIFY(!session.host->show(key, {}, nullptr));
    QVERIFY(!session.host->show(key, {}, nullptr, QRect(-1, -1, -5, -5)));
    QCOMPARE(session.host->vidTipAttribute(key, QString(), "default"), QStringLiteral("default"));
    QVERIFY(session.host->keyForObject(nullptr).isNull());
    QVERIFY(session.manager()->keyForObject(nullptr).isNull());
    QVERIFY(!session.host->mouseButtonEventFilter(nullptr, nullptr));
    QVERIFY(!session.host->mouseMoveEventFilter(nullptr, nullptr));
    QCOMPARE(session.host->translateString(QString(), QString()), QString());
    QCOMPARE(session.manager()->interpolate(QString()), QString());
    session.host->setGlobalProperty(QString(), QVariant());
    QWidget *container = nullptr;
    QVERIFY(!session.manager()->reserve(nullptr, container));
    session.window()->showWithContent(nullptr, {}, {}, nullptr, QString());
    QVERIFY(!session.window()->isVisible());
    verifyTheNextTip(session.host);
}

void tst_OddHosts::oddSettings_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("invalid") << QVariant();
    QTest::newRow("null text") << QVariant(QString());
    QTest::newRow("text") << QVariant(QStringLiteral("odd"));
    QTest::newRow("path upwards") << QVariant(QStringLiteral("../../../.."));
    QTest::newRow("negative") << QVariant(-7);
    QTest::newRow("huge") << QVariant(std::numeric_limits<int>::max());
    QTest::newRow("endless") << QVariant(std::numeric_limits<double>::infinity());
    QTest::newRow("no number") << QVariant(std::numeric_limits<double>::quiet_NaN());
    QTest::newRow("huge size") << QVariant(
        QSize(std::numeric_limits<int>::max(), std::numeric_limits<int>::max()));
    QTest::newRow("negative size") << QVariant(QSize(-1000, -1000));
    QTest::newRow("object") << QVariant::fromValue<QObject *>(nullptr);
}

void tst_OddHosts::oddSettings()
{
    QFETCH(QVariant, value);
    VTContext settings;
    for (int key = 0; key <= 40; ++key) {
        // Tips that are off or need keys held are what was asked for.
        if (key != TipsOff && key != RequiredModifiers)
            settings.set(key, value);
    }
    TestSession session({packages->path()}, settings);
    session.host->show("cut", QPoint(10, 10), nullptr);
    session.host->show("none", farAway, nullptr);
    if (session.window()) {
        session.window()->checkMousePosition(farAway);
        session.window()->hideAnimated();
    }
    session.host->keys();
    VTContext sound;
    TestSession next({packages->path()}, sound);
    verifyTheNextTip(next.host);
}

void tst_OddHosts::settingsWhileShown_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<QVariant>("value");
    for (int key = 0; key <= 40; ++key)
        QTest::addRow("%d", key) << key << QVariant(QStringLiteral("odd"));
}

void tst_OddHosts::settingsWhileShown()
{
    QFETCH(int, key);
    QFETCH(QVariant, value);
    TestSession session({packages->path()});
    session.set(HideDuration, 0);
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QVariant before = session.host->context().get(key, QVariant());
    session.host->context().set(key, value);
    QVERIFY(session.window()->isVisible());
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("cut"));
    session.window()->checkMousePosition(farAway);
    session.view()->findResource("a.png");
    session.host->translateString("text", "context");
    session.host->show("copy", {}, nullptr);
    session.window()->hide();
    session.host->context().set(key, before);
    verifyTheNextTip(session.host);
}

void tst_OddHosts::pathsAtRunTime_data()
{
    QTest::addColumn<QStringList>("paths");
    QTest::newRow("none") << QStringList();
    QTest::newRow("null") << QStringList{QString()};
    QTest::newRow("missing") << QStringList{"/no/such/folder"};
    QTest::newRow("a file") << QStringList{"/proc/self/status"};
    QTest::newRow("a device") << QStringList{"/dev/zero"};
    QTest::newRow("a package itself") << QStringList{"Basic.vidtips"};
    QTest::newRow("too long") << QStringList{'/' + QString(100000, QLatin1Char('p'))};
    QTest::newRow("not a path") << QStringList{QString(QChar(0)) + "\n*?["};
}

void tst_OddHosts::pathsAtRunTime()
{
    QFETCH(QStringList, paths);
    for (QString &path : paths)
        path.replace(QLatin1String("Basic.vidtips"), packages->filePath("Basic.vidtips"));
    TestSession session({packages->path()});
    const QStringList keys = session.host->keys();
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.manager()->loadDataPath(paths);
    QCOMPARE(session.host->keys(), keys);
    QVERIFY(session.window()->isVisible());
    verifyTheNextTip(session.host);
}

void tst_OddHosts::pathLoadedAtRunTimeServesTheNextTip()
{
    const TestPackages others;
    others.writeUserInterface("Later", "property string key: vidtip.attribute('key')", 60, 40);
    others.writeControl("Later", "tips.xml", R"(<vidtip key="paste"/>)");
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.manager()->loadDataPath({others.path()});
    QVERIFY(session.host->show("paste", {}, nullptr));
    QCOMPARE(session.view()->rootObject()->property("key").toString(), QStringLiteral("paste"));
    verifyTheNextTip(session.host);
}

void tst_OddHosts::reservingAgainAndAgain()
{
    TestSession session({packages->path()});
    QList<QPointer<VTWidget>> reserved;
    for (int i = 0; i < 12; ++i) {
        QVERIFY(session.host->show(i % 2 ? "cut" : "other", {}, nullptr));
        reserved << session.window();
        session.view()->setReserved(true);
        QVERIFY(reserved.last() != session.window());
        // Neither the answer given once more nor taken back changes anything.
        reserved.last()->view()->setReserved(false);
        reserved.last()->view()->setReserved(true);
    }
    QCOMPARE(session.host->windowTypes.size(), 12);
    session.manager()->raise();
    for (int i = 0; i < 12; i += 3)
        reserved.at(i)->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!reserved.at(0) && reserved.at(1));
    session.manager()->setStayOnTop(false);
    verifyTheNextTip(session.host);
    qDeleteAll(reserved);
}

void tst_OddHosts::oddContainers_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::newRow("the tip") << QByteArray("tip");
    QTest::newRow("the view in it") << QByteArray("view");
    QTest::newRow("the view's viewport") << QByteArray("viewport");
    QTest::newRow("the hovered object") << QByteArray("button");
    QTest::newRow("the hovered object's window") << QByteArray("window");
    QTest::newRow("a widget in a window") << QByteArray("child");
    QTest::newRow("a modal dialogue") << QByteArray("dialogue");
    QTest::newRow("a window that is shown already") << QByteArray("shown");
}

void tst_OddHosts::oddContainers()
{
    QFETCH(QByteArray, kind);
    TestSession session({packages->path()});
    QWidget window;
    auto *const button = new QPushButton(&window);
    auto *const child = new QWidget(&window);
    auto *const dialogue = new QDialog(&window);
    dialogue->setModal(true);
    QWidget shown;
    shown.setLayout(new QVBoxLayout);
    shown.show();
    QVERIFY(session.host->show("cut", {}, button));
    const QPointer<VTWidget> tip(session.window());
    const QMap<QByteArray, QWidget *> containers{
        {"tip", tip},           {"view", tip->view()}, {"viewport", tip->view()->viewport()},
        {"button", button},     {"window", &window},   {"child", child},
        {"dialogue", dialogue}, {"shown", &shown}};
    session.host->onCreateWindow = [&] { return containers.value(kind); };
    tip->view()->setReserved(true);
    QVERIFY(session.window() != tip);
    QVERIFY(tip);
    QCOMPARE(tip->view()->content()->attribute("key"), QStringLiteral("cut"));
    verifyTheNextTip(session.host);
    delete tip;
}

void tst_OddHosts::containerClosesBesideTheNextTip()
{
    TestSession session({packages->path()});
    QPointer<QWidget> container(new QWidget);
    container->setAttribute(Qt::WA_DeleteOnClose);
    session.host->onCreateWindow = [&] { return container.data(); };
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QPointer<VTWidget> tip(session.window());
    tip->view()->setReserved(true);
    QVERIFY(session.host->show("copy", {}, nullptr));
    session.host->onNotification = [&](int, const QString &) {
        if (container)
            container->close();
    };
    QVERIFY(session.host->show("other", {}, nullptr));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!container && !tip);
    verifyTheNextTip(session.host);
}

void tst_OddHosts::objectDiesAfterTheTip()
{
    TestSession session({packages->path()});
    session.set(HideDuration, 0);
    QScopedPointer<QWidget> window(new QWidget);
    auto *const button = new QPushButton(window.data());
    QVERIFY(session.host->show("cut", {}, button));
    window.reset();
    QVERIFY(!session.window()->isVisible());
    session.window()->checkMousePosition(farAway);
    session.view()->setReserved(true);
    QVERIFY(!session.window()->isVisible());
    verifyTheNextTip(session.host);
}

void tst_OddHosts::clickedObjectDies()
{
    Stage stage(*packages);
    stage.hover("cut");
    QVERIFY(stage.window()->isVisible());
    stage.host->trigger = "hidden";
    stage.host->odd = [&] { stage.command.reset(); };
    stage.click();
    QVERIFY(!stage.command);
    QVERIFY(!stage.window()->isVisible());
    verifyTheNextTip(stage.host);
}

void tst_OddHosts::foreignWindows_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("press") << int(QEvent::MouseButtonPress);
    QTest::newRow("release") << int(QEvent::MouseButtonRelease);
    QTest::newRow("move") << int(QEvent::MouseMove);
}

void tst_OddHosts::foreignWindows()
{
    QFETCH(int, type);
    VTContext settings;
    settings.set(InstallEventFilter, true);
    TestSession session({packages->path()}, settings);
    QWindow foreign;
    QObject object;
    QVERIFY(session.host->show("cut", {}, nullptr));
    QMouseEvent event(QEvent::Type(type), QPointF(1, 1), QPointF(session.window()->pos()), Qt::LeftButton,
                      Qt::LeftButton, {});
    // What is no widget says nothing of where in the application it was.
    QCoreApplication::sendEvent(&foreign, &event);
    QCoreApplication::sendEvent(&object, &event);
    QVERIFY(session.window()->isVisible());
    QHelpEvent hover(QEvent::ToolTip, QPoint(1, 1), session.window()->pos());
    foreign.setObjectName("copy");
    QCoreApplication::sendEvent(&foreign, &hover);
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("copy"));
}

QTEST_MAIN(tst_OddHosts)
#include "tst_oddhosts.moc"
