import com.corvale.vidtips.qml 1.0

VTStyledRectangle {
    VTVideoComponent {
        id: clip
        onStateChanged: clip.pauze()
    }
}
