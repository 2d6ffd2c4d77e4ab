#include "EditorScene.h"
#include "PaintedPart.h"

#include <QtCore/QMimeData>
#include <QtCore/QtMath>
#include <QtGui/QClipboard>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

/** TextEdit beyond the recorded scenes: formats, sizes, links, the clipboard, input methods and the cursor.
 */
class tst_QDeclarativeTextEdit : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private slots:
    void tabulator_data();
    void tabulator();
    void drawsOnlyWhatIsExposed();
    void initTestCase();
    void init();
    void formats_data();
    void formats();
    void formatChangesLater();
    void sizes_data();
    void sizes();
    void implicitWidthOfWrappedText();
    void announcesSizes();
    void verticalAlignment_data();
    void verticalAlignment();
    void horizontalAlignment_data();
    void horizontalAlignment();
    void margin();
    void refusesValues_data();
    void refusesValues();
    void pastesByFormat_data();
    void pastesByFormat();
    void dropsOrKeepsItsSelection_data();
    void dropsOrKeepsItsSelection();
    void followsLinks_data();
    void followsLinks();
    void leavesPressesWhenReadOnly();
    void selectsByMouse_data();
    void selectsByMouse();
    void keysLeadOut_data();
    void keysLeadOut();
    void composes();
    void tellsTheInputMethod_data();
    void tellsTheInputMethod();
    void showsPictures();
    void scaledContents();
};

static const char mono[] = "font.family: \"DejaVu Sans Mono\"; font.pixelSize: 20; ";

void tst_QDeclarativeTextEdit::initMain()
{
    EditorScene::useRecordedFonts();
}

void tst_QDeclarativeTextEdit::initTestCase()
{
    QApplication::setCursorFlashTime(0);
}

void tst_QDeclarativeTextEdit::init()
{
    QGuiApplication::clipboard()->clear();
}

void tst_QDeclarativeTextEdit::formats_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("shown");
    const auto row = [](const char *name, const char *body, const QString &shown) {
        QTest::newRow(name) << QByteArray(body) << shown;
    };
    const QString markup = QStringLiteral("<b>x</b>"), plain = QStringLiteral("x");
    row("automatic, markup", "text: \"<b>x</b>\"", plain);
    row("automatic, plain", "text: \"a < b & c\"", QStringLiteral("a < b & c"));
    row("rich", "text: \"a &amp; b\"; textFormat: TextEdit.RichText", QStringLiteral("a & b"));
    row("plain, format first", "textFormat: TextEdit.PlainText; text: \"<b>x</b>\"", markup);
    row("plain, text first", "text: \"<b>x</b>\"; textFormat: TextEdit.PlainText", markup);
    row("rich, text first", "text: \"a &amp; b\"; textFormat: TextEdit.RichText", QStringLiteral("a & b"));
}

void tst_QDeclarativeTextEdit::formats()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, shown);
    EditorScene scene("TextEdit { " + body + " }");
    scene.evaluate("selectAll()");
    QCOMPARE(scene.value("selectedText").toString(), shown);
}

void tst_QDeclarativeTextEdit::formatChangesLater()
{
    EditorScene scene("TextEdit { text: \"<b>x</b>\"; property int changes: 0\n"
                      "onTextFormatChanged: changes += 1 }");
    scene.evaluate("textFormat = TextEdit.PlainText");
    QVERIFY(scene.text().contains(QLatin1String("<span style=\" font-weight:600;\">x</span>")));
    scene.evaluate("textFormat = TextEdit.RichText; selectAll()");
    QCOMPARE(scene.value("selectedText").toString(), QStringLiteral("x"));
    QCOMPARE(scene.value("changes").toInt(), 2);
}

void tst_QDeclarativeTextEdit::sizes_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QSizeF>("painted");
    QTest::addColumn<int>("lines");
    const auto row = [](const char *name, const char *body, qreal width, qreal height, int lines) {
        QTest::newRow(name) << QByteArray(body) << QSizeF(width, height) << lines;
    };
    // A character is a little over twelve pixels wide, a line is 24 high, or with the lines of
    // its paragraph a little less.
    row("empty", "", 0, 24, 1);
    row("one line", "text: \"MMMMM\"", 61, 24, 1);
    row("two lines", "text: \"MM\\nMMMMM\"", 61, 48, 2);
    row("no wrapping", "width: 40; text: \"MM MM\"", 61, 24, 1);
    row("at words", "width: 40; text: \"MM MM\"; wrapMode: TextEdit.WordWrap", 25, 47, 2);
    row("anywhere", "width: 40; text: \"MMMMM\"; wrapMode: TextEdit.WrapAnywhere", 37, 47, 2);
    row("no word to break at", "width: 40; text: \"MMMMM\"; wrapMode: TextEdit.WordWrap", 61, 24, 1);
    row("where it must", "width: 40; text: \"MMMMM\"; wrapMode: TextEdit.Wrap", 37, 47, 2);
    row("rich", "text: \"MM<br>MM\"", 25, 47, 2);
}

