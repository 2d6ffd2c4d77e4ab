#include "SceneText.h"

#include "FuzzInput.h"

#include <QtCore/QHash>

namespace {

constexpr int mostObjects = 40;
constexpr int deepest = 4;

const QList<QByteArray> visualTypes = {
    "Item",      "Rectangle", "Text",      "MouseArea",  "ListView",  "GridView",    "PathView",
    "Repeater",  "Loader",    "Flickable", "Column",     "Row",       "Grid",        "Flow",
    "TextInput", "TextEdit",  "Image",     "FocusScope", "Flipable",  "BorderImage", "AnimatedImage",
    "PinchArea", "Item",      "ListView",  "Repeater",   "MouseArea", "Column",
};

const QHash<QByteArray, QList<QByteArray>> properties = {
    {"Item",
     {"x", "y", "width", "height", "z", "opacity", "visible", "enabled", "focus", "clip", "rotation", "scale",
      "parent", "anchors.left", "anchors.fill", "anchors.centerIn", "anchors.bottomMargin", "state",
      "smooth"}},
    {"Text", {"text", "wrapMode", "elide", "font.pixelSize", "maximumLineCount", "lineHeight"}},
    {"TextInput", {"text", "maximumLength", "cursorPosition", "inputMask", "readOnly", "cursorDelegate"}},
    {"TextEdit", {"text", "wrapMode", "cursorPosition", "readOnly", "textFormat", "cursorDelegate"}},
    {"Rectangle", {"color", "radius", "border.width"}},
    {"MouseArea", {"hoverEnabled", "drag.target", "drag.axis", "drag.filterChildren"}},
    {"ListView",
     {"model", "spacing", "cacheBuffer", "currentIndex", "orientation", "snapMode", "highlightRangeMode",
      "preferredHighlightBegin", "preferredHighlightEnd", "section.property", "contentY", "layoutDirection",
      "highlightFollowsCurrentItem", "highlightMoveDuration"}},
    {"GridView",
     {"model", "cellWidth", "cellHeight", "cacheBuffer", "currentIndex", "flow", "snapMode", "contentY",
      "highlightRangeMode", "preferredHighlightEnd", "layoutDirection"}},
    {"PathView",
     {"model", "pathItemCount", "currentIndex", "offset", "highlightRangeMode", "preferredHighlightBegin",
      "preferredHighlightEnd", "dragMargin", "highlightMoveDuration"}},
    {"Repeater", {"model"}},
    {"Loader", {"source"}},
    {"Flickable", {"contentWidth", "contentHeight", "contentX", "contentY", "boundsBehavior", "pressDelay"}},
    {"Column", {"spacing"}},
    {"Row", {"spacing", "layoutDirection"}},
    {"Grid", {"rows", "columns", "spacing", "flow", "layoutDirection"}},
    {"Flow", {"spacing", "flow"}},
    {"Image", {"source", "fillMode", "sourceSize.width"}},
    {"BorderImage", {"source", "border.left"}},
};

const QHash<QByteArray, QList<QByteArray>> handlers = {
    {"Item",
     {"Component.onCompleted", "Component.onDestruction", "onXChanged", "onWidthChanged", "onHeightChanged",
      "onVisibleChanged", "onFocusChanged", "onActiveFocusChanged", "onParentChanged", "onChildrenChanged",
      "Keys.onPressed", "onStateChanged", "onOpacityChanged", "onChildrenRectChanged"}},
    {"MouseArea", {"onClicked", "onPressed", "onReleased", "onEntered", "onExited", "onPositionChanged"}},
    {"ListView",
     {"onCurrentIndexChanged", "onCountChanged", "onContentYChanged", "onModelChanged", "onMovementEnded",
      "onCurrentSectionChanged", "onHighlightItemChanged", "onCurrentItemChanged"}},
    {"GridView", {"onCurrentIndexChanged", "onCountChanged", "onContentYChanged", "onModelChanged"}},
    {"PathView", {"onCurrentIndexChanged", "onOffsetChanged", "onCountChanged", "onMovementStarted"}},
    {"Repeater", {"onItemAdded", "onItemRemoved", "onCountChanged", "onModelChanged"}},
    {"Loader", {"onLoaded", "onStatusChanged", "onItemChanged"}},
    {"Flickable", {"onContentYChanged", "onMovementStarted", "onFlickEnded", "onContentWidthChanged"}},
    {"TextInput", {"onTextChanged", "onCursorPositionChanged", "onAccepted", "onSelectedTextChanged"}},
    {"TextEdit", {"onTextChanged", "onCursorPositionChanged", "onSelectionStartChanged"}},
    {"Text", {"onTextChanged", "onPaintedSizeChanged"}},
};

const QList<QByteArray> rowHandlers = {
    "ListView.onAdd",
    "ListView.onRemove",
    "GridView.onRemove",
    "PathView.onPathChanged",
    "onYChanged",
    "Component.onCompleted",
    "onXChanged",
    "Component.onDestruction",
    "ListView.onIsCurrentItemChanged",
};

const char head[] = R"(import QtQuick 1.1
Item {
id: o0
width: 400
height: 400
focus: true
property int budget: 400
function may() { return --budget > 0 }
ListModel { id: rows; ListElement { v: "a"; h: 20 } ListElement { v: "b"; h: 0 } ListElement { v: "b"; h: 30 } }
VisualItemModel { id: things; Item { width: 20; height: 20 } Rectangle { width: 30; height: 10 } }
VisualDataModel { id: shared; model: rows; delegate: Rectangle { width: 40; height: 20; color: "red" } }
Component { id: box; Rectangle { width: 10; height: 10; color: "blue" } }
Component { id: nothing; QtObject { } }
Timer { interval: 1; repeat: true; running: true; onTriggered: if (o0.may()) { )";

} // namespace

SceneText::SceneText(FuzzInput *choices)
    : m_choices(choices)
{
    m_text = head;
    line(statement() + " } }");
    do
        addObject(choice(visualTypes), 0);
    while (m_objects < mostObjects && !m_choices->isEmpty());
    // Names that no object has taken.
    for (int i = m_lastName + 1; i <= mostObjects; ++i)
        line("property Item o" + QByteArray::number(i));
    line("}");
}

void SceneText::line(const QByteArray &text)
{
    m_text += text + '\n';
}

QByteArray SceneText::choice(const QList<QByteArray> &list)
{
    return list.at(m_choices->takeByte() % list.count());
}

QByteArray SceneText::name()
{
    return "o" + QByteArray::number(m_choices->takeByte() % (mostObjects + 1));
}

QByteArray SceneText::number()
{
    return choice({"0", "1", "-1", "20", "100", "0.5", "-30", "3", "1e9", "-1e9", "2147483647", "NaN",
                   "Infinity", "budget", "1/3"});
}

QByteArray SceneText::value(const QByteArray &property)
{
    if (property.contains("anchors.left"))
        return name() + ".right";
    if (property.contains("anchors.") && !property.contains("Margin"))
        return choice({"parent", name(), "undefined"});
    if (property == "parent" || property == "drag.target")
        return name();
    if (property == "model")
        return choice(
            {"rows", "3", "things", "shared", "100", "[1, 2, 3]", "0", "null", "rows.count", name()});
    if (property == "text" || property == "inputMask" || property == "section.property"
        || property == "state")
        return choice({"'v'", "'<b>x</b> y'", "'a\\nb c d e f'", "'999'", "''", "budget"});
    if (property == "source")
        return choice({"'Missing.qml'", "'Scene.qml'", "''", "'data:,x'"});
    if (property == "cursorDelegate")
        return choice({"box", "nothing", "null"});
    if (property == "color")
        return choice({"'red'", "'nonsense'", "'transparent'"});
    if (property == "visible" || property == "enabled" || property == "focus" || property == "clip")
        return choice({"true", "false", "!parent.visible", name() + ".visible"});
    return choice({number(), name() + ".width", name() + ".height / 2", "parent.width", number()});
}

QByteArray SceneText::statement()
{
    const QByteArray one = name();
    const QByteArray two = name();
    return choice({
        "rows.append({v: 'c', h: 10})",
        "rows.remove(0)",
        "rows.clear()",
        "rows.insert(0, {v: 'd', h: 40})",
        "rows.move(0, rows.count - 1, 1)",
        "rows.setProperty(0, 'v', budget)",
        "rows.sync()",
        one + ".model = " + value("model"),
        one + ".delegate = " + choice({"box", "null", "nothing"}),
        one + ".header = " + choice({"box", "null"}),
        one + ".footer = " + choice({"box", "null"}),
        one + ".highlight = " + choice({"box", "null"}),
        one + ".currentIndex = " + number(),
        one + ".contentY = " + number(),
        one + ".width = " + number(),
        one + ".height += 1",
        one + ".x = " + number(),
        one + ".visible = !" + one + ".visible",
        one + ".focus = true",
        one + ".forceActiveFocus()",
        one + ".parent = " + choice({two, "null"}),
        one + ".destroy()",
        one + ".sourceComponent = " + choice({"box", "null", "nothing"}),
        one + ".source = " + value("source"),
        one + ".state = " + choice({"'s'", "''"}),
        one + ".positionViewAtIndex(" + number() + ", " + choice({"0", "1", "2", "3", "4"}) + ")",
        one + ".text = " + value("text"),
        one + ".orientation = 1 - " + one + ".orientation",
        one + ".cacheBuffer = " + number(),
        one + ".spacing = " + number(),
        one + ".children = " + two + ".children",
        one + ".children[0].destroy()",
        one + ".offset = " + number(),
        one + ".anchors.fill = " + choice({"undefined", "parent", two}),
        one + ".select(0, " + number() + ")",
        one + ".currentItem.height = " + number(),
        one + ".incrementCurrentIndex()",
        "box.createObject(" + two + ")",
        "parent.visible = false",
        "height = " + number(),
    });
}

void SceneText::addObject(const QByteArray &type, int depth)
{
    ++m_objects;
    line(type + " {");
    // What stands in a component is out of reach of others.
    if (depth < 100 && m_lastName < mostObjects)
        line("id: o" + QByteArray::number(++m_lastName));
    line("width: " + choice({"100", "40", "0", "parent.width"}));
    line("height: " + choice({"100", "20", "0", "childrenRect.height"}));
    addProperties(type);
    addHandlers(type);
    addParts(type, depth % 100);
    const int children = depth % 100 < deepest ? m_choices->takeByte() % 4 : 0;
    for (int i = 0; i < children && m_objects < mostObjects; ++i)
        addObject(choice(visualTypes), depth + 1);
    line("}");
}

void SceneText::addProperties(const QByteArray &type)
{
    QList<QByteArray> used = {"width", "height"};
    const QList<QByteArray> all = properties.value(type) + properties.value("Item");
    for (int i = m_choices->takeByte() % 5; i > 0; --i) {
        const QByteArray property = choice(all);
        if (used.contains(property))
            continue;
        used.append(property);
        // In brackets, as what is found wrong only when it is evaluated.
        line(property + ": (" + value(property) + ")");
    }
}

void SceneText::addHandlers(const QByteArray &type)
{
    QList<QByteArray> used;
    const QList<QByteArray> all = handlers.value(type) + handlers.value("Item");
    for (int i = m_choices->takeByte() % 4; i > 0; --i) {
        const QByteArray handler = choice(all);
        if (used.contains(handler))
            continue;
        used.append(handler);
        line(handler + ": if (o0.may()) { try { " + statement() + " } catch (e) { } " + statement() + " }");
    }
}

void SceneText::addComponent(const QByteArray &property, int depth)
{
    ++m_objects;
    const QByteArray handler = choice(rowHandlers);
    line(property + ": Rectangle {");
    line("width: " + choice({"20", "100", "0"}) + "; height: " + choice({"20", "h", "0", "index"}));
    line("property variant view: ListView.view");
    line(handler + ": if (o0.may()) { try { " + statement() + " } catch (e) { } " + statement() + " }");
    if (depth < deepest && m_choices->takeByte() % 3 == 1)
        addObject(choice(visualTypes), depth + 101);
    line("}");
}

void SceneText::addParts(const QByteArray &type, int depth)
{
    const bool isView = type == "ListView" || type == "GridView";
    if (isView || type == "PathView" || type == "Repeater")
        addComponent("delegate", depth);
    if (type == "PathView")
        line("path: Path { startX: 10; startY: 10; PathLine { x: (" + number()
             + "); y: 100 } PathPercent { value: (" + number()
             + ") } PathQuad { x: 9; y: 200; controlX: 7; controlY: (" + number() + ") } }");
    if (isView && m_choices->takeByte() % 2) {
        addComponent("header", depth);
        addComponent("footer", depth);
    }
    if ((isView || type == "PathView") && m_choices->takeByte() % 2)
        addComponent("highlight", depth);
    if (type == "ListView" && m_choices->takeByte() % 2)
        addComponent("section.delegate", depth);
    if (type == "Loader")
        addComponent("sourceComponent", depth);
    if (m_choices->takeByte() % 4 == 1)
        line("Behavior on x { NumberAnimation { duration: 5 } }");
    if (m_choices->takeByte() % 4 == 1)
        line("states: State { name: 's'; PropertyChanges { target: " + name() + "; height: (" + number()
             + ") } AnchorChanges { target: " + name() + "; anchors.top: " + name()
             + ".bottom } ParentChange { target: " + name() + "; parent: " + name() + " } }");
}
