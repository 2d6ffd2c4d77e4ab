#include "TestCatalogue.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
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

    void currentLocale_data();
    void currentLocale();
    void retrieveAsksForTwoLocales_data();
    void retrieveAsksForTwoLocales();
    void retrieveStopsAtTheFirstLocaleWithContent();
    void retrieveFillsTheOutParameters();
    void keyForObjectAsksTheHost();
    void attributeFromTheIndex_data();
    void attributeFromTheIndex();
    void attributeLookupDeletesTheElementOnly();
    void attributeOfContentOnScreenWins();
    void attributeOfReservedWindowsComesSecond();
    void attributeSkipsReservedWindowsThatAreGone();
    void interpolation_data();
    void interpolation();
    void globalPropertiesAreReplaced();

    void translationNeedsAWindow();
    void translation_data();
    void translation();
    void translationFollowsTheLocale();
    void translationRetriesAFailedLoad();
    void translationNeverLoadsAnUnresolvedName();

private:
    void addCatalogue(const QString &relativePath, const QString &translation);
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
    for (const char *const name : {"VTScrollBarComponent", "VTStyledRectangleComponent", "VTVideo"}) {
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

void tst_VTManager::currentLocale_data()
{
    QTest::addColumn<QString>("content");
    QTest::addColumn<QString>("userInterface");
    QTest::addColumn<QLocale>("locale");
    QTest::newRow("content first") << "de_DE"
                                   << "fr_FR" << QLocale("de_DE");
    QTest::newRow("user interface second") << ""
                                           << "fr_FR" << QLocale("fr_FR");
    QTest::newRow("content only") << "ja_JP"
                                  << "" << QLocale("ja_JP");
    QTest::newRow("system last") << ""
                                 << "" << QLocale::system();
}

void tst_VTManager::currentLocale()
{
    QFETCH(QString, content);
    QFETCH(QString, userInterface);
    TestSession session({});
    QCOMPARE(session.manager()->currentLocale(), QLocale::system());
    session.set(ContentLocale, content);
    session.set(UserInterfaceLocale, userInterface);
    QTEST(session.manager()->currentLocale(), "locale");
}

void tst_VTManager::retrieveAsksForTwoLocales_data()
{
    QTest::addColumn<QVariant>("content");
    QTest::addColumn<QVariant>("userInterface");
    QTest::addColumn<QStringList>("locales");
    const QVariant unset;
    QTest::newRow("neither set") << unset << unset << QStringList{"en_US", "en_US"};
    QTest::newRow("content") << QVariant("de_DE") << unset << QStringList{"de_DE", "en_US"};
    QTest::newRow("user interface") << unset << QVariant("fr_FR") << QStringList{"en_US", "fr_FR"};
    QTest::newRow("both") << QVariant("de_DE") << QVariant("fr_FR") << QStringList{"de_DE", "fr_FR"};
    QTest::newRow("both the same") << QVariant("de_DE") << QVariant("de_DE") << QStringList{"de_DE", "de_DE"};
}

void tst_VTManager::retrieveAsksForTwoLocales()
{
    QFETCH(QVariant, content);
    QFETCH(QVariant, userInterface);
    TestSession session({packages->path()});
    if (content.isValid())
        session.set(ContentLocale, content);
    if (userInterface.isValid())
        session.set(UserInterfaceLocale, userInterface);
    QString directory;
    int depth = 0;
    VTXmlElement *root = nullptr;
    QVERIFY(!session.manager()->retrieve("paste", directory, depth, root));
    QStringList locales;
    for (const TestIndex::Request &request : std::as_const(session.index.requests)) {
        QCOMPARE(request.key, QStringLiteral("paste"));
        locales << request.locale;
    }
    QTEST(locales, "locales");
}

void tst_VTManager::retrieveStopsAtTheFirstLocaleWithContent()
{
    packages->writeControl("Basic", "de.xml", "<vidtip key=\"paste\" title=\"Einf\"/>", "locale=\"de_DE\"");
    packages->writeControl("Basic", "fr.xml", "<vidtip key=\"paste\" title=\"Coller\"/>", "locale=\"fr_FR\"");
    TestSession session({packages->path()});
    session.set(ContentLocale, "de_DE");
    session.set(UserInterfaceLocale, "fr_FR");
    QCOMPARE(session.host->vidTipAttribute("paste", "title", ""), QStringLiteral("Einf"));
    QCOMPARE(session.index.requests.count(), 1);
    session.set(ContentLocale, "it_IT");
    QCOMPARE(session.host->vidTipAttribute("paste", "title", ""), QStringLiteral("Coller"));
    QCOMPARE(session.index.requests.count(), 3);
}

void tst_VTManager::retrieveFillsTheOutParameters()
{
    TestSession session({packages->path()});
    QString directory;
    int depth = 0;
    VTXmlElement *root = nullptr;
    VTXmlElement *const element = session.manager()->retrieve("cut", directory, depth, root);
    QVERIFY(element);
    QCOMPARE(element->parent(), root);
    QCOMPARE(element->attribute("title"), QStringLiteral("Cut"));
    QCOMPARE(directory, packages->filePath("Basic.vidtips/Control"));
    QCOMPARE(depth, 2);
    delete root;
}

void tst_VTManager::keyForObjectAsksTheHost()
{
    TestSession session({});
    QObject object;
    object.setObjectName("cut");
    QCOMPARE(session.manager()->keyForObject(&object), QStringLiteral("cut"));
    QCOMPARE(session.manager()->keyForObject(nullptr), QString());
}

void tst_VTManager::attributeFromTheIndex_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("attribute");
    QTest::addColumn<QString>("value");
    QTest::newRow("there") << "cut"
                           << "title"
                           << "Cut";
    QTest::newRow("other key") << "copy"
                               << "title"
                               << "Copy";
    QTest::newRow("empty but there") << "cut"
                                     << "hint"
                                     << "";
    QTest::newRow("attribute missing") << "copy"
                                       << "hint"
                                       << "none";
    QTest::newRow("key missing") << "paste"
                                 << "title"
                                 << "none";
    QTest::newRow("empty key") << ""
                               << "title"
                               << "none";
    QTest::newRow("empty attribute") << "cut"
                                     << ""
                                     << "none";
}

