#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTXmlElement.h>

#include "MessageRecorder.h"

#include <QtCore/QDir>
#include <QtCore/QMetaMethod>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <memory>

using Vidtips::VTIndex;
using Vidtips::VTXmlElement;

/** An index that tells which operations reach a subclass. */
class RecordingIndex : public VTIndex
{
public:
    using VTIndex::isInUpdate;
    using VTIndex::VTIndex;

    bool clear() override
    {
        ++clearCount;
        return false;
    }

    int clearCount = 0;
};

class tst_VTIndex : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void hasNoMembersInItsMetaObject();
    void contextIsTheHostsWhileItLives();
    void baseOperationsSucceed();
    void setupClearsUnlessSwitchedOff_data();
    void setupClearsUnlessSwitchedOff();
    void updateFlagFollowsStartAndEnd();

    void admission_data();
    void admission();
    void depthCountsLevels();
    void outsideFilesAreSkipped_data();
    void outsideFilesAreSkipped();
    void packageIsNoControlFile();
    void symbolicLinksAreResolvedForTheDepth_data();
    void symbolicLinksAreResolvedForTheDepth();
    void uncleanPathsAreWalked_data();
    void uncleanPathsAreWalked();
    void sameFileIsAdmittedOnce();
    void unreadableFilesAreSkipped();
    void mapControlFileKeepsOrderWithoutRepetition();

    void packageNames_data();
    void packageNames();
    void extraComponentPathComesLast();
    void componentPathsForElement_data();
    void componentPathsForElement();
    void componentPathsOfNullAreNone();
    void indexDataFilter_data();
    void indexDataFilter();

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
    void keyDataIsIgnored_data();
    void keyDataIsIgnored();
    void keysAreListedInOrder();
    void filesThatYieldNothingContributeNoKeys();
    void storeKeepsOneRecordPerDepth();
    void thousandFilesAreAdmittedWithoutRepetition();

private:
    QString write(const QString &path, const QByteArray &content);

    std::unique_ptr<QTemporaryDir> m_directory;
    QString m_root;
    QString m_package;
};

static const QLocale usEnglish(QStringLiteral("en_US"));

void tst_VTIndex::init()
{
    m_directory = std::make_unique<QTemporaryDir>();
    QVERIFY(m_directory->isValid());
    m_root = QDir(m_directory->path()).canonicalPath();
    m_package = m_root + "/Tools.vidtips";
    QVERIFY(QDir(m_root).mkpath("Tools.vidtips/Control"));
}

/** Writes a file below the test's folder and returns its path. */
QString tst_VTIndex::write(const QString &path, const QByteArray &content)
{
    QString absolute = QDir(m_root).absoluteFilePath(path);
    QDir().mkpath(QFileInfo(absolute).absolutePath());
    QFile file(absolute);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qUtf8Printable(absolute));
    return absolute;
}

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

void tst_VTIndex::hasNoMembersInItsMetaObject()
{
    const QMetaObject &meta = VTIndex::staticMetaObject;
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
}

void tst_VTIndex::contextIsTheHostsWhileItLives()
{
    auto context = std::make_unique<VTContext>();
    VTIndex index(context.get(), {});
    const VTIndex &constIndex = index;
    QVERIFY(!index.parent());
    QCOMPARE(&index.context(), context.get());
    QCOMPARE(&constIndex.context(), context.get());
    context->set(Vidtips::PackageSuffix, "pack");
    context.reset();
    QVERIFY(index.context().keys().isEmpty());
    QCOMPARE(&constIndex.context(), &index.context());
    QCOMPARE(index.packageNameForLocation(m_package), QStringLiteral("Tools"));
}

void tst_VTIndex::baseOperationsSucceed()
{
    VTContext context;
    VTIndex index(&context, {m_root});
    QVERIFY(index.open());
    QVERIFY(index.setup());
    QVERIFY(index.clear());
    QVERIFY(index.close());
    QVERIFY(index.remove());
}