void tst_QDeclarativeTextEdit::sizes()
{
    QFETCH(QByteArray, body);
    QFETCH(QSizeF, painted);
    QFETCH(int, lines);
    EditorScene scene("TextEdit { " + QByteArray(mono) + body + " }");
    QCOMPARE(QSizeF(scene.value("paintedWidth").toReal(), scene.value("paintedHeight").toReal()), painted);
    QCOMPARE(scene.value("lineCount").toInt(), lines);
    QCOMPARE(scene.value("height").toReal(), painted.height());
    if (!body.contains("width"))
        QCOMPARE(scene.value("width").toReal(), painted.width());
}

void tst_QDeclarativeTextEdit::implicitWidthOfWrappedText()
{
    EditorScene scene("TextEdit { width: 40; text: \"MM MM\"; wrapMode: TextEdit.Wrap; " + QByteArray(mono)
                      + "}");
    QCOMPARE(qCeil(scene.value("implicitWidth").toReal()), 61);
    QCOMPARE(scene.value("lineCount").toInt(), 2);
    scene.evaluate("text = \"MM MM MM\"");
    QCOMPARE(qCeil(scene.value("implicitWidth").toReal()), 97);
}

void tst_QDeclarativeTextEdit::announcesSizes()
{
    EditorScene scene("TextEdit { text: \"a\" }");
    QSignalSpy painted(scene.root(), SIGNAL(paintedSizeChanged()));
    QSignalSpy lines(scene.root(), SIGNAL(lineCountChanged()));
    scene.evaluate("text = \"a\\nb\"");
    QCOMPARE(painted.count(), 1);
    QCOMPARE(lines.count(), 1);
    scene.evaluate("color = \"red\"");
    QCOMPARE(painted.count(), 1);
}

void tst_QDeclarativeTextEdit::verticalAlignment_data()
{
    QTest::addColumn<QByteArray>("alignment");
    QTest::addColumn<int>("top");
    QTest::newRow("top") << QByteArray("AlignTop") << 0;
    QTest::newRow("centre") << QByteArray("AlignVCenter") << 38;
    QTest::newRow("bottom") << QByteArray("AlignBottom") << 76;
}

void tst_QDeclarativeTextEdit::verticalAlignment()
{
    QFETCH(QByteArray, alignment);
    QFETCH(int, top);
    EditorScene scene("TextEdit { height: 100; width: 100; text: \"MM\"; " + QByteArray(mono)
                      + "verticalAlignment: TextEdit." + alignment + " }");
    QCOMPARE(scene.value("cursorRectangle").toRect(), QRect(0, top, 1, 24));
    QCOMPARE(scene.evaluate("positionToRectangle(0).y").toInt(), top);
    QCOMPARE(scene.value("baselineOffset").toInt(), top + 19);
    scene.click({14, top + 5});
    QCOMPARE(scene.cursor(), 1);
}

void tst_QDeclarativeTextEdit::horizontalAlignment_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("x");
    const auto row = [](const char *name, const char *body, int x) {
        QTest::newRow(name) << QByteArray(body) << x;
    };
    row("left", "horizontalAlignment: TextEdit.AlignLeft", 0);
    row("right", "horizontalAlignment: TextEdit.AlignRight", 76);
    row("centre", "horizontalAlignment: TextEdit.AlignHCenter", 38);
    row("mirrored left", "horizontalAlignment: TextEdit.AlignLeft; LayoutMirroring.enabled: true", 76);
    row("mirrored right", "horizontalAlignment: TextEdit.AlignRight; LayoutMirroring.enabled: true", 0);
    row("mirrored, none set", "LayoutMirroring.enabled: true", 0);
}

