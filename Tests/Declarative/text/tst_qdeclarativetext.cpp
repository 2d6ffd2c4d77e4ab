#include "HeldServer.h"
#include "PaintedPart.h"
#include "TestPaths.h"
#include "WatchedScene.h"

#include <QtCore/QBuffer>
#include <QtCore/QMargins>
#include <QtQuick/QQuickImageProvider>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

Q_DECLARE_METATYPE(QMargins)

class tst_QDeclarativeText : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private slots:
    void initialValues();
    void enumerationsReadAsIntegers();
    void choosesFormat_data();
    void choosesFormat();
    void styledMarkup_data();
    void styledMarkup();
    void styledSizes();
    void breaksLines_data();
    void breaksLines();
    void elides_data();
    void elides();
    void elidesAgainWhenNarrowed();
    void truncation_data();
    void truncation();
    void lineHeights_data();
    void lineHeights();
    void alignsHorizontally_data();
    void alignsHorizontally();
    void alignsVertically_data();
    void alignsVertically();
    void alignmentFollowsText();
    void implicitSizeOfSizedText();
    void widthGivenBack();
    void announcesOnlyChanges();
    void drawsStyles_data();
    void drawsStyles();
    void drawsColors();
    void clipsItself();
    void reachesBeyondItsWidth();
    void followsLinks();
    void leavesPressesElsewhere();
    void forgetsLinksOfAnOldText();
    void showsPictures_data();
    void showsPictures();
    void reportsMissingPictures();
    void loadsLatePictures();
    void survivesOddText_data();
    void survivesOddText();
    void nestedTables_data();
    void nestedTables();
    void drawsOnlyWhatIsExposed_data();
    void drawsOnlyWhatIsExposed();

private:
    static QRect inked(const QImage &, QRgb background = 0xffffffff);
};

void tst_QDeclarativeText::initMain()
{
    qputenv("FONTCONFIG_FILE", QFile::encodeName(TestPaths::source("Tests/Declarative/gallery/fonts.conf")));
}

/** Returns the smallest rectangle around everything that is not background. */
QRect tst_QDeclarativeText::inked(const QImage &image, QRgb background)
{
    QRect rect;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != background)
                rect |= QRect(x, y, 1, 1);
        }
    }
    return rect;
}

void tst_QDeclarativeText::initialValues()
{
    WatchedScene scene;
    QVERIFY(scene.load("Text {}"));
    QCOMPARE(scene.value("text").toString(), QString());
    QCOMPARE(scene.value("color").value<QColor>(), QColor(Qt::black));
    QVERIFY(!scene.value("styleColor").value<QColor>().isValid());
    QCOMPARE(scene.value("lineCount").toInt(), 1);
    QCOMPARE(scene.value("maximumLineCount").toInt(), std::numeric_limits<int>::max());
    QCOMPARE(scene.value("truncated").toBool(), false);
    QCOMPARE(scene.value("paintedWidth").toReal(), 0.0);
    QCOMPARE(scene.value("paintedHeight").toInt(), QFontMetrics(QGuiApplication::font()).height());
    QCOMPARE(scene.value("implicitHeight"), scene.value("paintedHeight"));
    QCOMPARE(scene.evaluate("[Text.AutoText, Text.StyledText, Text.ElideNone, Text.Wrap].join()").toString(),
             QStringLiteral("2,4,3,4"));
}

void tst_QDeclarativeText::enumerationsReadAsIntegers()
{
    WatchedScene scene;
    QVERIFY(scene.load("Text {}"));
    for (const char *name : {"horizontalAlignment", "verticalAlignment", "textFormat", "elide", "style",
                             "lineHeightMode", "wrapMode"})
        QCOMPARE(scene.value(name).userType(), int(QMetaType::Int));
}

void tst_QDeclarativeText::choosesFormat_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("sameAs"); // plain text of the same width, none if it is not to be compared
    QTest::newRow("plain keeps markup") << "PlainText"
                                        << "<b></b>a"
                                        << "<b></b>a";
    QTest::newRow("automatic sees markup") << "AutoText"
                                           << "<i></i>plain"
                                           << "plain";
    QTest::newRow("automatic sees no markup") << "AutoText"
                                              << "a < b & c"
                                              << "a < b & c";
    QTest::newRow("rich knows entities") << "RichText"
                                         << "a &lt; b"
                                         << "a < b";
    QTest::newRow("rich takes a line break for a space") << "RichText"
                                                         << "a\\nb"
                                                         << "a b";
    QTest::newRow("styled leaves out line breaks") << "StyledText"
                                                   << "a\\nb"
                                                   << "ab";
}

