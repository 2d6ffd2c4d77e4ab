#include "WatchedScene.h"

#include <random>

/**
 * Elements whose state is made up of many numbers, changed at random: after each change the numbers agree.
 *
 * A row's name is the seed, with which the same changes come again. What breaks memory shows under the
 * address sanitizer.
 */
class tst_Changes : public QObject
{
    Q_OBJECT

private slots:
    void keepsItsState_data();
    void keepsItsState();
};

namespace {

constexpr int changes = 250;

/** An element, what may happen to it, and what is wrong with it: a script that has a text for an answer. */
struct Subject
{
    const char *name;
    const char *body;
    QList<QByteArray> changes; ///< %1 and %2 are numbers, some of them out of range
    const char *fault;
};

// Rows that come and go, whose sizes differ.
const char model[] =
    "ListModel { id: rows } property int made: 0\n"
    "function add(at) { rows.insert(Math.max(0, Math.min(rows.count, at)), { size: 5 + made++ * 7 % 23 }) }\n"
    "function take(at) { if (rows.count > 0) rows.remove(Math.abs(at) % rows.count) }\n"
    "function shift(from, to) { if (rows.count > 0)"
    " rows.move(Math.abs(from) % rows.count, Math.abs(to) % rows.count, 1) }\n";

const QList<QByteArray> modelChanges = {"add(%1)",  "add(%1)",       "add(%2)",
                                        "take(%1)", "shift(%1, %2)", "rows.clear()"};

const QList<QByteArray> viewChanges = modelChanges
    + QList<QByteArray>{"e.contentY = %1 * 5",
                        "e.currentIndex = %1",
                        "e.incrementCurrentIndex()",
                        "e.cacheBuffer = %1",
                        "e.positionViewAtIndex(%1, %2)",
                        "e.height = 40 + %1",
                        "e.highlightRangeMode = Math.abs(%1) % 3",
                        "e.snapMode = Math.abs(%1) % 3",
                        "e.preferredHighlightBegin = %1",
                        "e.preferredHighlightEnd = %1",
                        "e.model = e.model ? null : rows",
                        "e.header = e.header ? null : box"};

// Rows in view stand in the order of the model, and the current one is one of them.
const char viewFault[] =
    "(function() {\n"
    "  if (e.count != (e.model ? rows.count : 0)) return 'count ' + e.count\n"
    "  if (e.count > 0 && e.currentItem && e.currentItem.row != e.currentIndex) return 'current item'\n"
    "  if (isNaN(e.contentY) || isNaN(e.contentHeight)) return 'no number'\n"
    "  var all = e.contentItem.children, found = {}\n"
    "  for (var i = 0; i < all.length; ++i) {\n"
    "    if (all[i].row === undefined) continue\n"
    "    if (all[i].row >= e.count || all[i].row < 0) return 'row ' + all[i].row\n"
    "    if (found[all[i].row]) return 'twice ' + all[i].row\n"
    "    found[all[i].row] = true } return '' })()";

const char editorFault[] =
    "(function() {\n"
    "  var n = e.text.length, s = e.selectionStart, t = e.selectionEnd, c = e.cursorPosition\n"
    "  if (s < 0 || t < s || t > n) return 'selection ' + s + ' ' + t + ' of ' + n\n"
    "  if (c < 0 || c > n || (s != t && c != s && c != t)) return 'cursor ' + c + ' of ' + n\n"
    "  if (e.selectedText.length != t - s) return 'selected ' + e.selectedText\n"
    "  var r = e.positionToRectangle(c)\n"
    "  return isNaN(r.x + r.y) ? 'no number' : '' })()";

const QList<QByteArray> editorChanges = {"e.text = 'one two three'.slice(%1)",
                                         "e.text += ' and\\nmore'",
                                         "e.text = ''",
                                         "e.cursorPosition = %1",
                                         "e.select(%1, %2)",
                                         "e.selectAll()",
                                         "e.selectWord()",
                                         "e.deselect()",
                                         "e.cut()",
                                         "e.copy()",
                                         "e.paste()",
                                         "e.moveCursorSelection(Math.min(e.text.length, %1))",
                                         "e.width = %1 * 3",
                                         "e.font.pixelSize = 5 + Math.abs(%1)",
                                         "e.readOnly = !e.readOnly",
                                         "e.visible = !e.visible",
                                         "e.focus = !e.focus"};

QList<Subject> subjects()
{
    const QList<QByteArray> inputChanges = {"e.maximumLength = 5 + Math.abs(%1)",
                                            "e.echoMode = Math.abs(%1) % 4", "e.autoScroll = !e.autoScroll"};
    const QList<QByteArray> editChanges = {"e.wrapMode = Math.abs(%1) % 5", "e.textMargin = %1",
                                           "e.verticalAlignment = TextEdit.AlignBottom", "e.height = %1 * 3"};
    return {
        {"TextInput", "TextInput { id: e; focus: true; selectByMouse: true; }", editorChanges + inputChanges,
         editorFault},
        {"TextEdit", "TextEdit { id: e; focus: true; selectByMouse: true; textFormat: TextEdit.PlainText }",
         editorChanges + editChanges, editorFault},
        {"Flickable",
         "Flickable { id: e; width: 90; height: 90; contentWidth: 200; contentHeight: 300; property real v: "
         "0\n"
         "Rectangle { width: 200; height: 300 } }",
         {"e.contentX = %1 * 9", "e.contentY = %1 * 9", "e.contentWidth = %1 * 30",
          "e.contentHeight = %1 * 30", "e.width = %1 * 5", "e.height = %1 * 5", "e.returnToBounds()",
          "e.interactive = !e.interactive", "e.boundsBehavior = Math.abs(%1) % 3",
          "e.resizeContent(%1 * 9, %2 * 9, Qt.point(%1, %2))", "e.pressDelay = Math.abs(%1)",
          "e.flickableDirection = Math.abs(%1) % 4", "e.flickDeceleration = %1",
          "e.maximumFlickVelocity = %1 * 100", "e.visible = !e.visible"},
         "(function() {\n"
         "  if (e.contentX % 1 || e.contentY % 1 || isNaN(e.contentX + e.contentY)) return 'position'\n"
         "  if (e.contentItem.x != -e.contentX || e.contentItem.y != -e.contentY) return 'content'\n"
         "  return (e.moving != (e.movingHorizontally || e.movingVertically)) ? 'moving' : '' })()"},
        {"PathView",
         "PathView { id: e; width: 90; height: 90; model: rows; pathItemCount: 4\n"
         "delegate: Rectangle { property int row: index; width: size; height: 9 }\n"
         "path: Path { startX: 10; startY: 10; PathLine { x: 80; y: 10 } PathPercent { value: 0.3 }"
         " PathLine { x: 80; y: 80 } PathPercent { value: 1 } } }",
         modelChanges
             + QList<QByteArray>{"e.offset = %1 / 3", "e.currentIndex = %1", "e.incrementCurrentIndex()",
                                 "e.decrementCurrentIndex()", "e.pathItemCount = Math.abs(%1) % 9",
                                 "e.highlightRangeMode = Math.abs(%1) % 3",
                                 "e.preferredHighlightBegin = %1 / 9", "e.preferredHighlightEnd = %1 / 9",
                                 "e.dragMargin = %1", "e.interactive = !e.interactive",
                                 "e.highlightMoveDuration = Math.abs(%1)",
                                 "e.highlight = e.highlight ? null : box", "e.model = e.model ? null : rows"},
         "(function() {\n"
         "  if (e.count != (e.model ? rows.count : 0)) return 'count ' + e.count\n"
         "  if (isNaN(e.offset) || e.count > 0 && (e.offset < 0 || e.offset >= e.count)) return 'offset ' + "
         "e.offset\n"
         "  var all = e.children, found = {}\n"
         "  for (var i = 0; i < all.length; ++i) {\n"
         "    if (all[i].row === undefined) continue\n"
         "    if (all[i].row >= e.count || found[all[i].row]) return 'row ' + all[i].row\n"
         "    found[all[i].row] = true } return '' })()"},
        {"ListView",
         "ListView { id: e; width: 90; height: 90; model: rows\n"
         "delegate: Rectangle { property int row: index; width: 40; height: size } }",
         viewChanges + QList<QByteArray>{"e.spacing = %1", "e.highlightMoveSpeed = %1 * 100"}, viewFault},
        {"GridView",
         "GridView { id: e; width: 90; height: 90; model: rows; cellWidth: 30; cellHeight: 20\n"
         "delegate: Rectangle { property int row: index; width: 20; height: size }\n"
         "function incrementCurrentIndex() { moveCurrentIndexRight() } }",
         viewChanges + QList<QByteArray>{"e.cellWidth = %1", "e.cellHeight = %1", "e.flow = 1 - e.flow"},
         viewFault},
    };
}

} // namespace