void tst_VTIndex::setupClearsUnlessSwitchedOff_data()
{
    QTest::addColumn<QVariant>("setting");
    QTest::addColumn<int>("clearCount");
    QTest::newRow("unset") << QVariant() << 1;
    QTest::newRow("true") << QVariant(true) << 1;
    QTest::newRow("false") << QVariant(false) << 0;
}

void tst_VTIndex::setupClearsUnlessSwitchedOff()
{
    QFETCH(QVariant, setting);
    VTContext context;
    if (setting.isValid())
        context.set(Vidtips::ClearIndexOnSetup, setting);
    RecordingIndex index(&context, {});
    QVERIFY(index.setup());
    QTEST(index.clearCount, "clearCount");
}

void tst_VTIndex::updateFlagFollowsStartAndEnd()
{
    VTContext context;
    RecordingIndex index(&context, {});
    QVERIFY(!index.isInUpdate());
    index.startUpdate();
    QVERIFY(index.isInUpdate());
    index.endUpdate();
    QVERIFY(!index.isInUpdate());
}

void tst_VTIndex::admission_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("isAdmitted");
    const auto row = [](const char *name, const QByteArray &content, bool isAdmitted) {
        QTest::newRow(name) << content << isAdmitted;
    };
    const QByteArray entries = "<vidtip key=\"k\"/></vidtips>";
    row("plain", "<vidtips>" + entries, true);
    row("attributes", "<vidtips locale=\"\">" + entries, true);
    row("blank before the bracket", "<vidtips  >" + entries, true);
    row("closed at once", "<vidtips/>", true);
    row("closed at once, with a line break", "<vidtips/>\n", true);
    row("closed after a blank", "<vidtips />", true);
    row("declaration and comment first", "<?xml version=\"1.0\"?>\n<!-- x < y -->\n\n<vidtips>" + entries,
        true);
    row("all on one line", "<?xml version=\"1.0\"?><vidtips>" + entries, true);
    row("attributes on the next line", "<vidtips\n  locale=\"\">" + entries, true);
    row("carriage return", "<vidtips\r\n  locale=\"\">" + entries, true);
    row("bracket on the next line", "<vidtips\n>" + entries, true);
    row("name ends the file", "<vidtips", true);
    row("byte order mark", "\xef\xbb\xbf<vidtips>" + entries, true);
    row("beyond the first read", QByteArray(5000, ' ') + "\n<vidtips>" + entries, true);
    row("no line break before it", QByteArray(2048, ' ') + "<vidtips>" + entries, true);
    row("ends with a read", QByteArray(1015, ' ') + "<vidtips>" + entries, true);
    row("ends after a read", QByteArray(1016, ' ') + "<vidtips>" + entries, false);
    row("cut by the end of a read", QByteArray(1020, ' ') + "<vidtips>" + entries, false);
    row("another mark before it", "<<vidtips>" + entries, true);
    row("another element", "<html><vidtips>" + entries + "</html>", false);
    row("vidtip", "<vidtip key=\"k\"/>", false);
    row("longer name", "<vidtipsx>" + entries, false);
    row("longer name at the line's end", "<vidtipsx\n>" + entries, false);
    row("hyphenated name", "<vidtips-old/>", false);
    row("prefixed name", "<vidtips:x xmlns:vidtips=\"u\"/>", false);
    row("other case", "<Vidtips>" + entries, false);
    row("short name", "<a\n><vidtips>", false);
    row("tag in a comment decides", "<!-- <b> -->\n<vidtips>" + entries, false);
    row("name that begins with an underscore", "<_/>\n<vidtips>" + entries, false);
    row("name that begins with a mark", "<\xcc\x81/>\n<vidtips>" + entries, false);
    row("name with an underscore", "<vidtips_x/>\n<vidtips>" + entries, false);
    row("blank after the mark", "< vidtips>" + entries, false);
    row("no element", "vidtips", false);
    row("empty", "", false);
    row("binary", QByteArray("\0\x01\xff\xfe<\0v", 7), false);
}

