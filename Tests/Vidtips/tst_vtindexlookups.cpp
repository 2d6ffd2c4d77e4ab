#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTXmlElement.h>

#include "IndexTest.h"
#include "MessageRecorder.h"

using Vidtips::VTIndex;
using Vidtips::VTXmlElement;

/** What an index finds for a key, and what it remembers of files that it has read. */
class tst_VTIndexLookups : public IndexTest
{
    Q_OBJECT

private slots:
    void init();
    void retrieveGivesTheFirstAdmitted();
    void retrieveFillsItsArguments();
    void retrieveFindsNothing_data();
    void retrieveFindsNothing();
    void locales_data();
    void locales();
    void mismatchedLocaleKeepsTheOldAddress();
    void loadNeedsExactlyOneEntry_data();
    void loadNeedsExactlyOneEntry();
    void entryIsBuiltInFull();
    void entryFromABrokenFile();
    void changedFilesAreSeen_data();
    void changedFilesAreSeen();
    void knownFilesAreRuledOutOnlyWhenSure_data();
    void knownFilesAreRuledOutOnlyWhenSure();
    void brokenFilesAreReportedEachTime();
    void knownFilesServeTheirLocale();
    void keyDataIsCopied();
    void keyDataHasShortcutsForPlatforms();
    void keyDataIsIgnored_data();
    void keyDataIsIgnored();
    void keysAreListedInOrder();
    void filesThatYieldNothingContributeNoKeys();
    void storeKeepsOneRecordPerDepth();
    void thousandFilesAreAdmittedWithoutRepetition();
};

static const QLocale usEnglish(QStringLiteral("en_US"));

static std::unique_ptr<VTXmlElement> retrieveRoot(VTIndex &index, const QString &key,
                                                  const QLocale &locale = usEnglish)
{
    QString directory;
    int depth = 0;
    VTXmlElement *root = nullptr;
    VTXmlElement *element = index.retrieve(key, locale, directory, depth, root);
    if (element && element->parent() != root)
        qFatal("the element is not the root's child");
    return std::unique_ptr<VTXmlElement>(root);
}

static VTXmlElement *entry(const std::unique_ptr<VTXmlElement> &root)
{
    return root ? qobject_cast<VTXmlElement *>(root->children().value(0)) : nullptr;
}

void tst_VTIndexLookups::init()
{
    makeFolder();
}

void tst_VTIndexLookups::retrieveGivesTheFirstAdmitted()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString b = write("Tools.vidtips/b.xml", "<vidtips><vidtip key='k' from='b'/></vidtips>");
    const QString a = write("Tools.vidtips/a.xml", "<vidtips><vidtip key='k' from='a'/></vidtips>");
    index.indexControlFile(b, m_package);
    index.indexControlFile(a, m_package);
    const auto root = retrieveRoot(index, "k");
    QVERIFY(entry(root));
    QCOMPARE(entry(root)->attribute("from"), QStringLiteral("b"));
}

void tst_VTIndexLookups::retrieveFillsItsArguments()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString file = write("Tools.vidtips/Control/a.xml", "<vidtips><vidtip key='k'/></vidtips>");
    index.indexControlFile(file, m_package);
    QString directory;
    int depth = 0;
    VTXmlElement *root = nullptr;
    VTXmlElement *element = index.retrieve("k", usEnglish, directory, depth, root);
    QVERIFY(element && root);
    const std::unique_ptr<VTXmlElement> owner(root);
    QCOMPARE(directory, m_package + "/Control");
    QCOMPARE(depth, 2);
    QVERIFY(!root->parent());
    QCOMPARE(element->parent(), root);
    QCOMPARE(element->attribute("VTLocation"), file);
    QCOMPARE(element->attribute("VTPackagName"), QStringLiteral("Tools"));
}

void tst_VTIndexLookups::retrieveFindsNothing_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("unknown") << "other";
    QTest::newRow("other case") << "K";
    QTest::newRow("empty") << "";
    QTest::newRow("null") << QString();
    QTest::newRow("of another language") << "german";
}

