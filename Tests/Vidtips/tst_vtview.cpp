#include "MetaMembers.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtGui/QCursor>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
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

class OpenView : public VTView
{
public:
    using VTView::receivers;
    using VTView::resizeEvent;
    using VTView::VTView;
};

} // namespace

class tst_VTView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void propertiesInDeclaredOrder();
    void methodsInDeclaredOrder();
    void construction();
    void stayOpenAlwaysNotifies();
    void reservedNotifiesChanges();
    void contentNotifiesNobody();
    void contentThatDiesIsForgotten();
    void destructorDeletesTheContentWithItsContainer();
    void exposedContentFollowsReleases();
    void exposingAgainConnectsNothingMore();
    void releaseKeepsATreeInUse();

    void documentationAvailable_data();
    void documentationAvailable();
    void settingChangeNotifiesDocumentation();
    void categoryPath_data();
    void categoryPath();
    void categoryPathWithoutContent();
    void findComponent_data();
    void findComponent();
    void findComponentWithoutContent();
    void findResource();
    void resourceDirectoryHasItsOwnAttribute();
    void uiRootFilePath_data();
    void uiRootFilePath();
    void packageRootIsAbsolute();

    void loadQmlReportsAMissingFile_data();
    void loadQmlReportsAMissingFile();
    void loadQmlKeepsTheLoadedFile();
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

private:
    VTXmlElement *setContent(const QMap<QString, QString> &attributes = {},
                             const QMap<QString, QString> &parentAttributes = {});
    QList<QPair<int, QString>> messages() const { return session->host->messages; }

    QScopedPointer<TestPackages> packages;
    QScopedPointer<TestSession> session;
    QScopedPointer<OpenView> view;
};

void tst_VTView::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic", "", 100, 60);
    packages->writeControl("Basic", "tips.xml", "<vidtip key=\"cut\"/>");
    packages->writeControl("Shared", "tips.xml", "<vidtip key=\"copy\"/>");
    session.reset(new TestSession({packages->path()}));
    session->set(MessageThreshold, 400);
    view.reset(new OpenView(session->manager(), nullptr));
}

void tst_VTView::cleanup()
{
    view.reset();
    session.reset();
}

VTXmlElement *tst_VTView::setContent(const QMap<QString, QString> &attributes,
                                     const QMap<QString, QString> &parentAttributes)
{
    auto *const root = new VTXmlElement;
    auto *const content = new VTXmlElement(root);
    content->setAttribute("VTPackagName", "Basic");
    content->setAttribute("key", "cut");
    for (auto it = attributes.cbegin(); it != attributes.cend(); ++it)
        content->setAttribute(it.key(), it.value());
    for (auto it = parentAttributes.cbegin(); it != parentAttributes.cend(); ++it)
        root->setAttribute(it.key(), it.value());
    view->releaseContent([this] {
        VTXmlElement *const old = view->content();
        view->setContent(nullptr);
        return old;
    }());
    view->setContent(content);
    return content;
}

void tst_VTView::propertiesInDeclaredOrder()
{
    QCOMPARE(ownProperties(VTView::staticMetaObject),
             (QList<QByteArray>{"bool stayOpen rw stayOpenChanged", "bool reserved rw reservedChanged",
                                "VTXmlElement* content rw contentChanged",
                                "bool documentationAvailable r documentationAvailableChanged",
                                "QString resourceDirectory r "}));
}

void tst_VTView::methodsInDeclaredOrder()
{
    const QMetaObject &meta = VTView::staticMetaObject;
    QStringList methods;
    QList<int> types;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        methods << meta.method(i).name() + '(' + meta.method(i).parameterNames().join(',') + ')';
        types << meta.method(i).methodType();
    }
    QCOMPARE(methods,
             (QStringList{"stayOpenChanged()",
                          "reservedChanged()",
                          "contentChanged()",
                          "contentSizeChanged()",
                          "documentationAvailableChanged()",
                          "resourceDirectoryChanged()",
                          "statusHasChanged(s)",
                          "loadQML(path)",
                          "handleWarnings(warnings)",
                          "resetState()",
                          "managerContextSettingDidChange(key)",
                          "setItemCursor(object,shape,tag)",
                          "debugLog(msg)",
                          "openExternalResource(resourceLocator)",
                          "interpolate(string)",
                          "setOverrideCursor(shape)",
                          "restoreOverrideCursor()",
                          "translate(string,context)",
                          "findResource(relativePath)",
                          "notification(notification,value)"}));
    for (int i = 0; i < types.count(); ++i)
        QCOMPARE(types.at(i),
                 int(i < 6        ? QMetaMethod::Signal
                         : i < 11 ? QMetaMethod::Slot
                                  : QMetaMethod::Method));
}

