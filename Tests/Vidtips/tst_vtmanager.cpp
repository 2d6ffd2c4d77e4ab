#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QThread>
#include <QtDeclarative/qdeclarative.h>
#include <QtTest/QTest>

#include <algorithm>

using namespace Vidtips;

/** An index that takes 20 milliseconds for a control file. */
class SlowIndex : public TestIndex
{
public:
    using TestIndex::TestIndex;

    void indexControlFile(const QString &controlFile, const QString &package) override
    {
        QThread::msleep(20);
        TestIndex::indexControlFile(controlFile, package);
    }
};

/** What a manager has, loads and registers. */
class tst_VTManager : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void hasNoMetaObjectEntries();
    void keepsWhatItWasGiven();
    void makesAndOpensAnIndexOfItsOwn();
    void opensTheIndexWithoutDataPaths();
    void reportsLoadingInOrder();
    void messageThreshold_data();
    void messageThreshold();
    void messagesWithoutAHost();
    void skipsWhatIsNoFolder();
    void loadsReadableFoldersOfTheSuffixOnly();
    void packageSuffixAndControlFolderFromSettings();
    void controlFilesOfOneLevelOnly();
    void missingControlFolder();
    void loadingTwiceIndexesTwiceAndRecordsOnce();
    void loadedPathsAreNewestFirst();
    void alwaysShowToolTips_data();
    void alwaysShowToolTips();
    void registersDeclarativeTypes_data();
    void registersDeclarativeTypes();
    void registersNothingElse();
    void survivesAnIndexThatGoesFirst();

private:
    QScopedPointer<TestPackages> packages;
};

void tst_VTManager::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic");
    packages->writeControl("Basic", "tips.xml", R"(
        <vidtip key="cut" title="Cut" hint="" shortcut="Ctrl+X"/>
        <vidtip key="copy" title="Copy"/>)");
}

void tst_VTManager::hasNoMetaObjectEntries()
{
    const QMetaObject &meta = VTManager::staticMetaObject;
    QCOMPARE(meta.className(), "Vidtips::VTManager");
    QCOMPARE(meta.methodCount(), QObject::staticMetaObject.methodCount());
    QCOMPARE(meta.propertyCount(), QObject::staticMetaObject.propertyCount());
}

void tst_VTManager::keepsWhatItWasGiven()
{
    const QStringList paths{packages->path(), "/nowhere", packages->path() + "/."};
    TestSession session(paths);
    VTManager *const manager = session.manager();
    QCOMPARE(manager->searchPaths(), paths);
    QCOMPARE(manager->index(), &session.index);
    QCOMPARE(manager->vtinterface(), session.host.data());
    QVERIFY(!manager->parent());
    QVERIFY(!manager->widget());
    QVERIFY(manager->children().isEmpty());
    QCOMPARE(session.index.opened, 1);
}

void tst_VTManager::makesAndOpensAnIndexOfItsOwn()
{
    VTContext settings;
    const QScopedPointer<TestHost> host(new TestHost(settings, {packages->path()}, nullptr));
    const QScopedPointer<VTIndex> index(host->manager()->index());
    QVERIFY(index);
    QCOMPARE(&index->context(), &host->context());
    QCOMPARE(host->keys(), (QStringList{"cut", "copy"}));
}

void tst_VTManager::opensTheIndexWithoutDataPaths()
{
    VTContext settings;
    settings.set(MessageThreshold, 300);
    TestSession session({});
    TestIndex index(&settings, {});
    const VTManager manager(session.host, settings, {}, &index);
    QCOMPARE(index.opened, 1);
    QCOMPARE(session.host->messages.count(), 1);
    QVERIFY(session.host->messages.first().second.startsWith("Indexed packages in "));
    QDeclarativeEngine engine;
    QDeclarativeComponent component(&engine);
    component.setData("import com.corvale.vidtips.qml 1.0\nVTXmlElement {}", QUrl());
    QVERIFY(component.isReady());
}

void tst_VTManager::reportsLoadingInOrder()
{
    VTContext settings;
    settings.set(MessageThreshold, 300);
    TestSession session({});
    SlowIndex index(&settings, {});
    QElapsedTimer clock;
    clock.start();
    const VTManager manager(session.host, settings, {packages->path()}, &index);
    const double longest = double(clock.elapsed() + 1) / 1000;
    const QString folder = packages->path();
    QStringList texts;
    for (const QPair<int, QString> &message : std::as_const(session.host->messages)) {
        QCOMPARE(message.first, 300);
        texts << message.second;
    }
    const QString time = texts.takeLast();
    QCOMPARE(texts,
             (QStringList{"indexing packages (*.vidtips) in " + folder + ' ',
                          "indexing control files in " + folder + "/Basic.vidtips",
                          "looking for control files in :" + folder + "/Basic.vidtips/Control",
                          "found control file :" + folder + "/Basic.vidtips/Control/tips.xml"}));
    const QRegExp pattern("Indexed packages in ([0-9.e-]+) seconds");
    QVERIFY(pattern.exactMatch(time));
    const double seconds = pattern.cap(1).toDouble();
    QVERIFY2(seconds >= 0.02 && seconds <= longest, qPrintable(time));
    QCOMPARE(pattern.cap(1), QString::number(seconds));
    QCOMPARE(index.indexed,
             (QList<QPair<QString, QString>>{
                 {folder + "/Basic.vidtips/Control/tips.xml", folder + "/Basic.vidtips"}}));
}

