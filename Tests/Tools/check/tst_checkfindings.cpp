#include "Mistakes.h"
#include "TestCatalogue.h"
#include "TestClips.h"
#include "ToolRun.h"

#include <QtTest/QtTest>

Q_DECLARE_METATYPE(QFile::Permissions)

namespace {

constexpr char second[] = "Tools.vidtips/Control/Second.xml";
constexpr char english[] = "locale=\"en_US\"";

// The message may be a part; the place is that of the last code, file:line:column.
void row(const char *name, const Files &files, const QStringList &codes, const QString &place,
         const QString &message)
{
    QTest::newRow(name) << files << codes << place << message;
}

void addXmlRows()
{
    row("unclosed tag", controlWith("<vidtip key=\"a\">"), {"VT101"}, "Tools.xml:3:1", "tag mismatch");
    row("ampersand", controlWith("<vidtip key=\"a\">x & y</vidtip>"), {"VT101"}, "Tools.xml:2:21", "");
    row("too deep",
        controlWith("<vidtip key=\"a\">" + QByteArray("<d>").repeated(2500)
                    + QByteArray("</d>").repeated(2500) + "</vidtip>"),
        {"VT101"}, "Tools.xml:2:6011", "nested more than 2000 deep");
    row("text between entries", controlWith("words <vidtip key=\"a\"/>"), {"VT102"}, "Tools.xml:", "vidtips");
    row("no key", controlWith("<vidtip/>\n<vidtip key=\"a\"/>"), {"VT103"}, "Tools.xml:2:1", "has no key");
    row("empty key", controlWith("<vidtip key=\"a\"/>\n<vidtip title=\"T\" key=\"\"/>"), {"VT103"},
        "Tools.xml:3:19", "is empty");
    row("misspelt entry", controlWith("<vidtip key=\"a\"/>\n  <vidTip key=\"b\"/>"), {"VT104"},
        "Tools.xml:3:3", "\"vidTip\"");
    row("nested entry", controlWith("<vidtip key=\"a\">\n<vidtip key=\"b\"/>\n</vidtip>"), {"VT105"},
        "Tools.xml:3:1", "\"b\"");
    row("entry in a group", controlWith("<vidtip key=\"a\"/><group>\n<vidtip key=\"b\"/></group>"),
        {"VT104", "VT105"}, "Tools.xml:3:1", "\"group\"");
    row("unknown locale", controlWith("<vidtip key=\"a\"/>", "locale=\"german\""), {"VT106"},
        "Tools.xml:1:10", "\"german\"");
    row("locale of a system", controlWith("<vidtip key=\"a\"/>", "locale=\"en_US.UTF-8\""), {"VT106"},
        "Tools.xml:1:10", "write \"en_US\"");
    row("reserved attribute", controlWith("<vidtip key=\"a\"\n    VTLocation=\"x\"/>"), {"VT107"},
        "Tools.xml:3:5", "VTLocation");
    row("key in line ends of another system",
        packageWith({{control, "<vidtips>\r\n<vidtip key=\"a\"/>\r\n <vidtip key=\"\"/>\r\n</vidtips>"}}),
        {"VT103"}, "Tools.xml:3:10", "");
}

void addAdmissionRows()
{
    const QByteArray other = document("<vidtip key=\"b\"/>");
    row("other document element", packageWith({{second, "<?xml version=\"1.0\"?>\n<tips/>"}}), {"VT201"},
        "Second.xml:2:1", "\"tips\"");
    row("tag in a comment", packageWith({{second, "<!-- after\n the <summary> -->\n" + other}}), {"VT202"},
        "Second.xml:2:6", "\"summary\"");
    row("tag in a comment admits", packageWith({{second, "<!-- <vidtips> -->\n<other/>"}}), {"VT202"},
        "Second.xml:1:6", "\"other\"");
    row("empty file", packageWith({{second, ""}}), {"VT203"}, "Second.xml:0:0", "no element");
    row("only a comment", packageWith({{second, "<!-- nothing -->"}}), {"VT101"}, "Second.xml:1:1", "");
    row("prefix", packageWith({{second, "<vidtips:x xmlns:vidtips=\"u\"/>"}}), {"VT204"}, "Second.xml:1:1",
        "");
    row("tag cut by a long line",
        packageWith({{second, "<?xml version=\"1.0\"?><!--" + QByteArray(992, 'x') + "-->" + other}}),
        {"VT204"}, "Second.xml:1:1021", "");
    row("sub-folder", packageWith({{"Tools.vidtips/Control/More/More.xml", other}}), {"VT205"},
        "More.xml:0:0", "control folder");
    row("beside the folder", packageWith({{"Tools.vidtips/More.xml", other}}), {"VT205"}, "More.xml:0:0", "");
    row("schema of no tip",
        packageWith({{"Tools.vidtips/ui/schema.xml", "<schema>\n<element name=\"tip\"/></schema>"}}),
        {"VT115"}, "ui/schema.xml:1:1", "that with the name \"vidtip\"");
    row("schema of another kind",
        packageWith({{"Tools.vidtips/ui/schema.xml",
                      "<schema><element name=\"vidtip\">\n<group/></element></schema>"}}),
        {"VT115"}, "ui/schema.xml:2:1", "not \"group\"");
    row("schema with a misspelling",
        packageWith(
            {{"Tools.vidtips/ui/schema.xml", "<schema><element name=\"vidtip\"\n  txt=\"yes\"/></schema>"}}),
        {"VT115"}, "ui/schema.xml:2:3", "no attribute \"txt\"");
    row("schema with an element twice",
        packageWith({{"Tools.vidtips/ui/schema.xml",
                      "<schema><element name=\"vidtip\"><element name=\"icon\"/>\n<element name=\"note\"/>\n"
                      " <element name=\"icon\"/></element></schema>"}}),
        {"VT115"}, "ui/schema.xml:3:2", "the element \"icon\" of \"vidtip\" is described twice: see line 1");
    row("schema with an attribute twice",
        packageWith({{"Tools.vidtips/ui/schema.xml",
                      "<schema><element name=\"vidtip\"><element name=\"a\"><element name=\"b\"/>\n"
                      "<attribute name=\"b\"/>\n<attribute name=\"b\"/></element></element></schema>"}}),
        {"VT115"}, "ui/schema.xml:3:1", "the attribute \"b\" of \"a\" is described twice: see line 2");
    row("schema not well-formed", packageWith({{"Tools.vidtips/ui/schema.xml", "<schema>\n<element>"}}),
        {"VT115"}, "ui/schema.xml:2:", "");
    row("suffix", packageWith({{"Tools.vidtips/Control/Tools.xml.new", other}}), {"VT206"},
        "Tools.xml.new:0:0", "does not end in \".xml\"");
    row("no suffix", packageWith({{"Tools.vidtips/Control/Tips", other}}), {"VT206"}, "Control/Tips:0:0",
        "does not end in \".xml\"");
    row("hidden file", packageWith({{"Tools.vidtips/Control/.Tips.xml", other}}), {"VT206"}, ".Tips.xml:0:0",
        "is hidden");
    row("no control file", packageWith({{"Shared.vidtips/ui/VidtipsUI.qml", emptyItem}}), {"VT208"},
        "Shared.vidtips:0:0", "\"Shared\"");
    row("no package", Files{{"Tools/Control/Tools.xml", "<tools/>"}}, {"VT209"}, ":0:0", "no package");
    row("package without a suffix", Files{{"Tools/Control/Tools.xml", other}}, {"VT211"}, "Tools:0:0",
        ": name it \"Tools.vidtips\"");
    row("package beside one of the right name", packageWith({{"Tools/Control/Tools.xml", other}}), {"VT211"},
        "Tools:0:0", "because its name does not end in \".vidtips\"");
    row("package in a folder of a data path", packageWith({{"More/Bush.vidtips/Control/Bush.xml", other}}),
        {"VT212"}, "Bush.vidtips:0:0", "name \"More\" as well");
}

void addKeyRows()
{
    const QByteArray two = "<vidtip key=\"a\"/>\n<vidtip key=\"b\"/>";
    row("key twice", packageWith({{second, document("<vidtip key=\"a\"/>")}}), {"VT301"}, "Tools.xml:2:9",
        "\"a\" has an entry for every locale in Tools.vidtips/Control/Second.xml:2:9");
    row("key twice for a locale",
        packageWith({{control, document(two, english)},
                     {second, document("\n<vidtip key=\"b\"/>", "locale=\"en\"")}}),
        {"VT301"}, "Tools.xml:3:9", "\"b\" has an entry for en_US");
    row("key for all and one", packageWith({{second, document("<vidtip key=\"a\"/>", english)}}), {"VT302"},
        "Tools.xml:2:9", "others for en_US");
    row("two entries", controlWith("<vidtip key=\"a\"/>\n<vidtip key=\"a\"/>"), {"VT303"}, "Tools.xml:3:9",
        "in line 2");
    row("missing in a locale",
        packageWith({{control, document(two, english)},
                     {second, document("<vidtip key=\"a\"/>", "locale=\"de_DE\"")}}),
        {"VT304"}, "Tools.xml:3:9", "\"b\" has no entry for de_DE");
}

void addFileRows()
{
    row("unknown package", controlWith("<vidtip key=\"a\"/>", "search=\"Tools, Shared\""), {"VT401"},
        "Tools.xml:1:10", "\"Shared\"");
    row("no user interface", packageWith({{fullInterface, QByteArray()}}), {"VT402"}, "Tools.xml:1:1",
        "there is no user interface: looked for Tools.vidtips/ui/VidtipsUI.qml");
    row("own user interface", controlWith("<vidtip key=\"a\"\n ui=\"ui/Own.qml\"/>"), {"VT402"},
        "Tools.xml:3:2", "ui/Own.qml");
    row("no simple user interface", packageWith({{simpleInterface, QByteArray()}}), {"VT403"},
        "Tools.xml:1:1", "SimpleTooltip.qml");
    row("no picture", controlWith("<vidtip key=\"a\"><picture\n  source=\"a.png\"/></vidtip>"), {"VT404"},
        "Tools.xml:3:3", "Resources/a.png");
    row("picture in another case",
        packageWith({{control, document("<vidtip key=\"a\"><image file=\"A.svg\"/></vidtip>")},
                     {"Tools.vidtips/Resources/a.svg",
                      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1\" height=\"1\"/>"}}),
        {"VT404"}, "Tools.xml:2:24", "there is \"a.svg\"");
    row("no clip", controlWith("<vidtip key=\"a\"><clip source=\"a.mp4\"/></vidtip>"), {"VT405"},
        "Tools.xml:2:23", "\"a.mp4\"");
    row("no resource", controlWith("<vidtip key=\"a\"><part source=\"steps\"/></vidtip>"), {"VT406"},
        "Tools.xml:2:23", "\"steps\"");
    row("damaged picture", packageWith({{"Tools.vidtips/Resources/a.png", "no picture"}}), {"VT407"},
        "a.png:0:0", "does not open");
    row("folders that differ", controlWith("<vidtip key=\"a\" resources=\"Media\"/>"), {"VT408"},
        "Tools.xml:2:17", "\"Media\"");
}

void addClipRows()
{
    row("damaged clip", packageWith({{"Tools.vidtips/Resources/a.mp4", "no clip"}}), {"VT501"}, "a.mp4:0:0",
        "Could not open media");
    row("clip without pictures",
        packageWith(
            {{"Tools.vidtips/Resources/b.avi", TestPackages::read(TestClips::claimingSize(640, 480))}}),
        {"VT504"}, "b.avi:0:0", "none of its pictures");
}

void addUserInterfaceRows()
{
    row("QML error", packageWith({{"Tools.vidtips/ui/Part.qml", "import QtQuick 1.1\nItem {\n  txt: 1\n}"}}),
        {"VT601"}, "Part.qml:3:3", "txt");
    row("QML syntax", packageWith({{fullInterface, "import QtQuick 1.1\nItem {"}}), {"VT601"},
        "VidtipsUI.qml:2:7", "");
    row("unknown QML type", packageWith({{fullInterface, "import QtQuick 1.1\nVTVideoComponent { }"}}),
        {"VT601"}, "VidtipsUI.qml:2:1", "VTVideoComponent");
    row("script error",
        packageWith({{fullInterface, "import QtQuick 1.1\nimport \"a.js\" as A\nItem { }"},
                     {"Tools.vidtips/ui/a.js", "function x( {"}}),
        {"VT601", "VT601"}, "a.js:1:14", "");
    row("QtQuick 2", packageWith({{fullInterface, "import Qt 4.7\n  import QtQuick 2.15\nItem { }"}}),
        {"VT602"}, "VidtipsUI.qml:2:3", "");
    row("network",
        packageWith({{fullInterface, "import QtQuick 1.1\nimport \"http://127.0.0.1:9/x\" as X\nItem { }"}}),
        {"VT603"}, "VidtipsUI.qml:2:1", "network");
    row("area without a name",
        packageWith(
            {{fullInterface,
              "import QtQuick 1.1\nItem { width: 9; height: 9\n  MouseArea { onClicked: parent.x = 1 }\n}"}}),
        {"VT604"}, "VidtipsUI.qml:3:3", "no name");
    row("endless script",
        packageWith(
            {{fullInterface,
              "import QtQuick 1.1\nItem { width: 9; height: 9\n  property int a: { while (true); }\n}"}}),
        {"VT608"}, "VidtipsUI.qml:0:0", "does not end");
}

void addCatalogueRows()
{
    const QByteArray translated = document("<vidtip key=\"b\" title=\"T\" context=\"C\"/>");
    row("no catalogue",
        packageWith({{control, translated},
                     {second, document("<vidtip key=\"a\"/>", "locale=\"de_DE\"")},
                     {"Tools.vidtips/Control/Third.xml", document("<vidtip key=\"a\"/>", english)}}),
        {"VT701"}, "Tools.xml:1:1", "Vidtips_de_DE.qm");
    row("catalogue not built",
        packageWith({{control, translated},
                     {second, document("<vidtip key=\"c\" title=\"U\" context=\"C\"/>")},
                     {"Tools.vidtips/l10n/Vidtips_de_DE.ts", "<TS/>"}}),
        {"VT702"}, "l10n/Vidtips_de_DE.ts:0:0", "Vidtips_de_DE.qm");
}

void addKeyDataRows()
{
    const auto keyData = [](const QByteArray &keys) {
        return packageWith({{"Keys.xml", "<vidtipkeys>\n" + keys + "\n</vidtipkeys>"}});
    };
    row("key data not well-formed", keyData("<key name=\"a\">"), {"VT101"}, "Keys.xml:3:1", "");
    row("stray text in key data", keyData("text <key name=\"a\"/>"), {"VT102"}, "Keys.xml:", "");
    row("key data without an entry", keyData("<key name=\"a\"/>\n<key\n  name=\"z\"/>"), {"VT801"},
        "Keys.xml:4:3", "\"z\"");
    row("key data without a name", keyData("<key shortcut=\"L\"/>"), {"VT802"}, "Keys.xml:2:1", "no name");
    row("key data twice", keyData("<key name=\"a\"/>\n<key name=\"a\"/>"), {"VT803"}, "Keys.xml:3:6",
        "line 2");
}

} // namespace