void tst_VTIndex::admission()
{
    QFETCH(QByteArray, content);
    VTContext context;
    VTIndex index(&context, {});
    index.indexControlFile(write("Tools.vidtips/Control/a.xml", content), m_package);
    const QStringList paths = index.componentPathsForPackageNamed("Tools");
    QTEST(paths == QStringList{m_package}, "isAdmitted");
}

void tst_VTIndex::depthCountsLevels()
{
    VTContext context;
    const QByteArray content = "<vidtips><vidtip key='%'/></vidtips>";
    VTIndex index(&context, {});
    const QStringList files{"a.xml", "Control/b.xml", "Control/c/d/e.xml"};
    for (const QString &file : files) {
        const QString path = write("Tools.vidtips/" + file, QByteArray(content).replace('%', file.toUtf8()));
        index.indexControlFile(path, m_package);
    }
    for (int i = 0; i < files.size(); ++i) {
        QString directory;
        int depth = 0;
        VTXmlElement *root = nullptr;
        QVERIFY(index.retrieve(files.at(i), usEnglish, directory, depth, root));
        delete root;
        QCOMPARE(depth, (QList<int>{1, 2, 4}).at(i));
    }
}

void tst_VTIndex::outsideFilesAreSkipped_data()
{
    QTest::addColumn<QString>("package");
    QTest::newRow("another folder") << "/Other.vidtips";
    QTest::newRow("starts with the path only") << "/Tools";
    QTest::newRow("the path is a piece of the name") << "/Tools.vid";
    QTest::newRow("does not exist") << "/Tools.vidtips/Control/a";
    QTest::newRow("the file itself is below") << "/Tools.vidtips/Control/a.xml/b";
}

void tst_VTIndex::outsideFilesAreSkipped()
{
    QFETCH(QString, package);
    QDir(m_root).mkpath("Other.vidtips");
    QDir(m_root).mkpath("Tools");
    VTContext context;
    VTIndex index(&context, {});
    const QString file = write("Tools.vidtips/Control/a.xml", "<vidtips><vidtip key='k'/></vidtips>");
    index.indexControlFile(file, m_root + package);
    QVERIFY(index.keys().isEmpty());
    index.indexControlFile(file, m_root + "/tools.vidtips");
    QVERIFY(index.keys().isEmpty());
    index.indexControlFile(QString(), m_package);
    index.indexControlFile("relative.xml", QString());
    QVERIFY(index.keys().isEmpty());
}

void tst_VTIndex::packageIsNoControlFile()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString beside = write("Tools.vidtips2", "<vidtips><vidtip key='k'/></vidtips>");
    index.indexControlFile(m_package, m_package);
    index.indexControlFile(beside, m_package);
    index.indexControlFile(m_package + "/Control/..", m_package);
    index.indexControlFile(m_package + "/Control/", m_package);
    QVERIFY(index.keys().isEmpty());
    QVERIFY(index.componentPathsForPackageNamed("Tools").isEmpty());
}

void tst_VTIndex::symbolicLinksAreResolvedForTheDepth_data()
{
    QTest::addColumn<QString>("controlFile");
    QTest::addColumn<int>("depth");
    QTest::newRow("folder of the link") << "/a.xml" << 1;
    QTest::newRow("folder below the link") << "/Control/a.xml" << 2;
}

void tst_VTIndex::symbolicLinksAreResolvedForTheDepth()
{
    QFETCH(QString, controlFile);
    write("Tools.vidtips" + controlFile, "<vidtips><vidtip key='k'/></vidtips>");
    QVERIFY(QFile::link(m_package, m_package + "/Loop"));
    VTContext context;
    VTIndex index(&context, {});
    index.indexControlFile(m_package + "/Loop" + controlFile, m_package);
    QString directory;
    int depth = 0;
    VTXmlElement *root = nullptr;
    QVERIFY(index.retrieve("k", usEnglish, directory, depth, root));
    delete root;
    QTEST(depth, "depth");
}