void tst_VTView::construction()
{
    QCOMPARE(view->frameShape(), QFrame::NoFrame);
    QCOMPARE(view->frameShadow(), QFrame::Plain);
    QCOMPARE(view->resizeMode(), QDeclarativeView::SizeViewToRootObject);
    QVERIFY(!view->content() && !view->stayOpen() && !view->reserved());
    QVERIFY(!view->parent());
}

void tst_VTView::stayOpenAlwaysNotifies()
{
    QSignalSpy changed(view.data(), &VTView::stayOpenChanged);
    view->setStayOpen(false);
    QCOMPARE(changed.count(), 1);
    view->setStayOpen(true);
    view->setStayOpen(true);
    QCOMPARE(changed.count(), 3);
    QVERIFY(view->stayOpen());
}

void tst_VTView::reservedNotifiesChanges()
{
    QSignalSpy changed(view.data(), &VTView::reservedChanged);
    view->setReserved(false);
    QCOMPARE(changed.count(), 0);
    view->setReserved(true);
    view->setReserved(true);
    QCOMPARE(changed.count(), 1);
    QVERIFY(view->reserved());
}

void tst_VTView::contentNotifiesNobody()
{
    QSignalSpy changed(view.data(), &VTView::contentChanged);
    VTXmlElement *const content = setContent();
    QCOMPARE(view->property("content").value<VTXmlElement *>(), content);
    QCOMPARE(changed.count(), 0);
}

void tst_VTView::contentThatDiesIsForgotten()
{
    delete setContent()->parent();
    QVERIFY(!view->content());
    setContent();
    view->exposeContent("here");
    delete view->content()->parent();
    QVERIFY(!view->content());
    QVERIFY(!view->rootContext()->contextProperty("vidtip").value<QObject *>());
}

void tst_VTView::destructorDeletesTheContentWithItsContainer()
{
    const QPointer<QObject> root(setContent()->parent());
    view.reset();
    QVERIFY(!root);
    QObject owner;
    view.reset(new OpenView(session->manager(), nullptr));
    view->setContent(new VTXmlElement(&owner));
    view.reset();
    QVERIFY(owner.children().isEmpty());
}

void tst_VTView::exposedContentFollowsReleases()
{
    QPointer<VTXmlElement> first(setContent());
    view->exposeContent("here");
    auto *const next = new VTXmlElement;
    view->setContent(next);
    view->releaseContent(first);
    QVERIFY(!first);
    QCOMPARE(view->rootContext()->contextProperty("vidtip").value<QObject *>(), next);
    view->setContent(nullptr);
    view->releaseContent(next);
    QVERIFY(!view->rootContext()->contextProperty("vidtip").value<QObject *>());
    view->releaseContent(nullptr);
}

void tst_VTView::exposingAgainConnectsNothingMore()
{
    setContent();
    view->exposeContent("folder");
    const int receivers = view->receivers(SIGNAL(destroyed(QObject *)));
    for (int i = 0; i < 10; ++i)
        view->exposeContent("folder");
    QCOMPARE(view->receivers(SIGNAL(destroyed(QObject *))), receivers);
}

void tst_VTView::releaseKeepsATreeInUse()
{
    VTXmlElement *const content = setContent();
    const QPointer<VTXmlElement> sibling(new VTXmlElement(content->parent()));
    view->releaseContent(sibling);
    QVERIFY(sibling);
    view->releaseContent(content);
    QCOMPARE(view->content(), content);
}

void tst_VTView::documentationAvailable_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<bool>("available");
    QTest::newRow("unset") << QVariant() << false;
    QTest::newRow("on") << QVariant(true) << true;
    QTest::newRow("off") << QVariant(false) << false;
}

void tst_VTView::documentationAvailable()
{
    QFETCH(QVariant, setting);
    if (setting.isValid())
        session->set(AllowDocumentation, setting);
    QTEST(view->property("documentationAvailable").toBool(), "available");
}