void tst_QDeclarativeText::choosesFormat()
{
    QFETCH(QString, format);
    QFETCH(QString, text);
    QFETCH(QString, sameAs);
    WatchedScene scene;
    const QString body =
        QStringLiteral("Item { property bool same: Math.abs(a.paintedWidth - b.paintedWidth) <= 1\n"
                       "Text { id: a; textFormat: Text.%1; text: '%2' }\n"
                       "Text { id: b; textFormat: Text.PlainText; text: '%3' } }");
    QVERIFY(scene.load(body.arg(format, text, sameAs).toUtf8()));
    QVERIFY(scene.value("same").toBool());
}

void tst_QDeclarativeText::styledMarkup_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("sameAs");
    QTest::addColumn<int>("lines");
    QTest::newRow("none") << "word"
                          << "word" << 1;
    QTest::newRow("break") << "one<br>two"
                           << "one" << 2;
    QTest::newRow("closed break") << "one<br/>two"
                                  << "one" << 2;
    QTest::newRow("entities") << "&lt;&amp;&gt;&quot;"
                              << "<&>\\\"" << 1;
    QTest::newRow("unknown entity") << "&nix;"
                                    << "&nix;" << 1;
    QTest::newRow("lone ampersand") << "a & b"
                                    << "a & b" << 1;
    QTest::newRow("unknown tags") << "<u>a</u><h3>b</h3>"
                                  << "ab" << 1;
    QTest::newRow("link") << "<a href='x'>link</a>"
                          << "link" << 1;
    QTest::newRow("upper case") << "<BR>x"
                                << "x" << 2;
    QTest::newRow("tag never closed by >") << "a <b"
                                           << "a <b" << 1;
    QTest::newRow("closing tag alone") << "</b>x"
                                       << "x" << 1;
    QTest::newRow("closed out of order") << "<u><i></u></i>x"
                                         << "x" << 1;
    QTest::newRow("empty tag") << "a<>b"
                               << "ab" << 1;
    QTest::newRow("font without attributes") << "<font>x</font>"
                                             << "x" << 1;
    QTest::newRow("font of no colour") << "<font color='nocolour'>x</font>"
                                       << "x" << 1;
    QTest::newRow("size beyond the scale") << "<font size='900'>x</font>"
                                           << "x" << 1;
}

void tst_QDeclarativeText::styledMarkup()
{
    QFETCH(QString, text);
    QFETCH(QString, sameAs);
    QFETCH(int, lines);
    WatchedScene scene;
    const QString body =
        QStringLiteral("Item { property int lines: a.lineCount\nproperty real first: a.paintedWidth\n"
                       "property real second: b.paintedWidth\n"
                       "Text { id: a; font.pixelSize: 20; textFormat: Text.StyledText; text: \"%1\" }\n"
                       "Text { id: b; font.pixelSize: 20; textFormat: Text.PlainText; text: \"%2\" } }");
    QVERIFY(scene.load(body.arg(text, sameAs).toUtf8()));
    QCOMPARE(scene.value("lines").toInt(), lines);
    QCOMPARE(scene.value("first").toReal(), scene.value("second").toReal());
}

void tst_QDeclarativeText::styledSizes()
{
    WatchedScene scene;
    QVERIFY(
        scene.load("Item { property real small: a.paintedWidth; property real large: b.paintedWidth\n"
                   "property real bold: c.paintedWidth\n"
                   "Text { id: a; font.pointSize: 20; textFormat: Text.StyledText; text: 'wide' }\n"
                   "Text { id: b; font.pointSize: 20; textFormat: Text.StyledText; "
                   "text: '<font size=\"6\">wide</font>' }\n"
                   "Text { id: c; font.pointSize: 20; textFormat: Text.StyledText; text: '<b>wide</b>' } }"));
    const qreal small = scene.value("small").toReal();
    QVERIFY(qAbs(scene.value("large").toReal() - 2 * small) <= 3);
    QVERIFY(scene.value("bold").toReal() > small);
}

void tst_QDeclarativeText::breaksLines_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("lines");
    QTest::newRow("none") << QByteArray("text: 'aaa bbb ccc'; width: 40") << 1;
    QTest::newRow("no width") << QByteArray("text: 'aaa bbb ccc'; wrapMode: Text.Wrap") << 1;
    QTest::newRow("words") << QByteArray("text: 'aaa bbb ccc'; width: 40; wrapMode: Text.WordWrap") << 3;
    QTest::newRow("one long word") << QByteArray("text: 'aaabbbccc'; width: 40; wrapMode: Text.WordWrap")
                                   << 1;
    QTest::newRow("anywhere") << QByteArray("text: 'aaabbbccc'; width: 40; wrapMode: Text.WrapAnywhere") << 3;
    QTest::newRow("boundary or anywhere")
        << QByteArray("text: 'aaabbbccc'; width: 40; wrapMode: Text.Wrap") << 3;
    QTest::newRow("breaks") << QByteArray("text: 'a\\nb\\n\\nc'") << 4;
    QTest::newRow("limited") << QByteArray("text: 'a\\nb\\nc'; maximumLineCount: 2") << 2;
    QTest::newRow("limit not reached") << QByteArray("text: 'a\\nb'; maximumLineCount: 5") << 2;
    QTest::newRow("rich counts as one") << QByteArray("text: '<p>a</p><p>b</p>'") << 1;
    QTest::newRow("no width at all") << QByteArray("text: 'aaa bbb'; width: 0; wrapMode: Text.WordWrap") << 2;
    QTest::newRow("negative width") << QByteArray("text: 'aaa'; width: -5") << 1;
}