void tst_VTIndexLookups::retrieveFindsNothing()
{
    QFETCH(QString, key);
    VTContext context;
    VTIndex index(&context, {});
    write("Tools.vidtips/a.xml", "<vidtips><vidtip/><vidtip key='k'/></vidtips>");
    write("Tools.vidtips/b.xml", "<vidtips><vidtip key=''/></vidtips>");
    write("Tools.vidtips/c.xml", "<vidtips locale='de_DE'><vidtip key='german'/></vidtips>");
    for (const char *name : {"/a.xml", "/b.xml", "/c.xml"})
        index.indexControlFile(m_package + name, m_package);
    index.store(nullptr, usEnglish, m_root + "/gone.xml", 1);
    VTXmlElement stale;
    QString directory("unchanged");
    int depth = 42;
    VTXmlElement *root = &stale;
    QVERIFY(!index.retrieve(key, usEnglish, directory, depth, root));
    QVERIFY(!root);
    QCOMPARE(directory, QStringLiteral("unchanged"));
    QCOMPARE(depth, 42);
}

void tst_VTIndexLookups::locales_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::addColumn<QString>("locale");
    QTest::addColumn<bool>("isServed");
    QTest::newRow("none serves all") << QByteArray() << "fr_FR" << true;
    QTest::newRow("empty serves all") << QByteArray("locale=''") << "fr_FR" << true;
    QTest::newRow("same") << QByteArray("locale='de_DE'") << "de_DE" << true;
    QTest::newRow("language stands for its country") << QByteArray("locale='de'") << "de_DE" << true;
    QTest::newRow("other language") << QByteArray("locale='de_DE'") << "en_US" << false;
    QTest::newRow("other country") << QByteArray("locale='en_GB'") << "en_US" << false;
}

void tst_VTIndexLookups::locales()
{
    QFETCH(QByteArray, attribute);
    QFETCH(QString, locale);
    VTContext context;
    VTIndex index(&context, {});
    const QString file =
        write("Tools.vidtips/a.xml", "<vidtips " + attribute + "><vidtip key='k'/></vidtips>");
    index.indexControlFile(file, m_package);
    QTEST(entry(retrieveRoot(index, "k", QLocale(locale))) != nullptr, "isServed");
}

void tst_VTIndexLookups::mismatchedLocaleKeepsTheOldAddress()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString file = write("Tools.vidtips/a.xml", "<vidtips locale='de_DE'><vidtip key='k'/></vidtips>");
    VTXmlElement *root = nullptr;
    QVERIFY(!index.load("k", file, usEnglish, root));
    QVERIFY(root);
}

void tst_VTIndexLookups::loadNeedsExactlyOneEntry_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("one of several") << QByteArray("<vidtips><vidtip key='a'/><vidtip key='k'/></vidtips>")
                                    << true;
    QTest::newRow("two") << QByteArray("<vidtips><vidtip key='k'/><vidtip key='k'/></vidtips>") << false;
    QTest::newRow("none") << QByteArray("<vidtips><vidtip key='a'/></vidtips>") << false;
    QTest::newRow("inside another element")
        << QByteArray("<vidtips><group><vidtip key='k'/></group></vidtips>") << false;
    QTest::newRow("inside another entry")
        << QByteArray("<vidtips><vidtip key='a'><vidtip key='k'/></vidtip></vidtips>") << false;
    QTest::newRow("other document") << QByteArray("<html><vidtip key='k'/></html>") << false;
    QTest::newRow("an entry for the document")
        << QByteArray("<vidtip key='k'><vidtip key='other'/></vidtip>") << false;
    QTest::newRow("a document in the document")
        << QByteArray("<vidtips><vidtips key='k'/></vidtips>") << false;
    QTest::newRow("no document") << QByteArray("text") << false;
}

void tst_VTIndexLookups::loadNeedsExactlyOneEntry()
{
    QFETCH(QByteArray, content);
    VTContext context;
    VTIndex index(&context, {});
    VTXmlElement stale;
    VTXmlElement *root = &stale;
    MessageRecorder recorder;
    VTXmlElement *element = index.load("k", write("a.xml", content), usEnglish, root);
    QTEST(element != nullptr, "isFound");
    QCOMPARE(root != nullptr, element != nullptr);
    delete root;
    root = &stale;
    QVERIFY(!index.load("k", m_root + "/absent.xml", usEnglish, root));
    QVERIFY(!root);
}

