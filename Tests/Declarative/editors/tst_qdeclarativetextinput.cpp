#include "EditorScene.h"

#include <QtGui/QClipboard>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

/** TextInput beyond the recorded scenes: echo, clipboard, input methods, the cursor and its surroundings. */
class tst_QDeclarativeTextInput : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private slots:
    void initTestCase();
    void init();
    void echoModes_data();
    void echoModes();
    void echoesWhileEditing();
    void passwordCharacter();
    void refusesValues_data();
    void refusesValues();
    void selectsBeyondTheEnd();
    void cutTakesOnlySelections_data();
    void cutTakesOnlySelections();
    void validatorGoesAway();
    void positions_data();
    void positions();
    void alignment_data();
    void alignment();
    void keysLeadOut_data();
    void keysLeadOut();
    void composes();
    void tellsTheInputMethod_data();
    void tellsTheInputMethod();
    void hints_data();
    void hints();
    void shiftPressExtends();
    void scrollsToTheCursor();
    void marksBlanksOfTheMask();
    void paintsSelection();
    void paintsContents();
};

static const char ten[] = "TextInput { width: 200; font.family: \"DejaVu Sans Mono\"; font.pixelSize: 20; ";

void tst_QDeclarativeTextInput::initMain()
{
    EditorScene::useRecordedFonts();
}

void tst_QDeclarativeTextInput::initTestCase()
{
    QApplication::setCursorFlashTime(0);
}

void tst_QDeclarativeTextInput::init()
{
    QGuiApplication::clipboard()->clear();
}

void tst_QDeclarativeTextInput::echoModes_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<QString>("shown");
    QTest::newRow("normal") << QByteArray("Normal") << "secret";
    QTest::newRow("none") << QByteArray("NoEcho") << QString();
    QTest::newRow("password") << QByteArray("Password") << "******";
    QTest::newRow("while editing") << QByteArray("PasswordEchoOnEdit") << "******";
}

void tst_QDeclarativeTextInput::echoModes()
{
    QFETCH(QByteArray, mode);
    QFETCH(QString, shown);
    EditorScene scene("TextInput { text: \"secret\"; echoMode: TextInput." + mode + " }");
    QCOMPARE(scene.value("displayText").toString(), shown);
    QCOMPARE(scene.text(), QStringLiteral("secret"));
    QCOMPARE(scene.value("implicitWidth").toReal() > 0, !shown.isEmpty());
}

void tst_QDeclarativeTextInput::echoesWhileEditing()
{
    EditorScene scene("TextInput { focus: true; text: \"old\"; echoMode: TextInput.PasswordEchoOnEdit }");
    scene.type(QStringLiteral("new"));
    QCOMPARE(scene.text(), QStringLiteral("new"));
    QCOMPARE(scene.value("displayText").toString(), QStringLiteral("new"));
    scene.evaluate("focus = false");
    QCOMPARE(scene.value("displayText").toString(), QStringLiteral("***"));
}

void tst_QDeclarativeTextInput::passwordCharacter()
{
    EditorScene scene("TextInput { text: \"abc\"; echoMode: TextInput.Password; passwordCharacter: \"#x\" }");
    QCOMPARE(scene.value("displayText").toString(), QStringLiteral("###"));
    QSignalSpy changed(scene.root(), SIGNAL(passwordCharacterChanged()));
    scene.evaluate("passwordCharacter = \"\"");
    QCOMPARE(scene.value("passwordCharacter").toString(), QStringLiteral("#"));
    scene.evaluate("passwordCharacter = \"+\"");
    QCOMPARE(scene.value("displayText").toString(), QStringLiteral("+++"));
    QCOMPARE(changed.count(), 1);
}

void tst_QDeclarativeTextInput::refusesValues_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<QByteArray>("property");
    const auto row = [](const char *script, const char *property) {
        QTest::newRow(script) << QByteArray(script) << QByteArray(property);
    };
    row("cursorPosition = -1", "cursorPosition");
    row("cursorPosition = 99", "cursorPosition");
    row("maximumLength = -1", "maximumLength");
    row("select(-1, 2)", "selectedText");
    row("select(0, 99)", "selectedText");
    row("moveCursorSelection(-1)", "selectedText");
    row("moveCursorSelection(99, TextInput.SelectWords)", "selectedText");
    row("moveCursorSelection(2, TextInput.SelectWords)", "selectedText");
    row("contentsScale = 0", "contentsScale");
    row("contentsScale = -2", "contentsScale");
}