void tst_VTManager::messageThreshold_data()
{
    QTest::addColumn<QVariant>("threshold");
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("passes");
    QTest::newRow("error by default") << QVariant() << 100 << true;
    QTest::newRow("warning by default") << QVariant() << 200 << true;
    QTest::newRow("just above the default") << QVariant() << 201 << false;
    QTest::newRow("information by default") << QVariant() << 300 << false;
    QTest::newRow("debug by default") << QVariant() << 400 << false;
    QTest::newRow("debug at 400") << QVariant(400) << 400 << true;
    QTest::newRow("information at 300") << QVariant(300) << 300 << true;
    QTest::newRow("debug at 300") << QVariant(300) << 400 << false;
    QTest::newRow("error at 0") << QVariant(0) << 100 << false;
}

void tst_VTManager::messageThreshold()
{
    QFETCH(QVariant, threshold);
    QFETCH(int, type);
    TestSession session({});
    if (threshold.isValid())
        session.set(MessageThreshold, threshold);
    session.manager()->handleMessage(VTMessageType(type), "text");
    const QList<QPair<int, QString>> all{{type, "text"}};
    QTEST(session.host->messages == all, "passes");
}

void tst_VTManager::messagesWithoutAHost()
{
    VTContext settings;
    settings.set(MessageThreshold, 400);
    TestIndex index(&settings, {});
    VTManager manager(nullptr, settings, {packages->path()}, &index);
    manager.handleMessage(VTMessageError, "text");
    QVERIFY(!manager.vtinterface());
    QVERIFY(manager.show("cut", {}, nullptr, {}));
    QVERIFY(!manager.openExternalResource("topic"));
    QCOMPARE(manager.keyForObject(this), QString());
    const QScopedPointer<VTWidget> window(manager.widget());
    QCOMPARE(window->view()->translate("Cut", "Menu"), QStringLiteral("Cut"));
}

void tst_VTManager::skipsWhatIsNoFolder()
{
    VTContext settings;
    settings.set(MessageThreshold, 300);
    TestSession session({});
    TestIndex index(&settings, {});
    const QString file = packages->write("file.txt", "text");
    const VTManager manager(session.host, settings, {packages->filePath("missing"), file, QString()}, &index);
    QCOMPARE(session.host->messages.count(), 1);
    QVERIFY(manager.loadedPaths().isEmpty());
}

void tst_VTManager::loadsReadableFoldersOfTheSuffixOnly()
{
    packages->writeControl("Other", "b.xml", "");
    packages->write("Plain/Control/tips.xml", "<vidtips/>");
    packages->write("vidtips/Control/tips.xml", "<vidtips/>");
    packages->write("File.vidtips", "<vidtips/>");
    packages->write("Basic.vidtips/Control/notes.txt", "<vidtips/>");
    packages->write("Basic.vidtips/Control/tips.xml.bak", "<vidtips/>");
    QVERIFY(QFile::link(packages->filePath("Basic.vidtips"), packages->filePath("Link.vidtips")));
    QVERIFY(QFile::link(packages->filePath("Basic.vidtips/Control/tips.xml"),
                        packages->filePath("Basic.vidtips/Control/link.xml")));
    TestSession session({packages->path()});
    QStringList files;
    for (const auto &file : std::as_const(session.index.indexed))
        files << QDir(packages->path()).relativeFilePath(file.first);
    files.sort();
    QCOMPARE(files, (QStringList{"Basic.vidtips/Control/tips.xml", "Other.vidtips/Control/b.xml"}));
}

void tst_VTManager::packageSuffixAndControlFolderFromSettings()
{
    packages->write("Other.tips/Files/one.xml", "<vidtips/>");
    VTContext settings;
    settings.set(PackageSuffix, "tips");
    settings.set(ControlFolder, "Files");
    TestSession session({packages->path()}, settings);
    QCOMPARE(session.index.indexed,
             (QList<QPair<QString, QString>>{
                 {packages->filePath("Other.tips/Files/one.xml"), packages->filePath("Other.tips")}}));
}

void tst_VTManager::controlFilesOfOneLevelOnly()
{
    packages->writeControl("Basic", "more/deep.xml", "<vidtip key=\"deep\"/>");
    packages->writeControl("Basic", "folder.xml/deep.xml", "<vidtip key=\"deep\"/>");
    TestSession session({packages->path()});
    QCOMPARE(session.index.indexed.count(), 1);
    QCOMPARE(session.host->keys(), (QStringList{"cut", "copy"}));
}