void tst_VTIndexLookups::entryIsBuiltInFull()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString file = write("a.xml",
                               "<vidtips search='B'><title/><vidtip key='k'><text>Hello<key name='x'/></text>"
                               "<vidtip key='other'/></vidtip></vidtips>");
    VTXmlElement *root = nullptr;
    VTXmlElement *element = index.load("k", file, usEnglish, root);
    const std::unique_ptr<VTXmlElement> owner(root);
    QVERIFY(element);
    QCOMPARE(element->childElement("text")->content(), QStringLiteral("Hello"));
    QCOMPARE(element->childElement("vidtip")->attribute("key"), QStringLiteral("other"));
    QCOMPARE(element->childElement("key")->attribute("name"), QStringLiteral("x"));
    QCOMPARE(root->attribute("search"), QStringLiteral("B"));
    QVERIFY(element->hasAttribute("VTPackagName"));
    QVERIFY(element->attribute("VTPackagName").isEmpty());
}

void tst_VTIndexLookups::entryFromABrokenFile()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString file = write("a.xml", "<vidtips><vidtip key='k'><text>Hello</text></vidtip><oops");
    VTXmlElement *root = nullptr;
    MessageRecorder recorder;
    VTXmlElement *element = index.load("k", file, usEnglish, root);
    const std::unique_ptr<VTXmlElement> owner(root);
    QVERIFY(element);
    QCOMPARE(recorder.texts().size(), 1);
}

void tst_VTIndexLookups::changedFilesAreSeen_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("the key comes") << QByteArray("<vidtips><vidtip key='a'/></vidtips>")
                                   << QByteArray("<vidtips><vidtip key='cut'/></vidtips>");
    QTest::newRow("the locale comes") << QByteArray("<vidtips locale='de_DE'><vidtip key='cut'/></vidtips>")
                                      << QByteArray("<vidtips locale='en_US'><vidtip key='cut'/></vidtips>");
    QTest::newRow("it is mended") << QByteArray("<vidtips><vidtip key='a'>")
                                  << QByteArray("<vidtips><vidtip key='cut'/></vidtips>");
}

void tst_VTIndexLookups::changedFilesAreSeen()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    VTContext context;
    VTIndex index(&context, {});
    MessageRecorder recorder;
    index.store(nullptr, usEnglish, write("a.xml", before), 1);
    for (int i = 0; i < 2; ++i)
        QVERIFY(!retrieveRoot(index, "cut"));
    write("a.xml", after);
    QVERIFY(entry(retrieveRoot(index, "cut")));
    write("a.xml", before);
    QVERIFY(!retrieveRoot(index, "cut"));
}

void tst_VTIndexLookups::knownFilesAreRuledOutOnlyWhenSure_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("key");
    const QByteArray declaration("<?xml version='1.0' encoding='UTF-8'?>");
    const auto utf16 = [](const QString &text) {
        const QChar mark(QChar::ByteOrderMark);
        const QString marked = mark + text;
        return QByteArray(reinterpret_cast<const char *>(marked.utf16()), marked.size() * 2);
    };
    QTest::newRow("plain") << QByteArray("<vidtips><vidtip key='a.b'/></vidtips>") << "a.b";
    QTest::newRow("declared") << declaration + "<vidtips><vidtip key='a.b'/></vidtips>"
                              << "a.b";
    QTest::newRow("by a character's number")
        << QByteArray("<vidtips><vidtip key='a&#46;b'/></vidtips>") << "a.b";
    QTest::newRow("by a predefined entity")
        << QByteArray("<vidtips><vidtip key='a&amp;b'/></vidtips>") << "a&b";
    QTest::newRow("by an entity of its own")
        << QByteArray("<!DOCTYPE vidtips [<!ENTITY dot '.'>]><vidtips><vidtip key='a&dot;b'/></vidtips>")
        << "a.b";
    QTest::newRow("white space") << QByteArray("<vidtips><vidtip key='a\tb'/></vidtips>") << "a\tb";
    QTest::newRow("beyond ASCII") << QStringLiteral("<vidtips><vidtip key='a\u00e4'/></vidtips>").toUtf8()
                                  << QStringLiteral("a\u00e4");
    QTest::newRow("UTF-16") << utf16(QStringLiteral("<vidtips><vidtip key='a.b'/></vidtips>")) << "a.b";
}