void tst_VTView::settingChangeNotifiesDocumentation()
{
    QSignalSpy changed(view.data(), &VTView::documentationAvailableChanged);
    view->managerContextSettingDidChange(AllowExternalResources);
    view->managerContextSettingDidChange(0);
    QCOMPARE(changed.count(), 0);
    view->managerContextSettingDidChange(AllowDocumentation);
    QCOMPARE(changed.count(), 1);
}

using Attributes = QMap<QString, QString>;

void tst_VTView::categoryPath_data()
{
    QTest::addColumn<Attributes>("own");
    QTest::addColumn<Attributes>("parents");
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<QString>("path");
    const Attributes none;
    const QVariant unset;
    QTest::newRow("default") << none << none << unset << "default";
    QTest::newRow("setting") << none << none << QVariant("set") << "set";
    QTest::newRow("own") << Attributes{{"x", "own"}} << Attributes{{"x", "up"}} << QVariant("set") << "own";
    QTest::newRow("parent") << none << Attributes{{"x", "up"}} << QVariant("set") << "up";
    QTest::newRow("own is empty") << Attributes{{"x", ""}} << Attributes{{"x", "up"}} << QVariant("set")
                                  << "set";
    QTest::newRow("parent is empty") << none << Attributes{{"x", ""}} << unset << "default";
    QTest::newRow("other attribute") << Attributes{{"y", "own"}} << none << unset << "default";
    QTest::newRow("empty setting") << none << none << QVariant("") << "";
}

void tst_VTView::categoryPath()
{
    QFETCH(Attributes, own);
    QFETCH(Attributes, parents);
    QFETCH(QVariant, setting);
    VTXmlElement *const content = setContent(own, parents);
    VTXmlElement grandparent;
    grandparent.setAttribute("x", "grand");
    content->parent()->setParent(&grandparent);
    if (setting.isValid())
        session->set(ResourceFolder, setting);
    QTEST(view->categoryPath("x", "default", ResourceFolder), "path");
    content->parent()->setParent(nullptr);
}

void tst_VTView::categoryPathWithoutContent()
{
    QCOMPARE(view->categoryPath("x", "default", ResourceFolder), QStringLiteral("default"));
    session->set(ResourceFolder, "set");
    QCOMPARE(view->categoryPath("x", "default", ResourceFolder), QStringLiteral("set"));
    VTXmlElement alone;
    view->setContent(&alone);
    QCOMPARE(view->categoryPath("x", "default", ResourceFolder), QStringLiteral("set"));
    view->setContent(nullptr);
}

void tst_VTView::findComponent_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("search");
    QTest::addColumn<QString>("found");
    QTest::newRow("own package") << "a.png"
                                 << ""
                                 << "Basic.vidtips/Files/a.png";
    QTest::newRow("folder by itself") << ""
                                      << ""
                                      << "Basic.vidtips/Files";
    QTest::newRow("below the folder") << "sub/b.png"
                                      << ""
                                      << "Basic.vidtips/Files/sub/b.png";
    QTest::newRow("other package") << "c.png"
                                   << "Shared"
                                   << "Shared.vidtips/Files/c.png";
    QTest::newRow("own package first") << "a.png"
                                       << "Shared"
                                       << "Basic.vidtips/Files/a.png";
    QTest::newRow("other package, not searched") << "c.png"
                                                 << ""
                                                 << "";
    QTest::newRow("missing") << "missing.png"
                             << "Shared"
                             << "";
}

void tst_VTView::findComponent()
{
    QFETCH(QString, file);
    QFETCH(QString, search);
    QFETCH(QString, found);
    packages->write("Basic.vidtips/Files/a.png", "a");
    packages->write("Basic.vidtips/Files/sub/b.png", "b");
    packages->write("Shared.vidtips/Files/a.png", "a");
    packages->write("Shared.vidtips/Files/c.png", "c");
    setContent({}, {{"search", search}});
    const QString path = view->findComponent("files", ResourceFolder, "Files", file);
    QCOMPARE(path, found.isEmpty() ? QStringLiteral("Files") : packages->filePath(found));
}

void tst_VTView::findComponentWithoutContent()
{
    packages->write("Basic.vidtips/Files/a.png", "a");
    QCOMPARE(view->findComponent("files", ResourceFolder, "Files", "a.png"), QStringLiteral("Files"));
    QCOMPARE(view->uiRootFilePath(), QStringLiteral("ui/VidtipsUI.qml"));
}

