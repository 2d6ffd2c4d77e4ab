#include "CheckPackages.h"
#include "findings/FindingCatalogue.h"
#include "shared/Content.h"
#include "shared/Diagnostics.h"
#include "trial/Trial.h"
#include "trial/TrialFindings.h"

#include <QtTest/QtTest>

/** Shows tips that have a mistake, and tips that nearly have it. */
class tst_Trial : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void plans();
    void findings_data();
    void findings();
    void looksAtWhatIsShownLater();
    void saysThatATipIsNotShown();
    void waitsUntilNothingMoves();
    void leavesTipsAsTheyAre();
    void everyCodeHasARow();

private:
    QStringList m_codes;
};

namespace {

constexpr char head[] = "import QtQuick 1.1\nimport com.corvale.vidtips.qml 1.0\n";
constexpr char arabic[] = "\xd9\x86\xd8\xb5 \xd8\xb9\xd8\xb1\xd8\xa8\xd9\x8a"; // "Arabic text"

QString shortLine(const Finding &finding)
{
    return QString("%1 %2:%3: %4")
        .arg(finding.code, QFileInfo(finding.file).fileName())
        .arg(finding.position.line)
        .arg(finding.message);
}

// Shows every tip by the full user interface.
QStringList shown(const Files &files)
{
    const CheckPackages packages(files);
    const QString folder = QDir::currentPath();
    QDir::setCurrent(packages.path());
    Content content;
    content.load({packages.path()});
    TrialFindings found;
    TrialTip tip;
    int number = 0;
    Trial trial(content, {}, [&](const Finding &finding) { found.add(finding, tip, number); });
    const QVector<TrialTip> plan = TrialPlan::of(content, "en_US");
    for (const TrialTip &next : plan) {
        if (next.isSimple)
            continue;
        tip = next;
        ++number;
        trial.show(tip);
    }
    Findings findings;
    found.addTo(findings);
    QStringList lines;
    const QVector<Finding> sorted = findings.sorted();
    for (const Finding &finding : sorted)
        lines << shortLine(finding);
    QDir::setCurrent(folder);
    return lines;
}

void row(const char *name, const QByteArray &qml, const QString &expected = {},
         const QByteArray &entry = "<vidtip key=\"a\" title=\"A title of many words\"/>",
         const QByteArray &attributes = {})
{
    Files files = controlWith(entry, attributes);
    files.insert(fullInterface, head + qml);
    QTest::newRow(name) << files << expected;
}

// In an item of 300 x 100 pixels, on white.
void rowOnWhite(const char *name, const QByteArray &qml, const QString &expected = {},
                const QByteArray &entry = "<vidtip key=\"a\" title=\"A title of many words\"/>",
                const QByteArray &attributes = {})
{
    row(name, "Rectangle { width: 300; height: 100; color: 'white'\n" + qml + " }", expected, entry,
        attributes);
}

void addFitRows()
{
    const QString cut = "VT902 Tools.xml:2: the text \"A title of many words\" is cut";
    rowOnWhite("elided", "Text { width: 60; elide: Text.ElideRight; text: vidtip.attribute('title') }",
               cut + " short in Tools.vidtips/ui/VidtipsUI.qml:4:1 (\"a\", en_US)");
    rowOnWhite("not elided", "Text { width: 280; elide: Text.ElideRight; text: vidtip.attribute('title') }");
    rowOnWhite("elided until it has room",
               "Text { id: t; width: 60; elide: Text.ElideRight; text: vidtip.attribute('title')\n"
               "Timer { running: true; interval: 30; onTriggered: t.width = 280 } }");
    rowOnWhite("too many lines",
               "Text { width: 60; wrapMode: Text.Wrap; maximumLineCount: 2; elide: Text.ElideRight\n"
               "text: vidtip.attribute('title') }",
               cut + " short");
    rowOnWhite("cut off by its holder",
               "Item { width: 200; height: 9; clip: true; Text { text: vidtip.attribute('title') } }",
               cut + ": it takes");
    rowOnWhite("not cut off",
               "Item { width: 200; height: 40; clip: true; Text { text: vidtip.attribute('title') } }");
    rowOnWhite("not seen", "Item { width: 200; clip: true; Text { text: vidtip.attribute('title') } }");
    rowOnWhite("invisible",
               "Text { width: 60; visible: false; elide: Text.ElideRight; text: vidtip.attribute('title') }");
    rowOnWhite("over the edge of the tip", "Text { x: 260; text: vidtip.attribute('title') }",
               cut + ": it takes");
    rowOnWhite("to the edge of the tip",
               "Text { anchors.right: parent.right; text: vidtip.attribute('title') }");
    rowOnWhite("out of sight for now",
               "Flickable { width: 200; height: 9; clip: true; contentHeight: 50\n"
               "Text { text: vidtip.attribute('title') } }");
    rowOnWhite("words of the user interface",
               "Text { width: 20; elide: Text.ElideRight; text: 'Of its own words' }",
               "VT902 VidtipsUI.qml:4: the text \"Of its own words\" is cut short (\"a\", en_US)");
    rowOnWhite("higher than its item",
               "Text { width: 60; height: 12; wrapMode: Text.Wrap; text: vidtip.attribute('title') }",
               "VT903 Tools.xml:2: the text \"A title of many words\" is larger than its item: it takes");
    rowOnWhite("wider than its item", "Text { width: 60; text: vidtip.attribute('title') }",
               "VT903 Tools.xml:2: the text \"A title of many words\" is larger than its item: it takes");
    rowOnWhite("as high as it takes",
               "Text { width: 60; wrapMode: Text.Wrap; text: vidtip.attribute('title') }");
    row("wider than a small screen", "Rectangle { width: 1281; height: 100 }",
        "VT904 VidtipsUI.qml:0: the tip is 1281 x 100 pixels, and small screens have 1280 x 720 (\"a\", "
        "en_US)");
    row("higher than a small screen", "Rectangle { width: 100; height: 721 }",
        "VT904 VidtipsUI.qml:0: the tip is 100 x 721 pixels");
    row("as large as a small screen", "Rectangle { width: 1280; height: 720 }");
}

void addLetterRows()
{
    const auto entry = [](const char *words) {
        return QByteArray("<vidtip key=\"a\"><summary>\n") + words + "</summary></vidtip>";
    };
    const QByteArray text = "Text { text: vidtip.childElement('summary').content }";
    rowOnWhite("character of no font", text,
               "VT905 Tools.xml:3: no font has \"\xf4\x8f\xbf\xbd\" (U+10FFFD) in "
               "Tools.vidtips/ui/VidtipsUI.qml:4:1",
               entry("Plan \xf4\x8f\xbf\xbd"));
    rowOnWhite("characters of other fonts", text, {},
               entry("Gr\xc3\xb6\xc3\x9f"
                     "e \xe2\x80\xa6 \xc2\xb5 a\xcc\x81"));
    const QString wrong = "VT906 VidtipsUI.qml:4: a text that is read from right to left stands at the left "
                          "of its place (\"a\", ar_EG)";
    const QByteArray words = "text: vidtip.childElement('summary').content";
    const auto direction = [&](const char *name, const QByteArray &qml, const QString &expected = {},
                               const char *content = arabic, const char *locale = "locale=\"ar_EG\"") {
        rowOnWhite(name, qml, expected, entry(content), locale);
    };
    direction("Arabic at the left of its item",
              "Text { width: 280; horizontalAlignment: Text.AlignLeft; " + words + " }", wrong);
    direction("Arabic as it stands by itself", "Text { width: 280; " + words + " }");
    direction("mirrored",
              "Text { LayoutMirroring.enabled: true; width: 280; horizontalAlignment: Text.AlignLeft; "
                  + words + " }");
    direction("mirrored by what holds it",
              "Item { width: 280; height: 50; LayoutMirroring.enabled: true; "
              "LayoutMirroring.childrenInherit: true\n"
              "Item { width: 280; Text { width: 280; horizontalAlignment: Text.AlignLeft; "
                  + words + " } } }");
    direction("mirrored as it stands by itself",
              "Text { LayoutMirroring.enabled: true; width: 280; " + words + " }");
    direction("Arabic over whole lines",
              "Text { width: 280; horizontalAlignment: Text.AlignJustify; wrapMode: Text.Wrap; " + words
                  + " }");
    direction("Arabic in the middle",
              "Text { width: 280; horizontalAlignment: Text.AlignHCenter; " + words + " }");
    direction("Arabic at the left of the tip", "Text { x: 8; " + words + " }", wrong);
    direction("Arabic at the right of the tip", "Text { anchors.right: parent.right; " + words + " }");
    direction("Arabic beside a text",
              "Text { x: 8; " + words + " }\nText { anchors.right: parent.right; " + words + " }");
    direction("English in an Arabic tip", "Text { x: 8; " + words + " }", {}, "Plan");
    direction("Arabic in an English tip", "Text { x: 8; " + words + " }", {}, arabic, "locale=\"en_US\"");
}

void addColourRows()
{
    const auto grey = [](const char *name, const QByteArray &properties, const QString &expected = {}) {
        rowOnWhite(name,
                   "Text { text: 'Grey'; "
                       + (properties.contains("font") ? properties : properties + "; font.pixelSize: 13")
                       + " }",
                   expected);
    };
    const QString faint = "VT907 VidtipsUI.qml:4: the contrast of a text is ";
    grey("too light", "color: '#777777'", faint + "4.48, and 4.5 is needed: #777777 on #ffffff");
    grey("much too light", "color: '#949494'",
         faint + "3.03, and 4.5 is needed: #949494 on #ffffff (\"a\", en_US)");
    grey("dark enough", "color: '#767676'");
    grey("too transparent", "color: 'black'; opacity: 0.4",
         faint + "2.85, and 4.5 is needed: #999999 on #ffffff");
    grey("transparent, and dark enough", "color: 'black'; opacity: 0.6");
    grey("colour that is seen through", "color: '#66000000'", faint + "2.8");
    grey("not seen at all", "color: 'white'", faint + "1.0");
    grey("large", "color: '#949494'; font.pixelSize: 24");
    grey("large by its scale", "color: '#949494'; scale: 2; transformOrigin: Item.TopLeft");
    grey("large and bold", "color: '#949494'; font { pixelSize: 19; bold: true }");
    grey("large, not bold", "color: '#949494'; font.pixelSize: 19", faint);
    grey("large and too light", "color: '#aaaaaa'; font.pixelSize: 24", faint + "2.32, and 3.0 is needed");
    grey("with an outline", "color: 'white'; style: Text.Outline; styleColor: 'black'");
    rowOnWhite("word in a colour of its own",
               "Text { text: '<b>Black</b> and <font color=\"#949494\">grey</font>'; color: 'black' }",
               faint + "3.03");
    rowOnWhite("word in a dark colour of its own",
               "Text { text: '<b>Black</b> and <font color=\"#005090\">blue</font>'; color: 'black' }");
    rowOnWhite("rich text in its item's colour",
               "Text { text: '<b>Grey</b>'; color: '#949494'; textFormat: Text.RichText }", faint + "3.03");
    rowOnWhite(
        "covered",
        "Text { text: 'Grey'; color: '#949494' }\nRectangle { width: 100; height: 50; color: '#eeeeee' }");
    rowOnWhite("over a picture that is half dark",
               "Rectangle { x: 20; width: 100; height: 50; color: '#303030' }\nText { text: 'Longer words'; "
               "color: '#202020' }",
               "VT907 VidtipsUI.qml:5: the contrast of a text is 1.2");
    rowOnWhite("over a dark line",
               "Rectangle { y: 6; width: 100; height: 1; color: '#303030' }\nText { text: 'Longer words'; "
               "color: '#202020' }");
    rowOnWhite("colour of the palette on a colour of its own",
               "SystemPalette { id: p }\nText { text: 'Words'; color: p.windowText }",
               "VT907 VidtipsUI.qml:5: the contrast of a text is 1.22, and 4.5 is needed: #e3e9f0 on #ffffff "
               "(\"a\", "
               "en_US, dark)");
    row("both of the palette",
        "Rectangle { width: 300; height: 100; color: p.window; SystemPalette { id: p }\n"
        "Text { text: 'Words'; color: p.windowText } }");
}

void addPressRows()
{
    const QString small = "VT908 VidtipsUI.qml:4: what can be pressed here is ";
    const QByteArray go = "VTAccessible.name: 'Go'; onClicked: print(1)";
    rowOnWhite("small area", "MouseArea { width: 40; height: 20; " + go + " }",
               small + "40 x 20 pixels, and 24 x 24 are needed (\"a\", en_US)");
    rowOnWhite("area that is large enough", "MouseArea { width: 24; height: 24; " + go + " }");
    rowOnWhite("small area, enlarged", "MouseArea { width: 12; height: 12; scale: 2; " + go + " }");
    rowOnWhite("area for hovering",
               "MouseArea { width: 10; height: 10; hoverEnabled: true; onEntered: print(1) }");
    rowOnWhite("area that is ignored",
               "MouseArea { width: 10; height: 10; VTAccessible.ignored: true; onClicked: print(1) }");
    rowOnWhite(
        "small part of a button",
        "Item { width: 40; height: 40; VTAccessible.role: VTAccessible.Button; VTAccessible.name: 'Go'\n"
        "MouseArea { width: 16; height: 16; onClicked: print(1) } }",
        small + "16 x 16");
    rowOnWhite("name that is empty",
               "Item { property string word: ''; width: 40; height: 40\n"
               "MouseArea { anchors.fill: parent; VTAccessible.name: parent.word; onClicked: print(1) } }",
               "VT909 VidtipsUI.qml:5: what can be pressed here has no name (\"a\", en_US)");
    rowOnWhite("name that is there",
               "Item { property string word: 'Go'; width: 40; height: 40\n"
               "MouseArea { anchors.fill: parent; VTAccessible.name: parent.word; onClicked: print(1) } }");
}

void addFileRows()
{
    rowOnWhite("picture that is missing", "Image { source: vidtip.attribute('icon') + '.png' }",
               "VT901 VidtipsUI.qml:4: there is no \"Tools.vidtips/ui/.png\" (\"a\", en_US");
    rowOnWhite("picture that the content names",
               "Image { source: 'file:///none/' + vidtip.attribute('icon') }",
               "VT901 Tools.xml:2: there is no \"/none/none.png\" in Tools.vidtips/ui/VidtipsUI.qml:4:1",
               "<vidtip key=\"a\" icon=\"none.png\"/>");
    rowOnWhite("no picture", "Image { source: vidtip.attribute('icon') }");
    rowOnWhite("part that is missing", "Loader { source: 'No' + 'ne.qml' }",
               "VT901 VidtipsUI.qml:4: there is no \"Tools.vidtips/ui/None.qml\"");
    rowOnWhite("complaint of one tip", "property string a: vidtip.childElement('b').content",
               "VT607 VidtipsUI.qml:4: ", "<vidtip key=\"a\"><b>B</b></vidtip>\n<vidtip key=\"b\"/>");
}

} // namespace