/** Runs the tool's check on packages in which something is wrong. */
class tst_CheckFindings : public QObject
{
    Q_OBJECT

private slots:
    void findsWhatIsWrong_data();
    void findsWhatIsWrong();
    void findsWhatIsUnreadable_data();
    void findsWhatIsUnreadable();
    void checksNamedKeyData();
    void skipsSymbolicLinks();
    void judgesClips_data();
    void judgesClips();
    void findsCataloguesThatLackTexts();
    void refusesDamagedCatalogues();
    void findsWhatIsRefused();
    void everyCodeHasARow(); // after those that note what they cover

private:
    QStringList m_coveredCodes;
};

void tst_CheckFindings::findsWhatIsWrong_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QStringList>("codes");
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("message");
    addXmlRows();
    addAdmissionRows();
    addKeyRows();
    addFileRows();
    addClipRows();
    addUserInterfaceRows();
    addCatalogueRows();
    addKeyDataRows();
}

void tst_CheckFindings::findsWhatIsWrong()
{
    QFETCH(Files, files);
    QFETCH(QStringList, codes);
    QFETCH(QString, place);
    QFETCH(QString, message);
    const CheckPackages packages(files);
    const ToolRun run({"check", "--json", "."}, packages.path());
    QVERIFY2(run.isFinished, qPrintable(run.errors));
    QCOMPARE(run.errors, QString());
    QStringList found = run.codes();
    found.sort();
    QVERIFY2(found == codes, qPrintable(run.output));
    QCOMPARE(run.exitCode, codes == QStringList{"VT702"} ? 0 : 1);
    for (const QJsonValue value : run.findings()) {
        const QJsonObject finding = value.toObject();
        const QString at = QString("%1:%2:%3")
                               .arg(finding["file"].toString())
                               .arg(finding["line"].toInt())
                               .arg(finding["column"].toInt());
        const bool isHere = place.endsWith(':') ? at.contains(place) : at.endsWith(place);
        if (isHere && finding["message"].toString().contains(message)) {
            m_coveredCodes << codes;
            return;
        }
    }
    QFAIL(qPrintable(run.output));
}