void tst_VTManager::attributeFromTheIndex()
{
    QFETCH(QString, key);
    QFETCH(QString, attribute);
    TestSession session({packages->path()});
    QTEST(session.manager()->vidTipAttribute(key, attribute, "none"), "value");
}

void tst_VTManager::attributeLookupDeletesTheElementOnly()
{
    TestSession session({packages->path()});
    for (const char *const attribute : {"title", "missing"}) {
        session.index.deleteRoots();
        session.manager()->vidTipAttribute("cut", attribute, "none");
        QCOMPARE(session.index.roots.count(), 1);
        QVERIFY(session.index.roots.first());
        QVERIFY(session.index.roots.first()->children().isEmpty());
    }
}

void tst_VTManager::attributeOfContentOnScreenWins()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    packages->writeControl("Basic", "tips.xml", "<vidtip key=\"cut\" title=\"New\" extra=\"New\"/>");
    QCOMPARE(session.manager()->vidTipAttribute("cut", "title", "none"), QStringLiteral("Cut"));
    QCOMPARE(session.manager()->vidTipAttribute("cut", "extra", "none"), QStringLiteral("none"));
    session.window()->hide();
    QCOMPARE(session.manager()->vidTipAttribute("cut", "title", "none"), QStringLiteral("Cut"));
    VTXmlElement *const old = session.content();
    auto *const withoutKey = new VTXmlElement;
    withoutKey->setAttribute("title", "Nameless");
    session.view()->setContent(withoutKey);
    session.view()->releaseContent(old);
    QCOMPARE(session.manager()->vidTipAttribute(QString(), "title", "none"), QStringLiteral("none"));
}

void tst_VTManager::attributeOfReservedWindowsComesSecond()
{
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    QWidget *container = nullptr;
    const QScopedPointer<VTWidget> reserved(session.window());
    QVERIFY(session.manager()->reserve(reserved.data(), container));
    packages->writeControl("Basic", "tips.xml", "<vidtip key=\"cut\" title=\"New\" extra=\"New\"/>");
    QCOMPARE(session.manager()->vidTipAttribute("cut", "title", "none"), QStringLiteral("Cut"));
    QCOMPARE(session.manager()->vidTipAttribute("cut", "extra", "none"), QStringLiteral("none"));
    QVERIFY(session.host->show("cut", {}, nullptr));
    QCOMPARE(session.manager()->vidTipAttribute("cut", "title", "none"), QStringLiteral("New"));
}