void tst_VTIndex::uncleanPathsAreWalked_data()
{
    QTest::addColumn<QString>("controlFile");
    QTest::addColumn<QString>("package");
    QTest::addColumn<bool>("isAdmitted");
    QTest::newRow("package ends in a slash") << "/Control/a.xml"
                                             << "/" << true;
    QTest::newRow("doubled slash") << "/Control//a.xml"
                                   << "" << true;
    QTest::newRow("through the parent") << "/../Tools.vidtips/Control/a.xml"
                                        << "" << true;
    QTest::newRow("out of the package") << "/../Other.vidtips/a.xml"
                                        << "" << false;
}

void tst_VTIndex::uncleanPathsAreWalked()
{
    QFETCH(QString, controlFile);
    QFETCH(QString, package);
    write("Tools.vidtips/Control/a.xml", "<vidtips><vidtip key='k'/></vidtips>");
    write("Other.vidtips/a.xml", "<vidtips><vidtip key='k'/></vidtips>");
    VTContext context;
    VTIndex index(&context, {});
    index.indexControlFile(m_package + controlFile, m_package + package);
    QString directory;
    int depth = 2;
    VTXmlElement *root = nullptr;
    QTEST(index.retrieve("k", usEnglish, directory, depth, root) != nullptr, "isAdmitted");
    delete root;
    QCOMPARE(depth, 2);
}

void tst_VTIndex::sameFileIsAdmittedOnce()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString file = write("Tools.vidtips/Control/a.xml", "<vidtips><vidtip key='k'/></vidtips>");
    for (int i = 0; i < 3; ++i)
        index.indexControlFile(file, m_package);
    QCOMPARE(index.keys(), QStringList{"k"});
    QCOMPARE(index.componentPathsForPackageNamed("Tools"), QStringList{m_package});
}

void tst_VTIndex::unreadableFilesAreSkipped()
{
    VTContext context;
    VTIndex index(&context, {});
    index.indexControlFile(m_package + "/Control/absent.xml", m_package);
    index.indexControlFile(m_package + "/Control", m_package);
    index.indexControlFile(m_package, m_package);
    QVERIFY(index.componentPathsForPackageNamed("Tools").isEmpty());
}

void tst_VTIndex::mapControlFileKeepsOrderWithoutRepetition()
{
    VTContext context;
    VTIndex index(&context, {});
    QVERIFY(QDir(m_root).mkpath("b/Tools.vidtips"));
    const QString second = m_root + "/b/Tools.vidtips";
    index.mapControlFile("ignored", second);
    index.mapControlFile(QString(), m_package);
    index.mapControlFile("other", second);
    index.mapControlFile("last", m_package);
    QCOMPARE(index.componentPathsForPackageNamed("Tools"), (QStringList{second, m_package}));
    QVERIFY(index.keys().isEmpty());
    context.set(Vidtips::PackageSuffix, "tips");
    index.mapControlFile(QString(), m_package);
    QCOMPARE(index.componentPathsForPackageNamed(QString()), QStringList{m_package});
    const QString late = m_root + "/Late.tips";
    index.mapControlFile(QString(), late);
    QVERIFY(QDir().mkpath(late));
    index.mapControlFile(QString(), late);
    QCOMPARE(index.componentPathsForPackageNamed("Late"), QStringList{late});
}