void tst_QDeclarativeTextEdit::horizontalAlignment()
{
    QFETCH(QByteArray, body);
    QFETCH(int, x);
    EditorScene scene("TextEdit { width: 100; text: \"MM\"; " + QByteArray(mono) + body + " }");
    QCOMPARE(scene.value("cursorRectangle").toRect().x(), x);
}

void tst_QDeclarativeTextEdit::margin()
{
    EditorScene scene("TextEdit { text: \"MM\"; textMargin: 7; " + QByteArray(mono) + " }");
    QCOMPARE(scene.value("cursorRectangle").toRect(), QRect(7, 7, 1, 24));
    QCOMPARE(scene.value("paintedWidth").toInt(), 25 + 14);
    QCOMPARE(scene.value("paintedHeight").toInt(), 24 + 14);
    QCOMPARE(scene.value("baselineOffset").toInt(), 19 + 7);
}

void tst_QDeclarativeTextEdit::refusesValues_data()
{
    QTest::addColumn<QByteArray>("script");
    const char *const scripts[] = {"cursorPosition = -1",     "cursorPosition = 99",
                                   "select(-1, 2)",           "select(0, 99)",
                                   "moveCursorSelection(-1)", "moveCursorSelection(99)"};
    for (const char *script : scripts)
        QTest::newRow(script) << QByteArray(script);
}

void tst_QDeclarativeTextEdit::refusesValues()
{
    QFETCH(QByteArray, script);
    EditorScene scene("TextEdit { text: \"words\" }");
    scene.evaluate("cursorPosition = 2");
    QSignalSpy text(scene.root(), SIGNAL(textChanged(QString)));
    scene.evaluate(script);
    QCOMPARE(scene.cursor(), 2);
    QCOMPARE(scene.value("selectedText").toString(), QString());
    QCOMPARE(text.count(), 0);
}

void tst_QDeclarativeTextEdit::pastesByFormat_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("bold");
    QTest::newRow("plain") << QByteArray("text: \"\"; textFormat: TextEdit.PlainText") << false;
    QTest::newRow("rich") << QByteArray("text: \"\"; textFormat: TextEdit.RichText") << true;
}

void tst_QDeclarativeTextEdit::pastesByFormat()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, bold);
    auto *data = new QMimeData;
    data->setHtml(QStringLiteral("<b>fat</b>"));
    data->setText(QStringLiteral("fat"));
    QGuiApplication::clipboard()->setMimeData(data);
    EditorScene scene("TextEdit { " + body + " }");
    scene.evaluate("paste()");
    QVERIFY(scene.text().contains(QLatin1String("fat")));
    QCOMPARE(scene.text().contains(QLatin1String("font-weight:600")), bold);
}

void tst_QDeclarativeTextEdit::dropsOrKeepsItsSelection_data()
{
    QTest::addColumn<bool>("persistent");
    QTest::newRow("persistent") << true;
    QTest::newRow("fleeting") << false;
}

void tst_QDeclarativeTextEdit::dropsOrKeepsItsSelection()
{
    QFETCH(bool, persistent);
    EditorScene scene("TextEdit { text: \"abcd\"; focus: true; persistentSelection: "
                      + QByteArray(persistent ? "true" : "false") + " }");
    scene.evaluate("select(1, 3)");
    QSignalSpy start(scene.root(), SIGNAL(selectionStartChanged()));
    scene.evaluate("focus = false");
    QCOMPARE(scene.value("selectedText").toString(), QString::fromLatin1(persistent ? "bc" : ""));
    QCOMPARE(start.count(), persistent ? 0 : 1);
    QCOMPARE(scene.cursor(), 3);
}

void tst_QDeclarativeTextEdit::followsLinks_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("x");
    QTest::addColumn<QStringList>("links");
    const QStringList link = {QStringLiteral("here")};
    QTest::newRow("on the link") << QByteArray() << 5 << link;
    QTest::newRow("beside it") << QByteArray() << 60 << QStringList();
    QTest::newRow("read-only") << QByteArray("readOnly: true") << 5 << link;
    QTest::newRow("selecting") << QByteArray("selectByMouse: true") << 5 << link;
}

void tst_QDeclarativeTextEdit::followsLinks()
{
    QFETCH(QByteArray, body);
    QFETCH(int, x);
    QFETCH(QStringList, links);
    EditorScene scene("TextEdit { width: 200; text: \"<a href='here'>MM</a> MMM\"; " + QByteArray(mono) + body
                      + "\nproperty variant links: []\n"
                        "onLinkActivated: { var all = links; all.push(link); links = all } }");
    scene.click({x, 10});
    QCOMPARE(scene.value("links").value<QJSValue>().toVariant().toStringList(), links);
}