void tst_VTManager::attributeSkipsReservedWindowsThatAreGone()
{
    TestSession session({packages->path()});
    QWidget *container = nullptr;
    QVERIFY(session.host->show("cut", {}, nullptr));
    VTWidget *const gone = session.window();
    QVERIFY(session.manager()->reserve(gone, container));
    QVERIFY(session.host->show("copy", {}, nullptr));
    const QScopedPointer<VTWidget> kept(session.window());
    QVERIFY(session.manager()->reserve(kept.data(), container));
    delete gone;
    packages->writeControl("Basic", "tips.xml", "<vidtip key=\"cut\" title=\"New\"/>");
    QCOMPARE(session.manager()->vidTipAttribute("copy", "title", "none"), QStringLiteral("Copy"));
    QCOMPARE(session.manager()->vidTipAttribute("cut", "title", "none"), QStringLiteral("New"));
    kept->view()->releaseContent([&] {
        VTXmlElement *const content = kept->view()->content();
        kept->view()->setContent(nullptr);
        return content;
    }());
    QCOMPARE(session.manager()->vidTipAttribute("copy", "title", "none"), QStringLiteral("none"));
}

void tst_VTManager::interpolation_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");
    QTest::newRow("known and unknown") << "%(a)s and %(b)s"
                                       << "x and %(b)s";
    QTest::newRow("nested") << "%(nested)s"
                            << "x";
    QTest::newRow("nested twice") << "<%(outer)s>"
                                  << "<[x]>";
    QTest::newRow("blank in the name") << "%(a b)s"
                                       << "%(a b)s";
    QTest::newRow("empty name") << "%()s"
                                << "%()s";
    QTest::newRow("empty value") << "[%(empty)s]"
                                 << "[]";
    QTest::newRow("invalid value") << "[%(invalid)s]%(a)s"
                                   << "[%(invalid)s]x";
    QTest::newRow("number") << "%(number)s"
                            << "42";
    QTest::newRow("all characters of a name") << "%(A-b_9)s"
                                              << "y";
    QTest::newRow("case matters") << "%(A)s"
                                  << "%(A)s";
    QTest::newRow("no s") << "%(a)d %(a)"
                          << "%(a)d %(a)";
    QTest::newRow("adjacent") << "%(a)s%(a)s%(b)s%(a)s"
                              << "xx%(b)sx";
    QTest::newRow("marker in a value") << "%(marker)s"
                                       << "%1\\1";
    QTest::newRow("value that completes a placeholder") << "%(half)sa)s"
                                                        << "x";
    QTest::newRow("not ASCII") << QString::fromUtf8("é%(a)sé %(ä)s") << QString::fromUtf8("éxé %(ä)s");
    QTest::newRow("no placeholder") << "plain"
                                    << "plain";
    QTest::newRow("empty") << ""
                           << "";
}

void tst_VTManager::interpolation()
{
    QFETCH(QString, text);
    const QMap<QString, QVariant> properties{
        {"a", "x"},     {"nested", "%(a)s"}, {"outer", "[%(nested)s]"},
        {"empty", ""},  {"number", 42},      {"invalid", QVariant()},
        {"A-b_9", "y"}, {"marker", "%1\\1"}, {"half", "%("},
    };
    TestSession session({});
    QTEST(session.manager()->interpolate(text, properties), "result");
    for (auto it = properties.cbegin(); it != properties.cend(); ++it)
        session.manager()->setGlobalProperty(it.key(), it.value());
    QTEST(session.manager()->interpolate(text), "result");
}

void tst_VTManager::globalPropertiesAreReplaced()
{
    TestSession session({});
    QCOMPARE(session.manager()->interpolate("%(a)s"), QStringLiteral("%(a)s"));
    session.manager()->setGlobalProperty("a", "one");
    session.manager()->setGlobalProperty("a", "two");
    QCOMPARE(session.manager()->interpolate("%(a)s"), QStringLiteral("two"));
    QCOMPARE(session.manager()->interpolate("%(a)s", {}), QStringLiteral("%(a)s"));
}

void tst_VTManager::addCatalogue(const QString &relativePath, const QString &translation)
{
    packages->write(relativePath, TestCatalogue("Menu").add("Cut", translation).bytes());
}

void tst_VTManager::translationNeedsAWindow()
{
    addCatalogue("Basic.vidtips/l10n/Vidtips_de_DE.qm", "Ausschneiden");
    TestSession session({packages->path()});
    session.set(ContentLocale, "de_DE");
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Cut"));
    QVERIFY(session.host->show("cut", {}, nullptr));
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Ausschneiden"));
    QCOMPARE(session.host->translateString("Cut", "Menu"), QStringLiteral("Ausschneiden"));
    // Another file in its place is not looked at while the path stays the same.
    const QString catalogue = packages->filePath("Basic.vidtips/l10n/Vidtips_de_DE.qm");
    addCatalogue("new.qm", "Schneiden");
    QVERIFY(QFile::remove(catalogue) && QFile::rename(packages->filePath("new.qm"), catalogue));
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Ausschneiden"));
    session.window()->setView(nullptr);
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Cut"));
    QCOMPARE(session.manager()->vidTipAttribute("cut", "title", "none"), QStringLiteral("Cut"));
}