void tst_VTView::findResource()
{
    packages->write("Basic.vidtips/Resources/a.png", "a");
    packages->write("Basic.vidtips/Media/a.png", "a");
    setContent();
    QCOMPARE(view->findResource("a.png"), packages->filePath("Basic.vidtips/Resources/a.png"));
    QCOMPARE(view->findResource("b.png"), QStringLiteral("Resources"));
    session->set(ResourceFolder, "Media");
    QCOMPARE(view->findResource("a.png"), packages->filePath("Basic.vidtips/Media/a.png"));
    setContent({{"resources", "Resources"}, {"resource", "Nowhere"}});
    QCOMPARE(view->findResource("a.png"), packages->filePath("Basic.vidtips/Resources/a.png"));
    QCOMPARE(view->findResource(""), packages->filePath("Basic.vidtips/Resources"));
}

void tst_VTView::resourceDirectoryHasItsOwnAttribute()
{
    QCOMPARE(view->property("resourceDirectory").toString(), QStringLiteral("Resources"));
    setContent({{"resources", "Many"}, {"resource", "One"}});
    QCOMPARE(view->resourceDirectoryPath(), QStringLiteral("One"));
    setContent({{"resources", "Many"}});
    session->set(ResourceFolder, "Media");
    QCOMPARE(view->resourceDirectoryPath(), QStringLiteral("Media"));
}

void tst_VTView::uiRootFilePath_data()
{
    QTest::addColumn<bool>("simple");
    QTest::addColumn<Attributes>("own");
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("path");
    const Attributes none;
    QTest::newRow("full") << false << none << ""
                          << "ui/VidtipsUI.qml";
    QTest::newRow("simple") << true << none << ""
                            << "ui/SimpleTooltip.qml";
    QTest::newRow("full by setting") << false << none << "ui/Set.qml"
                                     << "ui/Set.qml";
    QTest::newRow("simple by setting") << true << none << "ui/Set.qml"
                                       << "ui/Set.qml";
    const Attributes both{{"ui", "ui/Own.qml"}, {"simple", "ui/OwnSimple.qml"}};
    QTest::newRow("full by attribute") << false << both << "ui/Set.qml"
                                       << "ui/Own.qml";
    QTest::newRow("simple by attribute") << true << both << "ui/Set.qml"
                                         << "ui/OwnSimple.qml";
    QTest::newRow("missing") << false << Attributes{{"ui", "ui/No.qml"}} << ""
                             << "";
}

void tst_VTView::uiRootFilePath()
{
    QFETCH(bool, simple);
    QFETCH(Attributes, own);
    QFETCH(QString, setting);
    QFETCH(QString, path);
    for (const char *const name : {"SimpleTooltip", "Set", "Own", "OwnSimple"})
        packages->write(QStringLiteral("Basic.vidtips/ui/%1.qml").arg(name), "import QtQuick 1.0\nItem {}");
    session->set(UseSimpleUserInterface, simple);
    if (!setting.isEmpty())
        session->set(simple ? SimpleUserInterface : FullUserInterface, setting);
    setContent(own);
    const QString expected = path.isEmpty() ? own.value("ui") : packages->filePath("Basic.vidtips/" + path);
    QCOMPARE(view->uiRootFilePath(), expected);
}

void tst_VTView::packageRootIsAbsolute()
{
    view->setPackageRoot(QDir("some/where"));
    QCOMPARE(view->packageRoot().path(), QDir::current().absoluteFilePath("some/where"));
}

void tst_VTView::loadQmlReportsAMissingFile_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << "/nowhere/a.qml";
    QTest::newRow("empty") << "";
    QTest::newRow("folder") << QDir::tempPath();
    QTest::newRow("with a marker") << "/nowhere/%1.qml";
}

void tst_VTView::loadQmlReportsAMissingFile()
{
    QFETCH(QString, path);
    const QString file = packages->filePath("Basic.vidtips/ui/VidtipsUI.qml");
    view->loadQML(file);
    const QPointer<QGraphicsObject> root(view->rootObject());
    QVERIFY(root);
    view->loadQML(path);
    QCOMPARE(messages(), (QList<QPair<int, QString>>{{400, "Can't find :" + path}}));
    QCOMPARE(view->source(), QUrl::fromLocalFile(file));
    QCOMPARE(view->rootObject(), root.data());
}