void tst_VTIndex::packageNames_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("name");
    QTest::newRow("the package") << ""
                                 << "Tools.vidtips"
                                 << "Tools";
    QTest::newRow("inside") << ""
                            << "Tools.vidtips/Control/a.xml"
                            << "Tools";
    QTest::newRow("inside, absent") << ""
                                    << "Tools.vidtips/no/such/file"
                                    << "Tools";
    QTest::newRow("trailing slash") << ""
                                    << "Tools.vidtips/"
                                    << "Tools";
    QTest::newRow("only the last dot") << ""
                                       << "Tools.beta.vidtips/Control"
                                       << "Tools.beta";
    QTest::newRow("innermost package") << ""
                                       << "Tools.vidtips/In.vidtips/a.xml"
                                       << "In";
    QTest::newRow("a file with the suffix") << ""
                                            << "Tools.vidtips/file.vidtips"
                                            << "Tools";
    QTest::newRow("no package") << ""
                                << "Plain/a.xml" << QString();
    QTest::newRow("other case") << ""
                                << "Upper.VIDTIPS" << QString();
    QTest::newRow("other suffix") << "pack"
                                  << "Tools.pack/a.xml"
                                  << "Tools";
    QTest::newRow("other suffix set") << "pack"
                                      << "Tools.vidtips" << QString();
}

void tst_VTIndex::packageNames()
{
    QFETCH(QString, suffix);
    QFETCH(QString, location);
    QFETCH(QString, name);
    for (const char *folder : {"Tools.beta.vidtips", "Tools.vidtips/In.vidtips", "Tools.pack", "Plain"})
        QVERIFY(QDir(m_root).mkpath(folder));
    QVERIFY(QDir(m_root).mkpath("Upper.VIDTIPS"));
    write("Tools.vidtips/file.vidtips", "x");
    VTContext context;
    if (!suffix.isEmpty())
        context.set(Vidtips::PackageSuffix, suffix);
    const VTIndex index(&context, {});
    QCOMPARE(index.packageNameForLocation(m_root + '/' + location), name);
    QCOMPARE(index.packageNameForLocation(m_root + '/' + location).isNull(), name.isNull());
    for (const char *nowhere : {"", "/", "relative", ".", "..", ":/x/y", "//", "/nowhere"})
        QVERIFY2(index.packageNameForLocation(nowhere).isNull(), nowhere);
}

void tst_VTIndex::extraComponentPathComesLast()
{
    VTContext context;
    VTIndex index(&context, {});
    QVERIFY(index.componentPathsForPackageNamed("Tools").isEmpty());
    index.mapControlFile(QString(), m_package);
    context.set(Vidtips::ExtraComponentPath, "/extra");
    QCOMPARE(index.componentPathsForPackageNamed("Tools"), (QStringList{m_package, "/extra"}));
    QCOMPARE(index.componentPathsForPackageNamed("Unknown"), QStringList{"/extra"});
    context.set(Vidtips::ExtraComponentPath, "");
    QCOMPARE(index.componentPathsForPackageNamed("Tools"), QStringList{m_package});
}

void tst_VTIndex::componentPathsForElement_data()
{
    QTest::addColumn<QString>("search");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char *name, const char *search, const char *path, const QStringList &expected) {
        QTest::newRow(name) << QString(search) << QString(path) << expected;
    };
    row("own package only", "", "", {"Tools.vidtips", "extra"});
    row("runs of separators", "A, B;;C", "",
        {"Tools.vidtips", "extra", "A.vidtips", "B.vidtips", "C.vidtips"});
    row("every separator", "C\tA\n,;B", "",
        {"Tools.vidtips", "extra", "C.vidtips", "A.vidtips", "B.vidtips"});
    row("unknown names", ", X;A,", "", {"Tools.vidtips", "extra", "A.vidtips"});
    row("repetitions", "A A Tools", "",
        {"Tools.vidtips", "extra", "A.vidtips", "A.vidtips", "Tools.vidtips"});
    row("case matters", "a", "", {"Tools.vidtips", "extra"});
    row("with a path", "A", "ui/x.qml", {"Tools.vidtips/ui/x.qml", "extra/ui/x.qml", "A.vidtips/ui/x.qml"});
}

