#include "MessageRecorder.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtGui/QDesktopServices>
#include <QtTest/QTest>

#include <cstring>

using namespace Vidtips;

class tst_VTInterface : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void takeUrl(const QUrl &url) { opened << url; }

private slots:
    void init();
    void hasNoMetaObjectEntries();
    void virtualsInFixedOrder();
    void valuesOfEnumerations();
    void defaultMessageText_data();
    void defaultMessageText();
    void defaultKeyIsTheObjectName();
    void defaultKeyOfAPlaceIsThatOfTheObject();
    void defaultOpensUrlsOnly_data();
    void defaultOpensUrlsOnly();
    void defaultsOfOtherOperations();
    void defaultTranslatesThroughTheManager();
    void contextIsTheManagersCopy();
    void startUpMessagesReachTheDefaultHandler();
    void keysAndAttributes();
    void threeArgumentShowHasNoRectangle();
    void fourArgumentShowPassesTheRectangle();
    void hidingTheTip();
    void mouseFiltersForwardAndNeverConsume();
    void destructionLeavesTheIndexOfTheHost();
    void destructionLeavesAnIndexOfTheManager();
    void destructionSchedulesTheWindow();

private:
    QScopedPointer<TestPackages> packages;
    QList<QUrl> opened;
};

void tst_VTInterface::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic");
    packages->writeControl("Basic", "tips.xml", R"(
        <vidtip key="cut" title="Cut"/>
        <vidtip key="copy" title="Copy"/>)");
    opened.clear();
}

void tst_VTInterface::hasNoMetaObjectEntries()
{
    const QMetaObject &meta = VTInterface::staticMetaObject;
    QCOMPARE(meta.className(), "Vidtips::VTInterface");
    QCOMPARE(meta.methodCount(), QObject::staticMetaObject.methodCount());
    QCOMPARE(meta.propertyCount(), QObject::staticMetaObject.propertyCount());
}

template <typename Function>
static std::ptrdiff_t virtualSlot(Function function)
{
    // In the common C++ ABI a pointer to a virtual member starts with its offset in the table, plus one.
    std::ptrdiff_t offset = 0;
    std::memcpy(&offset, &function, sizeof offset);
    return (offset - 1) / std::ptrdiff_t(sizeof(void *));
}

void tst_VTInterface::virtualsInFixedOrder()
{
    const std::ptrdiff_t first = virtualSlot(&VTInterface::createWindow);
    QVERIFY(first > 0);
    QCOMPARE(virtualSlot(&VTInterface::keyForObject), first + 1);
    QCOMPARE(virtualSlot(&VTInterface::openExternalResource), first + 2);
    QCOMPARE(virtualSlot(&VTInterface::handleMessage), first + 3);
    QCOMPARE(virtualSlot(&VTInterface::translateString), first + 4);
    QCOMPARE(virtualSlot(&VTInterface::shortCutForObject), first + 5);
    QCOMPARE(virtualSlot(&VTInterface::notification), first + 6);
    QCOMPARE(virtualSlot(&VTInterface::keyAt), first + 7);
}

void tst_VTInterface::valuesOfEnumerations()
{
    QCOMPARE(int(VTMessageError), 100);
    QCOMPARE(int(VTMessageWarning), 200);
    QCOMPARE(int(VTMessageInformation), 300);
    QCOMPARE(int(VTMessageDebug), 400);
    QCOMPARE(int(VTResourceTopic), 1);
    QCOMPARE(int(VTResourceUrl), 2);
    QCOMPARE(int(VTResourcePath), 3);
    QCOMPARE(int(VTWindowTooltip), 1);
    QCOMPARE(int(VTNotificationShown), 0);
    QCOMPARE(int(VTNotificationHidden), 6);
}

void tst_VTInterface::defaultMessageText_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("text");
    QTest::newRow("error") << 100 << "broken"
                           << "ERROR:broken";
    QTest::newRow("warning") << 200 << "odd"
                             << "Warning:odd";
    QTest::newRow("information") << 300 << "done"
                                 << "Information:done";
    QTest::newRow("debug") << 400 << "x"
                           << "DEBUG:x";
    QTest::newRow("unknown type") << 250 << "x"
                                  << "250:x";
    QTest::newRow("negative type") << -1 << "x"
                                   << "-1:x";
    QTest::newRow("markers and percent signs") << 100 << "%1 %2 %s"
                                               << "ERROR:%1 %2 %s";
    QTest::newRow("not Latin") << 200 << QString::fromUtf8("Größe 尺寸")
                               << QString::fromUtf8("Warning:Größe 尺寸");
    QTest::newRow("empty") << 100 << ""
                           << "ERROR:";
}

