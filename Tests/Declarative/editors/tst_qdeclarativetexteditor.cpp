#include "EditorScene.h"
#include "InputPanel.h"
#include "PaintLog.h"

#include <QtGui/QClipboard>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

/** What TextInput and TextEdit have in common; every test runs for both. */
class tst_QDeclarativeTextEditor : public QObject
{
    Q_OBJECT

public:
    static void initMain();

private slots:
    void initTestCase_data();
    void initTestCase();
    void init();
    void destroyedWithFocus();
    void readOnlyKeepsItsText();
    void canPasteFollowsTheClipboard();
    void isRightToLeft_data();
    void isRightToLeft();
    void alignmentFollowsText();
    void selectsWords_data();
    void selectsWords();
    void claimsShortcuts_data();
    void claimsShortcuts();
    void composingEndsWithFocus_data();
    void composingEndsWithFocus();
    void readOnlyDoesNotCompose();
    void opensTheInputPanel_data();
    void opensTheInputPanel();
    void inputPanelOnDemand();
    void paintsItsCursor();
    void blinksOnlyWithFocus();
    void cursorDelegate();
    void badCursorDelegates_data();
    void badCursorDelegates();
    void keepsDragsFromFlickable();
    void selectionStaysWithTheWindow();

private:
    static QByteArray qml(QByteArray text);
};

void tst_QDeclarativeTextEditor::initMain()
{
    EditorScene::useRecordedFonts();
}

void tst_QDeclarativeTextEditor::initTestCase_data()
{
    QTest::addColumn<QByteArray>("element");
    QTest::newRow("TextInput") << QByteArray("TextInput");
    QTest::newRow("TextEdit") << QByteArray("TextEdit");
}

void tst_QDeclarativeTextEditor::initTestCase()
{
    QApplication::setCursorFlashTime(0);
}

void tst_QDeclarativeTextEditor::init()
{
    QGuiApplication::clipboard()->clear();
}

/** Returns @p text with the element under test where it says Editor. */
QByteArray tst_QDeclarativeTextEditor::qml(QByteArray text)
{
    QFETCH_GLOBAL(QByteArray, element);
    return text.replace("Editor", element);
}

void tst_QDeclarativeTextEditor::destroyedWithFocus()
{
    EditorScene scene(
        qml("Item { id: root; width: 100; height: 100; property int changes: 0; property variant made\n"
            "Component { id: editor; Editor { text: \"ab\"; focus: true\n"
            "onActiveFocusChanged: root.changes += 1; onCursorVisibleChanged: root.changes += 1\n"
            "onTextChanged: root.changes += 1 } }\n"
            "function make() { made = editor.createObject(root) } }"));
    scene.evaluate("make()");
    QPointer<QObject> made = scene.value("made").value<QObject *>();
    QVERIFY(made && made->property("activeFocus").toBool());
    scene.compose(QStringLiteral("half"));
    scene.evaluate("changes = 0; made.destroy()");
    QTRY_VERIFY(!made);
    QCOMPARE(scene.value("changes").toInt(), 0);
    QCOMPARE(scene.warnings, QStringList());
}

void tst_QDeclarativeTextEditor::readOnlyKeepsItsText()
{
    QGuiApplication::clipboard()->setText(QStringLiteral("pasted"));
    EditorScene scene(qml("Editor { focus: true; readOnly: true; text: \"kept\" }"));
    scene.type(QStringLiteral("x"));
    scene.key(Qt::Key_Backspace);
    scene.evaluate("selectAll(); cut(); paste()");
    QCOMPARE(scene.text(), QStringLiteral("kept"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("pasted"));
    scene.evaluate("copy()");
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("kept"));
}

void tst_QDeclarativeTextEditor::canPasteFollowsTheClipboard()
{
    EditorScene scene(qml("Editor {}"));
    QCOMPARE(scene.value("canPaste").toBool(), false);
    QSignalSpy changed(scene.root(), SIGNAL(canPasteChanged()));
    QGuiApplication::clipboard()->setText(QStringLiteral("one"));
    QTRY_COMPARE(changed.count(), 1);
    QCOMPARE(scene.value("canPaste").toBool(), true);
    QGuiApplication::clipboard()->setText(QStringLiteral("two"));
    scene.evaluate("readOnly = true");
    QCOMPARE(scene.value("canPaste").toBool(), false);
    QCOMPARE(changed.count(), 2);
}