void tst_QDeclarativeTextInput::selectsBeyondTheEnd()
{
    EditorScene scene("TextInput { text: \"some words\" }");
    scene.evaluate("cursorPosition = 5");
    scene.evaluate("moveCursorSelection(99)");
    QCOMPARE(scene.cursor(), 99);
    QCOMPARE(scene.value("selectedText").toString(), QStringLiteral("words"));
    QCOMPARE(scene.value("selectionStart").toInt(), 5);
    QCOMPARE(scene.value("selectionEnd").toInt(), 99);
    scene.evaluate("cursorPosition = 10");
    QCOMPARE(scene.cursor(), 10);
    QCOMPARE(scene.value("selectionEnd").toInt(), 10);

    scene.evaluate("text = \"\"");
    scene.evaluate("moveCursorSelection(6)");
    QCOMPARE(scene.cursor(), 6);
    scene.evaluate("moveCursorSelection(0)");
    QCOMPARE(scene.cursor(), 0);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeTextInput::refusesValues()
{
    QFETCH(QByteArray, script);
    QFETCH(QByteArray, property);
    EditorScene scene("TextInput { text: \"some words\"; cursorPosition: 2 }");
    scene.evaluate("cursorPosition = 2");
    const QVariant before = scene.value(property);
    scene.evaluate(script);
    QCOMPARE(scene.value(property), before);
    QCOMPARE(scene.cursor(), 2);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeTextInput::cutTakesOnlySelections_data()
{
    QTest::addColumn<QByteArray>("setup");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("clipboard");
    QTest::newRow("selection") << QByteArray("select(1, 3)") << "ad"
                               << "bc";
    QTest::newRow("nothing selected") << QByteArray("cursorPosition = 1") << "abcd" << QString();
    QTest::newRow("password") << QByteArray("echoMode = TextInput.Password; select(1, 3)") << "abcd"
                              << QString();
}

void tst_QDeclarativeTextInput::cutTakesOnlySelections()
{
    QFETCH(QByteArray, setup);
    QFETCH(QString, text);
    QFETCH(QString, clipboard);
    EditorScene scene("TextInput { text: \"abcd\" }");
    scene.evaluate(setup + "; cut()");
    QCOMPARE(scene.text(), text);
    QCOMPARE(QGuiApplication::clipboard()->text(), clipboard);
}

void tst_QDeclarativeTextInput::validatorGoesAway()
{
    EditorScene scene("TextInput { id: input; text: \"7\"; property variant made\n"
                      "function give() { made = Qt.createQmlObject('import QtQuick 1.1; IntValidator {"
                      " bottom: 10 }', input, 'made'); validator = made } }");
    scene.evaluate("give()");
    QCOMPARE(scene.warnings, QStringList());
    QCOMPARE(scene.value("acceptableInput").toBool(), false);
    delete scene.value("validator").value<QObject *>();
    QVERIFY(!scene.value("validator").value<QObject *>());
    QCOMPARE(scene.value("acceptableInput").toBool(), true);
}

void tst_QDeclarativeTextInput::positions_data()
{
    QTest::addColumn<QByteArray>("script");
    QTest::addColumn<int>("position");
    const auto row = [](const char *script, int position) {
        QTest::newRow(script) << QByteArray(script) << position;
    };
    // A character is twelve pixels wide.
    row("positionAt(-5)", 0);
    row("positionAt(5)", 0);
    row("positionAt(8)", 1);
    row("positionAt(8, TextInput.CursorBetweenCharacters)", 1);
    row("positionAt(8, TextInput.CursorOnCharacter)", 0);
    row("positionAt(14, TextInput.CursorOnCharacter)", 1);
    row("positionAt(1000)", 5);
    row("positionToRectangle(2).x", 24);
    row("positionToRectangle(2).height", 24);
}

void tst_QDeclarativeTextInput::positions()
{
    QFETCH(QByteArray, script);
    QFETCH(int, position);
    EditorScene scene(ten + QByteArray("text: \"MMMMM\" }"));
    QCOMPARE(scene.evaluate(script).toInt(), position);
}

void tst_QDeclarativeTextInput::alignment_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<int>("cursorX");
    const auto row = [](const char *name, const char *body, int cursorX) {
        QTest::newRow(name) << QByteArray(body) << cursorX;
    };
    // The text is 24 pixels wide; 200 leave room for a cursor behind it.
    row("left", "horizontalAlignment: TextInput.AlignLeft", 24);
    row("right", "horizontalAlignment: TextInput.AlignRight", 202);
    row("centre", "horizontalAlignment: TextInput.AlignHCenter", 112);
    row("mirrored left", "horizontalAlignment: TextInput.AlignLeft; LayoutMirroring.enabled: true", 202);
    row("mirrored right", "horizontalAlignment: TextInput.AlignRight; LayoutMirroring.enabled: true", 24);
    row("mirrored centre", "horizontalAlignment: TextInput.AlignHCenter; LayoutMirroring.enabled: true", 112);
    row("mirrored, none set", "LayoutMirroring.enabled: true", 24);
}

void tst_QDeclarativeTextInput::alignment()
{
    QFETCH(QByteArray, body);
    QFETCH(int, cursorX);
    EditorScene scene(ten + QByteArray("text: \"MM\"; ") + body + " }");
    QCOMPARE(scene.value("cursorRectangle").toRect().x(), cursorX);
}

void tst_QDeclarativeTextInput::keysLeadOut_data()
{
    QTest::addColumn<QByteArray>("setup");
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("leaves");
    QTest::newRow("left inside") << QByteArray("cursorPosition = 1") << int(Qt::Key_Left) << false;
    QTest::newRow("left at the start") << QByteArray("cursorPosition = 0") << int(Qt::Key_Left) << true;
    QTest::newRow("right at the start") << QByteArray("cursorPosition = 0") << int(Qt::Key_Right) << false;
    QTest::newRow("right at the end") << QByteArray("cursorPosition = 2") << int(Qt::Key_Right) << true;
    QTest::newRow("left of a selection") << QByteArray("select(2, 0)") << int(Qt::Key_Left) << false;
    QTest::newRow("up") << QByteArray("cursorPosition = 1") << int(Qt::Key_Up) << true;
    QTest::newRow("down") << QByteArray("cursorPosition = 1") << int(Qt::Key_Down) << true;
    QTest::newRow("function key") << QByteArray("cursorPosition = 1") << int(Qt::Key_F7) << true;
}

void tst_QDeclarativeTextInput::keysLeadOut()
{
    QFETCH(QByteArray, setup);
    QFETCH(int, key);
    QFETCH(bool, leaves);
    EditorScene scene("TextInput { text: \"ab\"; focus: true; property bool seen: false\n"
                      "Keys.priority: Keys.AfterItem; Keys.onPressed: seen = true }");
    scene.evaluate(setup);
    scene.key(key);
    QCOMPARE(scene.value("seen").toBool(), leaves);
}

void tst_QDeclarativeTextInput::composes()
{
    EditorScene scene("TextInput { focus: true; text: \"ad\" }");
    QSignalSpy composing(scene.root(), SIGNAL(inputMethodComposingChanged()));
    const qreal width = scene.value("implicitWidth").toReal();
    scene.evaluate("cursorPosition = 1");
    scene.compose(QStringLiteral("bc"));
    QCOMPARE(scene.text(), QStringLiteral("ad"));
    QVERIFY(scene.value("inputMethodComposing").toBool());
    QVERIFY(scene.value("implicitWidth").toReal() > width);
    QCOMPARE(scene.evaluate("positionAt(1000)").toInt(), 2);
    scene.compose({}, QStringLiteral("xy"));
    QCOMPARE(scene.text(), QStringLiteral("axyd"));
    QCOMPARE(scene.cursor(), 3);
    QVERIFY(!scene.value("inputMethodComposing").toBool());
    QCOMPARE(composing.count(), 2);
}

void tst_QDeclarativeTextInput::tellsTheInputMethod_data()
{
    QTest::addColumn<Qt::InputMethodQuery>("query");
    QTest::addColumn<QVariant>("answer");
    QTest::newRow("cursor") << Qt::ImCursorPosition << QVariant(3);
    QTest::newRow("anchor") << Qt::ImAnchorPosition << QVariant(1);
    QTest::newRow("text") << Qt::ImSurroundingText << QVariant(QStringLiteral("MMMMM"));
    QTest::newRow("selection") << Qt::ImCurrentSelection << QVariant(QStringLiteral("MM"));
    QTest::newRow("length") << Qt::ImMaximumTextLength << QVariant(9);
    QTest::newRow("hints") << Qt::ImHints << QVariant(int(Qt::ImhDigitsOnly));
}

void tst_QDeclarativeTextInput::tellsTheInputMethod()
{
    QFETCH(Qt::InputMethodQuery, query);
    QFETCH(QVariant, answer);
    EditorScene scene(ten
                      + QByteArray("x: 4; focus: true; text: \"MMMMM\"; maximumLength: 9;"
                                   "inputMethodHints: Qt.ImhDigitsOnly }"));
    scene.evaluate("select(1, 3)");
    QCOMPARE(scene.query(query), answer);
    QCOMPARE(scene.query(Qt::ImCursorRectangle).toRectF().toRect(), QRect(4 + 36, 0, 1, 24));
}

void tst_QDeclarativeTextInput::hints_data()
{
    QTest::addColumn<QByteArray>("mode");
    QTest::addColumn<bool>("hidden");
    QTest::addColumn<bool>("sensitive");
    QTest::newRow("normal") << QByteArray("Normal") << false << false;
    QTest::newRow("password") << QByteArray("Password") << true << true;
    QTest::newRow("none") << QByteArray("NoEcho") << true << true;
    QTest::newRow("while editing") << QByteArray("PasswordEchoOnEdit") << false << true;
}

void tst_QDeclarativeTextInput::hints()
{
    QFETCH(QByteArray, mode);
    QFETCH(bool, hidden);
    QFETCH(bool, sensitive);
    EditorScene scene("TextInput { focus: true; echoMode: TextInput." + mode + " }");
    const int hints = scene.query(Qt::ImHints).toInt();
    QCOMPARE(bool(hints & Qt::ImhHiddenText), hidden);
    QCOMPARE(bool(hints & Qt::ImhSensitiveData), sensitive);
    QCOMPARE(scene.value("inputMethodHints").toInt(), 0);
}

void tst_QDeclarativeTextInput::shiftPressExtends()
{
    EditorScene scene(ten + QByteArray("selectByMouse: true; text: \"MMMMM\" }"));
    scene.click({13, 5});
    QTest::mouseClick(scene.view().viewport(), Qt::LeftButton, Qt::ShiftModifier, QPoint(37, 5));
    QCOMPARE(scene.value("selectedText").toString(), QStringLiteral("MM"));
}

void tst_QDeclarativeTextInput::scrollsToTheCursor()
{
    EditorScene scene("TextInput { width: 60; font.family: \"DejaVu Sans Mono\"; font.pixelSize: 20\n"
                      "text: \"MMMMMMMMMM\" }");
    QSignalSpy moved(scene.root(), SIGNAL(cursorRectangleChanged()));
    QCOMPARE(scene.value("cursorRectangle").toRect().x(), 60);
    QCOMPARE(scene.evaluate("positionAt(0)").toInt(), 5);
    scene.evaluate("cursorPosition = 2");
    QCOMPARE(scene.value("cursorRectangle").toRect().x(), 0);
    QCOMPARE(scene.evaluate("positionAt(0)").toInt(), 2);
    scene.evaluate("autoScroll = false");
    QCOMPARE(scene.value("cursorRectangle").toRect().x(), 24);
    QCOMPARE(moved.count(), 2);
}

void tst_QDeclarativeTextInput::marksBlanksOfTheMask()
{
    EditorScene scene(ten
                      + QByteArray("focus: true; inputMask: \"99\"; color: \"red\"; fillColor: \"white\" }"));
    // A blank is no text to put the cursor behind by its number.
    scene.evaluate("cursorPosition = 1");
    QCOMPARE(scene.value("cursorPosition").toInt(), 0);
    scene.click({13, 5});
    QCOMPARE(scene.pixel(18, 12), QColor(Qt::red));
    QCOMPARE(scene.pixel(6, 12), QColor(Qt::white));
    scene.evaluate("cursorVisible = false");
    QCOMPARE(scene.pixel(18, 12), QColor(Qt::white));
}

void tst_QDeclarativeTextInput::paintsSelection()
{
    EditorScene scene(ten
                      + QByteArray("text: \"    \"; selectionColor: \"#00ff00\"; fillColor: \"white\" }"));
    scene.evaluate("select(1, 3)");
    QCOMPARE(scene.pixel(5, 12), QColor(Qt::white));
    QCOMPARE(scene.pixel(20, 12), QColor(Qt::green));
    QCOMPARE(scene.pixel(42, 12), QColor(Qt::white));
}

void tst_QDeclarativeTextInput::paintsContents()
{
    EditorScene scene(
        "Rectangle { width: 200; height: 60; color: \"blue\"\n"
        "TextInput { objectName: \"input\"; width: 100; text: \" \"; fillColor: \"white\"\n"
        "font.family: \"DejaVu Sans Mono\"; font.pixelSize: 20; selectionColor: \"#00ff00\" } }");
    QObject *input = scene.item("input");
    QMetaObject::invokeMethod(input, "selectAll");
    QCOMPARE(input->property("contentsSize").toSize(), QSize(12, 24));
    QCOMPARE(scene.pixel(50, 12), QColor(Qt::white));
    QCOMPARE(scene.pixel(20, 12), QColor(Qt::white));
    QCOMPARE(scene.pixel(20, 40), QColor(Qt::blue));
    input->setProperty("contentsScale", 2);
    QCOMPARE(scene.pixel(20, 40), QColor(Qt::green));
    input->setProperty("fillColor", QColor(Qt::transparent));
    QCOMPARE(scene.pixel(50, 12), QColor(Qt::blue));
    input->setProperty("clip", true);
    QCOMPARE(scene.pixel(20, 40), QColor(Qt::blue));
}

QTEST_MAIN(tst_QDeclarativeTextInput)
#include "tst_qdeclarativetextinput.moc"