void tst_VTInterface::defaultMessageText()
{
    QFETCH(int, type);
    QFETCH(QString, message);
    TestSession session({});
    const MessageRecorder recorder;
    session.host->VTInterface::handleMessage(VTMessageType(type), message);
    QTEST(recorder.texts().join('|'), "text");
    QCOMPARE(recorder.messages().first().type, QtDebugMsg);
}

void tst_VTInterface::defaultKeyIsTheObjectName()
{
    TestSession session({});
    QObject object;
    object.setObjectName("cut");
    QCOMPARE(session.host->keyForObject(&object), QStringLiteral("cut"));
    QCOMPARE(session.host->keyForObject(nullptr), QString());
}

void tst_VTInterface::defaultKeyOfAPlaceIsThatOfTheObject()
{
    class Host : public VTInterface
    {
    public:
        using VTInterface::VTInterface;
        QString keyForObject(QObject *object) override
        {
            return object ? "own." + object->objectName() : QString();
        }
    };
    VTContext settings;
    TestIndex index(&settings, {});
    Host host(settings, {}, &index);
    QObject object;
    object.setObjectName("cut");
    QRect rect;
    QCOMPARE(host.keyAt(&object, QPoint(1, 2), rect), QStringLiteral("own.cut"));
    QCOMPARE(host.keyAt(nullptr, QPoint(1, 2), rect), QString());
    QVERIFY(rect.isNull());
}

void tst_VTInterface::defaultOpensUrlsOnly_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QString>("resource");
    QTest::addColumn<QList<QUrl>>("urls");
    const QList<QUrl> none;
    QTest::newRow("topic") << 1 << "vidtest:topic" << none;
    QTest::newRow("url") << 2 << "vidtest:page" << QList<QUrl>{QUrl("vidtest:page")};
    QTest::newRow("url, tolerant") << 2 << "vidtest:a b" << QList<QUrl>{QUrl("vidtest:a%20b")};
    QTest::newRow("path") << 3 << "vidtest:/path" << none;
    QTest::newRow("unknown") << 7 << "vidtest:x" << none;
}

void tst_VTInterface::defaultOpensUrlsOnly()
{
    QFETCH(int, type);
    QFETCH(QString, resource);
    QFETCH(QList<QUrl>, urls);
    TestSession session({});
    QDesktopServices::setUrlHandler("vidtest", this, "takeUrl");
    const bool done = session.host->VTInterface::openExternalResource(VTExternalResourceType(type), resource);
    QDesktopServices::unsetUrlHandler("vidtest");
    QCOMPARE(done, !urls.isEmpty());
    QCOMPARE(opened, urls);
}

void tst_VTInterface::defaultsOfOtherOperations()
{
    TestSession session({});
    VTInterface *const host = session.host;
    QVERIFY(!host->VTInterface::createWindow(VTWindowTooltip));
    QCOMPARE(host->VTInterface::shortCutForObject("cut", nullptr, "Ctrl+X"), QStringLiteral("Ctrl+X"));
    QVERIFY(host->VTInterface::shortCutForObject("cut", this, QString()).isNull());
    host->VTInterface::notification(VTNotificationShown, QVariant(), "cut");
}

void tst_VTInterface::defaultTranslatesThroughTheManager()
{
    TestSession session({});
    QCOMPARE(session.host->translateString("Cut", "Menu"), QStringLiteral("Cut"));
}

void tst_VTInterface::contextIsTheManagersCopy()
{
    VTContext settings;
    settings.set(PackageSuffix, "tips");
    TestHost host(settings, {}, new TestIndex(nullptr, {}));
    const QScopedPointer<VTIndex> index(host.manager()->index());
    QVERIFY(&host.context() != &settings);
    QCOMPARE(&host.context(), &host.manager()->context());
    QCOMPARE(&std::as_const(host).context(), &host.manager()->context());
    QCOMPARE(host.context().get(PackageSuffix, {}).toString(), QStringLiteral("tips"));
    settings.set(PackageSuffix, "later");
    QCOMPARE(host.context().get(PackageSuffix, {}).toString(), QStringLiteral("tips"));
}

void tst_VTInterface::startUpMessagesReachTheDefaultHandler()
{
    VTContext settings;
    settings.set(MessageThreshold, 300);
    const MessageRecorder recorder;
    const TestSession session({}, settings);
    QCOMPARE(recorder.texts().count(), 1);
    QVERIFY(recorder.texts().first().startsWith("Information:Indexed packages in "));
    QVERIFY(session.host->messages.isEmpty());
}