void tst_QDeclarativeTextEdit::leavesPressesWhenReadOnly()
{
    EditorScene scene("MouseArea { width: 200; height: 30; property int presses: 0; onPressed: presses += 1\n"
                      "TextEdit { objectName: \"edit\"; width: 200; text: \"text\" } }");
    scene.click({5, 5});
    QCOMPARE(scene.value("presses").toInt(), 0);
    scene.item("edit")->setProperty("readOnly", true);
    scene.click({5, 5});
    QCOMPARE(scene.value("presses").toInt(), 1);
}

void tst_QDeclarativeTextEdit::selectsByMouse_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QString>("selected");
    QTest::newRow("not") << QByteArray() << QString();
    QTest::newRow("characters") << QByteArray("selectByMouse: true") << "M M";
    QTest::newRow("words") << QByteArray("selectByMouse: true; mouseSelectionMode: TextEdit.SelectWords")
                           << "MMMM MMMM";
    QTest::newRow("read-only") << QByteArray("selectByMouse: true; readOnly: true") << "M M";
}

void tst_QDeclarativeTextEdit::selectsByMouse()
{
    QFETCH(QByteArray, body);
    QFETCH(QString, selected);
    EditorScene scene("TextEdit { width: 200; text: \"MMMM MMMM\"; " + QByteArray(mono) + body + " }");
    scene.press({36, 5});
    scene.move({50, 5});
    scene.move({73, 5});
    scene.release({73, 5});
    QCOMPARE(scene.value("selectedText").toString(), selected);
}

void tst_QDeclarativeTextEdit::keysLeadOut_data()
{
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("leaves");
    QTest::newRow("up at the top") << 1 << int(Qt::Key_Up) << true;
    QTest::newRow("down at the top") << 1 << int(Qt::Key_Down) << false;
    QTest::newRow("down at the bottom") << 4 << int(Qt::Key_Down) << true;
    QTest::newRow("left at the start") << 0 << int(Qt::Key_Left) << true;
    QTest::newRow("right at the end") << 5 << int(Qt::Key_Right) << true;
    QTest::newRow("right inside") << 1 << int(Qt::Key_Right) << false;
    QTest::newRow("return") << 1 << int(Qt::Key_Return) << false;
}

void tst_QDeclarativeTextEdit::keysLeadOut()
{
    QFETCH(int, position);
    QFETCH(int, key);
    QFETCH(bool, leaves);
    EditorScene scene("TextEdit { text: \"ab\\ncd\"; focus: true; property bool seen: false\n"
                      "Keys.priority: Keys.AfterItem; Keys.onPressed: seen = true }");
    scene.root()->setProperty("cursorPosition", position);
    scene.key(key);
    QCOMPARE(scene.value("seen").toBool(), leaves);
}

void tst_QDeclarativeTextEdit::composes()
{
    EditorScene scene("TextEdit { focus: true; text: \"ad\\ne\"; " + QByteArray(mono) + "}");
    QSignalSpy composing(scene.root(), SIGNAL(inputMethodComposingChanged()));
    scene.evaluate("cursorPosition = 1");
    scene.compose(QStringLiteral("bbbb"));
    QCOMPARE(scene.text(), QStringLiteral("ad\ne"));
    QVERIFY(scene.value("inputMethodComposing").toBool());
    QCOMPARE(scene.value("paintedWidth").toInt(), 73);
    QCOMPARE(scene.evaluate("positionAt(1000, 5)").toInt(), 2);
    QCOMPARE(scene.evaluate("positionAt(1000, 30)").toInt(), 4);
    scene.compose({}, QStringLiteral("xy"));
    QCOMPARE(scene.text(), QStringLiteral("axyd\ne"));
    QCOMPARE(scene.cursor(), 3);
    QVERIFY(!scene.value("inputMethodComposing").toBool());
    QCOMPARE(composing.count(), 2);
}

