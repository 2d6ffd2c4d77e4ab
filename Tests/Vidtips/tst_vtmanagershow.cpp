#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QTimer>
#include <QtGui/QHelpEvent>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QLabel>

#include <algorithm>

using namespace Vidtips;

namespace {

const QPoint farAway(5000, 5000);

/** An index that answers with one tree of its own, as a host with a cache might. */
class CachingIndex : public VTIndex
{
public:
    CachingIndex(VTContext *context, bool handsOutRoot)
        : VTIndex(context, {})
        , m_handsOutRoot(handsOutRoot)
    {
        auto *const element = new VTXmlElement(&m_root);
        element->setAttribute("key", "cut");
    }

    VTXmlElement *retrieve(const QString &key, const QLocale &, QString &directory, int &depth,
                           VTXmlElement *&root) override
    {
        directory = QDir::tempPath();
        depth = 1000000;
        root = m_handsOutRoot ? &m_root : nullptr;
        return key == "cut" ? m_root.findChild<VTXmlElement *>() : nullptr;
    }

    VTXmlElement *root() { return &m_root; }

private:
    VTXmlElement m_root;
    const bool m_handsOutRoot;
};

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

} // namespace

namespace {

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

class tst_VTManagerShow : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void showsContentOfAControlFile();
    void replacesContentAndDeletesTheOldTree();
    void packageFolderIsWhatTheQmlSees_data();
    void packageFolderIsWhatTheQmlSees();
    void nothingWhenSwitchedOff();
    void requiredModifiers_data();
    void requiredModifiers();
    void shownKeyIsNotLoadedAgain();
    void hiddenKeyIsLoadedAgain();
    void offsetOfTheWindow_data();
    void offsetOfTheWindow();
    void shortcutOfTheHost_data();
    void shortcutOfTheHost();
    void fallbackKey_data();
    void fallbackKey();
    void fallbackGivesWayToContent();
    void fallbackOnScreenStays();
    void emptyFallbackIsNotLookedUp();
    void unknownKeyHidesOutsideTheSafeZone_data();
    void unknownKeyHidesOutsideTheSafeZone();
    void unknownKeyWithoutAWindow();
    void elementWithoutRootIsNotFound();
    void elementOfACacheIsShownAgain();

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
    void deletedWindowIsMadeAnew();
    void windowWithoutAViewGetsOne();

    void reserveRefusesOtherWindows();
    void reserveMakesAFreshWindow();
    void reservedWindowOutlivesTheManager();
    void createWindowDeletesTheWindow();
    void createWindowDeletesTheHost();
    void raiseForgetsDeletedWindows();
    void raiseBeginsWithTheLast();
    void stayOnTopOfReservedWindowsOnly();

    void filterIsInstalledByTheSettingOnly_data();
    void filterIsInstalledByTheSettingOnly();
    void toolTipEventShowsAndConsumes();
    void toolTipEventOfAShownKeyDoesNotReload();
    void toolTipEventWithoutContent();
    void toolTipEventAsksForThePlace();
    void referenceRectIsThatOfTheTipOnScreen();
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
    QScopedPointer<TestPackages> packages;
};

void tst_VTManagerShow::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic", R"(property string title: vidtip.attribute("title"))");
    packages->write("Basic.vidtips/ui/Other.qml",
                    "import QtQuick 1.0\nItem { width: 50; height: 40; objectName: \"other\" }");
    packages->writeControl("Basic", "tips.xml", R"(
        <vidtip key="cut" title="Cut" shortcut="Ctrl+X"/>
        <vidtip key="copy" title="Copy"/>
        <vidtip key="other" title="Other" ui="ui/Other.qml"/>)");
}

void tst_VTManagerShow::showsContentOfAControlFile()
{
    TestSession session({packages->path()});
    QWidget button;
    QVERIFY(session.host->show("cut", QPoint(10, 20), &button));
    QVERIFY(session.window()->isVisible());
    QVERIFY(!session.window()->parent());
    QCOMPARE(session.window()->pos(), QPoint(45, 50));
    QCOMPARE(session.window()->size(), QSize(121, 81));
    QCOMPARE(session.view()->rootObject()->property("title").toString(), QStringLiteral("Cut"));
    QCOMPARE(session.host->notificationTexts(), QStringList{"0 cut"});
    QCOMPARE(session.host->notifications.first().value, QVariant(QStringLiteral("")));
    QCOMPARE(session.host->notifications.first().value.type(), QVariant::String);
}

