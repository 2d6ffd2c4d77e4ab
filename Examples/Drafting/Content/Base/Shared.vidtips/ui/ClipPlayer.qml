import QtQuick 1.1
import com.corvale.vidtips.qml 1.0

// A clip with its controls. Playback starts when the first picture is there: before that there is no position
// to play from.
FocusScope {
    id: player

    property variant ui
    property string source: ""
    property bool autoplay: true
    property bool ready: false
    property bool playing: video.state === 2
    property bool ended: ready && !playing && video.progress > 0.99

    function toggle() {
        if (playing)
            video.pause();
        else if (ready)
            video.play();
    }

    function pause() {
        video.pause();
    }

    function seek(progress) {
        video.progress = Math.max(0, Math.min(0.999, progress));
    }

    width: parent ? parent.width : 352
    height: stage.height + controls.height

    Keys.onSpacePressed: toggle()
    Keys.onLeftPressed: { video.pause(); seek(video.progress - 0.04) }
    Keys.onRightPressed: { video.pause(); seek(video.progress + 0.04) }

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
            onLoadProgressChanged: {
                if (player.ready || !(video.loadProgress > 0))
                    return;
                player.ready = true;
                if (player.autoplay)
                    video.play();
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
            onClicked: { player.focus = true; player.toggle() }
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
            glyph: player.playing ? "pause" : "play"
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
                property bool resume: false
                anchors.fill: parent
                hoverEnabled: true
                onPressed: {
                    resume = player.playing;
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
                    if (resume)
                        video.play();
                }
            }
        }
    }
}
