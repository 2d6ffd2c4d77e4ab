#include "ViewTest.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsScene>

using namespace Vidtips;

namespace {

/** A host that translates by itself. */
class TranslatingHost : public TestHost
{
public:
    using TestHost::TestHost;
    QString translateString(const QString &text, const QString &context) override
    {
        return context + '/' + text;
    }
};

} // namespace

/** What a view does with its user interface, and that with it. */
class tst_VTViewInterface : public ViewTest
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void tooLargeARootIsCutOff();
    void errorsAreReported();
    void errorsOfAnotherStatusAreNot();
    void warningsAreReported();
    void reportsAreDroppedByDefault();
    void resetStateWithoutARoot();
    void itemCursor_data();
    void itemCursor();
    void emptyItemCursorClears();
    void itemCursorOfNull();
    void overrideCursor_data();
    void overrideCursor();
    void forwardsToTheManager();
    void translateAsksTheHost();
    void withoutAManager();
    void notificationToTheHost();
    void notificationNeedsContent();
    void resizeWithoutARootDoesNothing();
    void resizeTakesTheRootsRectangle();
    void sceneShowsTheWholeRoot();
    void qmlUsesTheView();
};

void tst_VTViewInterface::init()
{
    makeView();
}

void tst_VTViewInterface::cleanup()
{
    endView();
}

void tst_VTViewInterface::tooLargeARootIsCutOff()
{
    const QSize screens = QGuiApplication::primaryScreen()->virtualSize();
    const auto file = [&](const char *name, const char *size) {
        return packages->write(name, QByteArray("import QtQuick 1.0\nItem { ") + size + " }");
    };
    view->show();
    view->loadQML(file("wide.qml", "width: 1e9; height: 40"));
    QCOMPARE(view->size(), QSize(screens.width(), 40));
    QCOMPARE(messages().count(), 1);
    QVERIFY(messages().first().second.contains(QStringLiteral("cut off at %1").arg(screens.width())));
    view->rootObject()->setProperty("height", 1e9);
    QTRY_COMPARE(view->size(), screens);
    QCOMPARE(messages().count(), 1);
    view->loadQML(file("full.qml", qPrintable(QStringLiteral("width: %1; height: 40").arg(screens.width()))));
    QCOMPARE(view->size(), QSize(screens.width(), 40));
    QCOMPARE(messages().count(), 1);
}

void tst_VTViewInterface::errorsAreReported()
{
    view->loadQML(packages->write("bad.qml", "import QtQuick 1.0\nItem {\n    nothing: 1\n}\n"));
    QCOMPARE(view->status(), QDeclarativeView::Error);
    session->host->messages.clear();
    view->statusHasChanged(QDeclarativeView::Error);
    QStringList expected;
    const QList<QDeclarativeError> errors = view->errors();
    QVERIFY(!errors.isEmpty());
    for (const QDeclarativeError &error : errors)
        expected << QStringLiteral("Error 3:5:") + error.description();
    QStringList texts;
    for (const auto &message : messages()) {
        QCOMPARE(message.first, 400);
        texts << message.second;
    }
    QCOMPARE(texts, expected);
}

void tst_VTViewInterface::errorsOfAnotherStatusAreNot()
{
    view->loadQML(packages->write("bad.qml", "import QtQuick 1.0\nItem { nothing: 1 }\n"));
    QVERIFY(!view->errors().isEmpty());
    session->host->messages.clear();
    for (const auto status : {QDeclarativeView::Null, QDeclarativeView::Ready, QDeclarativeView::Loading})
        view->statusHasChanged(status);
    QVERIFY(messages().isEmpty());
}

void tst_VTViewInterface::warningsAreReported()
{
    QDeclarativeError first;
    first.setLine(3);
    first.setColumn(7);
    first.setDescription("odd %1 %2");
    QDeclarativeError second;
    second.setDescription("strange");
    view->handleWarnings({first, second});
    QCOMPARE(
        messages(),
        (QList<QPair<int, QString>>{
            {400, "QML Warning 3:7:odd %1 %2"},
            {400, QStringLiteral("QML Warning %1:%2:strange").arg(second.line()).arg(second.column())}}));
    session->host->messages.clear();
    view->loadQML(
        packages->write("warn.qml", "import QtQuick 1.0\nItem {\n    property int size: missing.size\n}\n"));
    QCOMPARE(messages().count(), 1);
    QVERIFY(messages().first().second.startsWith("QML Warning 3:"));
    QVERIFY(messages().first().second.contains("missing"));
}

void tst_VTViewInterface::reportsAreDroppedByDefault()
{
    session->set(MessageThreshold, 200);
    view->loadQML("/nowhere/a.qml");
    view->debugLog("text");
    QVERIFY(messages().isEmpty());
}

