#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTXmlElement.h>

#include "IndexTest.h"

#include <QtCore/QMetaMethod>

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

/** What an index takes for control files and packages, and how it keeps them. */
class tst_VTIndex : public IndexTest
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
};

static const QLocale usEnglish(QStringLiteral("en_US"));

void tst_VTIndex::init()
{
    makeFolder();
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

QTEST_GUILESS_MAIN(tst_VTIndex)

#include "tst_vtindex.moc"