void tst_QDeclarativeText::breaksLines()
{
    QFETCH(QByteArray, properties);
    QFETCH(int, lines);
    WatchedScene scene;
    QVERIFY(scene.load("Text { font.family: 'DejaVu Sans'; font.pixelSize: 20; " + properties + " }"));
    QCOMPARE(scene.value("lineCount").toInt(), lines);
}

void tst_QDeclarativeText::elides_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<QByteArray>("shown");
    QTest::addColumn<bool>("truncated");
    const QByteArray base("width: 70; text: 'abcdefghij'; ");
    QTest::newRow("right") << base + "elide: Text.ElideRight" << QByteArray("abcd\u2026") << true;
    QTest::newRow("left") << base + "elide: Text.ElideLeft" << QByteArray("\u2026fghij") << true;
    QTest::newRow("middle") << base + "elide: Text.ElideMiddle" << QByteArray("ab\u2026ij") << true;
    QTest::newRow("none") << base << QByteArray("abcdefghij") << false;
    QTest::newRow("fits") << QByteArray("width: 70; text: 'abc'; elide: Text.ElideRight") << QByteArray("abc")
                          << false;
    QTest::newRow("no width") << QByteArray("text: 'abcdefghij'; elide: Text.ElideRight")
                              << QByteArray("abcdefghij") << false;
    QTest::newRow("first alternative")
        << QByteArray("width: 300; text: 'abcdefghij\\u009Cabc'; elide: Text.ElideRight")
        << QByteArray("abcdefghij") << true;
    QTest::newRow("second alternative")
        << QByteArray("width: 70; text: 'abcdefghij\\u009Cabc'; elide: Text.ElideRight") << QByteArray("abc")
        << true;
    QTest::newRow("wrapping gives way")
        << base + "elide: Text.ElideRight; wrapMode: Text.WrapAnywhere" << QByteArray("abcd\u2026") << true;
    QTest::newRow("line breaks are not elided")
        << QByteArray("width: 70; text: 'abcdefghij\\na'; elide: Text.ElideRight")
        << QByteArray("abcdefghij\\na") << false;
    QTest::newRow("styled text is not elided")
        << base + "elide: Text.ElideRight; textFormat: Text.StyledText" << QByteArray("abcdefghij") << false;
    QTest::newRow("the last of several lines")
        << QByteArray("width: 70; text: 'abc def ghi jkl'; elide: Text.ElideRight; wrapMode: Text.WordWrap; "
                      "maximumLineCount: 1")
        << QByteArray("abc\u2026") << true;
    QTest::newRow("several lines, middle")
        << QByteArray("width: 70; text: 'abc def ghi jkl'; elide: Text.ElideMiddle; wrapMode: Text.WordWrap; "
                      "maximumLineCount: 1")
        << QByteArray("abc") << true;
    QTest::newRow("several lines fit") << QByteArray("width: 70; text: 'abc def'; elide: Text.ElideRight; "
                                                     "wrapMode: Text.WordWrap; maximumLineCount: 2")
                                       << QByteArray("abc\\ndef") << false;
    QTest::newRow("no room") << QByteArray("width: 0; text: 'abc'; elide: Text.ElideRight") << QByteArray("")
                             << true;
}

void tst_QDeclarativeText::elides()
{
    QFETCH(QByteArray, properties);
    QFETCH(QByteArray, shown);
    QFETCH(bool, truncated);
    const QByteArray font = "font.family: 'DejaVu Sans'; font.pixelSize: 20; ";
    const QByteArray page = "Rectangle { width: 320; height: 60; Text { objectName: 'text'; " + font;
    WatchedScene elided, plain;
    QVERIFY(elided.load(page + properties + " } }"));
    QCOMPARE(elided.item("text")->property("truncated").toBool(), truncated);
    QVERIFY(plain.load(page + "text: '" + shown + "' } }"));
    QCOMPARE(elided.picture(), plain.picture());
}

void tst_QDeclarativeText::elidesAgainWhenNarrowed()
{
    WatchedScene scene;
    QVERIFY(
        scene.load("Text { width: 500; elide: Text.ElideRight; font.pixelSize: 20; text: 'some words' }"));
    QCOMPARE(scene.value("truncated").toBool(), false);
    const qreal whole = scene.value("paintedWidth").toReal();
    QSignalSpy truncated(scene.root(), SIGNAL(truncatedChanged()));
    scene.evaluate("width = 50");
    QVERIFY(scene.value("truncated").toBool());
    QVERIFY(scene.value("paintedWidth").toReal() <= 50);
    scene.evaluate("width = 500");
    QCOMPARE(scene.value("paintedWidth").toReal(), whole);
    // Room alone does not take it back, a text that fits does.
    QVERIFY(scene.value("truncated").toBool());
    scene.evaluate("text = 'word'");
    QCOMPARE(scene.value("truncated").toBool(), false);
    QCOMPARE(truncated.count(), 2);
}