void tst_VTInterface::keysAndAttributes()
{
    TestSession session({packages->path()});
    QCOMPARE(session.host->keys(), (QStringList{"cut", "copy"}));
    QCOMPARE(session.host->vidTipAttribute("copy", "title", "none"), QStringLiteral("Copy"));
    QCOMPARE(session.host->vidTipAttribute("paste", "title", "none"), QStringLiteral("none"));
    session.host->setGlobalProperty("name", "world");
    QCOMPARE(session.manager()->interpolate("hello %(name)s"), QStringLiteral("hello world"));
}

void tst_VTInterface::threeArgumentShowHasNoRectangle()
{
    TestSession session({packages->path()});
    QWidget button;
    button.setGeometry(500, 500, 40, 20);
    QVERIFY(session.host->show("cut", QPoint(10, 10), &button));
    QVERIFY(session.window()->isSafe(button.mapToGlobal(QPoint(39, 19))));
    QVERIFY(!session.window()->isSafe(QPoint(700, 10)));
}

void tst_VTInterface::fourArgumentShowPassesTheRectangle()
{
    TestSession session({packages->path()});
    QWidget button;
    button.setGeometry(500, 500, 40, 20);
    QVERIFY(session.host->show("cut", QPoint(10, 10), &button, QRect(700, 10, 5, 5)));
    QVERIFY(session.window()->isSafe(QPoint(700, 10)));
    QVERIFY(!session.window()->isSafe(button.mapToGlobal(QPoint(39, 19))));
}

void tst_VTInterface::hidingTheTip()
{
    TestSession session({packages->path()});
    session.set(HideDuration, 60000);
    TestHost *const host = session.host;
    QVERIFY(!host->isVisible());
    host->hide();
    bool wasVisible = true;
    host->onNotification = [&](int type, const QString &) {
        if (type == VTNotificationShown)
            wasVisible = host->isVisible();
    };
    QVERIFY(host->show("cut", {}, nullptr));
    QVERIFY(!wasVisible);
    QVERIFY(host->isVisible());
    const QPointer<VTWidget> kept = session.window();
    kept->view()->setReserved(true);
    QVERIFY(kept->isVisible());
    QVERIFY(!host->isVisible());
    host->hide();
    QVERIFY(kept->isVisible());
    QVERIFY(host->show("copy", {}, nullptr));
    session.window()->hideAnimated();
    QVERIFY(host->isVisible());
    host->hide();
    QVERIFY(!session.window()->isVisible());
    QVERIFY(!host->isVisible());
    QCOMPARE(host->notificationTexts().last(), QString("6 copy"));
    delete kept;
}

void tst_VTInterface::mouseFiltersForwardAndNeverConsume()
{
    TestSession session({packages->path()});
    QWidget button;
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(1, 1), Qt::LeftButton, Qt::LeftButton, {});
    QMouseEvent move(QEvent::MouseMove, QPointF(1, 1), QPointF(900, 900), Qt::NoButton, {}, {});
    QVERIFY(session.host->show("cut", QPoint(10, 10), &button));
    QVERIFY(!session.host->mouseMoveEventFilter(&button, &move));
    QVERIFY(session.window()->isVisible());
    QVERIFY(!session.host->mouseButtonEventFilter(&button, &press));
    QVERIFY(!session.window()->isVisible());
}

void tst_VTInterface::destructionLeavesTheIndexOfTheHost()
{
    VTContext settings;
    const QPointer<VTIndex> index(new VTIndex(&settings, {}));
    auto *const host = new VTInterface(settings, {}, index);
    const QPointer<VTManager> manager(host->manager());
    QCOMPARE(manager->index(), index.data());
    delete host;
    QVERIFY(!manager);
    QVERIFY(index);
    delete index;
}

void tst_VTInterface::destructionLeavesAnIndexOfTheManager()
{
    VTContext settings;
    auto *const host = new VTInterface(settings, {packages->path()}, nullptr);
    const QPointer<VTIndex> index(host->manager()->index());
    QCOMPARE(host->keys(), (QStringList{"cut", "copy"}));
    delete host;
    QVERIFY(index);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(index);
    delete index;
}

void tst_VTInterface::destructionSchedulesTheWindow()
{
    TestSession session({packages->path()});
    QWidget button;
    QVERIFY(session.host->show("cut", QPoint(10, 10), &button));
    const QPointer<VTWidget> window(session.window());
    const QPointer<VTXmlElement> root(session.index.roots.first());
    delete session.host;
    QVERIFY(window);
    QVERIFY(root);
    QVERIFY(!window->manager());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!window);
    QVERIFY(!root);
}

QTEST_MAIN(tst_VTInterface)
#include "tst_vtinterface.moc"