void tst_VTManager::translation_data()
{
    QTest::addColumn<QString>("catalogue");
    QTest::addColumn<QByteArray>("attributes");
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("baseName");
    QTest::addColumn<QString>("translation");
    const QByteArray none;
    QTest::newRow("default folder") << "l10n/Vidtips_de_DE.qm" << none << ""
                                    << ""
                                    << "Ausschneiden";
    QTest::newRow("folder by setting") << "tr/Vidtips_de_DE.qm" << none << "tr"
                                       << ""
                                       << "Ausschneiden";
    QTest::newRow("folder by attribute") << "own/Vidtips_de_DE.qm" << QByteArray("l10n_name=\"own\"") << "tr"
                                         << ""
                                         << "Ausschneiden";
    QTest::newRow("name by setting") << "l10n/Other_de_DE.qm" << none << ""
                                     << "Other"
                                     << "Ausschneiden";
    QTest::newRow("other locale") << "l10n/Vidtips_fr_FR.qm" << none << ""
                                  << ""
                                  << "Cut";
    QTest::newRow("other name") << "l10n/Other_de_DE.qm" << none << ""
                                << ""
                                << "Cut";
    QTest::newRow("other folder") << "tr/Vidtips_de_DE.qm" << none << ""
                                  << ""
                                  << "Cut";
}

void tst_VTManager::translation()
{
    QFETCH(QString, catalogue);
    QFETCH(QByteArray, attributes);
    QFETCH(QString, folder);
    QFETCH(QString, baseName);
    addCatalogue("Basic.vidtips/" + catalogue, "Ausschneiden");
    packages->writeControl("Basic", "tips.xml", "<vidtip key=\"cut\" " + attributes + "/>");
    TestSession session({packages->path()});
    session.set(ContentLocale, "de_DE");
    if (!folder.isEmpty())
        session.set(CatalogueFolder, folder);
    if (!baseName.isEmpty())
        session.set(TranslationContext, baseName);
    QVERIFY(session.host->show("cut", {}, nullptr));
    QTEST(session.manager()->translateString("Cut", "Menu"), "translation");
}

void tst_VTManager::translationFollowsTheLocale()
{
    addCatalogue("Basic.vidtips/l10n/Vidtips_de_DE.qm", "Ausschneiden");
    addCatalogue("Basic.vidtips/l10n/Vidtips_fr_FR.qm", "Couper");
    TestSession session({packages->path()});
    QVERIFY(session.host->show("cut", {}, nullptr));
    session.set(UserInterfaceLocale, "fr_FR");
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Couper"));
    session.set(ContentLocale, "de_DE");
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Ausschneiden"));
    const QString missing = session.manager()->translateString("Paste", "Menu");
    QVERIFY(missing.isEmpty());
    QVERIFY(session.manager()->translateString("Cut", "Other").isEmpty());
    session.set(ContentLocale, "it_IT");
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Cut"));
    QVERIFY(QCoreApplication::translate("Menu", "Cut") == QStringLiteral("Cut"));
}

void tst_VTManager::translationRetriesAFailedLoad()
{
    const QString catalogue = packages->write("Basic.vidtips/l10n/Vidtips_de_DE.qm", "not a catalogue");
    TestSession session({packages->path()});
    session.set(ContentLocale, "de_DE");
    QVERIFY(session.host->show("cut", {}, nullptr));
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Cut"));
    addCatalogue("Basic.vidtips/l10n/Vidtips_de_DE.qm", "Ausschneiden");
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Ausschneiden"));
    QVERIFY(QFile::remove(catalogue));
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Cut"));
    addCatalogue("Basic.vidtips/l10n/Vidtips_de_DE.qm", "Schneiden");
    QCOMPARE(session.manager()->translateString("Cut", "Menu"), QStringLiteral("Schneiden"));
}

void tst_VTManager::translationNeverLoadsAnUnresolvedName()
{
    addCatalogue("here/l10n.qm", "wrong");
    addCatalogue("here/Vidtips_de_DE.qm", "wrong");
    addCatalogue("here/l10n/Vidtips_de_DE.qm", "wrong");
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(packages->filePath("here")));
    TestSession session({packages->path()});
    session.set(ContentLocale, "de_DE");
    QVERIFY(session.host->show("cut", {}, nullptr));
    const QString text = session.manager()->translateString("Cut", "Menu");
    QVERIFY(QDir::setCurrent(before));
    QCOMPARE(text, QStringLiteral("Cut"));
}

QTEST_MAIN(tst_VTManager)
#include "tst_vtmanager.moc"
