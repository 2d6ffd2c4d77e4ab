#include "TestCatalogue.h"
#include "TestClips.h"
#include "TestPackage.h"
#include "ToolRun.h"

#include <QtCore/QMap>
#include <QtTest/QtTest>

#include <sys/stat.h>

namespace {

using Files = QMap<QString, QByteArray>;

const char fullInterface[] = "Tools.vidtips/ui/VidtipsUI.qml";
const char simpleInterface[] = "Tools.vidtips/ui/SimpleTooltip.qml";
const char control[] = "Tools.vidtips/Control/Tools.xml";
const char emptyItem[] = "import QtQuick 1.1\nItem { width: 10; height: 10 }\n";

QByteArray document(const QByteArray &entries, const QByteArray &attributes = {})
{
    return "<vidtips" + (attributes.isEmpty() ? QByteArray() : ' ' + attributes) + ">\n" + entries
        + "\n</vidtips>\n";
}

// A package in which nothing is wrong, with some of its files replaced; a null content removes one.
Files packageWith(const Files &changes = {})
{
    Files files{
        {control, document("<vidtip key=\"a\"/>")}, {fullInterface, emptyItem}, {simpleInterface, emptyItem}};
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        if (it->isNull())
            files.remove(it.key());
        else
            files.insert(it.key(), *it);
    }
    return files;
}

Files controlWith(const QByteArray &entries, const QByteArray &attributes = {})
{
    return packageWith({{control, document(entries, attributes)}});
}

} // namespace

Q_DECLARE_METATYPE(Files)

/** Runs the tool's check on packages made for it. */
class tst_CheckCommand : public QObject
{
    Q_OBJECT

private slots:
    void findsWhatIsWrong_data();
    void findsWhatIsWrong();
    void findsWhatIsUnreadable_data();
    void findsWhatIsUnreadable();
    void waitsForNoPipe_data();
    void waitsForNoPipe();
    void checksNamedKeyData();
    void acceptsWhatIsRight_data();
    void acceptsWhatIsRight();
    void skipsSymbolicLinks();
    void judgesClips_data();
    void judgesClips();
    void saysWhyAClipDoesNotOpen();
    void findsCataloguesThatLackTexts();
    void refusesDamagedCatalogues();
    void reportsEachFileOnce();
    void takesEveryKindOfFolder_data();
    void takesEveryKindOfFolder();
    void findsTheExampleClean_data();
    void findsTheExampleClean();
    void countsInJson();
    void writesLinesThatEditorsFollow();
    void refusesBadInput_data();
    void refusesBadInput();
    void groupsFindingsOnATerminal();
    void everyCodeHasARow(); // after those that note what they cover

private:
    QStringList m_coveredCodes;
};

void tst_CheckCommand::findsWhatIsWrong_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QStringList>("codes");
    QTest::addColumn<QString>("place"); // of the last code: file:line:column
    QTest::addColumn<QString>("message"); // part of that finding's
    const auto row = [](const char *name, const Files &files, const QStringList &codes, const QString &place,
                        const QString &message) {
        QTest::newRow(name) << files << codes << place << message;
    };
    const QByteArray two = "<vidtip key=\"a\"/>\n<vidtip key=\"b\"/>";

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
    row("reserved attribute", controlWith("<vidtip key=\"a\"\n    VTLocation=\"x\"/>"), {"VT107"},
        "Tools.xml:3:5", "VTLocation");
    row("key in line ends of another system",
        packageWith({{control, "<vidtips>\r\n<vidtip key=\"a\"/>\r\n <vidtip key=\"\"/>\r\n</vidtips>"}}),
        {"VT103"}, "Tools.xml:3:10", "");

    const QByteArray other = document("<vidtip key=\"b\"/>");
    const QString second = "Tools.vidtips/Control/Second.xml";
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
    row("suffix", packageWith({{"Tools.vidtips/Control/Tools.xml.new", other}}), {"VT206"},
        "Tools.xml.new:0:0", "\".new\"");
    row("no control file", packageWith({{"Shared.vidtips/ui/VidtipsUI.qml", emptyItem}}), {"VT208"},
        "Shared.vidtips:0:0", "\"Shared\"");
    row("no package", Files{{"Tools/Control/Tools.xml", other}}, {"VT209"}, ":0:0", "no package");

    const QByteArray english = "locale=\"en_US\"";
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

    row("damaged clip", packageWith({{"Tools.vidtips/Resources/a.mp4", "no clip"}}), {"VT501"}, "a.mp4:0:0",
        "Could not open media");
    row("clip without pictures",
        packageWith(
            {{"Tools.vidtips/Resources/b.avi", TestPackages::read(TestClips::claimingSize(640, 480))}}),
        {"VT504"}, "b.avi:0:0", "none of its pictures");

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

