// The same scenes in the QML 1 module and in Qt Quick 2 with its software renderer.

#include "Measure.h"

#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtGui/QPaintEvent>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtQuickWidgets/QQuickWidget>
#include <QtWidgets/QApplication>

#include <functional>
#include <memory>

namespace {

const QSize canvasSize(480, 400);
constexpr int frameCount = 60;

/** A window with a QML engine, into which scenes are put; a frame is painted by the real event loop. */
class Stage : public QObject
{
public:
    virtual QWidget *window() = 0;
    virtual QQmlEngine *engine() = 0;

    void open();
    void load(const QByteArray &scene);
    QObject *create();
    void destroy(QObject *);
    void waitForFrame();

    bool eventFilter(QObject *, QEvent *event) override;

    int frames = 0;
    double paintedArea = 0;

protected:
    virtual QWidget *canvas() = 0;
    virtual QByteArray import() const = 0;
    virtual bool setSource(const QUrl &) = 0;
    virtual void place(QObject *) = 0;

private:
    QTemporaryDir m_folder;
    std::unique_ptr<QQmlComponent> m_component;
};

class DeclarativeStage final : public Stage
{
public:
    QWidget *window() override { return &m_view; }
    QQmlEngine *engine() override { return m_view.engine(); }

private:
    QWidget *canvas() override { return m_view.viewport(); }
    QByteArray import() const override { return "import QtQuick 1.1\n"; }
    bool setSource(const QUrl &source) override
    {
        m_view.setSource(source);
        return m_view.rootObject();
    }
    void place(QObject *object) override
    {
        static_cast<QGraphicsObject *>(object)->setParentItem(m_view.rootObject());
    }

    QDeclarativeView m_view;
};

class QuickStage final : public Stage
{
public:
    QWidget *window() override { return &m_view; }
    QQmlEngine *engine() override { return m_view.engine(); }

private:
    QWidget *canvas() override { return &m_view; }
    QByteArray import() const override { return "import QtQuick 2.0\n"; }
    bool setSource(const QUrl &source) override
    {
        m_view.setSource(source);
        return m_view.rootObject();
    }
    void place(QObject *object) override
    {
        static_cast<QQuickItem *>(object)->setParentItem(m_view.rootObject());
    }

    QQuickWidget m_view;
};

void Stage::open()
{
    QFile file(m_folder.filePath(QStringLiteral("Canvas.qml")));
    if (!file.open(QIODevice::WriteOnly)
        || file.write(import() + "Rectangle { width: 480; height: 400; color: \"white\" }\n") < 0)
        qFatal("cannot write %s", qPrintable(file.fileName()));
    file.close();
    if (!setSource(QUrl::fromLocalFile(file.fileName()))) {
        std::fprintf(stderr, "The benchmark cannot run without %s.\n", import().trimmed().constData());
        std::exit(1);
    }
    canvas()->installEventFilter(this);
    window()->resize(canvasSize);
    window()->show();
    waitForFrame();
}

void Stage::load(const QByteArray &scene)
{
    m_component = std::make_unique<QQmlComponent>(engine());
    m_component->setData(import() + scene, QUrl());
    if (!m_component->isReady()) {
        std::fprintf(stderr, "%s", qPrintable(m_component->errorString()));
        std::exit(1);
    }
}

QObject *Stage::create()
{
    QObject *object = m_component->create();
    if (!object)
        qFatal("%s", qPrintable(m_component->errorString()));
    place(object);
    return object;
}

void Stage::destroy(QObject *object)
{
    delete object;
    waitForFrame();
}

void Stage::waitForFrame()
{
    const int before = frames;
    QTimer::singleShot(10000, this, [this, before] {
        if (frames == before)
            qFatal("nothing was painted");
    });
    while (frames == before)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

bool Stage::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::Paint)
        return false;
    ++frames;
    for (const QRect &rect : static_cast<QPaintEvent *>(event)->region())
        paintedArea += double(rect.width()) * rect.height();
    return false;
}

// Forty groups of five items, as a dialogue's rows: anchors, bindings and states included.
QByteArray largeScene()
{
    QByteArray scene = "Item {\n  id: scene; width: 480; height: 400\n  property int row: 10\n";
    for (int i = 0; i < 40; ++i) {
        const QByteArray n = QByteArray::number(i);
        scene += "  Rectangle {\n    id: box" + n + "; y: " + n
            + " * scene.row; width: scene.width - 20; height: 9; radius: 2; border.color: \"gray\"\n"
              "    color: area"
            + n
            + ".pressed ? \"silver\" : \"white\"\n"
              "    Rectangle { id: mark"
            + n
            + "; width: 6; height: 6; color: \"steelblue\"\n"
              "      anchors.left: parent.left; anchors.leftMargin: 4\n"
              "      anchors.verticalCenter: parent.verticalCenter }\n"
              "    Text { id: label"
            + n + "; text: \"Command \" + " + n
            + "; font.pixelSize: 8\n"
              "      anchors.left: mark"
            + n
            + ".right; anchors.verticalCenter: parent.verticalCenter }\n"
              "    Item { anchors.right: parent.right; width: label"
            + n
            + ".width; height: parent.height }\n"
              "    MouseArea { id: area"
            + n + "; anchors.fill: parent; onClicked: box" + n + ".state = \"chosen\" }\n";
        if (i % 4 == 0)
            scene += "    states: State { name: \"chosen\"\n"
                     "      PropertyChanges { target: box"
                + n + "; color: \"gold\" } }\n";
        scene += "  }\n";
    }
    return scene + "}\n";
}

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

/** Returns the processor time of @p work in milliseconds: waiting for a frame's turn does not count. */
template <typename Work>
double cpuMilliseconds(Work work)
{
    const double before = processSeconds();
    work();
    return (processSeconds() - before) * 1000;
}

double creation(Stage &stage)
{
    QObject *object = nullptr;
    const double time = cpuMilliseconds([&] { object = stage.create(); });
    stage.waitForFrame();
    stage.destroy(object);
    return time;
}

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

void compareStages(const char *what, const QByteArray &scene, Stage &ours, Stage &theirs,
                   const std::function<double(Stage &)> &measure)
{
    ours.load(scene);
    theirs.load(scene);
    compareMeasured(
        what, "ms", 21, 1.0, [&] { return measure(ours); }, [&] { return measure(theirs); });
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
    QuickStage theirs;
    // Both are shown, so neither may cover the other.
    theirs.window()->move(canvasSize.width() + 20, 0);
    theirs.open();
    DeclarativeStage ours;
    ours.open();
    compareStages("creating a scene of 200 items", largeScene(), ours, theirs, creation);
    compareStages("the same, with its first frame", largeScene(), ours, theirs, firstFrame);
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