void tst_QDeclarativeText::truncation_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<bool>("truncated");
    QTest::addColumn<int>("lines");
    QTest::newRow("as loaded") << QByteArray("0") << true << 2;
    QTest::newRow("more lines") << QByteArray("maximumLineCount = 3") << true << 3;
    QTest::newRow("enough lines") << QByteArray("maximumLineCount = 4") << false << 4;
    QTest::newRow("no limit") << QByteArray("maximumLineCount = undefined") << false << 4;
    QTest::newRow("shorter text") << QByteArray("text = 'a'") << false << 1;
    QTest::newRow("empty text") << QByteArray("text = ''") << false << 1;
    QTest::newRow("rich text") << QByteArray("text = '<b>a</b><br>b<br>c'") << false << 1;
    QTest::newRow("no lines at all") << QByteArray("maximumLineCount = 0") << true << 1;
    QTest::newRow("negative limit") << QByteArray("maximumLineCount = -7") << true << 1;
}

void tst_QDeclarativeText::truncation()
{
    QFETCH(QByteArray, script);
    WatchedScene scene;
    QVERIFY(scene.load("Text { maximumLineCount: 2; text: 'a\\nb\\nc\\nd' }"));
    scene.evaluate(script);
    QTEST(scene.value("truncated").toBool(), "truncated");
    QTEST(scene.value("lineCount").toInt(), "lines");
}

void tst_QDeclarativeText::lineHeights_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("height");
    QTest::newRow("proportional") << QByteArray("lineHeight: 2") << 102;
    QTest::newRow("rounded up") << QByteArray("lineHeight: 1.3") << 67;
    QTest::newRow("fixed") << QByteArray("lineHeight: 30; lineHeightMode: Text.FixedHeight") << 90;
    QTest::newRow("negative is refused") << QByteArray("lineHeight: -2") << 51;
    QTest::newRow("rich text ignores it") << QByteArray("lineHeight: 2; textFormat: Text.RichText") << 17;
}

void tst_QDeclarativeText::lineHeights()
{
    QFETCH(QByteArray, properties);
    WatchedScene scene;
    QVERIFY(scene.load("Text { font.family: 'DejaVu Sans'; font.pixelSize: 13; text: 'one\\ntwo\\nthree'; "
                       + properties + "}"));
    QTEST(scene.value("height").toInt(), "height");
}

void tst_QDeclarativeText::alignsHorizontally_data()
{
    QTest::addColumn<QByteArray>("properties");
    QTest::addColumn<int>("place"); // -1 left, 0 middle, 1 right
    const QByteArray mirrored = "; LayoutMirroring.enabled: true";
    for (const char *format : {"PlainText", "StyledText", "RichText"}) {
        const QByteArray base = QByteArray("text: 'llll'; textFormat: Text.") + format;
        QTest::addRow("%s, left", format) << base << -1;
        QTest::addRow("%s, right", format) << base + "; horizontalAlignment: Text.AlignRight" << 1;
        QTest::addRow("%s, centre", format) << base + "; horizontalAlignment: Text.AlignHCenter" << 0;
        QTest::addRow("%s, mirrored", format)
            << base + "; horizontalAlignment: Text.AlignRight" + mirrored << -1;
        QTest::addRow("%s, mirrored left", format)
            << base + "; horizontalAlignment: Text.AlignLeft" + mirrored << 1;
        QTest::addRow("%s, mirrored centre", format)
            << base + "; horizontalAlignment: Text.AlignHCenter" + mirrored << 0;
        QTest::addRow("%s, mirrored but not set", format) << base + mirrored << -1;
    }
    QTest::newRow("right to left text") << QByteArray("text: '\u0661\u0644\u0644\u0644'") << 1;
    QTest::newRow("right to left text, left")
        << QByteArray("text: '\u0644\u0644\u0644'; horizontalAlignment: Text.AlignLeft") << -1;
    QTest::newRow("right to left text, mirrored") << QByteArray("text: '\u0644\u0644\u0644'") + mirrored << 1;
}

void tst_QDeclarativeText::alignsHorizontally()
{
    QFETCH(QByteArray, properties);
    QFETCH(int, place);
    WatchedScene scene;
    QVERIFY(scene.load("Rectangle { width: 300; height: 40; Text { width: 300; font.pixelSize: 20; "
                       + properties + " } }"));
    const QRect ink = inked(scene.picture());
    QVERIFY(ink.isValid());
    const int expected = place < 0 ? ink.width() / 2 : place > 0 ? 300 - ink.width() / 2 : 150;
    QVERIFY2(qAbs(ink.center().x() - expected) <= 5, qPrintable(QString::number(ink.center().x())));
}