void tst_CheckCommand::findsWhatIsWrong()
{
    QFETCH(Files, files);
    QFETCH(QStringList, codes);
    QFETCH(QString, place);
    QFETCH(QString, message);
    const TestPackages packages;
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
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

void tst_CheckCommand::findsWhatIsUnreadable_data()
{
    QTest::addColumn<QString>("place");
    QTest::addColumn<QString>("line");
    QTest::newRow("file") << control << "Tools.vidtips/Control/Tools.xml: error: the file cannot be read";
    QTest::newRow("control folder") << "Tools.vidtips/Control"
                                    << "Tools.vidtips/Control: error: the folder cannot be read";
    QTest::newRow("package") << "Tools.vidtips"
                             << "Tools.vidtips: error: the folder cannot be read";
}

void tst_CheckCommand::findsWhatIsUnreadable()
{
    QFETCH(QString, place);
    QFETCH(QString, line);
    const TestPackages packages;
    const Files files = packageWith();
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    const QString unreadable = packages.filePath(place);
    const QFile::Permissions before = QFile::permissions(unreadable);
    QVERIFY(QFile::setPermissions(unreadable, {}));
    const ToolRun run = ToolRun::unprivileged({"check", "."}, packages.path());
    QVERIFY(QFile::setPermissions(unreadable, before));
    QCOMPARE(run.output.section('\n', 0, 0), line + " [VT100]");
    QVERIFY2(run.output.endsWith(": 1 error\n"), qPrintable(run.output));
    QCOMPARE(run.errors, QString());
    QCOMPARE(run.exitCode, 1);
    m_coveredCodes << "VT100";
}

void tst_CheckCommand::waitsForNoPipe_data()
{
    QTest::addColumn<QString>("pipe");
    QTest::addColumn<QByteArray>("entry");
    QTest::newRow("picture") << "Tools.vidtips/Resources/a.png"
                             << QByteArray("<vidtip key=\"a\"><picture source=\"a.png\"/></vidtip>");
    QTest::newRow("clip") << "Tools.vidtips/Resources/a.mp4"
                          << QByteArray("<vidtip key=\"a\"><clip source=\"a.mp4\"/></vidtip>");
    QTest::newRow("user interface") << "Tools.vidtips/ui/Own.qml"
                                    << QByteArray("<vidtip key=\"a\" ui=\"ui/Own.qml\"/>");
}

void tst_CheckCommand::waitsForNoPipe()
{
    QFETCH(QString, pipe);
    QFETCH(QByteArray, entry);
    const TestPackages packages;
    const Files files = controlWith(entry);
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    QVERIFY(QDir().mkpath(QFileInfo(packages.filePath(pipe)).path()));
    QCOMPARE(mkfifo(packages.filePath(pipe).toLocal8Bit().constData(), 0600), 0);
    const ToolRun run({"check", "."}, packages.path());
    QCOMPARE(run.output,
             pipe
                 + ": error: this is no file that can be read [VT100]\n1 package, 1 control file: 1 error\n");
}

void tst_CheckCommand::checksNamedKeyData()
{
    const TestPackages packages;
    const Files files = packageWith({{"data.xml", "\n<keys/>"}});
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    const ToolRun run({"check", "--key-data", "data.xml", "Tools.vidtips"}, packages.path());
    QCOMPARE(run.output.section('\n', 0, 0),
             QString("data.xml:2:1: error: the document element is \"keys\" [VT804]"));
    m_coveredCodes << "VT804";
}

void tst_CheckCommand::acceptsWhatIsRight_data()
{
    QTest::addColumn<Files>("files");
    QTest::newRow("plain") << packageWith();
    QTest::newRow("free elements and attributes") << controlWith(
        "<vidtip key=\"a\" title=\"x.png\" mine=\"1\">text <any thing=\"2\"><deep/></any></vidtip>",
        "mine=\"3\"");
    QTest::newRow("elements of another namespace")
        << controlWith("<vidtip key=\"a\"/><m:note xmlns:m=\"urn:m\"/>");
    QTest::newRow("a namespace of its own") << controlWith("<vidtip key=\"a\"/>", "xmlns=\"urn:tips\"");
    QTest::newRow("tag on several lines") << packageWith(
        {{control, "<?xml version=\"1.0\"?>\n<vidtips\n  locale=\"\"\n>\n<vidtip key=\"a\"/></vidtips>"}});
    QTest::newRow("addresses and placeholders") << controlWith(
        "<vidtip key=\"a\"><x source=\"http://example.org/a.png\"/><y source=\"%(kind)s.mp4\"/></vidtip>");
    QTest::newRow("other locales for other keys")
        << packageWith({{control, document("<vidtip key=\"a\"/>", "locale=\"de\"")},
                        {"Tools.vidtips/Control/B.xml", document("<vidtip key=\"b\"/>")}});
    QTest::newRow("user interface of another package") << packageWith(
        {{fullInterface, QByteArray()},
         {control, document("<vidtip key=\"a\"/>", "search=\"A;;Shared\tTools\" resource=\"\"")},
         {"A.vidtips/Control/A.xml", "<vidtips/>"},
         {"Shared.vidtips/Control/S.xml", "<vidtips/>"},
         {"Shared.vidtips/ui/VidtipsUI.qml", emptyItem}});
    QTest::newRow("the library's types")
        << packageWith({{fullInterface,
                         "import QtQuick 1.0\nimport com.corvale.vidtips.qml 1.0\nItem { VTVideoComponent { "
                         "} VTScrollBar { } "
                         "VTStyledRectangle { } VTXmlElement { id: x } }"}});
    QTest::newRow("picture in a folder of its own")
        << packageWith({{control,
                         document("<vidtip key=\"a\"><p source=\"a.svg\"/></vidtip>",
                                  "resources=\"Media\" resource=\"Media\"")},
                        {"Tools.vidtips/Media/a.svg",
                         "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1\" height=\"1\"/>"}});
    QTest::newRow("key data") << packageWith(
        {{"Keys.xml", "<vidtipkeys><key name=\"a\" x=\"y\"/></vidtipkeys>"}});
    QTest::newRow("other files beside") << packageWith({{"Tools.vidtips/Control/notes.txt", "<notes>"},
                                                        {"Tools.vidtips/data.xml", "<data/>"},
                                                        {"Other.xml", "<other/>"}});
    QTest::newRow("UTF-8 mark") << packageWith(
        {{control, "\xEF\xBB\xBF" + document("<vidtip key=\"\u00e4\"/>")}});
}

void tst_CheckCommand::acceptsWhatIsRight()
{
    QFETCH(Files, files);
    const TestPackages packages;
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    const ToolRun run({"check", packages.path()});
    QVERIFY2(run.output.endsWith(": nothing found\n"), qPrintable(run.output));
    QCOMPARE(run.exitCode, 0);
}

void tst_CheckCommand::skipsSymbolicLinks()
{
    const TestPackages packages;
    const Files files = packageWith({{"elsewhere/B.xml", document("<vidtip key=\"a\"/>")}});
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    QVERIFY(
        QFile::link(packages.filePath("elsewhere/B.xml"), packages.filePath("Tools.vidtips/Control/B.xml")));
    QVERIFY(QFile::link(packages.filePath("Tools.vidtips"), packages.filePath("Twin.vidtips")));
    const ToolRun run({"check", "--json", packages.path()});
    QCOMPARE(run.codes(), QStringList({"VT207", "VT207"}));
    m_coveredCodes << "VT207";
}

void tst_CheckCommand::judgesClips_data()
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
    QTest::newRow("cut off") << QStringList{} << TestClips::truncated() << QStringList{} << QString();
    QTest::newRow("padding") << QStringList{} << TestClips::paddingOnly() << QStringList{"VT501"}
                             << QString();
    QTest::newRow("absurd size") << QStringList{} << TestClips::claimingSize(60000, 60000)
                                 << QStringList{"VT501"} << QString();
}