void tst_VTIndexLookups::knownFilesAreRuledOutOnlyWhenSure()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, key);
    VTContext context;
    VTIndex index(&context, {});
    index.store(nullptr, usEnglish, write("a.xml", content), 1);
    // Only a file that was parsed can be ruled out.
    QVERIFY(!retrieveRoot(index, "other"));
    for (int i = 0; i < 2; ++i)
        QVERIFY(entry(retrieveRoot(index, key)));
}

void tst_VTIndexLookups::brokenFilesAreReportedEachTime()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString broken = write("a.xml", "<vidtips><vidtip key='a'/>");
    const QString whole = write("b.xml", "<vidtips><vidtip key='b'/></vidtips>");
    for (const QString &file : {broken, whole})
        index.store(nullptr, usEnglish, file, 1);
    MessageRecorder recorder;
    for (int i = 0; i < 3; ++i)
        QVERIFY(!retrieveRoot(index, "cut"));
    QCOMPARE(recorder.texts().size(), 3);
}

void tst_VTIndexLookups::knownFilesServeTheirLocale()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString german =
        write("a.xml", "<vidtips locale='de_DE'><vidtip key='k' title='Linie'/></vidtips>");
    const QString english =
        write("b.xml", "<vidtips locale='en_US'><vidtip key='k' title='Line'/></vidtips>");
    for (const QString &file : {german, english})
        index.store(nullptr, usEnglish, file, 1);
    for (int i = 0; i < 2; ++i) {
        const auto line = retrieveRoot(index, "k");
        QVERIFY(entry(line));
        QCOMPARE(entry(line)->attribute("title"), QStringLiteral("Line"));
        const auto linie = retrieveRoot(index, "k", QLocale(QStringLiteral("de_DE")));
        QVERIFY(entry(linie));
        QCOMPARE(entry(linie)->attribute("title"), QStringLiteral("Linie"));
    }
    VTXmlElement *root = nullptr;
    QVERIFY(!index.load("k", german, usEnglish, root));
}

void tst_VTIndexLookups::keyDataIsCopied()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString file = write("a.xml", "<vidtips><vidtip key='k' title='old' name='kept'/></vidtips>");
    const QString data =
        write("data.xml",
              "<vidtipkeys><key name='a' title='wrong'/>"
              "<key name='k' title='new' topic='t'/><key name='k' title='late'/></vidtipkeys>");
    context.set(Vidtips::KeyDataFile, data);
    VTXmlElement *root = nullptr;
    VTXmlElement *element = index.load("k", file, usEnglish, root);
    const std::unique_ptr<VTXmlElement> owner(root);
    QVERIFY(element);
    QCOMPARE(element->attribute("title"), QStringLiteral("new"));
    QCOMPARE(element->attribute("topic"), QStringLiteral("t"));
    QCOMPARE(element->attribute("name"), QStringLiteral("kept"));
    QVERIFY(element->childElementList(QString()).isEmpty());
    index.loadKeyData("k", file, nullptr);
}

void tst_VTIndexLookups::keyDataHasShortcutsForPlatforms()
{
    VTContext context;
    VTIndex index(&context, {});
    context.set(Vidtips::KeyDataFile,
                write("data.xml",
                      "<vidtipkeys><key name='k' shortcut-linux='Ctrl+K' shortcut-mac='Cmd+K' shortcut='K'"
                      " shortcut-windows='Alt+K'/><key name='other' shortcut='O'/></vidtipkeys>"));
    VTXmlElement element;
    index.loadKeyData("other", QString(), &element);
    QCOMPARE(element.attribute("shortcut"), QStringLiteral("O"));
    index.loadKeyData("k", QString(), &element);
#if defined(Q_OS_WIN)
    QCOMPARE(element.attribute("shortcut"), QStringLiteral("Alt+K"));
#elif defined(Q_OS_MACOS)
    QCOMPARE(element.attribute("shortcut"), QStringLiteral("Cmd+K"));
#else
    QCOMPARE(element.attribute("shortcut"), QStringLiteral("Ctrl+K"));
#endif
    QCOMPARE(element.attribute("shortcut-mac"), QStringLiteral("Cmd+K"));
}