void tst_QDeclarativeText::alignsVertically_data()
{
    QTest::addColumn<QByteArray>("alignment");
    QTest::addColumn<int>("baseline");
    QTest::addColumn<int>("top");
    QTest::newRow("top") << QByteArray("AlignTop") << 13 << 0;
    QTest::newRow("middle") << QByteArray("AlignVCenter") << 54 << 41;
    QTest::newRow("bottom") << QByteArray("AlignBottom") << 96 << 83;
}

void tst_QDeclarativeText::alignsVertically()
{
    QFETCH(QByteArray, alignment);
    QFETCH(int, baseline);
    QFETCH(int, top);
    for (const char *format : {"PlainText", "RichText"}) {
        WatchedScene scene;
        QVERIFY(scene.load("Rectangle { width: 50; height: 100; Text { objectName: 'text'; height: 100; "
                           "font.family: 'DejaVu Sans'; font.pixelSize: 13; text: 'H'; textFormat: Text."
                           + QByteArray(format) + "; verticalAlignment: Text." + alignment + " } }"));
        QCOMPARE(scene.item("text")->property("baselineOffset").toInt(), baseline);
        // The letter stands on the baseline.
        const QRect ink = inked(scene.picture());
        QVERIFY2(qAbs(ink.bottom() + 1 - (top + 13)) <= 1, qPrintable(QString::number(ink.bottom())));
    }
}

void tst_QDeclarativeText::alignmentFollowsText()
{
    WatchedScene scene;
    QVERIFY(scene.load("Text { width: 100; text: 'left' }"));
    QSignalSpy changed(scene.root(), SIGNAL(horizontalAlignmentChanged(QDeclarativeText::HAlignment)));
    QCOMPARE(scene.value("horizontalAlignment").toInt(), int(Qt::AlignLeft));
    scene.evaluate("text = '\u0644\u0644'");
    QCOMPARE(scene.value("horizontalAlignment").toInt(), int(Qt::AlignRight));
    QCOMPARE(changed.count(), 1);
    scene.evaluate("horizontalAlignment = Text.AlignHCenter; text = 'left'");
    QCOMPARE(scene.value("horizontalAlignment").toInt(), int(Qt::AlignHCenter));
    scene.evaluate("horizontalAlignment = undefined");
    QCOMPARE(scene.value("horizontalAlignment").toInt(), int(Qt::AlignLeft));
}

void tst_QDeclarativeText::implicitSizeOfSizedText()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Item { property real wanted: a.implicitWidth; property real natural: b.width\n"
        "property real tall: a.implicitHeight; property real rich: c.implicitWidth\n"
        "Text { id: a; width: 30; wrapMode: Text.Wrap; font.pixelSize: 20; text: 'some words here' }\n"
        "Text { id: b; font.pixelSize: 20; text: 'some words here' }\n"
        "Text { id: c; width: 30; wrapMode: Text.Wrap; font.pixelSize: 20; textFormat: Text.RichText; "
        "text: 'some words here' } }"));
    const qreal natural = scene.value("natural").toReal();
    QVERIFY(qAbs(scene.value("wanted").toReal() - natural) <= 1);
    QVERIFY(qAbs(scene.value("rich").toReal() - natural) <= 1);
    QVERIFY(scene.value("tall").toReal() > 3 * 20);
}

void tst_QDeclarativeText::widthGivenBack()
{
    WatchedScene scene;
    QVERIFY(scene.load("Text { wrapMode: Text.Wrap; font.pixelSize: 20; text: 'some words here' }"));
    const QVariant width = scene.value("width"), height = scene.value("height");
    scene.evaluate("width = 40");
    QVERIFY(scene.value("lineCount").toInt() > 1);
    scene.evaluate("width = undefined");
    QCOMPARE(scene.value("lineCount").toInt(), 1);
    QCOMPARE(scene.value("width"), width);
    QCOMPARE(scene.value("height"), height);
}

void tst_QDeclarativeText::announcesOnlyChanges()
{
    WatchedScene scene;
    QVERIFY(scene.load("Text { text: 'text' }"));
    QSignalSpy text(scene.root(), SIGNAL(textChanged(QString)));
    QSignalSpy painted(scene.root(), SIGNAL(paintedSizeChanged()));
    QSignalSpy color(scene.root(), SIGNAL(colorChanged(QColor)));
    QSignalSpy font(scene.root(), SIGNAL(fontChanged(QFont)));
    scene.evaluate("text = 'text'; color = 'black'; font.bold = false");
    QCOMPARE(text.count() + painted.count() + color.count() + font.count(), 0);
    scene.evaluate("color = 'red'");
    QCOMPARE(color.count(), 1);
    QCOMPARE(painted.count(), 0);
    scene.evaluate("text = 'longer text'");
    QCOMPARE(text.value(0).value(0).toString(), QStringLiteral("longer text"));
    QCOMPARE(painted.count(), 1);
    scene.evaluate("font.bold = true");
    QCOMPARE(font.count(), 1);
    QCOMPARE(painted.count(), 2);
}