void tst_CheckCommand::judgesClips()
{
    QFETCH(QStringList, options);
    QFETCH(QString, clip);
    QFETCH(QStringList, codes);
    QFETCH(QString, message);
    const TestPackages packages;
    const QString suffix = QFileInfo(clip).suffix();
    const QString name =
        "Tools.vidtips/Resources/clip." + (suffix == "ts" || suffix == "m2v" ? "mpg" : suffix);
    const Files files = packageWith({{name, TestPackages::read(clip)}});
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    const ToolRun run(QStringList{"check", "--json", packages.path()} + options);
    QVERIFY2(run.codes() == codes, qPrintable(run.output));
    QVERIFY2(run.output.contains(message), qPrintable(run.output));
    m_coveredCodes << codes;
}

void tst_CheckCommand::saysWhyAClipDoesNotOpen()
{
    const TestPackages packages;
    packages.writeControl("Tools", "Tools.xml", "");
    packages.write("Tools.vidtips/Resources/sound.avi", TestPackages::read(TestClips::audioOnly()));
    const ToolRun run({"check", "Tools.vidtips"}, packages.path());
    QVERIFY2(
        run.output.startsWith("Tools.vidtips/Resources/sound.avi: error: the clip does not open: Could not "
                              "find a video stream [VT501]\n"),
        qPrintable(run.output));
}