void tst_QDeclarativeTextEditor::isRightToLeft_data()
{
    QTest::addColumn<QByteArray>("range");
    QTest::addColumn<bool>("rightToLeft");
    QTest::addColumn<QStringList>("warnings");
    QTest::newRow("latin") << QByteArray("0, 2") << false << QStringList();
    QTest::newRow("hebrew") << QByteArray("2, 4") << true << QStringList();
    QTest::newRow("empty") << QByteArray("2, 2") << false << QStringList();
    QTest::newRow("reversed") << QByteArray("3, 1") << false
                              << QStringList{QStringLiteral(
                                     "QML Scene1: isRightToLeft(start, end) called with the end "
                                     "property being smaller than the start.")};
}

void tst_QDeclarativeTextEditor::isRightToLeft()
{
    QFETCH(QByteArray, range);
    QFETCH(bool, rightToLeft);
    QFETCH(QStringList, warnings);
    EditorScene scene(qml("Editor { text: \"ab\\u05d0\\u05d1\" }"));
    QCOMPARE(scene.evaluate("isRightToLeft(" + range + ")").toBool(), rightToLeft);
    QCOMPARE(scene.warnings, warnings);
}

void tst_QDeclarativeTextEditor::alignmentFollowsText()
{
    EditorScene scene(qml("Editor { width: 200; text: \"latin\"; property int changes: 0\n"
                          "onHorizontalAlignmentChanged: changes += 1 }"));
    scene.evaluate("text = \"\\u05d0\\u05d1\"");
    QCOMPARE(scene.value("horizontalAlignment").toInt(), int(Qt::AlignRight));
    QCOMPARE(scene.value("changes").toInt(), 1);
    scene.evaluate(qml("horizontalAlignment = Editor.AlignHCenter"));
    scene.evaluate("text = \"latin\"");
    QCOMPARE(scene.value("horizontalAlignment").toInt(), int(Qt::AlignHCenter));
    scene.evaluate("horizontalAlignment = undefined");
    QCOMPARE(scene.value("horizontalAlignment").toInt(), int(Qt::AlignLeft));
    QCOMPARE(scene.value("changes").toInt(), 3);
}

void tst_QDeclarativeTextEditor::selectsWords_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<QVector<int>>("moves");
    QTest::addColumn<QString>("selected");
    QTest::addColumn<int>("cursor");
    using Moves = QVector<int>;
    // alpha 0..5, beta 6..10, gamma 11..16
    QTest::newRow("forwards") << 2 << Moves{8} << "alpha beta" << 10;
    QTest::newRow("backwards") << 13 << Moves{8} << "beta gamma" << 6;
    QTest::newRow("to a boundary") << 2 << Moves{6} << "alpha " << 6;
    QTest::newRow("within a word") << 7 << Moves{8} << "beta" << 10;
    QTest::newRow("further") << 2 << Moves{3, 13} << "alpha beta gamma" << 16;
    QTest::newRow("less far") << 2 << Moves{13, 3} << "alpha" << 5;
    QTest::newRow("to the other side") << 8 << Moves{9, 2} << "alpha beta" << 0;
    QTest::newRow("there and back") << 8 << Moves{9, 2, 13} << "beta gamma" << 16;
    QTest::newRow("nowhere") << 8 << Moves{8} << QString() << 8;
}

void tst_QDeclarativeTextEditor::selectsWords()
{
    QFETCH(int, from);
    QFETCH(QVector<int>, moves);
    QFETCH(QString, selected);
    QFETCH(int, cursor);
    EditorScene scene(qml("Editor { text: \"alpha beta gamma\" }"));
    scene.root()->setProperty("cursorPosition", from);
    for (int move : qAsConst(moves))
        scene.evaluate(qml("moveCursorSelection(" + QByteArray::number(move) + ", Editor.SelectWords)"));
    QCOMPARE(scene.value("selectedText").toString(), selected);
    QCOMPARE(scene.cursor(), cursor);
}

void tst_QDeclarativeTextEditor::claimsShortcuts_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("claimed");
    const Qt::KeyboardModifiers none = Qt::NoModifier, control = Qt::ControlModifier;
    QTest::newRow("letter") << int(Qt::Key_S) << none << "s" << true;
    QTest::newRow("copy") << int(Qt::Key_C) << control << QString() << true;
    QTest::newRow("delete") << int(Qt::Key_Delete) << none << QString() << true;
    QTest::newRow("save") << int(Qt::Key_S) << control << QString() << false;
    QTest::newRow("function key") << int(Qt::Key_F5) << none << QString() << false;
}

