#include "CheckPackages.h"
#include "TestCatalogue.h"
#include "TestClips.h"
#include "ToolCall.h"
#include "findings/Finding.h"
#include "findings/FindingReport.h"
#include "restriction/RestrictionCheck.h"
#include "shared/Content.h"

#include <QtTest/QtTest>

namespace {

const char ownControl[] = "Own.vidtips/Control/Own.xml";
const char ownInterface[] = "Own.vidtips/ui/VidtipsUI.qml";
const char picture[] = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"1\" height=\"1\"/>";

/** A package that searches another, beside one that nobody searches, with @p changes. */
Files filesWith(const Files &changes)
{
    Files files{{ownControl, document("<vidtip key=\"a\"/>", "search=\"Found\"")},
                {ownInterface, "import QtQuick 1.1\nItem { width: 9; height: 9 }"},
                {"Own.vidtips/ui/SimpleTooltip.qml", "import QtQuick 1.1\nItem { width: 9; height: 9 }"},
                {"Own.vidtips/Resources/a.svg", picture},
                {"Found.vidtips/Control/Found.xml", document("<vidtip key=\"found\"/>")},
                {"Found.vidtips/Resources/a.svg", picture},
                {"Other.vidtips/Control/Other.xml", document("<vidtip key=\"other\"/>")},
                {"Other.vidtips/Resources/a.svg", picture},
                {"Other.vidtips/ui/Part.qml", "import QtQuick 1.1\nItem { }"}};
    for (auto it = changes.cbegin(); it != changes.cend(); ++it)
        files.insert(it.key(), *it);
    return files;
}

/** What is found in packages that are only read, a line each. */
QString foundIn(const CheckPackages &packages)
{
    const QString before = QDir::currentPath();
    QDir::setCurrent(packages.path());
    Content content;
    content.load({"."});
    Findings findings;
    RestrictionCheck(content).run(content.keyDataFiles(), findings);
    QStringList lines;
    for (const Finding &finding : findings.sorted())
        lines << FindingReport::line(finding).remove("file://").remove(packages.path() + '/');
    QDir::setCurrent(before);
    return lines.join('\n');
}

/** What a check says that restricted content is refused, a line each. */
QString saidOf(const Files &files, const QStringList &options = {"--restricted"})
{
    const CheckPackages packages(files);
    const ToolCall call(QStringList{"check"} + options + QStringList{"."}, packages.path());
    QStringList lines;
    for (const QString &line : call.output.split('\n')) {
        if (line.contains("restricted content"))
            lines << QString(line).remove("file://").remove(packages.path() + '/');
    }
    return lines.join('\n');
}

} // namespace

/**
 * Reads packages that ask for more than their own, and what a check says that restricted content is refused:
 * what CodeMentions and TextMentions find in files is judged by RestrictedReach.
 */
class tst_RestrictionCheck : public QObject
{
    Q_OBJECT

private slots:
    void saysNothingWithoutTheSwitch();
    void readsCode_data();
    void readsCode();
    void readsFiles_data();
    void readsFiles();
    void judgesSearchedPackages();
    void followsLinks();
    void showsTips();
    void previews();
};

void tst_RestrictionCheck::saysNothingWithoutTheSwitch()
{
    const Files files = filesWith(
        {{ownInterface,
          "import QtQuick 1.1\nItem { width: 9; height: 9; Component.onCompleted: { var f = Qt.quit } }"}});
    QCOMPARE(saidOf(files, {}), QString());
    QCOMPARE(saidOf(files),
             QString("Own.vidtips/ui/VidtipsUI.qml:2:62: warning: restricted content is refused Qt.quit() "
                     "[VT612]"));
}