void tst_CheckFindings::findsWhatIsUnreadable_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QFile::Permissions>("permissions");
    QTest::addColumn<QStringList>("problems");
    const QFile::Permissions none;
    const QFile::Permissions noEntrance(QFile::ReadOwner | QFile::WriteOwner);
    const auto row = [](const char *name, const QString &place, QFile::Permissions permissions,
                        const QString &problem, const QStringList &others = {}) {
        QTest::newRow(name) << place << permissions
                            << QStringList{place + ": error: " + problem + " [VT100]"} + others;
    };
    row("file", control, none, "the file cannot be read");
    row("key data", "Keys.xml", none, "the file cannot be read");
    row("control folder", "Tools.vidtips/Control", none, "the folder cannot be read");
    row("control folder without entrance", "Tools.vidtips/Control", noEntrance,
        "the folder cannot be entered");
    row("package", "Tools.vidtips", none, "the folder cannot be read");
    row("package without entrance", "Tools.vidtips", noEntrance, "the folder cannot be entered");
    row("picture", "Tools.vidtips/Resources/a.svg", none, "the file cannot be read");
    row("user interface", fullInterface, none, "the file cannot be read");
    const QString picture =
        "Tools.vidtips/Control/Tools.xml:2:26: error: \"a.svg\" of the tip \"a\" is missing: "
        "the folder Tools.vidtips/Resources cannot be entered [VT404]";
    row("resources without entrance", "Tools.vidtips/Resources", noEntrance, "the folder cannot be entered",
        {picture});
    row("resources", "Tools.vidtips/Resources", none, "the folder cannot be entered", {picture});
    const QString missing = "Tools.vidtips/Control/Tools.xml:1:1: %1: the folder Tools.vidtips/ui cannot be "
                            "entered [%2]";
    row("folder of the user interface", "Tools.vidtips/ui", noEntrance, "the folder cannot be entered",
        {missing.arg("error: there is no user interface", "VT402"),
         missing.arg("warning: there is no simple user interface", "VT403")});
}