void tst_VTManagerShow::replacesContentAndDeletesTheOldTree()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QPointer<VTXmlElement> root(session.index.roots.first());
    const QPointer<QGraphicsObject> userInterface(session.view()->rootObject());
    session.set(MessageThreshold, 400);
    QVERIFY(session.host->show("copy", {}, nullptr));
    QVERIFY(!root);
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("copy"));
    QCOMPARE(session.view()->rootObject(), userInterface.data());
    QCOMPARE(userInterface->property("title").toString(), QStringLiteral("Copy"));
    QVERIFY(session.host->messages.isEmpty());
}

void tst_VTManagerShow::packageFolderIsWhatTheQmlSees_data()
{
    QTest::addColumn<QString>("controlFolder");
    QTest::newRow("control folder") << "Control";
    QTest::newRow("nested control folder") << "data/Control";
    QTest::newRow("package itself") << ".";
}

void tst_VTManagerShow::packageFolderIsWhatTheQmlSees()
{
    QFETCH(QString, controlFolder);
    packages->write("Basic.vidtips/" + controlFolder + "/more.xml",
                    "<vidtips><vidtip key=\"paste\"/></vidtips>");
    VTContext settings;
    settings.set(ControlFolder, controlFolder);
    TestSession session({packages->path()}, settings);
    QVERIFY(session.host->show("paste", {}, nullptr));
    QCOMPARE(session.view()->rootContext()->contextProperty("dataLocation").toString(),
             packages->filePath("Basic.vidtips"));
    QCOMPARE(session.view()->packageRoot().path(), packages->filePath("Basic.vidtips"));
}

void tst_VTManagerShow::nothingWhenSwitchedOff()
{
    TestSession session({packages->path()});
    session.set(TipsOff, true);
    QVERIFY(!session.host->show("cut", {}, nullptr));
    QVERIFY(!session.window());
    session.set(TipsOff, false);
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.set(TipsOff, true);
    QVERIFY(!session.host->show("cut", {}, nullptr));
    QVERIFY(session.window()->isVisible());
}

void tst_VTManagerShow::requiredModifiers_data()
{
    QTest::addColumn<int>("required");
    QTest::addColumn<int>("held");
    QTest::addColumn<bool>("shown");
    const int control = Qt::ControlModifier;
    const int both = Qt::ControlModifier | Qt::ShiftModifier;
    QTest::newRow("none required, none held") << 0 << 0 << true;
    QTest::newRow("none required, one held") << 0 << control << true;
    QTest::newRow("required but not held") << control << 0 << false;
    QTest::newRow("held") << control << control << true;
    QTest::newRow("more held") << control << both << false;
    QTest::newRow("both required and held") << both << both << true;
    QTest::newRow("other held") << control << int(Qt::ShiftModifier) << false;
}

void tst_VTManagerShow::requiredModifiers()
{
    QFETCH(int, required);
    QFETCH(int, held);
    TestSession session({packages->path()});
    session.set(RequiredModifiers, required);
    QWidget target;
    QTest::sendKeyEvent(QTest::Press, &target, Qt::Key_A, QString(), Qt::KeyboardModifiers(held));
    QTEST(session.host->show("cut", {}, nullptr), "shown");
    QTest::sendKeyEvent(QTest::Release, &target, Qt::Key_A, QString(), {});
}

void tst_VTManagerShow::shownKeyIsNotLoadedAgain()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    const VTXmlElement *const content = session.content();
    const int requests = session.index.requests.count();
    QVERIFY(session.host->show("cut", farAway, nullptr));
    QCOMPARE(session.index.requests.count(), requests);
    QCOMPARE(session.content(), content);
    QCOMPARE(session.window()->pos(), QPoint(35, 30));
    QCOMPARE(session.host->notifications.count(), 1);
}

void tst_VTManagerShow::hiddenKeyIsLoadedAgain()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QPointer<VTXmlElement> root(session.index.roots.first());
    session.window()->hide();
    QVERIFY(root);
    QVERIFY(session.host->show("cut", QPoint(100, 100), nullptr));
    QVERIFY(!root);
    QCOMPARE(session.window()->pos(), QPoint(135, 130));
    QCOMPARE(session.host->notificationTexts(), (QStringList{"0 cut", "6 cut", "0 cut"}));
}

void tst_VTManagerShow::offsetOfTheWindow_data()
{
    QTest::addColumn<QVariant>("offset");
    QTest::addColumn<QPoint>("position");
    QTest::newRow("default") << QVariant() << QPoint(135, 230);
    QTest::newRow("set") << QVariant(QSize(1, 2)) << QPoint(101, 202);
    QTest::newRow("negative") << QVariant(QSize(-10, -20)) << QPoint(90, 180);
}