void tst_VTViewInterface::resetStateWithoutARoot()
{
    view->resetState();
    view->loadQML(packages->write(
        "state.qml", "import QtQuick 1.0\nItem { state: \"open\"; states: State { name: \"open\" } }"));
    QCOMPARE(view->rootObject()->property("state").toString(), QStringLiteral("open"));
    view->resetState();
    QCOMPARE(view->rootObject()->property("state").toString(), QString());
}

void tst_VTViewInterface::itemCursor_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("shape");
    QTest::newRow("hand") << "PointingHandCursor" << int(Qt::PointingHandCursor);
    QTest::newRow("arrow") << "ArrowCursor" << int(Qt::ArrowCursor);
    QTest::newRow("beam") << "IBeamCursor" << int(Qt::IBeamCursor);
    QTest::newRow("blank") << "BlankCursor" << int(Qt::BlankCursor);
    QTest::newRow("unknown") << "WaitCursor" << int(Qt::ArrowCursor);
    QTest::newRow("other case") << "blankcursor" << int(Qt::ArrowCursor);
}

void tst_VTViewInterface::itemCursor()
{
    QFETCH(QString, name);
    QDeclarativeItem item;
    item.setCursor(Qt::SizeAllCursor);
    view->setItemCursor(&item, name, "tag");
    QVERIFY(item.hasCursor());
    QTEST(int(item.cursor().shape()), "shape");
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_VTViewInterface::emptyItemCursorClears()
{
    QDeclarativeItem item;
    view->setItemCursor(&item, "BlankCursor", QString());
    view->setItemCursor(&item, QString(), QString());
    QVERIFY(!item.hasCursor());
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_VTViewInterface::itemCursorOfNull()
{
    view->setItemCursor(nullptr, "BlankCursor", QString());
    view->setItemCursor(nullptr, QString(), QString());
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_VTViewInterface::overrideCursor_data()
{
    itemCursor_data();
}

void tst_VTViewInterface::overrideCursor()
{
    QFETCH(QString, name);
    view->setOverrideCursor("IBeamCursor");
    view->setOverrideCursor(name);
    QVERIFY(QGuiApplication::overrideCursor());
    QTEST(int(QGuiApplication::overrideCursor()->shape()), "shape");
    view->restoreOverrideCursor();
    QCOMPARE(QGuiApplication::overrideCursor()->shape(), Qt::IBeamCursor);
    view->restoreOverrideCursor();
    QVERIFY(!QGuiApplication::overrideCursor());
    view->setOverrideCursor(QString());
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_VTViewInterface::forwardsToTheManager()
{
    view->debugLog("text");
    QCOMPARE(messages(), (QList<QPair<int, QString>>{{400, "text"}}));
    view->openExternalResource("docs/page.html");
    QCOMPARE(session->host->resources, (QList<QPair<int, QString>>{{3, "docs/page.html"}}));
    session->manager()->setGlobalProperty("name", "world");
    QCOMPARE(view->interpolate("hello %(name)s"), QStringLiteral("hello world"));
}

void tst_VTViewInterface::translateAsksTheHost()
{
    VTContext settings;
    TestIndex index(&settings, {});
    TranslatingHost host(settings, {}, &index);
    VTView translating(host.manager(), nullptr);
    QCOMPARE(translating.translate("Cut", "Menu"), QStringLiteral("Menu/Cut"));
    QCOMPARE(view->translate("Cut", "Menu"), QStringLiteral("Cut"));
}

void tst_VTViewInterface::withoutAManager()
{
    VTView alone(nullptr, nullptr);
    QCOMPARE(alone.translate("Cut", "Menu"), QStringLiteral("Cut"));
    QCOMPARE(alone.interpolate("%(a)s"), QStringLiteral("%(a)s"));
    QCOMPARE(alone.findResource("a.png"), QStringLiteral("Resources"));
    QVERIFY(!alone.documentationAvailable());
    alone.setContent(new VTXmlElement);
    alone.notification(1, 2);
    alone.debugLog("text");
    alone.openExternalResource("topic");
    alone.loadQML("/nowhere/a.qml");
    alone.handleWarnings({QDeclarativeError()});
    QCOMPARE(alone.findResource("a.png"), QStringLiteral("Resources"));
}

void tst_VTViewInterface::notificationToTheHost()
{
    setContent();
    for (const int type : {0, 6, 1234, -1})
        view->notification(type, QVariantList{1, "two"});
    QCOMPARE(session->host->notificationTexts(), (QStringList{"0 cut", "6 cut", "1234 cut", "-1 cut"}));
    QCOMPARE(session->host->notifications.first().value, QVariant(QVariantList{1, "two"}));
    setContent({{"key", ""}});
    view->notification(1, QVariant());
    QCOMPARE(session->host->notifications.last().text, QString());
    // Only while the host is being called does loading wait.
    view->loadQML(packages->filePath("Basic.vidtips/ui/VidtipsUI.qml"));
    QVERIFY(view->rootObject());
}

void tst_VTViewInterface::notificationNeedsContent()
{
    view->notification(0, "value");
    QVERIFY(session->host->notifications.isEmpty());
}

void tst_VTViewInterface::resizeWithoutARootDoesNothing()
{
    QSignalSpy changed(view.data(), &VTView::contentSizeChanged);
    const QRectF before = view->scene()->sceneRect();
    QResizeEvent event(QSize(50, 40), QSize(1, 1));
    view->resizeEvent(&event);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(view->scene()->sceneRect(), before);
}

void tst_VTViewInterface::resizeTakesTheRootsRectangle()
{
    view->loadQML(packages->filePath("Basic.vidtips/ui/VidtipsUI.qml"));
    QCOMPARE(view->size(), QSize(100, 60));
    QSignalSpy changed(view.data(), &VTView::contentSizeChanged);
    QSignalSpy base(view.data(), &QDeclarativeView::sceneResized);
    QResizeEvent event(QSize(1, 1), QSize(2, 2));
    view->scene()->setSceneRect(5, 5, 1, 1);
    view->resizeEvent(&event);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(base.count(), 0);
    QCOMPARE(view->scene()->sceneRect(), QRectF(0, 0, 100, 60));
}

void tst_VTViewInterface::sceneShowsTheWholeRoot()
{
    view->loadQML(packages->filePath("Basic.vidtips/ui/VidtipsUI.qml"));
    view->show();
    for (const int width : {100, 300, 40}) {
        view->rootObject()->setProperty("width", width);
        QTRY_COMPARE(view->width(), width);
        QCOMPARE(view->viewport()->size(), view->size());
        QCOMPARE(view->mapToScene(0, 0), QPointF(0, 0));
        QCOMPARE(view->mapToScene(width, 60), QPointF(width, 60));
    }
}

void tst_VTViewInterface::qmlUsesTheView()
{
    packages->write("Basic.vidtips/Resources/a.png", "a");
    const QString file = packages->write("use.qml", R"(
        import QtQuick 1.0
        Item {
            id: root
            property bool documentation: vidTipView.documentationAvailable
            property string resource: vidTipView.findResource("a.png")
            property string folder: vidTipView.resourceDirectory
            property string text: vidTipView.translate(vidTipView.interpolate("%(name)s"), "Menu")
            property string key: vidtip.attribute("key")
            property string viewKey: vidTipView.content.attribute("key")
            property string location: dataLocation
            Component.onCompleted: {
                vidTipView.stayOpen = true
                vidTipView.setItemCursor(root, "PointingHandCursor", "")
                vidTipView.debugLog("ready")
                vidTipView.notification(42, { "a": 1 })
                vidTipView.openExternalResource("topic")
            }
        })");
    session->manager()->setGlobalProperty("name", "world");
    setContent();
    view->exposeContent("here");
    view->loadQML(file);
    const QObject *const root = view->rootObject();
    QVERIFY(root);
    QCOMPARE(root->property("resource").toString(), packages->filePath("Basic.vidtips/Resources/a.png"));
    QCOMPARE(root->property("folder").toString(), QStringLiteral("Resources"));
    QCOMPARE(root->property("text").toString(), QStringLiteral("world"));
    QCOMPARE(root->property("key").toString(), QStringLiteral("cut"));
    QCOMPARE(root->property("viewKey").toString(), QStringLiteral("cut"));
    QCOMPARE(root->property("location").toString(), QStringLiteral("here"));
    QVERIFY(view->stayOpen());
    QCOMPARE(view->rootObject()->cursor().shape(), Qt::PointingHandCursor);
    QCOMPARE(messages(), (QList<QPair<int, QString>>{{400, "ready"}}));
    QCOMPARE(session->host->notificationTexts(), QStringList{"42 cut"});
    QCOMPARE(session->host->resources, (QList<QPair<int, QString>>{{1, "topic"}}));
    QVERIFY(!root->property("documentation").toBool());
    session->set(AllowDocumentation, true);
    view->managerContextSettingDidChange(AllowDocumentation);
    QVERIFY(root->property("documentation").toBool());
}

QTEST_MAIN(tst_VTViewInterface)

#include "tst_vtviewinterface.moc"