void tst_VTIndex::componentPathsForElement()
{
    QFETCH(QString, search);
    QFETCH(QString, path);
    QFETCH(QStringList, expected);
    VTContext context;
    context.set(Vidtips::ExtraComponentPath, m_root + "/extra");
    VTIndex index(&context, {});
    index.mapControlFile(QString(), m_package);
    for (const char *name : {"A", "B", "C"}) {
        QVERIFY(QDir(m_root).mkpath(name + QStringLiteral(".vidtips")));
        index.mapControlFile(QString(), m_root + '/' + name + ".vidtips");
    }
    VTXmlElement root;
    root.setAttribute("search", search);
    VTXmlElement element(&root);
    element.setAttribute("VTPackagName", "Tools");
    for (QString &place : expected)
        place.prepend(m_root + '/');
    QCOMPARE(index.componentPathsForElement(&element, path), expected);
}

void tst_VTIndex::componentPathsOfNullAreNone()
{
    VTContext context;
    context.set(Vidtips::ExtraComponentPath, "/extra");
    const VTIndex index(&context, {});
    QVERIFY(index.componentPathsForElement(nullptr, "x").isEmpty());
    const VTXmlElement orphan;
    QCOMPARE(index.componentPathsForElement(&orphan, "/absolute"), QStringList{"/absolute"});
}

void tst_VTIndex::indexDataFilter_data()
{
    QTest::addColumn<int>("flags");
    QTest::newRow("vidtip") << 1;
    QTest::newRow("vidtips") << 1;
    QTest::newRow("Vidtip") << 4;
    QTest::newRow("text") << 4;
    QTest::newRow("x:vidtip") << 4;
}

void tst_VTIndex::indexDataFilter()
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    const QXmlAttributes none;
    QT_WARNING_POP
    QTEST(VTIndex::indexDataShouldGenerateElement(QTest::currentDataTag(), none, nullptr), "flags");
}

void tst_VTIndex::retrieveGivesTheFirstAdmitted()
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

void tst_VTIndex::retrieveFillsItsArguments()
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

void tst_VTIndex::retrieveFindsNothing_data()
{
    QTest::addColumn<QString>("key");
    QTest::newRow("unknown") << "other";
    QTest::newRow("other case") << "K";
    QTest::newRow("empty") << "";
    QTest::newRow("null") << QString();
    QTest::newRow("of another language") << "german";
}

void tst_VTIndex::retrieveFindsNothing()
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

void tst_VTIndex::locales_data()
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

void tst_VTIndex::locales()
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

void tst_VTIndex::mismatchedLocaleKeepsTheOldAddress()
{
    VTContext context;
    VTIndex index(&context, {});
    const QString file = write("Tools.vidtips/a.xml", "<vidtips locale='de_DE'><vidtip key='k'/></vidtips>");
    VTXmlElement *root = nullptr;
    QVERIFY(!index.load("k", file, usEnglish, root));
    QVERIFY(root);
}

void tst_VTIndex::loadNeedsExactlyOneEntry_data()
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

void tst_VTIndex::loadNeedsExactlyOneEntry()
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

void tst_VTIndex::entryIsBuiltInFull()
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

void tst_VTIndex::entryFromABrokenFile()
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

void tst_VTIndex::changedFilesAreSeen_data()
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

void tst_VTIndex::changedFilesAreSeen()
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

void tst_VTIndex::knownFilesAreRuledOutOnlyWhenSure_data()
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

void tst_VTIndex::knownFilesAreRuledOutOnlyWhenSure()
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

void tst_VTIndex::brokenFilesAreReportedEachTime()
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

void tst_VTIndex::knownFilesServeTheirLocale()
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

void tst_VTIndex::keyDataIsCopied()
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

void tst_VTIndex::keyDataIsIgnored_data()
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

void tst_VTIndex::keyDataIsIgnored()
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

void tst_VTIndex::keysAreListedInOrder()
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

void tst_VTIndex::filesThatYieldNothingContributeNoKeys()
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

void tst_VTIndex::storeKeepsOneRecordPerDepth()
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

void tst_VTIndex::thousandFilesAreAdmittedWithoutRepetition()
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

QTEST_GUILESS_MAIN(tst_VTIndex)
#include "tst_vtindex.moc"