void tst_VTManagerShow::offsetOfTheWindow()
{
    QFETCH(QVariant, offset);
    TestSession session({packages->path()});
    if (offset.isValid())
        session.set(TooltipOffset, offset);
    QWidget widget;
    QTEST(session.manager()->tooltipPosition(QPoint(100, 200), nullptr), "position");
    QTEST(session.manager()->tooltipPosition(QPoint(100, 200), &widget), "position");
}

void tst_VTManagerShow::shortcutOfTheHost_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("answer");
    QTest::addColumn<QString>("asked");
    QTest::addColumn<QString>("shown");
    QTest::newRow("replaced") << "cut"
                              << "Ctrl+Q"
                              << "Ctrl+X"
                              << "Ctrl+Q";
    QTest::newRow("empty keeps") << "cut"
                                 << ""
                                 << "Ctrl+X"
                                 << "Ctrl+X";
    QTest::newRow("added") << "copy"
                           << "Ctrl+C"
                           << ""
                           << "Ctrl+C";
    QTest::newRow("none") << "copy"
                          << ""
                          << ""
                          << "";
}

void tst_VTManagerShow::shortcutOfTheHost()
{
    QFETCH(QString, key);
    QFETCH(QString, answer);
    TestSession session({packages->path()});
    QWidget button;
    QString asked;
    session.host->onShortcut = [&](const QString &askedKey, QObject *object, const QString &shortcut) {
        asked = shortcut;
        return askedKey == key && object == &button ? answer : QStringLiteral("wrong");
    };
    QVERIFY(session.host->show(key, {}, &button));
    QTEST(asked, "asked");
    QTEST(session.content()->attribute("shortcut"), "shown");
    QCOMPARE(session.content()->hasAttribute("shortcut"),
             !session.content()->attribute("shortcut").isEmpty());
}

void tst_VTManagerShow::fallbackKey_data()
{
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("title");
    QTest::newRow("default locale") << ""
                                    << "Fallback";
    QTest::newRow("user interface locale") << "de_DE"
                                           << "Ersatz";
}

void tst_VTManagerShow::fallbackKey()
{
    QFETCH(QString, locale);
    packages->writeControl("Basic", "de.xml", "<vidtip key=\"fallback\" title=\"Ersatz\"/>",
                           "locale=\"de_DE\"");
    packages->writeControl("Basic", "en.xml", "<vidtip key=\"fallback\" title=\"Fallback\"/>",
                           "locale=\"en_US\"");
    TestSession session({packages->path()});
    session.set(FallbackKey, "fallback");
    session.set(ContentLocale, "fr_FR");
    if (!locale.isEmpty())
        session.set(UserInterfaceLocale, locale);
    QVERIFY(session.host->show("paste", {}, nullptr));
    QTEST(session.content()->attribute("title"), "title");
    QCOMPARE(session.host->notificationTexts(), QStringList{"0 paste"});
}

void tst_VTManagerShow::fallbackGivesWayToContent()
{
    TestSession session({packages->path()});
    session.set(FallbackKey, "copy");
    QVERIFY(session.host->show("paste", {}, nullptr));
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("copy"));
    QVERIFY(session.host->show("cut", {}, nullptr));
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("cut"));
    session.window()->hide();
    QVERIFY(session.host->show("other", {}, nullptr));
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("other"));
}

void tst_VTManagerShow::fallbackOnScreenStays()
{
    TestSession session({packages->path()});
    session.set(FallbackKey, "cut");
    QVERIFY(session.host->show("paste", {}, nullptr));
    const VTXmlElement *const content = session.content();
    QVERIFY(session.host->show("undo", farAway, nullptr));
    QCOMPARE(session.content(), content);
    QCOMPARE(session.host->notificationTexts(), QStringList{"0 paste"});
    session.window()->hide();
    QVERIFY(session.host->show("undo", {}, nullptr));
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("cut"));
}

void tst_VTManagerShow::emptyFallbackIsNotLookedUp()
{
    TestSession session({packages->path()});
    session.set(FallbackKey, "");
    QVERIFY(!session.host->show("paste", {}, nullptr));
    QCOMPARE(session.index.requests.count(), 2);
}

