import QtQuick 1.1
import com.corvale.vidtips.qml 1.0

// The full tip of @NAME@. The file stays loaded from tip to tip: "vidtip" names another element each time.
Rectangle {
    id: root

    property QtObject tip: vidtip
    property bool complete: false
    property int margin: 12
    property variant steps: []

    function text(name) {
        var element = tip.childElement(name);
        return element ? vidTipView.interpolate(element.content.replace(/\s+/g, " ").replace(/^ | $/g, "")) : "";
    }

    function source(name) {
        var element = tip.childElement(name);
        return element ? element.attribute("source") : "";
    }

    function resource(name) {
        var file = source(name);
        var path = file === "" ? "" : vidTipView.findResource(file);
        // For a file that there is not, the view gives the name of the folder.
        return path !== "" && path.split("/").pop() === file.split("/").pop() ? fileUrl(path) : "";
    }

    // A catalogue that lacks a word gives nothing for it.
    function word(source) {
        var translated = vidTipView.translate(source, "VidtipsUI");
        return translated ? translated : source;
    }

    function fileUrl(path) {
        return "file://" + (path.charAt(0) === "/" ? "" : "/") + encodeURI(path).replace(/#/g, "%23").replace(/\?/g, "%3F");
    }

    function read() {
        if (!tip || !complete)
            return;
        title.text = vidTipView.interpolate(tip.attribute("title"));
        shortcut.text = tip.attribute("shortcut");
        summary.text = text("summary");
        icon.source = resource("icon");
        picture.source = resource("picture");
        clip.started = false;
        clip.source = source("clip");
        var found = tip.childElementList("step");
        var texts = [];
        for (var i = 0; i < found.length; ++i)
            texts.push(vidTipView.interpolate(found[i].content));
        steps = texts;
        keep.text = word(QT_TRANSLATE_NOOP("VidtipsUI", "Keep open"));
    }

    onTipChanged: read()
    Component.onCompleted: { complete = true; read() }

    width: 360
    height: content.height + 2 * margin
    color: palette.window
    border { width: 1; color: palette.mid }

    SystemPalette { id: palette }

    Column {
        id: content
        x: root.margin
        y: root.margin
        width: root.width - 2 * root.margin
        spacing: 8

        Item {
            width: parent.width
            height: Math.max(icon.height, title.paintedHeight)

            Image {
                id: icon
                visible: status === Image.Ready
                width: visible ? 24 : 0
                height: width
                fillMode: Image.PreserveAspectFit
                smooth: true
            }
            Text {
                id: title
                anchors { left: icon.right; leftMargin: icon.visible ? 8 : 0; verticalCenter: parent.verticalCenter }
                width: parent.width - anchors.leftMargin - icon.width - shortcut.paintedWidth - 8
                font.bold: true
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: palette.windowText
            }
            Text {
                id: shortcut
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                textFormat: Text.PlainText
                color: palette.windowText
                opacity: 0.6
            }
        }
        Text {
            id: summary
            visible: text !== ""
            width: parent.width
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            color: palette.windowText
        }
        Image {
            id: picture
            width: parent.width
            height: status === Image.Ready ? Math.round(width * sourceSize.height / sourceSize.width) : 0
            visible: status === Image.Ready
            smooth: true
        }
        Item {
            width: parent.width
            height: visible ? Math.round(clip.contentHeight * clip.fit) : 0
            visible: clip.status === VTVideoComponent.Loading || clip.status === VTVideoComponent.Ready

            VTVideoComponent {
                id: clip
                property bool started: false
                property real fit: parent.width / contentWidth
                width: contentWidth
                height: contentHeight
                transformOrigin: Item.TopLeft
                scale: fit
                smooth: true
                // There is no position to play from before the first picture is there.
                onLoadProgressChanged: {
                    if (!started && loadProgress > 0) {
                        started = true;
                        play();
                    }
                }
            }
        }
        Repeater {
            model: root.steps

            Text {
                width: content.width
                text: (index + 1) + ". " + modelData
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                color: palette.windowText
            }
        }
        Text {
            id: keep
            visible: !vidTipView.reserved
            height: Math.max(24, paintedHeight)
            verticalAlignment: Text.AlignVCenter
            font.underline: true
            color: palette.windowText

            MouseArea {
                anchors.fill: parent
                onClicked: { vidTipView.stayOpen = true; vidTipView.reserved = true }
            }
        }
    }
}