void tst_CheckCommand::findsCataloguesThatLackTexts()
{
    const TestPackages packages;
    const QByteArray entry =
        "<vidtip key=\"a\" title=\"One\" context=\"C\">\n<summary>Two\n  words</summary>\n"
        "<summary>Three</summary></vidtip>";
    const Files files =
        packageWith({{control, document(entry)},
                     {"Tools.vidtips/l10n/Vidtips_de_DE.qm",
                      TestCatalogue("C").add("One", "Eins").add("Two words", "Zwei").bytes()}});
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    const ToolRun run({"check", "--json", packages.path()});
    QCOMPARE(run.codes(), QStringList{"VT704"});
    QCOMPARE(run.findings().first().toObject()["line"].toInt(), 5);
    QVERIFY2(run.output.contains("\\\"Three\\\" is not translated in de_DE"), qPrintable(run.output));
    m_coveredCodes << "VT704";
}

void tst_CheckCommand::refusesDamagedCatalogues()
{
    const TestPackages packages;
    const Files files = packageWith({{control, document("<vidtip key=\"a\" title=\"One\" context=\"C\"/>")},
                                     {"Tools.vidtips/l10n/Vidtips_de_DE.qm", "no catalogue"}});
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    const ToolRun run({"check", "--json", packages.path()});
    QCOMPARE(run.codes(), QStringList{"VT703"});
    m_coveredCodes << "VT703";
    const ToolRun inGerman({"check", "--json", "--source-locale", "de_DE", packages.path()});
    QCOMPARE(inGerman.codes(), QStringList());
}