void tst_VTManagerShow::unknownKeyHidesOutsideTheSafeZone_data()
{
    QTest::addColumn<QPoint>("position");
    QTest::addColumn<QString>("toolTip");
    QTest::addColumn<bool>("isWidget");
    QTest::addColumn<bool>("kept");
    const QPoint inside(40, 40);
    QTest::newRow("inside") << inside << "" << true << true;
    QTest::newRow("inside, no widget") << inside << "text" << false << true;
    QTest::newRow("inside, with a standard tip") << inside << "text" << true << false;
    QTest::newRow("outside") << farAway << "" << true << false;
    QTest::newRow("outside, no widget") << farAway << "" << false << false;
}

void tst_VTManagerShow::unknownKeyHidesOutsideTheSafeZone()
{
    QFETCH(QPoint, position);
    QFETCH(QString, toolTip);
    QFETCH(bool, isWidget);
    QFETCH(bool, kept);
    TestSession session({packages->path()});
    session.set(HideDuration, 0);
    QVERIFY(session.host->show("cut", {}, nullptr));
    QWidget widget;
    widget.setToolTip(toolTip);
    QObject object;
    QObject *const target = isWidget ? &widget : &object;
    QCOMPARE(session.host->show("paste", position, target), kept);
    QCOMPARE(session.window()->isVisible(), kept);
    QCOMPARE(session.content()->attribute("key"), QStringLiteral("cut"));
    QVERIFY(session.host->messages.isEmpty());
}

void tst_VTManagerShow::unknownKeyWithoutAWindow()
{
    TestSession session({packages->path()});
    QVERIFY(!session.host->show("paste", {}, nullptr));
    QVERIFY(session.window());
    QVERIFY(!session.window()->isVisible());
    QVERIFY(!session.host->show("", {}, nullptr));
    QVERIFY(!session.host->show(QString(), {}, nullptr));
    QVERIFY(session.host->notifications.isEmpty());
}

void tst_VTManagerShow::elementWithoutRootIsNotFound()
{
    VTContext settings;
    CachingIndex index(&settings, false);
    TestHost host(settings, {}, &index);
    QVERIFY(!host.show("cut", {}, nullptr));
    QVERIFY(host.notifications.isEmpty());
    delete host.manager()->widget();
    QVERIFY(!index.root()->children().isEmpty());
}

void tst_VTManagerShow::elementOfACacheIsShownAgain()
{
    VTContext settings;
    CachingIndex index(&settings, true);
    TestHost host(settings, {}, &index);
    QVERIFY(host.show("cut", {}, nullptr));
    VTWidget *const window = host.manager()->widget();
    VTXmlElement *const content = window->view()->content();
    content->setAttribute("key", "other");
    QVERIFY(host.show("cut", {}, nullptr));
    QCOMPARE(window->view()->content(), content);
    window->hide();
    QVERIFY(host.show("cut", {}, nullptr));
    QVERIFY(window->isVisible());
    QCOMPARE(window->view()->content(), content);
    window->view()->setContent(nullptr);
    delete window;
}

void tst_VTManagerShow::notificationDeletesTheObject()
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

void tst_VTManagerShow::notificationShowsAnotherKey()
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

void tst_VTManagerShow::notificationClosesTheWindow()
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

void tst_VTManagerShow::notificationDeletesTheWindow()
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

void tst_VTManagerShow::notificationDeletesTheHost()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.host->onNotification = [&](int, const QString &) { delete session.host; };
    QVERIFY(!session.host->show("copy", {}, nullptr));
    QVERIFY(!session.index.roots.last());
    QVERIFY(session.index.roots.first());
}

void tst_VTManagerShow::notificationDeletesTheContent()
{
    TestSession session({packages->path()});
    session.host->onNotification = [&](int, const QString &) { session.index.deleteRoots(); };
    QVERIFY(!session.host->show("cut", {}, nullptr));
    QVERIFY(!session.content());
    QVERIFY(!session.window()->isVisible());
}

void tst_VTManagerShow::shortcutDeletesTheContent()
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

void tst_VTManagerShow::shortcutDeletesTheView()
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

void tst_VTManagerShow::shortcutShowsAnotherKey()
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

void tst_VTManagerShow::shortcutDeletesTheWindow()
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

void tst_VTManagerShow::shortcutDeletesTheHost()
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

void tst_VTManagerShow::shortcutReservesTheWindow()
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

void tst_VTManagerShow::hideNotificationShowsAnotherKey()
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

void tst_VTManagerShow::hideNotificationDeletesTheHost()
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

void tst_VTManagerShow::keyForObjectDeletesTheObject()
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

void tst_VTManagerShow::keyForObjectDeletesTheHost()
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