void tst_QDeclarativeText::drawsStyles_data()
{
    QTest::addColumn<QByteArray>("style");
    QTest::addColumn<QMargins>("grown"); // of the ink against text without style
    QTest::newRow("outline") << QByteArray("Outline") << QMargins(1, 1, 1, 1);
    QTest::newRow("raised") << QByteArray("Raised") << QMargins(0, 0, 0, 1);
    QTest::newRow("sunken") << QByteArray("Sunken") << QMargins(0, 1, 0, 0);
}

void tst_QDeclarativeText::drawsStyles()
{
    QFETCH(QByteArray, style);
    QFETCH(QMargins, grown);
    for (const char *format : {"PlainText", "StyledText", "RichText"}) {
        WatchedScene scene;
        QVERIFY(scene.load(
            "Rectangle { width: 100; height: 60; Text { objectName: 'text'; x: 20; y: 10; "
            "font.pixelSize: 24; text: 'Ho'; color: '#00ff00'; styleColor: 'red'; textFormat: Text."
            + QByteArray(format) + " } }"));
        const QRect plain = inked(scene.picture());
        scene.item("text")->setProperty("style", 0);
        scene.evaluate("children[0].style = Text." + style);
        const QImage picture = scene.picture();
        QCOMPARE(inked(picture), plain.translated(-1, 0).marginsAdded(grown));
        bool hasStyleColor = false;
        for (int i = 0; i < picture.width() * picture.height(); ++i) {
            const QRgb pixel = picture.pixel(i % picture.width(), i / picture.width());
            hasStyleColor = hasStyleColor || (qRed(pixel) > 200 && qGreen(pixel) < 60);
        }
        QVERIFY2(hasStyleColor, format);
    }
}

void tst_QDeclarativeText::drawsColors()
{
    WatchedScene scene;
    QVERIFY(scene.load(
        "Rectangle { width: 60; height: 90; Text { color: '#0000ff'; font.pixelSize: 40; text: '\u2588' }\n"
        "Text { x: 30; color: '#0000ff'; font.pixelSize: 40; textFormat: Text.StyledText; "
        "text: '<font color=\"#ff0000\">\u2588</font>' } }"));
    QCOMPARE(scene.picture().pixelColor(8, 20), QColor(Qt::blue));
    QCOMPARE(scene.picture().pixelColor(40, 20), QColor(Qt::red));
    scene.evaluate("children[0].color = '#00ff00'");
    QCOMPARE(scene.picture().pixelColor(8, 20), QColor(Qt::green));
}

void tst_QDeclarativeText::clipsItself()
{
    WatchedScene scene;
    QVERIFY(
        scene.load("Rectangle { width: 200; height: 60; Text { width: 30; clip: true; font.pixelSize: 24; "
                   "text: 'HHHHHHHH' } }"));
    QVERIFY(inked(scene.picture()).right() < 30);
    scene.evaluate("children[0].clip = false");
    QVERIFY(inked(scene.picture()).right() > 60);
}

void tst_QDeclarativeText::reachesBeyondItsWidth()
{
    // What lies outside of the item's own rectangle is repainted as well when it changes.
    WatchedScene scene;
    QVERIFY(scene.load("Rectangle { width: 200; height: 60; Text { x: 100; width: 10; font.pixelSize: 24; "
                       "horizontalAlignment: Text.AlignHCenter; text: 'HHHHH' } }"));
    auto *text =
        qobject_cast<QGraphicsObject *>(scene.view().rootObject()->childItems().first()->toGraphicsObject());
    QVERIFY(text->boundingRect().left() < -20);
    QVERIFY(text->boundingRect().right() > 30);
    QCOMPARE(text->property("width").toInt(), 10);
    QVERIFY(inked(scene.picture()).left() < 80);
}

void tst_QDeclarativeText::followsLinks()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 300; height: 100; property string seen\n"
                       "Text { font.pixelSize: 20; height: 100; verticalAlignment: Text.AlignBottom; "
                       "text: '<a href=\"one\">OneOneOne</a> <a href=\"two\">TwoTwoTwo</a>'; "
                       "onLinkActivated: seen += link + ';' } }"));
    QWidget *viewport = scene.view().viewport();
    QTest::mouseClick(viewport, Qt::LeftButton, {}, {30, 90});
    QCOMPARE(scene.value("seen").toString(), QStringLiteral("one;"));
    QTest::mouseClick(viewport, Qt::LeftButton, {}, {150, 90});
    QCOMPARE(scene.value("seen").toString(), QStringLiteral("one;two;"));
    QTest::mousePress(viewport, Qt::LeftButton, {}, {30, 90});
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, {150, 90});
    QTest::mouseClick(viewport, Qt::LeftButton, {}, {30, 10});
    QTest::mouseClick(viewport, Qt::RightButton, {}, {30, 90});
    QCOMPARE(scene.value("seen").toString(), QStringLiteral("one;two;"));
}