void tst_RestrictionCheck::readsCode_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("said"); // without the file, and the words that all have
    const auto row = [](const char *name, const QByteArray &body, const QString &said) {
        QTest::newRow(name) << body << said;
    };
    const auto reading = [](const char *place, const char *address) {
        return QString("%1: reading %2 [VT611]").arg(place, address);
    };
    row("inside", "Image { source: '../Resources/a.svg' }", {});
    row("in a searched package", "Image { source: '../../Found.vidtips/Resources/a.svg' }", {});
    row("of the host", "Image { source: 'image://host/a' }", {});
    row("text that names an address", "Text { text: 'http://a.example/b.png' }", {});
    row("address that the host opens",
        "MouseArea { onEntered: vidTipView.openExternalResource('http://a.example') }", {});
    row("server", "Image { source: 'http://a.example/b.png' }", reading("3:17", "http://a.example/b.png"));
    row("data", "Image { source: \"data:image/png;base64,AA==\" }",
        reading("3:17", "data:image/png;base64,AA=="));
    row("another package", "Image { source: '../../Other.vidtips/Resources/a.svg' }",
        reading("3:17", "Other.vidtips/Resources/a.svg"));
    row("path of the machine", "FontLoader { source: '/usr/share/a.ttf' }",
        reading("3:22", "/usr/share/a.ttf"));
    row("escaped", "Image { source: '%2e%2e/%2e%2e/Other.vidtips/Resources/a.svg' }",
        reading("3:17", "Other.vidtips/Resources/a.svg"));
    row("folder", "property Item i: Item { property url folder: 'file:///etc' }", reading("3:46", "/etc"));
    row("one of two", "Image { source: width > 3 ? 'https://a.example/b.png' : ('ftp://a.example/c.png') }",
        reading("3:29", "https://a.example/b.png") + '\n' + reading("3:57", "ftp://a.example/c.png"));
    row("fall back", "Image { source: vidtip.attribute('b') || 'http://a.example/b.png' }",
        reading("3:42", "http://a.example/b.png"));
    row("beginning", "Image { source: 'http://a.example/' + vidtip.attribute('b') + '.png' }",
        reading("3:17", "http://a.example/"));
    row("beginning of a path", "Image { source: '../../Other.vidtips/Resources/' + vidtip.attribute('b') }",
        reading("3:17", "Other.vidtips/Resources/"));
    row("beginning inside", "Image { source: '../Resources/' + vidtip.attribute('b') }", {});
    row("beginning of a path that is found",
        "Image { source: 'file://' + encodeURI(vidTipView.findResource('a.svg')) }", {});
    row("sum", "Image { source: '../..' + '/Other.vidtips/Resources/a.svg' }",
        reading("3:17", "Other.vidtips/Resources/a.svg"));
    row("variable", "property string server: 'http://a.example/'\nImage { source: server + 'b.png' }",
        reading("4:17", "http://a.example/b.png"));
    row("block", "Image { source: { if (width) return 'http://a.example/b.png'; return 'a.svg' } }",
        reading("3:37", "http://a.example/b.png"));
    row("resolved", "Image { source: Qt.resolvedUrl('http://a.example/b.png') }",
        reading("3:32", "http://a.example/b.png"));
    row("set by a script", "Image { id: it }\nMouseArea { onEntered: it.source = 'http://a.example/b.png' }",
        reading("4:36", "http://a.example/b.png"));
    row("state", "states: State { PropertyChanges { target: root; source: 'http://a.example/b.png' } }",
        reading("3:57", "http://a.example/b.png"));
    row("property of its own", "property url icon: 'http://a.example/b.png'",
        reading("3:20", "http://a.example/b.png"));
    row("property of another file", "Badge { badge: 'http://a.example/b.png' }",
        reading("3:16", "http://a.example/b.png"));
    row("property that stands for a source", "Badge { shown: 'http://a.example/b.png' }",
        reading("3:16", "http://a.example/b.png"));
    row("picture in a text", "Text { text: 'a <img width=\"9\" src=\"http://a.example/b.png\">' }",
        reading("3:14", "http://a.example/b.png"));
    row("document in a query", "XmlListModel { query: \"doc('http://a.example/b.xml')/a\" }",
        reading("3:23", "http://a.example/b.xml"));
    row("request",
        "MouseArea { onEntered: { var r = new XMLHttpRequest; r.open('get', 'file:///etc/hosts') } }",
        reading("3:68", "/etc/hosts"));
    row("request that writes",
        "MouseArea { onEntered: { var r = new XMLHttpRequest; r.open('PUT', 'new') } }",
        "3:54: XMLHttpRequest \"PUT\" [VT612]");
    row("request inside", "MouseArea { onEntered: { var r = new XMLHttpRequest; r.open('GET', 'a.xml') } }",
        {});
    row("component", "MouseArea { onEntered: Qt.createComponent('../../Other.vidtips/ui/Part.qml') }",
        reading("3:43", "Other.vidtips/ui/Part.qml"));
    row("made from a text",
        "MouseArea { onEntered: Qt.createQmlObject('import QtMultimedia 5.0; A { }', root) }",
        "3:24: importing QtMultimedia 5.0 [VT609]");
    row("quit", "MouseArea { onEntered: Qt.quit() }", "3:24: Qt.quit() [VT612]");
    row("exit by another name", "MouseArea { onEntered: { var f = Qt.exit; f(1) } }",
        "3:34: Qt.exit() [VT612]");
    row("database", "MouseArea { onEntered: openDatabaseSync('a', '1', 'b', 1) }",
        "3:24: openDatabaseSync() [VT612]");
    row("style sheet", "MouseArea { onEntered: vidTipView.setStyleSheet('') }",
        "3:24: setting a style sheet [VT612]");
    row("opened by Qt", "MouseArea { onEntered: Qt.openUrlExternally('http://a.example') }",
        "3:24: Qt.openUrlExternally(\"http://a.example\") goes to the host, which may refuse it [VT613]");
}