void tst_VTIndexLookups::keyDataIsIgnored_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("other key") << "k" << QByteArray("<vidtipkeys><key name='K' title='x'/></vidtipkeys>");
    QTest::newRow("no keys") << "k" << QByteArray("<vidtipkeys/>");
    QTest::newRow("other document") << "k" << QByteArray("<keys><key name='k' title='x'/></keys>");
    QTest::newRow("an entry for the document")
        << "k" << QByteArray("<key name='k'><key name='other' title='x'/></key>");
    QTest::newRow("a document in the document")
        << "k" << QByteArray("<vidtipkeys><vidtipkeys name='k' title='x'/></vidtipkeys>");
    QTest::newRow("empty") << "k" << QByteArray();
    QTest::newRow("no file") << "k" << QByteArray("absent");
    QTest::newRow("empty key") << "" << QByteArray("<vidtipkeys><key title='x'/></vidtipkeys>");
}

void tst_VTIndexLookups::keyDataIsIgnored()
{
    QFETCH(QString, key);
    QFETCH(QByteArray, content);
    VTContext context;
    context.set(Vidtips::KeyDataFile,
                content == "absent" ? m_root + "/absent.xml" : write("data.xml", content));
    VTIndex index(&context, {});
    VTXmlElement element;
    MessageRecorder recorder;
    index.loadKeyData(key, QString(), &element);
    index.loadKeyData(key, QString(), nullptr);
    QVERIFY(element.attributeNames().isEmpty());
}

void tst_VTIndexLookups::keysAreListedInOrder()
{
    VTContext context;
    VTIndex index(&context, {});
    write("Tools.vidtips/b.xml",
          "<vidtips><vidtip key='z'><vidtip key='inner'/></vidtip><vidtip/><vidtip key=''/>"
          "<group><vidtip key='grouped'/></group><vidtip key='a'/></vidtips>");
    write("Tools.vidtips/a.xml", "<vidtips locale='de_DE'><vidtip key='a'/></vidtips>");
    for (const char *name : {"/b.xml", "/a.xml"})
        index.indexControlFile(m_package + name, m_package);
    QCOMPARE(index.keys(), (QStringList{"z", "", "a", "a"}));
}

void tst_VTIndexLookups::filesThatYieldNothingContributeNoKeys()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString first = write("Tools.vidtips/a.xml", "<vidtips><vidtip key='a'/></vidtips>");
    const QString second = write("Tools.vidtips/b.xml", "<vidtips><vidtip key='b'/></vidtips>");
    const QString third = write("Tools.vidtips/c.xml", "<vidtips><vidtip key='c'/></vidtips>");
    const QString fourth =
        write("Tools.vidtips/d.xml", "<!-- <vidtips> --><vidtip key='d'><vidtip key='inner'/></vidtip>");
    for (const QString &file : {first, second, third, fourth})
        index.indexControlFile(file, m_package);
    write("Tools.vidtips/a.xml", "no longer XML");
    QVERIFY(QFile::remove(second));
    MessageRecorder recorder;
    QCOMPARE(index.keys(), QStringList{"c"});
    QCOMPARE(recorder.texts().size(), 1);
}

void tst_VTIndexLookups::storeKeepsOneRecordPerDepth()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString file = write("a.xml", "<vidtips><vidtip key='k'/></vidtips>");
    QVERIFY(index.store(nullptr, usEnglish, file, 1));
    QVERIFY(index.store(nullptr, usEnglish, file, 1));
    QCOMPARE(index.keys().size(), 1);
    QVERIFY(index.store(nullptr, usEnglish, file, 2));
    QCOMPARE(index.keys().size(), 2);
    QVERIFY(index.componentPathsForPackageNamed(QString()).isEmpty());
}

void tst_VTIndexLookups::thousandFilesAreAdmittedWithoutRepetition()
{
    VTContext context;
    VTIndex index(&context, {});
    for (int i = 0; i < 1000; ++i) {
        const QByteArray number = QByteArray::number(i);
        write("Tools.vidtips/Control/" + number + ".xml",
              "<vidtips><vidtip key='" + number + "'/></vidtips>");
    }
    for (int i = 0; i < 2000; ++i)
        index.indexControlFile(m_package + QStringLiteral("/Control/%1.xml").arg(i % 1000), m_package);
    QCOMPARE(index.keys().size(), 1000);
    QVERIFY(entry(retrieveRoot(index, "999")));
}

QTEST_GUILESS_MAIN(tst_VTIndexLookups)

#include "tst_vtindexlookups.moc"