void tst_Trial::initTestCase()
{
    Diagnostics::capture();
}

void tst_Trial::plans()
{
    const CheckPackages packages(packageWith(
        {{control, document("<vidtip key=\"a\"/>")},
         {"Tools.vidtips/Control/German.xml", document("<vidtip key=\"b\"/>", "locale=\"de_DE\"")}}));
    Content content;
    content.load({packages.path()});
    QStringList lines;
    const QVector<TrialTip> plan = TrialPlan::of(content, "en_US");
    for (const TrialTip &tip : plan)
        lines << QString("%1 %2%3%4")
                     .arg(tip.locale, tip.key, tip.isSimple ? " simple" : "", tip.isDark ? " dark" : "");
    QCOMPARE(lines,
             QStringList({"de_DE a", "de_DE b", "de_DE a simple", "de_DE b simple", "de_DE a dark",
                          "de_DE b dark", "de_DE a simple dark", "de_DE b simple dark", "en_US a",
                          "en_US a simple", "en_US a dark", "en_US a simple dark"}));
    QVERIFY(plan.at(0).sharesStage(plan.at(1)));
    QVERIFY(!plan.at(1).sharesStage(plan.at(2)));
}

void tst_Trial::findings_data()
{
    QTest::addColumn<Files>("files");
    QTest::addColumn<QString>("expected");
    addFitRows();
    addLetterRows();
    addColourRows();
    addPressRows();
    addFileRows();
}