void tst_CheckFindings::findsWhatIsUnreadable()
{
    QFETCH(QString, place);
    QFETCH(QFile::Permissions, permissions);
    QFETCH(QStringList, problems);
    const CheckPackages packages(
        packageWith({{control, document("<vidtip key=\"a\"><picture source=\"a.svg\"/></vidtip>")},
                     {"Tools.vidtips/Resources/a.svg",
                      "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1\" height=\"1\"/>"},
                     {"Keys.xml", "<vidtipkeys/>"}}));
    const QString unreadable = packages.filePath(place);
    const QFile::Permissions before = QFile::permissions(unreadable);
    QVERIFY(QFile::setPermissions(unreadable, permissions));
    const ToolRun run = ToolRun::unprivileged({"check", "."}, packages.path());
    QVERIFY(QFile::setPermissions(unreadable, before));
    QStringList found = run.output.split('\n', Qt::SkipEmptyParts);
    found.removeLast();
    found.sort();
    problems.sort();
    QCOMPARE(found, problems);
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitCode, 1);
    m_coveredCodes << "VT100";
}

void tst_CheckFindings::checksNamedKeyData()
{
    const CheckPackages packages(packageWith({{"data.xml", "\n<keys/>"}}));
    const ToolRun run({"check", "--key-data", "data.xml", "Tools.vidtips"}, packages.path());
    QCOMPARE(run.output.section('\n', 0, 0),
             QString("data.xml:2:1: error: the document element is \"keys\" [VT804]"));
    m_coveredCodes << "VT804";
}