Q_DECLARE_METATYPE(Subject)

void tst_Changes::keepsItsState_data()
{
    QTest::addColumn<Subject>("subject");
    QTest::addColumn<uint>("seed");
    for (const Subject &subject : subjects()) {
        for (uint seed = 1; seed <= 6; ++seed)
            QTest::addRow("%s %u", subject.name, seed) << subject << seed;
    }
}

void tst_Changes::keepsItsState()
{
    QFETCH(Subject, subject);
    QFETCH(uint, seed);
    std::mt19937 random(seed);
    const auto below = [&random](int bound) { return int(random() % unsigned(bound)); };
    WatchedScene scene;
    QVERIFY(scene.load(QByteArray("Item { width: 100; height: 100\n") + model
                       + "Component { id: box; Rectangle { width: 9; height: 9 } }\n" + subject.body + " }"));
    for (int i = 0; i < changes; ++i) {
        QByteArray change = subject.changes.at(below(subject.changes.size()));
        change.replace("%1", QByteArray::number(below(40) - 12))
            .replace("%2", QByteArray::number(below(9) - 2));
        scene.evaluate(change);
        if (below(8) == 0)
            scene.drag({{below(90), below(90)}, {below(90), below(90)}, {below(90), below(90)}});
        if (below(4) == 0)
            scene.release({below(90), below(90)});
        if (below(3) == 0)
            QCoreApplication::processEvents();
        const QString fault = scene.evaluate(subject.fault).toString();
        QVERIFY2(
            fault.isEmpty(),
            qPrintable(QStringLiteral("%1 after %2 (%3)").arg(fault, QString::fromLatin1(change)).arg(i)));
    }
    QCOMPARE(scene.warnings, QStringList());
}

QTEST_MAIN(tst_Changes)
#include "tst_changes.moc"
