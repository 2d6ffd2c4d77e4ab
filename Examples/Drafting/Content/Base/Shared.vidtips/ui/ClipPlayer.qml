import QtQuick 1.1
import com.corvale.vidtips.qml 1.0
import "content.js" as Content

// A clip with its controls. Playback starts when the first picture is there: before that there is no position
// to play from. It pauses by itself when the last picture has been decoded, however far it has come, and when it
// has caught up with the decoder; "wanted" remembers to go on from there. A clip that is missing or broken takes no
// room, and there is nothing to play.
FocusScope {
    id: player

    property variant ui
    property string source: ""
    property string name: ""
    property string playWord: Content.word(QT_TRANSLATE_NOOP("VidtipsUI", "Play"))
    property string pauseWord: Content.word(QT_TRANSLATE_NOOP("VidtipsUI", "Pause"))
    property bool autoplay: true
    property bool ready: false
    property bool playing: video.state === 2
    property bool wanted: false
    property bool broken: video.status === VTVideoComponent.Error

    function play() {
        wanted = true;
        if (ready)
            video.play();
    }

    function pause() {
        wanted = false;
        video.pause();
    }

    function toggle() {
        if (playing)
            pause();
        else
            play();
    }

    function seek(progress) {
        if (ready)
            video.progress = Math.max(0, Math.min(0.999, progress));
    }

    width: parent ? parent.width : 352
    height: broken ? 0 : stage.height + controls.height
    visible: !broken

    onPlayingChanged: goOn.start()

    Keys.onLeftPressed: { pause(); seek(video.progress - 0.04) }
    Keys.onRightPressed: { pause(); seek(video.progress + 0.04) }

    Timer {
        id: goOn
        interval: 1
        onTriggered: {
            if (player.wanted && !player.playing && !video.scrubbing && video.progress < 0.99)
                video.play();
        }
    }

    Rectangle {
        id: stage
        width: parent.width
        height: Math.round(width * 9 / 16)
        color: "#171d25"
        clip: true

        VTVideoComponent {
            id: video
            property real fit: Math.min(stage.width / contentWidth, stage.height / contentHeight)
            x: Math.round((stage.width - contentWidth * fit) / 2)
            y: Math.round((stage.height - contentHeight * fit) / 2)
            width: contentWidth
            height: contentHeight
            transformOrigin: Item.TopLeft
            scale: fit
            smooth: fit !== 1
            source: player.source
            VTAccessible.name: player.name
            VTAccessible.onPressed: player.toggle()
            // A window that is hidden at once says nothing to the user interface.
            onPositionChanged: {
                if (!vidTipView.visible)
                    player.pause();
            }
            onLoadProgressChanged: {
                if (!player.ready && video.loadProgress > 0) {
                    player.ready = true;
                    // Somebody may have asked for it already.
                    player.wanted = player.wanted || player.autoplay;
                }
                goOn.start();
            }
        }
        Rectangle {
            anchors.centerIn: parent
            width: 48
            height: 48
            radius: 24
            smooth: true
            color: "#000000"
            opacity: player.ready && !player.playing && !scrub.pressed ? 0.55 : 0
            Behavior on opacity { NumberAnimation { duration: player.ui.growTime } }
        }
        Glyph {
            anchors.centerIn: parent
            width: 24
            height: 24
            name: "play"
            color: "#ffffff"
            visible: player.ready && !player.playing && !scrub.pressed
        }
        MouseArea {
            anchors.fill: parent
            // The button below does the same.
            VTAccessible.ignored: true
            onClicked: { player.forceActiveFocus(); player.toggle() }
        }
    }

    // Time runs from left to right in either reading direction, as it does on every player.
    Item {
        id: controls
        anchors.top: stage.bottom
        width: parent.width
        height: 36

        ActionButton {
            id: playButton
            x: 8
            anchors.verticalCenter: parent.verticalCenter
            ui: player.ui
            focus: true
            glyph: player.playing ? "pause" : "play"
            name: player.playing ? player.pauseWord : player.playWord
            onClicked: player.toggle()
        }
        Item {
            id: bar
            anchors { left: playButton.right; leftMargin: 8; right: parent.right; rightMargin: player.ui.margin; verticalCenter: parent.verticalCenter }
            height: 20

            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
                height: 4
                radius: 2
                smooth: true
                color: player.ui.text
                opacity: player.ui.hairline
            }
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                width: Math.max(4, parent.width * Math.min(1, video.progress))
                height: 4
                radius: 2
                smooth: true
                color: player.ui.accent
            }
            Rectangle {
                anchors.verticalCenter: parent.verticalCenter
                x: Math.min(1, video.progress) * (parent.width - width)
                width: 12
                height: 12
                radius: 6
                smooth: true
                color: player.ui.accent
                opacity: scrub.containsMouse || scrub.pressed || !player.playing ? 1 : 0
            }
            MouseArea {
                id: scrub
                anchors.fill: parent
                hoverEnabled: true
                // For the pointer alone: the arrow keys move the clip as well.
                VTAccessible.ignored: true
                onPressed: {
                    video.scrubbing = true;
                    video.pause();
                    player.seek(mouse.x / width);
                }
                onPositionChanged: {
                    if (pressed)
                        player.seek(mouse.x / width);
                }
                onReleased: {
                    video.scrubbing = false;
                    goOn.start();
                }
            }
        }
    }
}