void tst_RestrictionCheck::readsCode()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, said);
    const Files files = filesWith(
        {{ownInterface,
          "import QtQuick 1.1\nItem { id: root; property url source; width: 9; height: 9\n" + body + "\n}"},
         {"Own.vidtips/ui/Badge.qml",
          "import QtQuick 1.1\nItem { property url badge; property alias shown: it.source; Image { id: it } "
          "}"}});
    const QString found = foundIn(CheckPackages(files))
                              .remove(QString(ownInterface) + ':')
                              .remove("warning: restricted content is refused ")
                              .remove("note: ");
    QCOMPARE(found, said);
}

void tst_RestrictionCheck::readsFiles_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QString>("said");
    const auto row = [](const char *name, const Files &files, const QString &place, const QString &what) {
        QTest::newRow(name) << files << place + ": warning: restricted content is refused " + what;
    };
    const QString xml = QString(ownControl) + ':';
    const QString code = QString(ownInterface) + ':';
    const auto entry = [](const QByteArray &attributes, const QByteArray &content = {}) {
        return Files{
            {ownControl,
             document("<vidtip key=\"a\" " + attributes + ">" + content + "</vidtip>", "search=\"Found\"")}};
    };
    row("picture", entry({}, R"(<picture source="../../Other.vidtips/Resources/a.svg"/>)"), xml + "2:27",
        "reading Other.vidtips/Resources/a.svg [VT413]");
    row("user interface", entry(R"(ui="../Other.vidtips/ui/Part.qml")"), xml + "2:17",
        "reading Other.vidtips/ui/Part.qml [VT413]");
    row("folder of resources", entry(R"(resources="../Other.vidtips/Resources" icon="a.svg")"), xml + "2:56",
        "reading Other.vidtips/Resources/a.svg [VT413]");
    row("folder of catalogues",
        {{ownControl, document("<vidtip key=\"a\"/>", "l10n_name=\"../Other.vidtips/l10n\"")},
         {"Other.vidtips/l10n/Vidtips_de_DE.qm", TestCatalogue("C").add("A", "B").bytes()}},
        xml + "1:10", "reading Other.vidtips/l10n/Vidtips_de_DE.qm [VT413]");
    row("key data", {{"Keys.xml", "<vidtipkeys>\n<key name=\"a\" icon=\"/etc/hosts\"/></vidtipkeys>"}},
        "Keys.xml:2:15", "reading /etc/hosts [VT413]");
    row("drawing that names another",
        {{"Own.vidtips/Resources/b.svg",
          R"(<svg xmlns="http://www.w3.org/2000/svg" width="1" height="1"><image href="b.png"/></svg>)"}},
        "Own.vidtips/Resources/b.svg", "drawings that name other files [VT414]");
    row("list of clips",
        {{ownControl, document("<vidtip key=\"a\"><clip source=\"b.m3u8\"/></vidtip>")},
         {"Own.vidtips/Resources/b.m3u8",
          "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n/tmp/b.ts\n#EXT-X-ENDLIST\n"}},
        "Own.vidtips/Resources/b.m3u8", "the format of this clip [VT511]");
    row("clip of another codec",
        {{"Own.vidtips/Resources/b.mkv", TestPackages::read(TestClips::onePicture())}},
        "Own.vidtips/Resources/b.mkv", "the format of this clip [VT511]");
    row("module", {{ownInterface, "import QtQuick 1.1\nimport Qt.labs.gestures 1.0\nItem { }"}}, code + "2:1",
        "importing Qt.labs.gestures 1.0 [VT609]");
    row("folder that is imported",
        {{ownInterface, "import QtQuick 1.1\nimport \"../../Other.vidtips/ui\" as O\nItem { }"}},
        code + "2:8", "reading Other.vidtips/ui [VT611]");
    row("import of a script", {{"Own.vidtips/ui/a.js", ".pragma library\n.import \"/etc/b.js\" as B\n"}},
        "Own.vidtips/ui/a.js:2:1", "reading /etc/b.js [VT611]");
    row("script",
        {{"Own.vidtips/ui/a.js", ".pragma library\nfunction a(b) { b.source = 'ftp://a.example' }"}},
        "Own.vidtips/ui/a.js:2:28", "reading ftp://a.example [VT611]");
    row("script that includes", {{"Own.vidtips/ui/a.js", "Qt.include('../../Other.vidtips/a.js')"}},
        "Own.vidtips/ui/a.js:1:12", "reading Other.vidtips/a.js [VT611]");
    row("plugin", {{"Own.vidtips/ui/clock/qmldir", "module clock\n# one\nplugin clock\n"}},
        "Own.vidtips/ui/clock/qmldir:3:1", "loading a plugin [VT610]");
    row("module's file", {{"Own.vidtips/ui/clock/qmldir", "Clock 1.0 ../../../Other.vidtips/ui/Part.qml"}},
        "Own.vidtips/ui/clock/qmldir:1:1", "reading Other.vidtips/ui/Part.qml [VT611]");
    row("module's module", {{"Own.vidtips/ui/clock/qmldir", "depends QtMultimedia 5.0"}},
        "Own.vidtips/ui/clock/qmldir:1:1", "importing QtMultimedia 5.0 [VT609]");
    row("compiled code", {{"Own.vidtips/ui/More.qmlc", "qv4cdata"}}, "Own.vidtips/ui/More.qmlc",
        "running compiled code [VT610]");
    row("borders", {{"Own.vidtips/ui/a.sci", "border.left: 1\nsource: http://a.example/b.png\n"}},
        "Own.vidtips/ui/a.sci:2:9", "reading http://a.example/b.png [VT611]");
    row("catalogue",
        {{"Own.vidtips/l10n/Vidtips_de_DE.qm",
          TestCatalogue("C").add("A", "B").addFile("/tmp/a.qm").bytes()}},
        "Own.vidtips/l10n/Vidtips_de_DE.qm", "this catalogue, which names others [VT706]");
}

void tst_RestrictionCheck::readsFiles()
{
    QFETCH(Files, files);
    QFETCH(QString, said);
    QCOMPARE(foundIn(CheckPackages(filesWith(files))), said);
}

// Code is judged for each package that it may be used by.
void tst_RestrictionCheck::judgesSearchedPackages()
{
    const Files files{{"Found.vidtips/ui/Part.qml",
                       "import QtQuick 1.1\nImage { source: '../../Own.vidtips/Resources/a.svg' }"}};
    QCOMPARE(saidOf(filesWith(files)),
             QString("Found.vidtips/ui/Part.qml:2:17: warning: restricted content is refused reading "
                     "Own.vidtips/Resources/a.svg [VT611]"));
}

void tst_RestrictionCheck::followsLinks()
{
    const CheckPackages packages(
        filesWith({{ownControl, document("<vidtip key=\"a\"><picture source=\"b.svg\"/></vidtip>")}}));
    QVERIFY(QFile::link(packages.filePath("Other.vidtips/Resources/a.svg"),
                        packages.filePath("Own.vidtips/Resources/b.svg")));
    const QString found = foundIn(packages);
    QVERIFY2(
        found.startsWith("Own.vidtips/Control/Own.xml:2:26: warning: restricted content is refused reading"),
        qPrintable(found));
}

// What no file says in so many words is seen when the tip is.
void tst_RestrictionCheck::showsTips()
{
    const Files files{{ownInterface,
                       "import QtQuick 1.1\nItem { width: 9; height: 9\nfunction address(a) { return a + "
                       "'//a.example/b' }\n"
                       "Image { source: address('http:') } }"}};
    QCOMPARE(saidOf(filesWith(files)),
             QString("Own.vidtips/ui/VidtipsUI.qml:4: warning: restricted content is refused reading "
                     "http://a.example/b [VT614]"));
    const Files others{{ownControl, document("<vidtip key=\"a\" ui=\"../Other.vidtips/ui/Part.qml\"/>")}};
    QCOMPARE(saidOf(filesWith(others)),
             QString("Own.vidtips/Control/Own.xml:2:17: warning: restricted content is refused reading "
                     "Other.vidtips/ui/Part.qml [VT413]"));
}

void tst_RestrictionCheck::previews()
{
    const CheckPackages packages(filesWith({{ownInterface,
                                             "import QtQuick 1.1\nItem { width: 9; height: 9\nImage { "
                                             "source: '../../Other.vidtips/Resources/a.svg' } }"}}));
    const QStringList screenshot{"preview", "--delay", "0", "--screenshot", "tip.png", "a", "."};
    const ToolCall open(screenshot, packages.path());
    QCOMPARE(open.errors, QString());
    QCOMPARE(open.exitCode, 0);
    const ToolCall restricted(screenshot + QStringList{"--restricted"}, packages.path());
    QVERIFY2(restricted.errors.startsWith(
                 "Own.vidtips/ui/VidtipsUI.qml:3: restricted content is refused reading "),
             qPrintable(restricted.errors));
    QCOMPARE(restricted.exitCode, 1);
}

QTEST_MAIN(tst_RestrictionCheck)

#include "tst_restrictioncheck.moc"