void tst_VTManagerShow::retrievalDeletesTheHost_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("with content") << "cut";
    QTest::newRow("without content") << "paste";
}

void tst_VTManagerShow::retrievalDeletesTheHost()
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

void tst_VTManagerShow::retrievalDeletesTheWindow_data()
{
    retrievalDeletesTheHost_data();
}

void tst_VTManagerShow::retrievalDeletesTheWindow()
{
    QFETCH(QString, key);
    VTContext settings;
    BusyIndex index(&settings, {});
    TestHost host(settings, {packages->path()}, &index);
    index.onRetrieve = [&] { delete host.manager()->widget(); };
    QVERIFY(!host.show(key, {}, nullptr));
    QVERIFY(!host.manager()->widget());
}

void tst_VTManagerShow::takingTheWindowBackDeletesTheHost()
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

void tst_VTManagerShow::qmlNotificationShowsAnotherUserInterface()
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

void tst_VTManagerShow::deletedWindowIsMadeAnew()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    delete session.window();
    QVERIFY(!session.index.roots.first());
    QVERIFY(session.host->show("cut", {}, nullptr));
    QVERIFY(session.window()->isVisible());
}

void tst_VTManagerShow::windowWithoutAViewGetsOne()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.window()->setView(nullptr);
    QVERIFY(!session.index.roots.first());
    QVERIFY(session.host->show("cut", {}, nullptr));
    QVERIFY(session.view());
    QCOMPARE(session.view()->rootObject()->property("title").toString(), QStringLiteral("Cut"));
}

void tst_VTManagerShow::reserveRefusesOtherWindows()
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

void tst_VTManagerShow::reserveMakesAFreshWindow()
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

void tst_VTManagerShow::reservedWindowOutlivesTheManager()
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

void tst_VTManagerShow::createWindowDeletesTheWindow()
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

void tst_VTManagerShow::createWindowDeletesTheHost()
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

void tst_VTManagerShow::raiseForgetsDeletedWindows()
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

void tst_VTManagerShow::raiseBeginsWithTheLast()
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

void tst_VTManagerShow::stayOnTopOfReservedWindowsOnly()
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

void tst_VTManagerShow::filterIsInstalledByTheSettingOnly_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<bool>("on");
    QTest::newRow("on") << QVariant(true) << true;
    QTest::newRow("off") << QVariant(false) << false;
    QTest::newRow("unset") << QVariant() << false;
}

void tst_VTManagerShow::filterIsInstalledByTheSettingOnly()
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

void tst_VTManagerShow::toolTipEventShowsAndConsumes()
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

void tst_VTManagerShow::toolTipEventOfAShownKeyDoesNotReload()
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

void tst_VTManagerShow::toolTipEventAsksForThePlace()
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

void tst_VTManagerShow::referenceRectIsThatOfTheTipOnScreen()
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

void tst_VTManagerShow::toolTipEventWithoutContent()
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

void tst_VTManagerShow::clickOutsideHides_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("press") << int(QEvent::MouseButtonPress);
    QTest::newRow("release") << int(QEvent::MouseButtonRelease);
}

void tst_VTManagerShow::clickOutsideHides()
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

void tst_VTManagerShow::clickInsideKeeps()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    QMouseEvent click(QEvent::MouseButtonPress, QPointF(), Qt::LeftButton, Qt::LeftButton, {});
    QVERIFY(!session.manager()->mouseButtonEventFilter(session.window(), &click));
    QVERIFY(!session.manager()->mouseButtonEventFilter(session.view(), &click));
    QVERIFY(!session.manager()->mouseButtonEventFilter(session.view()->viewport(), &click));
    QVERIFY(session.window()->isVisible());
}

void tst_VTManagerShow::clickWhileStayingOpenKeeps()
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

void tst_VTManagerShow::mouseFiltersIgnoreForeignArguments()
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

void tst_VTManagerShow::moveReachesTheWindow()
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

void tst_VTManagerShow::deactivationHidesAtOnce()
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

void tst_VTManagerShow::externalResource_data()
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

void tst_VTManagerShow::externalResource()
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

void tst_VTManagerShow::settingReachesTheView()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    QSignalSpy changed(session.view(), &VTView::documentationAvailableChanged);
    session.set(AllowDocumentation, true);
    QCOMPARE(changed.count(), 1);
    session.set(AllowExternalResources, true);
    QCOMPARE(changed.count(), 1);
}

void tst_VTManagerShow::errorsOfTheUserInterfaceAreReported()
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

QTEST_MAIN(tst_VTManagerShow)
#include "tst_vtmanagershow.moc"