void tst_QDeclarativeText::leavesPressesElsewhere()
{
    WatchedScene scene;
    QVERIFY(scene.load("Item { width: 300; height: 40; property int below: 0\n"
                       "MouseArea { anchors.fill: parent; onPressed: ++below }\n"
                       "Text { font.pixelSize: 20; text: '<a href=\"x\">LinkLink</a> and plain words' } }"));
    QTest::mouseClick(scene.view().viewport(), Qt::LeftButton, {}, {20, 12});
    QCOMPARE(scene.value("below").toInt(), 0);
    QTest::mouseClick(scene.view().viewport(), Qt::LeftButton, {}, {180, 12});
    QCOMPARE(scene.value("below").toInt(), 1);
    scene.evaluate("children[1].text = 'only plain words'");
    QTest::mouseClick(scene.view().viewport(), Qt::LeftButton, {}, {20, 12});
    QCOMPARE(scene.value("below").toInt(), 2);
}

void tst_QDeclarativeText::forgetsLinksOfAnOldText()
{
    WatchedScene scene;
    QVERIFY(
        scene.load("Text { property string seen; font.pixelSize: 20; text: '<a href=\"old\">LinkLink</a>'; "
                   "onLinkActivated: seen = link }"));
    QTest::mousePress(scene.view().viewport(), Qt::LeftButton, {}, {20, 12});
    scene.evaluate("text = '<a href=\"new\">LinkLink</a>'");
    QTest::mouseRelease(scene.view().viewport(), Qt::LeftButton, {}, {20, 12});
    QCOMPARE(scene.value("seen").toString(), QString());
}

namespace {

class RedProvider final : public QQuickImageProvider
{
public:
    RedProvider()
        : QQuickImageProvider(Image)
    {
    }

    QImage requestImage(const QString &, QSize *size, const QSize &) override
    {
        QImage image(20, 30, QImage::Format_RGB32);
        image.fill(Qt::red);
        *size = image.size();
        return image;
    }
};

} // namespace

void tst_QDeclarativeText::showsPictures_data()
{
    QTest::addColumn<QString>("source");
    QTest::newRow("relative to the component") << "red.png";
    QTest::newRow("in a folder below") << "./red.png";
    QTest::newRow("from a provider") << "image://red/any";
}

void tst_QDeclarativeText::showsPictures()
{
    QFETCH(QString, source);
    WatchedScene scene;
    scene.view().engine()->addImageProvider(QStringLiteral("red"), new RedProvider);
    QImage red(20, 30, QImage::Format_RGB32);
    red.fill(Qt::red);
    scene.addFile(QStringLiteral("red.png"), red);
    QVERIFY(scene.load("Rectangle { width: 60; height: 60; Text { text: '<img src=\"" + source.toUtf8()
                       + "\">' } }"));
    const QImage picture = scene.picture();
    QCOMPARE(picture.pixelColor(10, 15), QColor(Qt::red));
    QCOMPARE(inked(picture).width(), 20);
    QCOMPARE(scene.evaluate("children[0].paintedWidth").toInt(), 20);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeText::reportsMissingPictures()
{
    WatchedScene scene;
    QVERIFY(scene.load("Text { text: 'a<img src=\"nothing.png\">b' }"));
    QCOMPARE(scene.warnings.count(), 1);
    QVERIFY2(scene.warnings.first().contains(QStringLiteral("nothing.png")),
             qPrintable(scene.warnings.first()));
    scene.picture();
    scene.picture();
    QCOMPARE(scene.warnings.count(), 1);
}

void tst_QDeclarativeText::loadsLatePictures()
{
    HeldServer server;
    WatchedScene scene;
    QVERIFY(scene.load("Rectangle { width: 60; height: 60; property alias text: shown.text\n"
                       "property alias paintedWidth: shown.paintedWidth\nText { id: shown; text: '<img src=\""
                       + server.url("late.png") + "\">' } }"));
    QVERIFY(scene.value("paintedWidth").toInt() <= 1);
    QImage red(20, 30, QImage::Format_RGB32);
    red.fill(Qt::red);
    QBuffer content;
    QVERIFY(red.save(&content, "PNG"));
    QVERIFY(server.answer("200 OK", content.data()));
    QTRY_COMPARE(scene.value("paintedWidth").toInt(), 20);
    QCOMPARE(scene.pixel(10, 15), QColor(Qt::red));
    QCOMPARE(scene.warnings, QStringList());
    scene.evaluate(("text = '<img src=\"" + server.url("none.png") + "\">'").constData());
    QVERIFY(server.answer("404 Not Found", QByteArray()));
    QTRY_COMPARE(scene.warnings.count(), 1);
    // Another text, and the end of the item, while a picture is on its way.
    scene.evaluate(("text = '<img src=\"" + server.url("a.png") + "\">'").constData());
    scene.evaluate("text = 'plain'");
    scene.evaluate(("text = '<img src=\"" + server.url("b.png") + "\">'").constData());
    QVERIFY(scene.load("Item {}"));
    QCOMPARE(scene.warnings.count(), 1);
}

void tst_QDeclarativeText::survivesOddText_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("control characters") << QStringLiteral("a\u0001\u0002\u007f\u2028\u2029\u200f");
    QTest::newRow("half a surrogate") << QString(QChar(0xd83d));
    QTest::newRow("alternatives only") << QString(5, QChar(0x9c));
    QTest::newRow("deep tags") << QStringLiteral("<b>").repeated(5000);
    QTest::newRow("many closing tags") << QStringLiteral("</b></i></font>").repeated(2000);
    QTest::newRow("open angle brackets") << QString(20000, QLatin1Char('<'));
    QTest::newRow("ampersands") << QString(20000, QLatin1Char('&'));
    QTest::newRow("long line") << QStringLiteral("word ").repeated(20000);
}

