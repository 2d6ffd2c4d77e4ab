import QtQuick 1.1
import com.corvale.vidtips.qml 1.0
import "content.js" as Content

// The full tip. It opens small, with what answers most questions, and grows after a moment or at a click. The file
// stays loaded from tip to tip: everything follows from "vidtip", which names another element each time.
Rectangle {
    id: root

    property QtObject tip: vidtip
    property bool complete: false
    property string key: ""
    property string title: ""
    property string summary: ""
    property string shortcut: ""
    property string unavailable: ""
    property string help: ""
    property string clip: ""
    property string picture: ""
    property variant steps: []
    property variant notes: []
    property bool hasMore: clip !== "" || picture !== "" || steps.length > 0 || notes.length > 0 || help !== ""
    property bool pinned: vidTipView.reserved
    property bool plays: !!media.item && !!media.item.toggle && media.item.visible

    function read() {
        // The same tip in another language stays as it has grown; a tip that goes leaves this state.
        var isBeingRead = state === "expanded" && !!tip && tip.attribute("key") === key;
        if (!isBeingRead)
            state = "";
        if (!tip || !complete)
            return;
        key = tip.attribute("key");
        look.motion = Content.hostProperty("motion", "on") !== "off";
        title = Content.attribute(tip, "title");
        shortcut = tip.attribute("shortcut");
        summary = Content.text(tip, "summary");
        unavailable = Content.hostProperty("available", "on") === "off" ? Content.text(tip, "unavailable") : "";
        help = vidTipView.documentationAvailable ? tip.attribute("help") : "";
        clip = Content.resource(tip, "clip");
        picture = Content.resource(tip, "picture");
        steps = Content.texts(tip, "step");
        notes = Content.texts(tip, "note");
        helpButton.label = Content.word(QT_TRANSLATE_NOOP("VidtipsUI", "More help"));
        pinButton.label = Content.word(QT_TRANSLATE_NOOP("VidtipsUI", "Keep open"));
        more.VTAccessible.name = Content.word(QT_TRANSLATE_NOOP("VidtipsUI", "Show more"));
        if (hasMore)
            dwell.restart();
        else
            dwell.stop();
        // A kept tip changes its name with the language.
        if (pinned)
            tip.title = title;
        else
            root.focus = true;
        if (isBeingRead && !hasMore)
            state = "";
        else if (isBeingRead)
            fill();
        else if (pinned)
            expand();
    }

    function expand() {
        if (!hasMore || state === "expanded")
            return;
        fill();
        state = "expanded";
    }

    // What is only seen in a tip that has grown.
    function fill() {
        dwell.stop();
        release.stop();
        words.sourceComponent = undefined;
        words.sourceComponent = wordsPart;
        media.sourceComponent = undefined;
        media.sourceComponent = clip !== "" ? clipPart : picture !== "" ? picturePart : undefined;
    }

    function pin() {
        expand();
        vidTipView.stayOpen = true;
        // What the window is to be called, in the user's language.
        tip.title = title;
        vidTipView.reserved = true;
        takeFocus();
    }

    // The first of what the keyboard can do in a kept tip.
    function takeFocus() {
        if (plays)
            media.forceActiveFocus();
        else if (helpButton.visible)
            helpButton.forceActiveFocus();
        else
            root.forceActiveFocus();
    }

    onTipChanged: read()
    onStateChanged: {
        if (state !== "")
            return;
        if (media.item && media.item.pause)
            media.item.pause();
        release.restart();
    }
    Component.onCompleted: { complete = true; read() }

    // The window is one pixel wider and higher than the view and shows the same colour there, so the frame stands
    // one pixel inside the view at the top and at the left as well.
    width: 355
    height: content.height + 3
    color: look.window
    focus: true

    Keys.onPressed: {
        // The library closes a window of its own, and the host one that it has made.
        if (event.key === Qt.Key_Escape && pinned) {
            vidTipView.notification(100, "close");
            return;
        }
        if (event.key === Qt.Key_F1 && help !== "")
            vidTipView.openExternalResource(help);
        else if (event.key === Qt.Key_Space && plays)
            media.item.toggle();
        else
            return;
        event.accepted = true;
    }

    Style { id: look }

    Timer {
        id: dwell
        objectName: "dwell"
        interval: 900
        // A window that is hidden sooner says nothing if its tip is still small.
        onTriggered: {
            if (vidTipView.visible)
                root.expand();
        }
    }

    // A clip's pictures are not kept for a tip that is closed or small, but ending a clip takes a moment, which
    // must not delay the next tip. Nor must the steps and notes: what is only seen in a tip that has grown is
    // made as it grows.
    Timer {
        id: release
        interval: 300
        onTriggered: {
            media.sourceComponent = undefined;
            words.sourceComponent = undefined;
        }
    }

    // A border of one pixel lies within its item at the left and above, and beyond it at the right and below.
    Rectangle {
        x: 1
        y: 1
        width: root.width - 2
        height: root.height - 2
        color: "transparent"
        border { width: 1; color: look.text }
        opacity: look.hairline + 0.06
    }
    MouseArea {
        id: more
        anchors.fill: parent
        VTAccessible.ignored: !root.hasMore || root.state !== ""
        onClicked: root.expand()
    }

    Component {
        id: clipPart

        ClipPlayer {
            ui: look
            focus: true
            autoplay: look.motion
            name: root.title
            Component.onCompleted: source = root.clip
        }
    }
    Component {
        id: picturePart

        PictureStage {
            ui: look
            name: root.title
            Component.onCompleted: source = Content.pictureUrl(root.tip, root.picture)
        }
    }

    Component {
        id: wordsPart

        Column {
            id: lists

            property variant steps: []
            property variant notes: []
            property bool followsClip: false

            width: parent ? parent.width : 0
            Component.onCompleted: {
                followsClip = root.clip !== "";
                steps = root.steps;
                notes = root.notes;
            }

            Item {
                width: parent.width
                height: lists.steps.length > 0 ? stepList.height + stepList.y + 12 : 0
                visible: lists.steps.length > 0

                StepList {
                    id: stepList
                    x: look.margin
                    y: lists.followsClip && media.height > 0 ? 4 : 12
                    width: parent.width - 2 * look.margin
                    ui: look
                    steps: lists.steps
                }
            }
            Item {
                width: parent.width
                height: lists.notes.length > 0 ? noteList.height + 12 : 0
                visible: lists.notes.length > 0

                NoteList {
                    id: noteList
                    x: look.margin
                    width: parent.width - 2 * look.margin
                    ui: look
                    notes: lists.notes
                }
            }
        }
    }

    Column {
        id: content
        x: 2
        y: 2
        width: root.width - 3

        Item {
            id: header
            width: parent.width
            height: 12 + Math.max(titleText.paintedHeight, chip.height)

            Text {
                id: titleText
                x: look.mirrored ? parent.width - width - look.margin : look.margin
                y: 12
                width: parent.width - 2 * look.margin - (chip.width > 0 ? chip.width + 12 : 0)
                text: root.title
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                horizontalAlignment: look.textAlign
                VTAccessible.role: VTAccessible.Heading
                font { pixelSize: look.title; bold: true }
                color: look.text
            }
            KeyChip {
                id: chip
                x: look.mirrored ? look.margin : parent.width - width - look.margin
                y: 12
                ui: look
                shortcut: root.shortcut
                width: root.shortcut === "" ? 0 : childrenRect.width
            }
        }
        Item {
            width: parent.width
            height: summaryText.text === "" ? 4 : summaryText.paintedHeight + 4

            Text {
                id: summaryText
                x: look.margin
                y: 4
                width: parent.width - 2 * look.margin
                text: root.summary
                textFormat: Text.PlainText
                wrapMode: Text.Wrap
                horizontalAlignment: look.textAlign
                font.pixelSize: look.body
                color: look.text
                opacity: look.soft
            }
        }
        Item {
            width: parent.width
            height: root.unavailable === "" ? 0 : reason.height + 12
            visible: root.unavailable !== ""

            NoteList {
                id: reason
                x: look.margin
                y: 12
                width: parent.width - 2 * look.margin
                ui: look
                color: look.caution
                notes: root.unavailable === "" ? [] : [root.unavailable]
            }
        }
        Item {
            id: foot
            width: parent.width
            height: root.hasMore && root.state === "" ? 20 : 12

            Glyph {
                anchors.centerIn: parent
                name: "more"
                width: 16
                height: 12
                color: look.text
                opacity: look.faint
                visible: root.hasMore && root.state === ""
            }
        }
        Item {
            id: detail
            width: parent.width
            height: 0
            clip: true

            Column {
                id: parts
                width: parent.width

                Item {
                    width: parent.width
                    height: media.item ? media.item.height : 0

                    Loader {
                        id: media
                        width: parent.width
                        KeyNavigation.tab: helpButton
                        KeyNavigation.backtab: pinButton
                    }
                }
                Item {
                    width: parent.width
                    height: words.item ? words.item.height : 0

                    Loader {
                        id: words
                        width: parent.width
                    }
                }
                Item {
                    id: footer
                    width: parent.width
                    height: 40

                    Rectangle {
                        width: parent.width
                        height: 1
                        color: look.text
                        opacity: look.hairline
                    }
                    ActionButton {
                        id: helpButton
                        x: look.mirrored ? parent.width - width - 8 : 8
                        y: 6
                        ui: look
                        glyph: ""
                        color: look.accentText
                        visible: root.help !== ""
                        onClicked: vidTipView.openExternalResource(root.help)
                        KeyNavigation.tab: pinButton
                        KeyNavigation.backtab: root.plays ? media : pinButton
                    }
                    ActionButton {
                        id: pinButton
                        x: look.mirrored ? 8 : parent.width - width - 8
                        y: 6
                        ui: look
                        glyph: "pin"
                        visible: !root.pinned
                        onClicked: root.pin()
                        KeyNavigation.tab: root.plays ? media : helpButton
                        KeyNavigation.backtab: helpButton
                    }
                }
            }
        }
    }

    states: State {
        name: "expanded"
        PropertyChanges { target: detail; height: parts.height }
    }
    transitions: Transition {
        to: "expanded"
        NumberAnimation { target: detail; property: "height"; duration: look.growTime; easing.type: Easing.OutCubic }
    }
}
