// The same scenes in the QML 1 module and in Qt Quick 2 with its software renderer.

#include "Stages.h"

#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtQuick/QQuickWindow>
#include <QtWidgets/QApplication>

#include <memory>

namespace {

constexpr int frameCount = 60;

const char listScene[] = R"(
ListView {
    width: 480; height: 400; model: 1000
    delegate: Rectangle {
        width: 480; height: 24; color: index % 2 ? "whitesmoke" : "white"
        Rectangle { x: 4; y: 4; width: 16; height: 16; radius: 3; color: "steelblue" }
        Text { x: 28; anchors.verticalCenter: parent.verticalCenter; text: "Row number " + index }
        MouseArea { anchors.fill: parent }
    }
}
)";

// A tip with a title, lines of text and a small mark that moves below them.
const char tipScene[] = R"(
Rectangle {
    width: 480; height: 400; radius: 6; border.color: "gray"
    property int step: 0
    gradient: Gradient {
        GradientStop { position: 0; color: "white" }
        GradientStop { position: 1; color: "lightsteelblue" }
    }
    Text { x: 12; y: 8; text: "Line"; font.bold: true; font.pixelSize: 18 }
    Column {
        x: 12; y: 40; spacing: 2
        Repeater {
            model: 12
            Text { width: 440; wrapMode: Text.WordWrap
                   text: (index + 1) + ". Pick the first point, then pick the second point of the line." }
        }
    }
    Rectangle { x: 12; y: 380; width: 456; height: 8; radius: 4; color: "silver" }
    Rectangle { x: 12 + parent.step * 4; y: 380; width: 40; height: 8; radius: 4; color: "steelblue" }
}
)";

double firstFrame(Stage &stage)
{
    QObject *object = nullptr;
    const double time = cpuMilliseconds([&] {
        object = stage.create();
        stage.waitForFrame();
    });
    stage.destroy(object);
    return time;
}

/** Changes @p property of the scene once a frame, from 1 on in steps of @p step. */
double frames(Stage &stage, const char *property, double step)
{
    QObject *object = stage.create();
    stage.waitForFrame();
    const double time = cpuMilliseconds([&] {
        for (int i = 1; i <= frameCount; ++i) {
            object->setProperty(property, i * step);
            stage.waitForFrame();
        }
    });
    stage.destroy(object);
    return time;
}

double residentKilobytes()
{
    QFile file(QStringLiteral("/proc/self/status"));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    const QByteArray status = file.readAll();
    const int line = status.indexOf("VmRSS:");
    return status.mid(line + 6, status.indexOf("kB", line) - line - 6).trimmed().toDouble();
}

/** Prints by how many bytes the process grew for each of 5,000 items on @p stage, all of them shown. */
void printMemory(Stage &stage)
{
    constexpr int scenes = 25;
    constexpr int itemsPerScene = 201;
    stage.open();
    stage.load(largeScene());
    stage.create();
    stage.waitForFrame();
    const double before = residentKilobytes();
    for (int i = 0; i < scenes; ++i)
        stage.create();
    stage.waitForFrame();
    std::printf("%.1f\n", (residentKilobytes() - before) * 1024 / (scenes * itemsPerScene));
}

/** Runs this program anew, since memory that was used once is not given back. */
double memoryPerItem(const QString &which)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--memory"), which});
    bool isNumber = false;
    process.waitForFinished();
    const double bytes = process.readAllStandardOutput().trimmed().toDouble(&isNumber);
    if (!isNumber || bytes <= 0)
        qFatal("the memory of %s could not be measured", qPrintable(which));
    return bytes;
}

void printRow(const char *what, double value, const char *unit, double goal)
{
    std::printf("%-44s %9.3f %s  goal %.2f %s\n", what, value, unit, goal, value <= goal ? "met" : "MISSED");
    std::fflush(stdout);
}

void runFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void measureIdle(Stage &stage)
{
    constexpr int seconds = 2;
    stage.load(tipScene);
    QObject *object = stage.create();
    runFor(500);
    const int framesBefore = stage.frames;
    const double before = processSeconds();
    runFor(seconds * 1000);
    printRow("idle scene: processor", (processSeconds() - before) / seconds * 100, "%", 0.5);
    printRow("idle scene: repaints", stage.frames - framesBefore, "", 0);
    stage.destroy(object);
}

/** Compares what is painted when the tip's mark moves with the pixels under its old and new places. */
void measurePaintedArea(Stage &stage)
{
    stage.load(tipScene);
    QObject *object = stage.create();
    runFor(500);
    const double before = stage.paintedArea;
    for (int i = 1; i <= frameCount; ++i) {
        object->setProperty("step", i);
        stage.waitForFrame();
    }
    const double changed = frameCount * (40.0 + 4) * 8;
    // Graphics View adds two pixels on each side, for what antialiasing may spill.
    const double allowed = (44.0 + 8) * (8 + 8) / (44 * 8);
    printRow("area painted, as a multiple of what changed", (stage.paintedArea - before) / changed, "",
             allowed);
    stage.destroy(object);
}

void compareAll()
{
    BothStages stages;
    QuickStage &theirs = stages.quick;
    DeclarativeStage &ours = stages.declarative;
    compareStages("a scene of 200 items, with its first frame", largeScene(), ours, theirs, firstFrame);
    compareStages("a list of 1,000 rows, with its first frame", listScene, ours, theirs, firstFrame);
    compareStages("flicking the list, 60 frames", listScene, ours, theirs,
                  [](Stage &stage) { return frames(stage, "contentY", 37); });
    compareStages("repainting a small part of a tip, 60 frames", tipScene, ours, theirs,
                  [](Stage &stage) { return frames(stage, "step", 1); });
    compareMeasured(
        "memory of an item, 5,000 items", "B", 5, 1.0,
        [] { return memoryPerItem(QStringLiteral("declarative")); },
        [] { return memoryPerItem(QStringLiteral("quick")); });
    theirs.window()->hide();
    measureIdle(ours);
    measurePaintedArea(ours);
}

} // namespace

int main(int argc, char **argv)
{
    QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.contains(QStringLiteral("--memory"))) {
        if (arguments.constLast() == QStringLiteral("quick"))
            printMemory(*std::make_unique<QuickStage>());
        else
            printMemory(*std::make_unique<DeclarativeStage>());
        return 0;
    }
    compareAll();
    return 0;
}
