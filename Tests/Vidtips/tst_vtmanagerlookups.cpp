#include "TestCatalogue.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtTest/QTest>

using namespace Vidtips;

/** What a manager looks up: entries by locale, attributes, placeholders, translations. */
class tst_VTManagerLookups : public QObject
{
    Q_OBJECT

private slots:
    void init();
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

void tst_VTManagerLookups::init()
{
    packages.reset(new TestPackages);
    packages->writeUserInterface("Basic");
    packages->writeControl("Basic", "tips.xml", R"(
        <vidtip key="cut" title="Cut" hint="" shortcut="Ctrl+X"/>
        <vidtip key="copy" title="Copy"/>)");
}

void tst_VTManagerLookups::currentLocale_data()
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

void tst_VTManagerLookups::currentLocale()
{
    QFETCH(QString, content);
    QFETCH(QString, userInterface);
    TestSession session({});
    QCOMPARE(session.manager()->currentLocale(), QLocale::system());
    session.set(ContentLocale, content);
    session.set(UserInterfaceLocale, userInterface);
    QTEST(session.manager()->currentLocale(), "locale");
}

void tst_VTManagerLookups::retrieveAsksForTwoLocales_data()
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

void tst_VTManagerLookups::retrieveAsksForTwoLocales()
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

void tst_VTManagerLookups::retrieveStopsAtTheFirstLocaleWithContent()
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

void tst_VTManagerLookups::retrieveFillsTheOutParameters()
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

void tst_VTManagerLookups::keyForObjectAsksTheHost()
{
    TestSession session({});
    QObject object;
    object.setObjectName("cut");
    QCOMPARE(session.manager()->keyForObject(&object), QStringLiteral("cut"));
    QCOMPARE(session.manager()->keyForObject(nullptr), QString());
}

void tst_VTManagerLookups::attributeFromTheIndex_data()
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

void tst_VTManagerLookups::attributeFromTheIndex()
{
    QFETCH(QString, key);
    QFETCH(QString, attribute);
    TestSession session({packages->path()});
    QTEST(session.manager()->vidTipAttribute(key, attribute, "none"), "value");
}

void tst_VTManagerLookups::attributeLookupDeletesTheElementOnly()
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

void tst_VTManagerLookups::attributeOfContentOnScreenWins()
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

void tst_VTManagerLookups::attributeOfReservedWindowsComesSecond()
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

void tst_VTManagerLookups::attributeSkipsReservedWindowsThatAreGone()
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

void tst_VTManagerLookups::interpolation_data()
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

void tst_VTManagerLookups::interpolation()
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

void tst_VTManagerLookups::globalPropertiesAreReplaced()
{
    TestSession session({});
    QCOMPARE(session.manager()->interpolate("%(a)s"), QStringLiteral("%(a)s"));
    session.manager()->setGlobalProperty("a", "one");
    session.manager()->setGlobalProperty("a", "two");
    QCOMPARE(session.manager()->interpolate("%(a)s"), QStringLiteral("two"));
    QCOMPARE(session.manager()->interpolate("%(a)s", {}), QStringLiteral("%(a)s"));
}

void tst_VTManagerLookups::addCatalogue(const QString &relativePath, const QString &translation)
{
    packages->write(relativePath, TestCatalogue("Menu").add("Cut", translation).bytes());
}

void tst_VTManagerLookups::translationNeedsAWindow()
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

void tst_VTManagerLookups::translation_data()
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

void tst_VTManagerLookups::translation()
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

void tst_VTManagerLookups::translationFollowsTheLocale()
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

void tst_VTManagerLookups::translationRetriesAFailedLoad()
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

void tst_VTManagerLookups::translationNeverLoadsAnUnresolvedName()
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

QTEST_MAIN(tst_VTManagerLookups)

#include "tst_vtmanagerlookups.moc"
