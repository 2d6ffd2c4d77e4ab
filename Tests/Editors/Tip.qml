import com.corvale.vidtips.qml 1.0

VTStyledRectangle {
    width: 200
    height: clip.contentHeight
    toolTipStyle: true

    VTVideoComponent {
        id: clip
        source: "line.mp4"
        VTAccessible.role: VTAccessible.Animation
        VTAccessible.name: element.title
        VTAccessible.onPressed: clip.play()
        onStateChanged: clip.pause()
        onLoadProgressChanged: clip.progress = bar.position
    }

    VTScrollBar {
        id: bar
        start: 0
        end: 1
        orientHorizontal: true
        height: bar.scrollBarWidth
        onWidthChanged: bar.updateDimensions()
        onPositionChanged: bar.setPositionExternal(clip.progress)
    }

    VTXmlElement {
        id: element
        tagName: "summary"
        Component.onCompleted: element.appendContent(element.toXml(2) + element.attribute("key"))
    }
}