void tst_CheckCommand::reportsEachFileOnce()
{
    const TestPackages packages;
    const QByteArray user = "import QtQuick 1.1\nItem { Part { } }";
    const Files files = packageWith({{control,
                                      document("<vidtip key=\"a\"><clip source=\"a.mp4\"/></vidtip><vidtip "
                                               "key=\"b\"><clip source=\"a.mp4\"/></vidtip>")},
                                     {"Tools.vidtips/Resources/a.mp4", "no clip"},
                                     {fullInterface, user},
                                     {simpleInterface, user},
                                     {"Tools.vidtips/ui/Part.qml", "import QtQuick 1.1\nItem { txt: 1 }"}});
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    const ToolRun run(
        {"check", "--json", packages.path(), packages.filePath("Tools.vidtips"), packages.path()});
    QCOMPARE(run.codes().count("VT501"), 1);
    int errorsInPart = 0;
    for (const QJsonValue finding : run.findings())
        errorsInPart += finding.toObject()["file"].toString().endsWith("Part.qml");
    QCOMPARE(errorsInPart, 1);
}

void tst_CheckCommand::takesEveryKindOfFolder_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("package") << "data/Base/Tools.vidtips";
    QTest::newRow("package with a slash") << "data/Base/Tools.vidtips/";
    QTest::newRow("data path") << "data/Base";
    QTest::newRow("folder of data paths") << "data";
}

void tst_CheckCommand::takesEveryKindOfFolder()
{
    QFETCH(QString, folder);
    const TestPackages packages;
    const Files files = packageWith();
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write("data/Base/" + it.key(), *it);
    const ToolRun run({"check", folder}, packages.path());
    QCOMPARE(run.output, QString("1 package, 1 control file: nothing found\n"));
}

void tst_CheckCommand::findsTheExampleClean_data()
{
    QTest::addColumn<QString>("folder");
    QTest::newRow("sources") << EXAMPLE_CONTENT;
    QTest::newRow("built") << BUILT_CONTENT;
}

void tst_CheckCommand::findsTheExampleClean()
{
    QFETCH(QString, folder);
    const ToolRun run({"check", "--json", folder});
    const QJsonObject counts = run.json().object()["counts"].toObject();
    QVERIFY2(counts["error"].toInt(-1) == 0 && counts["warning"].toInt(-1) == 0, qPrintable(run.output));
    QCOMPARE(run.exitCode, 0);
    QVERIFY(run.json().object()["packages"].toInt() >= 4);
}

void tst_CheckCommand::countsInJson()
{
    const TestPackages packages;
    const Files files = packageWith({{fullInterface, QByteArray()}, {simpleInterface, QByteArray()}});
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    const QJsonObject report = ToolRun({"check", "--json", packages.path()}).json().object();
    QCOMPARE(report["version"].toInt(), 1);
    QCOMPARE(report["packages"].toInt(), 1);
    QCOMPARE(report["controlFiles"].toInt(), 1);
    QCOMPARE(report["counts"].toObject(), (QJsonObject{{"error", 1}, {"warning", 1}, {"note", 0}}));
    const QJsonObject finding = report["findings"].toArray().first().toObject();
    QCOMPARE(finding.keys(), QStringList({"code", "column", "file", "line", "message", "severity"}));
    QCOMPARE(finding["file"].toString(), packages.filePath(control));
    QCOMPARE(finding["severity"].toString(), QString("error"));
}

void tst_CheckCommand::writesLinesThatEditorsFollow()
{
    const TestPackages packages;
    const Files files = controlWith("<vidtip key=\"a\"/>\n<vidtip key=\"a\"/>");
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    const ToolRun run({"check", "."}, packages.path());
    QCOMPARE(
        run.output,
        QString(
            "Tools.vidtips/Control/Tools.xml:3:9: error: the key \"a\" vanishes: it has an entry in line 2 "
            "already [VT303]\n1 package, 1 control file: 1 error\n"));
    QCOMPARE(run.exitCode, 1);
}