void tst_CheckFindings::skipsSymbolicLinks()
{
    const CheckPackages packages(packageWith({{"elsewhere/B.xml", document("<vidtip key=\"a\"/>")}}));
    QVERIFY(
        QFile::link(packages.filePath("elsewhere/B.xml"), packages.filePath("Tools.vidtips/Control/B.xml")));
    QVERIFY(QFile::link(packages.filePath("Tools.vidtips"), packages.filePath("Twin.vidtips")));
    const ToolRun run({"check", "--json", packages.path()});
    QCOMPARE(run.codes(), QStringList({"VT207", "VT207"}));
    m_coveredCodes << "VT207";
}

void tst_CheckFindings::judgesClips_data()
{
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("clip");
    QTest::addColumn<QStringList>("codes");
    QTest::addColumn<QString>("message");
    // 160 x 120 x 4 bytes x 12 frames are 0.88 MB.
    QTest::newRow("fits") << QStringList{"--budget", "0.9"} << TestClips::h264() << QStringList{}
                          << QString();
    QTest::newRow("over the budget")
        << QStringList{"--budget", "0.5"} << TestClips::h264() << QStringList{"VT503"}
        << "takes 0.9 MB of memory (160 x 120 x 4 bytes x 12 frames), the budget is 0.5 MB";
    QTest::newRow("too long") << QStringList{"--longest", "0.25"} << TestClips::h264() << QStringList{"VT502"}
                              << "lasts 0.5 s, the limit is 0.25 s";
    QTest::newRow("unknown length over the budget")
        << QStringList{"--budget", "0.05"} << TestClips::repeatedFields() << QStringList{"VT503"}
        << "64 x 48 x 4 bytes";
    QTest::newRow("no video") << QStringList{} << TestClips::withoutPictures(true) << QStringList{"VT501"}
                              << QString();
    QTest::newRow("cut off") << QStringList{} << TestClips::truncated() << QStringList{"VT505"}
                             << "the clip is cut off after ";
    QTest::newRow("padding") << QStringList{} << TestClips::paddingOnly() << QStringList{"VT501"}
                             << QString();
    QTest::newRow("absurd size") << QStringList{} << TestClips::claimingSize(60000, 60000)
                                 << QStringList{"VT501"} << QString();
}

