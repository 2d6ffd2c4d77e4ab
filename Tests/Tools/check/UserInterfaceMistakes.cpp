#include "Mistakes.h"

#include "TestClips.h"

namespace {

// A preview plays clips and does not judge them.
void clipMistake(const QString &clip, const char *name, const QString &finding)
{
    const QString file = "Garden.vidtips/Resources/tree." + QFileInfo(clip).suffix();
    Mistakes::add({name, {{file, TestClips::read(clip)}}, file + ": " + finding, QString()});
}

QString h264(const QString &name, const QString &size, const QStringList &options)
{
    const QStringList codec{"-c:v", "libx264", "-pix_fmt", "yuv420p", "-movflags", "+faststart"};
    return TestClips::make(name, TestClips::moving(size, 50, options + codec));
}

// As telephones do that are held upright. Versions of FFmpeg are asked for that in different ways.
QByteArray turned(QByteArray mp4)
{
    constexpr int beforeMatrix = 44;
    static const char quarter[] = "\0\0\0\0\0\1\0\0\0\0\0\0"
                                  "\xff\xff\0\0\0\0\0\0\0\0\0\0"
                                  "\0\x78\0\0\0\0\0\0\x40\0\0\0";
    const QByteArray matrix(quarter, sizeof quarter - 1);
    return mp4.replace(mp4.indexOf("tkhd") + beforeMatrix, matrix.size(), matrix);
}

void addClipMistakes()
{
    const QString whole = h264("mistake-whole.mp4", "160x120", {});
    const QByteArray bytes = TestClips::read(whole);
    clipMistake(TestClips::write("mistake-cut.mp4", bytes.left(bytes.size() / 2)), "clip that was cut off",
                "error: the clip is cut off after 0.8 s of 2.0 s [VT505]");
    clipMistake(
        h264("mistake-variable.mp4", "160x120", {"-vf", "select='lt(n,10)+gt(n,30)'", "-vsync", "vfr"}),
        "clip of variable frame rate",
        "warning: the frame rate varies, from 40 to 880 ms a frame, and the clip is played as if it did not "
        "[VT506]");
    clipMistake(TestClips::write("mistake-turned.mp4", turned(bytes)), "clip of a telephone",
                "warning: the clip is to be turned by 90 degrees, and is shown as it is stored [VT507]");
    clipMistake(h264("mistake-aspect.mp4", "160x120", {"-vf", "setsar=4/3"}), "pixels that are not square",
                "warning: the clip's pixels are 4:3, and are shown square [VT508]");
    clipMistake(h264("mistake-hd.mp4", "1280x720", {"-t", "0.1"}), "HD without colours",
                "warning: the clip is HD (1280 x 720) and does not say its colours, which are shown as those "
                "of small "
                "clips [VT509]");
    clipMistake(TestClips::make("mistake-alpha.mov",
                                TestClips::moving("160x120", 5, {"-pix_fmt", "argb", "-c:v", "qtrle"})),
                "clip with transparency", "warning: the clip has transparency, which is not shown [VT510]");
    clipMistake(TestClips::write("mistake-none.mp4", "no clip"), "file that is no clip",
                "error: the clip does not open: Could not open media [VT501]");
}

const char userInterface[] = "Garden.vidtips/ui/VidtipsUI.qml";

// A user interface of the package's own.
void qmlMistake(const char *name, const QByteArray &qml, const QString &check, const QString &preview,
                const QString &host, const QString &run = {})
{
    const QString file = QString(userInterface) + ':';
    Mistakes::add(
        {name, {{userInterface, qml}}, file + check, preview, host, run.isEmpty() ? run : file + run});
}

// Preview and host show what the QML says.
void qmlMistake(const char *name, const QByteArray &qml, const QString &check, const QString &said)
{
    const QString line = "Garden.vidtips/ui/" + said;
    qmlMistake(name, qml, check, line, line);
}

// What is written is right, and nothing that a machine complains about.
void seenMistake(const char *name, const QByteArray &item, const QString &run, const QString &host = {})
{
    const QByteArray qml =
        "import QtQuick 1.1\nRectangle {\n  width: 200; height: 60\n  color: \"white\"\n  " + item + "\n}\n";
    Mistakes::add({name, {{userInterface, qml}}, {}, {}, host, run});
}

void addSeenMistakes()
{
    const QString file = userInterface;
    seenMistake("text that is cut", "Text { width: 40; elide: Text.ElideRight; text: \"Plants a tree\" }",
                QString(Garden::control) + ":4:10: warning: the text \"Plants a tree\" is cut short in "
                    + file + ":5:3 (\"tree\", en_US) [VT902]");
    seenMistake("grey on white", "Text { color: \"#949494\"; text: \"Tree\" }",
                file
                    + ":5:3: warning: the contrast of a text is 3.03, and 4.5 is needed: #949494 on #ffffff "
                      "(\"tree\", en_US) [VT907]");
    seenMistake("small button",
                "MouseArea { width: 16; height: 16; onClicked: vidTipView.openExternalResource(\"a\")\n"
                "    Text { text: \"?\" } }",
                file
                    + ":5:3: warning: what can be pressed here is 16 x 16 pixels, and 24 x 24 are needed "
                      "(\"tree\", en_US) [VT908]");
    seenMistake(
        "tip as large as a screen",
        "Item { Component.onCompleted: { parent.width = 1300; parent.height = 900 } }",
        file
            + ": warning: the tip is 1300 x 900 pixels, and small screens have 1280 x 720 (\"tree\", "
              "en_US) [VT904]",
        file + " is 1300 x 900 pixels, which is more than the screens have, and is cut off at 800 x 600");
    seenMistake(
        "character that no font has", "Text { text: \"\\udb80\\udc00\" }",
        file
            + QString::fromUtf8(":5:3: warning: no font has \"\U000F0000\" (U+F0000) (\"tree\", en_US) "
                                "[VT905]"));
}

void addQmlMistakes()
{
    const QByteArray head = "import QtQuick 1.1\nItem {\n";
    const QByteArray size = "  width: 20; height: 10\n";
    qmlMistake("picture that QML misses", head + size + "  Image { source: \"corner.png\" }\n}",
               "4:19: error: there is no \"corner.png\" beside this file [VT605]",
               "VidtipsUI.qml:4:3: QML Image: Cannot open: Garden.vidtips/ui/corner.png");
    qmlMistake("part that QML misses", head + size + "  Loader {\n    source: \"Part.qml\"\n  }\n}",
               "5:13: error: there is no \"Part.qml\" beside this file [VT605]",
               "Garden.vidtips/ui/Part.qml: No such file or directory",
               "Garden.vidtips/ui/Part.qml: No such file or directory",
               "4:3: error: there is no \"Garden.vidtips/ui/Part.qml\" (\"tree\", en_US) [VT901]");
    qmlMistake(
        "root without a size", head + "  Text { text: \"Tree\" }\n}",
        "2:1: warning: the tip has no size: give this item a width and a height [VT606]",
        "Garden.vidtips/ui/VidtipsUI.qml:2:1: the tip has no size: give this item a width and a height", {});
    qmlMistake("binding loop",
               head + "  width: 20\n  height: box.height\n  Item { id: box; height: parent.height + 1 }\n}",
               "5:3: warning: QML Item: Binding loop detected for property \"height\" [VT607]",
               "VidtipsUI.qml:5:3: QML Item: Binding loop detected for property \"height\"");
    qmlMistake("value that is not there", head + size + "  property int n: vidtip.attribute(\"a\").size.n\n}",
               "4: warning: TypeError: Cannot read property 'n' of undefined [VT607]",
               "VidtipsUI.qml:4: TypeError: Cannot read property 'n' of undefined");
    const QString only = "Garden.vidtips/ui/VidtipsUI.qml:4: ";
    const QString error = "ReferenceError: nothing is not defined";
    Mistakes::add(
        {"error with one of two tips",
         {{Garden::control,
           Garden::file("<vidtip key=\"bush\" title=\"Bush\"/>\n<vidtip key=\"tree\" title=\"Tree\"/>")},
          {userInterface,
           head + size + "  property int n: vidtip.attribute(\"key\") == \"tree\" ? nothing.n : 1\n}"}},
         {},
         only + error,
         only + error,
         only + "warning: " + error + " (\"tree\", en_US) [VT607]"});
    qmlMistake("QtQuick 2", "import QtQuick 2.15\nItem { width: 20; height: 10 }",
               "1:1: error: QtQuick 2 cannot be shown in a tip [VT602]",
               "Garden.vidtips/ui/VidtipsUI.qml:1:1: error: QtQuick 2 cannot be shown in a tip [VT602]",
               "QDeclarativeView only supports loading of root objects that derive from QGraphicsObject.");
    qmlMistake("no import", "Rectangle { width: 20; height: 10 }\n",
               "1:1: error: Rectangle is not a type: the file has no line \"import QtQuick 1.1\" [VT601]",
               "VidtipsUI.qml:1:1: Rectangle is not a type");
    qmlMistake(
        "no import of the library",
        "import QtQuick 1.1\nItem { width: 20; height: 10\n  VTVideoComponent { source: \"a.mp4\" } }\n",
        "3:3: error: VTVideoComponent is not a type: the file has no line \"import "
        "com.corvale.vidtips.qml 1.0\" [VT601]",
        "VidtipsUI.qml:3:3: VTVideoComponent is not a type");
    Mistakes::add(
        {"clip that QML misses",
         {{userInterface,
           "import QtQuick 1.1\nimport com.corvale.vidtips.qml 1.0\nItem { width: 20; height: 10\n"
           "  VTVideoComponent { source: \"gone.mp4\" } }\n"}},
         {},
         QString(Garden::control) + ":3:1: the clip \"gone.mp4\" of this tip is missing",
         "Tip \"tree\": Could not find the clip gone.mp4",
         QString(userInterface) + ":4:3: error: \"gone.mp4\" cannot be shown (\"tree\", en_US) [VT901]"});
    qmlMistake("property that there is not", head + size + "  txt: \"Tree\"\n}",
               "4:3: error: Cannot assign to non-existent property \"txt\" [VT601]",
               "VidtipsUI.qml:4:3: Cannot assign to non-existent property \"txt\"");
}

// ReadingCheck compares what QML reads with the schema beside it.
void addReadingMistakes()
{
    const auto mistake = [](const char *name, const QByteArray &read, const QString &finding) {
        Mistakes::add({name,
                       {{userInterface,
                         "import QtQuick 1.1\nItem {\n  width: 20; height: 10 // attribute(\"no\")\n"
                         "  property variant read: vidtip ? vidtip."
                             + read + " : null\n}"},
                        {"Garden.vidtips/ui/schema.xml",
                         "<schema><element name=\"vidtip\"><attribute name=\"level\"/><element "
                         "name=\"summary\" text=\"rich\"/></element></schema>"}},
                       QString(userInterface) + ":4:" + finding + " [VT615]",
                       {}});
    };
    mistake("misspelt element in QML", "childElement(\"sumary\")",
            "56: warning: the element \"sumary\" is read, which the schema does not have: did you mean "
            "\"summary\"?");
    mistake("attribute that the schema lacks", "attribute('hint')",
            "53: warning: the attribute \"hint\" is read, which the schema does not have");
}

} // namespace

void Mistakes::addInWhatIsShown()
{
    addClipMistakes();
    addQmlMistakes();
    addSeenMistakes();
    addReadingMistakes();
}