void tst_VTManager::missingControlFolder()
{
    VTContext settings;
    settings.set(MessageThreshold, 300);
    QVERIFY(QDir(packages->filePath("Basic.vidtips/Control")).removeRecursively());
    TestSession session({});
    TestIndex index(&settings, {});
    const VTManager manager(session.host, settings, {packages->path()}, &index);
    QVERIFY(index.indexed.isEmpty());
    QCOMPARE(session.host->messages.count(), 4);
    QCOMPARE(manager.loadedPaths(), QStringList{packages->path()});
}

void tst_VTManager::loadingTwiceIndexesTwiceAndRecordsOnce()
{
    TestSession session({packages->path(), packages->path() + "/../" + QDir(packages->path()).dirName()});
    QCOMPARE(session.index.indexed.count(), 2);
    session.manager()->loadDataPath({packages->path()});
    QCOMPARE(session.index.indexed.count(), 3);
    QCOMPARE(session.index.indexed.at(1), session.index.indexed.at(0));
    QCOMPARE(session.manager()->loadedPaths(), QStringList{packages->path()});
    QCOMPARE(session.host->keys().count(), 2);
}

void tst_VTManager::loadedPathsAreNewestFirst()
{
    const TestPackages more;
    const TestPackages last;
    TestSession session({packages->path(), more.path()});
    session.manager()->loadDataPath({last.path()});
    QCOMPARE(session.manager()->loadedPaths(), (QStringList{last.path(), more.path(), packages->path()}));
    QCOMPARE(session.manager()->searchPaths(), (QStringList{packages->path(), more.path()}));
}

void tst_VTManager::alwaysShowToolTips_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<bool>("on");
    QTest::newRow("asked for") << QVariant(true) << true;
    QTest::newRow("not asked for") << QVariant(false) << false;
    QTest::newRow("unset") << QVariant() << false;
}

void tst_VTManager::alwaysShowToolTips()
{
    QFETCH(QVariant, setting);
    QFETCH(bool, on);
    QWidget before;
    VTContext settings;
    if (setting.isValid())
        settings.set(AlwaysShowToolTips, setting);
    {
        const TestSession session({}, settings);
        QCOMPARE(before.testAttribute(Qt::WA_AlwaysShowToolTips), on);
        QWidget after;
        QVERIFY(!after.testAttribute(Qt::WA_AlwaysShowToolTips));
        before.setAttribute(Qt::WA_AlwaysShowToolTips);
    }
    QVERIFY(!before.testAttribute(Qt::WA_AlwaysShowToolTips));
}

void tst_VTManager::registersDeclarativeTypes_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("className");
    QTest::newRow("video") << QByteArray("VTVideoComponent") << QByteArray("Vidtips::VTVideoComponent");
    QTest::newRow("element") << QByteArray("VTXmlElement") << QByteArray("Vidtips::VTXmlElement");
    QTest::newRow("rectangle") << QByteArray("VTStyledRectangle")
                               << QByteArray("Vidtips::VTStyledRectangleComponent");
    QTest::newRow("scroll bar") << QByteArray("VTScrollBar") << QByteArray("VTScrollBarComponent");
}

void tst_VTManager::registersDeclarativeTypes()
{
    QFETCH(QByteArray, name);
    const TestSession session({});
    QDeclarativeEngine engine;
    QDeclarativeComponent component(&engine);
    component.setData("import com.corvale.vidtips.qml 1.0\n" + name + " {}", QUrl());
    const QScopedPointer<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QTEST(QByteArray(object->metaObject()->className()), "className");
}

void tst_VTManager::registersNothingElse()
{
    const TestSession session({});
    QDeclarativeEngine engine;
    for (const char *const name :
         {"VTScrollBarComponent", "VTStyledRectangleComponent", "VTVideo", "VTAccessible"}) {
        QDeclarativeComponent component(&engine);
        component.setData(QByteArray("import com.corvale.vidtips.qml 1.0\n") + name + " {}", QUrl());
        QVERIFY2(component.isError(), name);
    }
}

void tst_VTManager::survivesAnIndexThatGoesFirst()
{
    VTContext settings;
    QScopedPointer<VTIndex> index(new VTIndex(&settings, {}));
    TestHost host(settings, {packages->path()}, index.data());
    QVERIFY(host.show("cut", {}, nullptr));
    index.reset();
    QVERIFY(!host.manager()->index());
    QVERIFY(host.keys().isEmpty());
    host.manager()->loadDataPath({packages->path()});
    host.context().set(FallbackKey, "paste");
    QVERIFY(!host.show("copy", QPoint(900, 900), this));
    QCOMPARE(host.vidTipAttribute("copy", "title", "none"), QStringLiteral("none"));
    QCOMPARE(host.manager()->widget()->view()->findResource("x.png"), QStringLiteral("Resources"));
    delete host.manager()->widget();
}

QTEST_MAIN(tst_VTManager)

#include "tst_vtmanager.moc"