void tst_CheckFindings::judgesClips()
{
    QFETCH(QStringList, options);
    QFETCH(QString, clip);
    QFETCH(QStringList, codes);
    QFETCH(QString, message);
    const QString suffix = QFileInfo(clip).suffix();
    const QString name =
        "Tools.vidtips/Resources/clip." + (suffix == "ts" || suffix == "m2v" ? "mpg" : suffix);
    const CheckPackages packages(packageWith({{name, TestPackages::read(clip)}}));
    const ToolRun run(QStringList{"check", "--json", packages.path()} + options);
    QVERIFY2(run.codes() == codes, qPrintable(run.output));
    QVERIFY2(run.output.contains(message), qPrintable(run.output));
    m_coveredCodes << codes;
}

void tst_CheckFindings::findsCataloguesThatLackTexts()
{
    const QByteArray entry =
        "<vidtip key=\"a\" title=\"One\" context=\"C\">\n<summary>Two\n  words</summary>\n"
        "<summary>Three</summary></vidtip>";
    const CheckPackages packages(
        packageWith({{control, document(entry)},
                     {"Tools.vidtips/l10n/Vidtips_de_DE.qm",
                      TestCatalogue("C").add("One", "Eins").add("Two words", "Zwei").bytes()}}));
    const ToolRun run({"check", "--json", packages.path()});
    QCOMPARE(run.codes(), QStringList{"VT704"});
    QCOMPARE(run.findings().first().toObject()["line"].toInt(), 5);
    QVERIFY2(run.output.contains("\\\"Three\\\" is not translated in de_DE"), qPrintable(run.output));
    m_coveredCodes << "VT704";
}