void tst_QDeclarativeText::survivesOddText()
{
    QFETCH(QString, text);
    WatchedScene scene;
    QVERIFY(
        scene.load("Text { width: 100; wrapMode: Text.Wrap; maximumLineCount: 3; elide: Text.ElideRight }"));
    for (int format : {0, 1, 2, 4}) {
        scene.root()->setProperty("textFormat", format);
        scene.root()->setProperty("text", text);
        scene.picture();
        QCOMPARE(scene.value("text").toString(), text);
    }
}

void tst_QDeclarativeText::drawsOnlyWhatIsExposed_data()
{
    QTest::addColumn<QByteArray>("format");
    for (const char *format : {"PlainText", "StyledText", "RichText"})
        QTest::newRow(format) << QByteArray(format);
}

void tst_QDeclarativeText::drawsOnlyWhatIsExposed()
{
    QFETCH(QByteArray, format);
    WatchedScene scene;
    QVERIFY(scene.load("Text { width: 100; wrapMode: Text.Wrap; style: Text.Outline; textFormat: Text."
                       + format + " }"));
    scene.root()->setProperty("text", QStringLiteral("some words ").repeated(2000));
    auto *text = static_cast<QDeclarativeItem *>(scene.root());
    const uint all = paintedPart(text, text->boundingRect());
    const uint part = paintedPart(text, QRectF(0, text->height() / 2, 100, 100));
    QVERIFY2(part > 100 && part < all / 20, qPrintable(QStringLiteral("%1 of %2").arg(part).arg(all)));
    // Or the view says that everything is exposed.
    QVERIFY(text->flags() & QGraphicsItem::ItemUsesExtendedStyleOption);
}

// QDeclarativeTextDocument refuses them before they are laid out, which takes twice as long with each level.
void tst_QDeclarativeText::nestedTables_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isRefused");
    const QString table = QStringLiteral("<table><tr><td>");
    const QString hidden = QStringLiteral("<TABLE><tr><td><!-- </table> -->");
    const QString beside = QStringLiteral("<table><tr><td>words</td></tr></table>");
    for (const char *element :
         {"Text { textFormat: Text.RichText }", "Text { }", "TextEdit { textFormat: TextEdit.RichText }"}) {
        const auto row = [element](const char *name, const QString &text, bool isRefused) {
            QTest::addRow("%s %s", element, name) << QByteArray(element) << text << isRefused;
        };
        row("10 levels", table.repeated(10) + "words", false);
        row("11 levels", table.repeated(11) + "words", true);
        row("1,000 levels", table.repeated(1000) + "words", true);
        row("20 levels that seem to end", hidden.repeated(20) + "words", true);
        row("20 levels that end", table.repeated(20) + "words" + QStringLiteral("</table>").repeated(20),
            true);
        row("100 beside each other", beside.repeated(100), false);
    }
}

void tst_QDeclarativeText::nestedTables()
{
    QFETCH(QByteArray, element);
    QFETCH(QString, text);
    QFETCH(bool, isRefused);
    WatchedScene scene;
    QVERIFY(scene.load(element));
    scene.root()->setProperty("text", text);
    QVERIFY(scene.root()->property("paintedHeight").toReal() > 0);
    const QString message = QStringLiteral("Text of tables in more than 10 levels");
    QCOMPARE(scene.warnings.filter(message).isEmpty(), !isRefused);
    QCOMPARE(scene.warnings.isEmpty(), !isRefused);
    // What is told of is shown as words.
    const QString plain = scene.root()->property("text").toString();
    if (element.startsWith("TextEdit"))
        QCOMPARE(plain.contains(QLatin1String("<table")), !isRefused);
}

QTEST_MAIN(tst_QDeclarativeText)
#include "tst_qdeclarativetext.moc"
