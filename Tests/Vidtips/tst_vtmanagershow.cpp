#include "TestHost.h"
#include "TipPackages.h"

#include <QtTest/QTest>
#include <QtWidgets/QGraphicsObject>

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

} // namespace

/** What show() shows and when it does not. */
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

private:
    QScopedPointer<TipPackages> packages;
};

void tst_VTManagerShow::init()
{
    packages.reset(new TipPackages);
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
    index.root()->setAttribute("ui", packages->filePath("Basic.vidtips/ui/Other.qml"));
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

QTEST_MAIN(tst_VTManagerShow)

#include "tst_vtmanagershow.moc"