void tst_VTView::loadQmlKeepsTheLoadedFile()
{
    const QString file = packages->filePath("Basic.vidtips/ui/VidtipsUI.qml");
    const QString other = packages->write("a b#c%20.qml", "import QtQuick 1.0\nItem { objectName: \"odd\" }");
    view->loadQML(file);
    const QPointer<QGraphicsObject> root(view->rootObject());
    view->loadQML(file);
    QVERIFY(root);
    QCOMPARE(view->rootObject(), root.data());
    view->loadQML(other);
    QVERIFY(!root);
    QCOMPARE(view->rootObject()->objectName(), QStringLiteral("odd"));
    QVERIFY(messages().isEmpty());
}

void tst_VTView::errorsAreReported()
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

void tst_VTView::errorsOfAnotherStatusAreNot()
{
    view->loadQML(packages->write("bad.qml", "import QtQuick 1.0\nItem { nothing: 1 }\n"));
    QVERIFY(!view->errors().isEmpty());
    session->host->messages.clear();
    for (const auto status : {QDeclarativeView::Null, QDeclarativeView::Ready, QDeclarativeView::Loading})
        view->statusHasChanged(status);
    QVERIFY(messages().isEmpty());
}

void tst_VTView::warningsAreReported()
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

void tst_VTView::reportsAreDroppedByDefault()
{
    session->set(MessageThreshold, 200);
    view->loadQML("/nowhere/a.qml");
    view->debugLog("text");
    QVERIFY(messages().isEmpty());
}

void tst_VTView::resetStateWithoutARoot()
{
    view->resetState();
    view->loadQML(packages->write(
        "state.qml", "import QtQuick 1.0\nItem { state: \"open\"; states: State { name: \"open\" } }"));
    QCOMPARE(view->rootObject()->property("state").toString(), QStringLiteral("open"));
    view->resetState();
    QCOMPARE(view->rootObject()->property("state").toString(), QString());
}

void tst_VTView::itemCursor_data()
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

void tst_VTView::itemCursor()
{
    QFETCH(QString, name);
    QDeclarativeItem item;
    item.setCursor(Qt::SizeAllCursor);
    view->setItemCursor(&item, name, "tag");
    QVERIFY(item.hasCursor());
    QTEST(int(item.cursor().shape()), "shape");
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_VTView::emptyItemCursorClears()
{
    QDeclarativeItem item;
    view->setItemCursor(&item, "BlankCursor", QString());
    view->setItemCursor(&item, QString(), QString());
    QVERIFY(!item.hasCursor());
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_VTView::itemCursorOfNull()
{
    view->setItemCursor(nullptr, "BlankCursor", QString());
    view->setItemCursor(nullptr, QString(), QString());
    QVERIFY(!QGuiApplication::overrideCursor());
}

void tst_VTView::overrideCursor_data()
{
    itemCursor_data();
}

void tst_VTView::overrideCursor()
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

void tst_VTView::forwardsToTheManager()
{
    view->debugLog("text");
    QCOMPARE(messages(), (QList<QPair<int, QString>>{{400, "text"}}));
    view->openExternalResource("docs/page.html");
    QCOMPARE(session->host->resources, (QList<QPair<int, QString>>{{3, "docs/page.html"}}));
    session->manager()->setGlobalProperty("name", "world");
    QCOMPARE(view->interpolate("hello %(name)s"), QStringLiteral("hello world"));
}

void tst_VTView::translateAsksTheHost()
{
    VTContext settings;
    TestIndex index(&settings, {});
    TranslatingHost host(settings, {}, &index);
    VTView translating(host.manager(), nullptr);
    QCOMPARE(translating.translate("Cut", "Menu"), QStringLiteral("Menu/Cut"));
    QCOMPARE(view->translate("Cut", "Menu"), QStringLiteral("Cut"));
}

void tst_VTView::withoutAManager()
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

void tst_VTView::notificationToTheHost()
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

void tst_VTView::notificationNeedsContent()
{
    view->notification(0, "value");
    QVERIFY(session->host->notifications.isEmpty());
}

void tst_VTView::resizeWithoutARootDoesNothing()
{
    QSignalSpy changed(view.data(), &VTView::contentSizeChanged);
    const QRectF before = view->scene()->sceneRect();
    QResizeEvent event(QSize(50, 40), QSize(1, 1));
    view->resizeEvent(&event);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(view->scene()->sceneRect(), before);
}

void tst_VTView::resizeTakesTheRootsRectangle()
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

void tst_VTView::sceneShowsTheWholeRoot()
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

void tst_VTView::qmlUsesTheView()
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

QTEST_MAIN(tst_VTView)
#include "tst_vtview.moc"