void tst_Trial::findings()
{
    QFETCH(Files, files);
    QFETCH(QString, expected);
    const QStringList lines = shown(files);
    QVERIFY2(lines.size() == (expected.isEmpty() ? 0 : 1), qPrintable(lines.join('\n')));
    QVERIFY2(lines.join(QString()).startsWith(expected), qPrintable(lines.join('\n')));
    m_codes << expected.left(5);
}

void tst_Trial::looksAtWhatIsShownLater()
{
    const QByteArray later =
        "Rectangle { id: root; width: 300; height: 100; color: 'white'\n"
        "Timer { interval: 900; running: true; onTriggered: grow.start() }\n"
        "NumberAnimation { id: grow; target: root; property: 'height'; to: 721; duration: 300 } }";
    const QStringList lines = shown(packageWith({{fullInterface, head + later}}));
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().startsWith("VT904 VidtipsUI.qml:0: the tip is 300 x 721"),
             qPrintable(lines.first()));
}

// Also when it goes while it is looked at.
void tst_Trial::saysThatATipIsNotShown()
{
    const QByteArray leaving =
        "Rectangle { width: 300; height: 100\nTimer { running: true; interval: 30; onTriggered: "
        "vidTipView.loadQML(String(Qt.resolvedUrl('Broken.qml')).replace('file://', '')) } }";
    const QStringList lines =
        shown(packageWith({{fullInterface, head + leaving},
                           {"Tools.vidtips/ui/Broken.qml", "import QtQuick 1.1\nItem { txt: 1 }"}}));
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().startsWith("VT601 Broken.qml:2: "), qPrintable(lines.first()));
    const QStringList unshown = shown(packageWith({{fullInterface, "import QtQuick 1.1\nQtObject { }"}}));
    QVERIFY2(unshown.filter("VT900 VidtipsUI.qml:0: the tip is not shown").size() == 1,
             qPrintable(unshown.join('\n')));
    QCOMPARE(shown(controlWith("<vidtip key=\"a\" ui=\"ui/SimpleTooltip.qml\"/>")), QStringList());
    m_codes << "VT900";
}