void tst_CheckFindings::refusesDamagedCatalogues()
{
    const CheckPackages packages(
        packageWith({{control, document("<vidtip key=\"a\" title=\"One\" context=\"C\"/>")},
                     {"Tools.vidtips/l10n/Vidtips_de_DE.qm", "no catalogue"}}));
    const ToolRun run({"check", "--json", packages.path()});
    QCOMPARE(run.codes(), QStringList{"VT703"});
    m_coveredCodes << "VT703";
    const ToolRun inGerman({"check", "--json", "--source-locale", "de_DE", packages.path()});
    QCOMPARE(inGerman.codes(), QStringList());
}

// tst_restrictioncheck.cpp has the table.
void tst_CheckFindings::findsWhatIsRefused()
{
    const CheckPackages packages(packageWith(
        {{control, document("<vidtip key=\"a\"><picture source=\"/etc/hosts\"/></vidtip>")},
         {fullInterface,
          "import QtQuick 1.1\nItem { width: 9; height: 9\n property url a: 'http://a.example'\n"
          " property variant b: Qt.quit\n function c() { Qt.openUrlExternally('http://a.example') }\n"
          " function d(a) { return a + '//a.example/b' }\n Image { source: d('http:') }\n}"},
         {"Tools.vidtips/ui/Other.qml", "import Qt.labs.gestures 1.0\nItem { }"},
         {"Tools.vidtips/ui/clock/qmldir", "plugin clock"},
         {"Tools.vidtips/Resources/a.svg",
          "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1\" height=\"1\"><image href=\"b.png\"/></svg>"},
         {"Tools.vidtips/Resources/b.mkv", TestPackages::read(TestClips::onePicture())},
         {"Tools.vidtips/l10n/Vidtips_de_DE.qm",
          TestCatalogue("C").add("A", "B").addFile("/tmp/a.qm").bytes()}}));
    const ToolRun run({"check", "--json", "--restricted", packages.path()});
    for (const char *code :
         {"VT413", "VT414", "VT511", "VT609", "VT610", "VT611", "VT612", "VT613", "VT614", "VT706"}) {
        QVERIFY2(run.codes().contains(code), qPrintable(code + run.output));
        m_coveredCodes << code;
    }
}

void tst_CheckFindings::everyCodeHasARow()
{
    if (QTest::currentTestFailed() || m_coveredCodes.isEmpty())
        return;
    QStringList codes;
    for (const QJsonValue kind : ToolRun({"explain", "--json"}).json().array())
        codes << kind.toObject()["code"].toString();
    QVERIFY(codes.size() > 40);
    m_coveredCodes += Mistakes::codes();
    // Those of tips that are shown have their rows in tst_trial.cpp.
    for (const QString &code : qAsConst(codes))
        QVERIFY2(m_coveredCodes.contains(code) || code.startsWith("VT9"), qPrintable(code));
}

QTEST_GUILESS_MAIN(tst_CheckFindings)

#include "tst_checkfindings.moc"