void tst_QDeclarativeTextEditor::claimsShortcuts()
{
    QFETCH(int, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    QFETCH(QString, text);
    QFETCH(bool, claimed);
    EditorScene scene(qml("Editor { focus: true }"));
    QCOMPARE(scene.claims(key, modifiers, text), claimed);
}

void tst_QDeclarativeTextEditor::composingEndsWithFocus_data()
{
    QTest::addColumn<bool>("commits");
    QTest::addColumn<QString>("text");
    QTest::newRow("input method gives it") << true << "abhalf";
    QTest::newRow("input method drops it") << false << "ab";
}

void tst_QDeclarativeTextEditor::composingEndsWithFocus()
{
    QFETCH(bool, commits);
    QFETCH(QString, text);
    InputPanel panel;
    EditorScene scene(qml("Editor { focus: true; text: \"ab\"; cursorPosition: 2 }"));
    scene.evaluate("cursorPosition = 2");
    scene.compose(QStringLiteral("half"));
    QVERIFY(scene.value("inputMethodComposing").toBool());
    if (commits)
        panel.composed = QStringLiteral("half");
    scene.evaluate("focus = false");
    QVERIFY(!scene.value("inputMethodComposing").toBool());
    QCOMPARE(scene.text(), text);
    const QString shown = QStringLiteral("text: \"%1\"").arg(text);
    EditorScene same(qml("Editor { " + shown.toLatin1() + " }"));
    QCOMPARE(scene.value("implicitWidth"), same.value("implicitWidth"));
}

void tst_QDeclarativeTextEditor::readOnlyDoesNotCompose()
{
    EditorScene scene(qml("Editor { focus: true; readOnly: true; text: \"ab\" }"));
    scene.compose(QStringLiteral("x"));
    QVERIFY(!scene.value("inputMethodComposing").toBool());
    scene.compose({}, QStringLiteral("x"));
    QCOMPARE(scene.text(), QStringLiteral("ab"));
}

void tst_QDeclarativeTextEditor::opensTheInputPanel_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("opens");
    QTest::newRow("focused") << QByteArray("focus: true") << true;
    QTest::newRow("left alone") << QByteArray("focus: true; activeFocusOnPress: false") << false;
    QTest::newRow("read-only") << QByteArray("focus: true; readOnly: true") << false;
}

void tst_QDeclarativeTextEditor::opensTheInputPanel()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, opens);
    InputPanel panel;
    EditorScene scene(qml("Editor { width: 100; height: 20; " + body + " }"));
    panel.visible = false;
    scene.click({5, 5});
    QCOMPARE(panel.visible, opens);
}

void tst_QDeclarativeTextEditor::inputPanelOnDemand()
{
    InputPanel panel;
    EditorScene scene(qml("Editor { activeFocusOnPress: false }"));
    scene.evaluate("openSoftwareInputPanel()");
    QVERIFY(panel.visible);
    scene.evaluate("closeSoftwareInputPanel()");
    QVERIFY(!panel.visible);
}

void tst_QDeclarativeTextEditor::paintsItsCursor()
{
    EditorScene scene(
        qml("Editor { width: 100; height: 24; focus: true; color: \"#ff0000\"; fillColor: \"white\" }"));
    QCOMPARE(scene.pixel(0, 12), QColor(Qt::red));
    scene.evaluate("cursorVisible = false");
    QCOMPARE(scene.pixel(0, 12), QColor(Qt::white));
    scene.evaluate("focus = false; cursorVisible = true");
    QCOMPARE(scene.pixel(0, 12), QColor(Qt::red));
}

void tst_QDeclarativeTextEditor::blinksOnlyWithFocus()
{
    QApplication::setCursorFlashTime(20);
    EditorScene scene(qml("Item { width: 200; height: 100\n"
                          "Editor { objectName: \"first\"; width: 200; focus: true }\n"
                          "Editor { objectName: \"second\"; y: 50; width: 200 } }"));
    PaintLog log(scene.view().viewport());
    const QRect first(0, 0, 200, 40), second(0, 50, 200, 40);
    QTRY_VERIFY(log.count(first) > 3);
    scene.item("second")->setProperty("focus", true);
    QCoreApplication::processEvents();
    log.clear();
    QTRY_VERIFY(log.count(second) > 3);
    QCOMPARE(log.count(first), 0);
    // A cursor that is only shown, as for keys that are forwarded, stands still.
    scene.item("first")->setProperty("cursorVisible", true);
    QCoreApplication::processEvents();
    log.clear();
    QTRY_VERIFY(log.count(second) > 3);
    QCOMPARE(log.count(first), 0);
    QApplication::setCursorFlashTime(0);
}