// What is on its way is not what users read.
void tst_Trial::waitsUntilNothingMoves()
{
    const QByteArray fading = "Rectangle { width: 300; height: 100; color: 'white'\n"
                              "Text { id: t; text: 'Words'; opacity: 0\n"
                              "NumberAnimation on opacity { to: 1; duration: 400 } } }";
    QCOMPARE(shown(packageWith({{fullInterface, head + fading}})), QStringList());
    const QByteArray pulsing =
        "Rectangle { width: 300; height: 100; color: 'white'\n"
        "Text { text: 'Words'; color: '#949494'\n"
        "NumberAnimation on x { from: 0; to: 200; duration: 900; loops: Animation.Infinite } } }";
    QCOMPARE(shown(packageWith({{fullInterface, head + pulsing}})).size(), 1);
}

// Looking behind the texts is nothing that their user interface could notice.
void tst_Trial::leavesTipsAsTheyAre()
{
    const QByteArray heedful =
        "Rectangle { width: 300; height: 100; color: 'white'\n"
        "Text { id: t; text: 'Words'; color: '#999999'; property int n: 0\n"
        "onOpacityChanged: root.fail(); onVisibleChanged: root.fail(); onColorChanged: root.fail() } }";
    const QStringList lines = shown(packageWith({{fullInterface, head + heedful}}));
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().startsWith("VT907 "), qPrintable(lines.first()));
}

void tst_Trial::everyCodeHasARow()
{
    if (QTest::currentTestFailed() || m_codes.isEmpty())
        return;
    const QStringList codes = FindingCatalogue::instance().codes();
    for (const QString &code : codes) {
        if (code.startsWith("VT9"))
            QVERIFY2(m_codes.contains(code), qPrintable(code));
    }
}

QTEST_MAIN(tst_Trial)
#include "tst_trial.moc"