void tst_QDeclarativeTextEdit::tellsTheInputMethod_data()
{
    QTest::addColumn<Qt::InputMethodQuery>("query");
    QTest::addColumn<QVariant>("answer");
    QTest::newRow("cursor") << Qt::ImCursorPosition << QVariant(3);
    QTest::newRow("anchor") << Qt::ImAnchorPosition << QVariant(1);
    QTest::newRow("text") << Qt::ImSurroundingText << QVariant(QStringLiteral("MMMMM"));
    QTest::newRow("selection") << Qt::ImCurrentSelection << QVariant(QStringLiteral("MM"));
    QTest::newRow("hints") << Qt::ImHints << QVariant(int(Qt::ImhNoPredictiveText));
}

void tst_QDeclarativeTextEdit::tellsTheInputMethod()
{
    QFETCH(Qt::InputMethodQuery, query);
    QFETCH(QVariant, answer);
    EditorScene scene("TextEdit { width: 100; height: 100; verticalAlignment: TextEdit.AlignBottom\n"
                      "focus: true; text: \"MMMMM\"; inputMethodHints: Qt.ImhNoPredictiveText; "
                      + QByteArray(mono) + " }");
    scene.evaluate("select(1, 3)");
    QCOMPARE(scene.query(query), answer);
    QCOMPARE(scene.query(Qt::ImCursorRectangle).toRectF().toRect(), QRect(36, 76, 1, 24));
}

void tst_QDeclarativeTextEdit::showsPictures()
{
    EditorScene scene("TextEdit { width: 100; height: 100 }");
    QImage picture(10, 10, QImage::Format_RGB32);
    picture.fill(Qt::green);
    scene.addFile(QStringLiteral("green.png"), picture);
    scene.evaluate("text = \"<img src='green.png'>\"");
    QVERIFY2(scene.warnings.isEmpty(), qPrintable(scene.warnings.join(QLatin1Char('\n'))));
    QCOMPARE(scene.value("paintedWidth").toInt(), 10);
    const QRect cursor = scene.value("cursorRectangle").toRect();
    QCOMPARE(scene.pixel(5, cursor.top() + 5), QColor(Qt::green));
}

void tst_QDeclarativeTextEdit::scaledContents()
{
    EditorScene scene("TextEdit { width: 200; text: \"MM\\nMM\"; contentsScale: 2; " + QByteArray(mono)
                      + "}");
    QCOMPARE(scene.value("contentsSize").toSize(), QSize(25, 48));
    scene.view().resize(200, 100);
    scene.root()->setProperty("height", 100);
    scene.click({26, 70});
    QCOMPARE(scene.cursor(), 4);
}

void tst_QDeclarativeTextEdit::tabulator_data()
{
    QTest::addColumn<QByteArray>("settings");
    QTest::addColumn<QString>("text");
    QTest::newRow("alone") << QByteArray("") << QStringLiteral("\tab");
    QTest::newRow("with a handler") << QByteArray("Keys.onPressed: {}") << QStringLiteral("\tab");
    QTest::newRow("handled") << QByteArray("Keys.onTabPressed: {}") << QStringLiteral("ab");
    QTest::newRow("leads on first") << QByteArray(
        "KeyNavigation.priority: KeyNavigation.BeforeItem; KeyNavigation.tab: other; Item { id: other }")
                                    << QStringLiteral("ab");
    QTest::newRow("read-only") << QByteArray("readOnly: true") << QStringLiteral("ab");
}

void tst_QDeclarativeTextEdit::tabulator()
{
    QFETCH(QByteArray, settings);
    EditorScene scene("TextEdit { text: \"ab\"; focus: true; " + settings + " }");
    scene.key(Qt::Key_Tab);
    QTEST(scene.text(), "text");
}

void tst_QDeclarativeTextEdit::drawsOnlyWhatIsExposed()
{
    EditorScene scene("TextEdit { width: 100; wrapMode: TextEdit.Wrap; contentsScale: 2 }");
    scene.root()->setProperty("text", QStringLiteral("some words ").repeated(2000));
    auto *edit = static_cast<QDeclarativeItem *>(scene.root());
    const uint all = paintedPart(edit, edit->boundingRect());
    const uint part = paintedPart(edit, QRectF(0, edit->boundingRect().height() * 0.9, 100, 100));
    QVERIFY2(part > 100 && part < all / 20, qPrintable(QStringLiteral("%1 of %2").arg(part).arg(all)));
    // Or the view says that everything is exposed.
    QVERIFY(edit->flags() & QGraphicsItem::ItemUsesExtendedStyleOption);
}

QTEST_MAIN(tst_QDeclarativeTextEdit)
#include "tst_qdeclarativetextedit.moc"