void tst_QDeclarativeTextEditor::cursorDelegate()
{
    EditorScene scene(
        qml("Editor { width: 100; text: \"MMM\"; focus: true; fillColor: \"white\"; color: \"red\"\n"
            "font.family: \"DejaVu Sans Mono\"; font.pixelSize: 20\n"
            "cursorDelegate: Item { objectName: \"cursor\"; width: 2 } }"));
    QPointer<QObject> item = scene.item("cursor");
    QVERIFY(item);
    QCOMPARE(item->property("height").toInt(), 24);
    scene.key(Qt::Key_End);
    QCOMPARE(item->property("x").toInt(), 36);
    scene.key(Qt::Key_Home);
    QCOMPARE(item->property("x").toInt(), 0);
    scene.evaluate("font.pixelSize = 40");
    QCOMPARE(item->property("height").toInt(), scene.value("cursorRectangle").toRect().height());
    QVERIFY(item->property("height").toInt() > 40);
    scene.evaluate("text = \"\"");
    QCOMPARE(scene.pixel(0, 12), QColor(Qt::white));
    scene.evaluate("cursorDelegate = null");
    QVERIFY(!item);
    QCOMPARE(scene.pixel(0, 12), QColor(Qt::red));
}

void tst_QDeclarativeTextEditor::badCursorDelegates_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<QString>("warning");
    QTest::newRow("no file") << QByteArray("Nowhere.qml") << "QML Scene1: Could not load cursor delegate";
    QTest::newRow("no item") << QByteArray("Object.qml")
                             << "QML Scene1: Could not instantiate cursor delegate";
}

void tst_QDeclarativeTextEditor::badCursorDelegates()
{
    QFETCH(QByteArray, source);
    QFETCH(QString, warning);
    EditorScene scene(
        qml("Editor { width: 100; height: 20; focus: true; color: \"red\"; fillColor: \"white\" }"));
    scene.addFile(QStringLiteral("Object.qml"), QByteArray("import QtQuick 1.1\nQtObject {}"));
    scene.evaluate("cursorDelegate = Qt.createComponent(\"" + source + "\")");
    QVERIFY2(scene.warnings.contains(warning), qPrintable(scene.warnings.join(QLatin1Char('\n'))));
    // Without one of its own, the item shows the cursor itself.
    QCOMPARE(scene.pixel(0, 9), QColor(Qt::red));
}

void tst_QDeclarativeTextEditor::keepsDragsFromFlickable()
{
    EditorScene scene(
        qml("Flickable { width: 200; height: 60; contentWidth: 600; contentHeight: 60\n"
            "Editor { objectName: \"input\"; width: 600; selectByMouse: true\n"
            "text: \"MMMMMMMMMMMMMMM\"; font.family: \"DejaVu Sans Mono\"; font.pixelSize: 20 } }"));
    scene.press({150, 5});
    for (int x = 145; x >= 30; x -= 5)
        scene.move({x, 5});
    scene.release({30, 5});
    QCOMPARE(scene.value("contentX").toInt(), 0);
    QVERIFY(scene.item("input")->property("selectedText").toString().length() > 5);
}

void tst_QDeclarativeTextEditor::selectionStaysWithTheWindow()
{
    EditorScene scene(qml("Editor { text: \"kept\"; focus: true }"));
    scene.evaluate("select(1, 3)");
    QApplication::setActiveWindow(nullptr);
    QCOMPARE(scene.value("activeFocus").toBool(), false);
    QCOMPARE(scene.value("selectedText").toString(), QStringLiteral("ep"));
    QApplication::setActiveWindow(&scene.view());
    QCOMPARE(scene.value("activeFocus").toBool(), true);
    QCOMPARE(scene.value("selectedText").toString(), QStringLiteral("ep"));
}

QTEST_MAIN(tst_QDeclarativeTextEditor)
#include "tst_qdeclarativetexteditor.moc"