void tst_CheckCommand::refusesBadInput_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    QTest::newRow("no folder") << QStringList{} << "check needs a folder; see \"vidtips check --help\"";
    QTest::newRow("missing folder") << QStringList{"no-such"} << "no such folder: no-such";
    QTest::newRow("file") << QStringList{"good", "file.txt"} << "not a folder: file.txt";
    QTest::newRow("unknown option") << QStringList{"--fast", "good"}
                                    << "Unknown option 'fast'; see \"vidtips check --help\"";
    QTest::newRow("option without value")
        << QStringList{"good", "--budget"} << "Missing value after '--budget'; see \"vidtips check --help\"";
    QTest::newRow("budget") << QStringList{"--budget", "much", "good"}
                            << "--budget takes a number of megabytes, not \"much\"";
    QTest::newRow("no budget") << QStringList{"--budget", "0", "good"}
                               << "--budget takes a number of megabytes, not \"0\"";
    QTest::newRow("negative length") << QStringList{"--longest=-1", "good"}
                                     << "--longest takes a number of seconds, not \"-1\"";
    QTest::newRow("not a number") << QStringList{"--longest", "nan", "good"}
                                  << "--longest takes a number of seconds, not \"nan\"";
    QTest::newRow("locale") << QStringList{"--source-locale", "german", "good"}
                            << "Qt knows no locale \"german\"";
    QTest::newRow("key data") << QStringList{"--key-data", "good", "good"}
                              << "the key data cannot be read: good";
}

void tst_CheckCommand::refusesBadInput()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const TestPackages packages;
    packages.write("good/Tools.vidtips/Control/T.xml", "<vidtips/>");
    packages.write("file.txt", "text");
    const ToolRun run(QStringList{"check"} + arguments, packages.path());
    QCOMPARE(run.errors, "vidtips: " + error + '\n');
    QCOMPARE(run.output, QString());
    QCOMPARE(run.exitCode, 2);
}

void tst_CheckCommand::groupsFindingsOnATerminal()
{
    const TestPackages packages;
    const Files files = controlWith("<vidtip key=\"a\"/>\n<vidtip key=\"a\"/>\n<vidtip/>");
    for (auto it = files.cbegin(); it != files.cend(); ++it)
        packages.write(it.key(), *it);
    const QString plain = "Tools.vidtips/Control/Tools.xml\r\n"
                          "     3:9  error    VT303  the key \"a\" vanishes: it has an entry in line 2\r\n"
                          "                          already\r\n"
                          "     4:1  error    VT103  this entry has no key\r\n\r\n"
                          "1 package, 1 control file: 2 errors\r\n"
                          "\"vidtips explain CODE\" says what to do.\r\n";
    const ToolRun uncoloured = ToolRun::onTerminal({"check", "."}, packages.path(), {"NO_COLOR=1"});
    // A slow machine is told how far the work has come.
    static const QRegularExpression progress("\r\033\\[K(\\d+ of \\d+ [A-Za-z ]+(?=\r\033))?");
    QCOMPARE(QString(uncoloured.output).remove(progress), plain);
    const ToolRun coloured = ToolRun::onTerminal({"check", "."}, packages.path());
    QVERIFY(coloured.output.contains("\033[1;31merror  \033[0m"));
    static const QRegularExpression colour("\033\\[[0-9;]*m");
    QCOMPARE(QString(coloured.output).remove(progress).remove(colour), plain);
}

void tst_CheckCommand::everyCodeHasARow()
{
    if (QTest::currentTestFailed() || m_coveredCodes.isEmpty())
        return;
    QStringList codes;
    for (const QJsonValue kind : ToolRun({"explain", "--json"}).json().array())
        codes << kind.toObject()["code"].toString();
    QVERIFY(codes.size() > 40);
    for (const QString &code : qAsConst(codes))
        QVERIFY2(m_coveredCodes.contains(code), qPrintable(code));
}

QTEST_GUILESS_MAIN(tst_CheckCommand)

#include "tst_checkcommand.moc"
