// What it costs to create items of a few kinds, against Qt Quick 2: processor time, and the instructions that
// valgrind counts, which other work of the machine does not change.

#include "Stages.h"

#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QVector>
#include <QtQuick/QQuickWindow>
#include <QtWidgets/QApplication>

namespace {

constexpr int countedTimes = 10;

struct Scene
{
    const char *name;
    int count; ///< of what is named
    QByteArray text;
};

// In something to paint, since a frame is waited for.
QByteArray manyOf(int count, const QByteArray &item)
{
    return "Rectangle { id: scene; width: 480; height: 400\n" + (item + '\n').repeated(count) + "}\n";
}

const char itemWithAll[] = R"(
Item {
    width: 100; height: 20
    Item {
        anchors { left: parent.left; verticalCenter: parent.verticalCenter }
        width: 10; height: 10
    }
    MouseArea { anchors.fill: parent }
    states: State { name: "wide"; PropertyChanges { target: scene; width: 200 } }
})";

QVector<Scene> scenes()
{
    return {
        {"a bare Item", 100, manyOf(100, "Item { }")},
        {"a Rectangle", 100, manyOf(100, "Rectangle { width: 10; height: 10; color: \"red\" }")},
        {"a Text", 100, manyOf(100, "Text { text: \"Line\" }")},
        {"an Item with states, anchors, a MouseArea", 50, manyOf(50, itemWithAll)},
        {"a Repeater of ten rectangles", 10,
         manyOf(10, "Repeater { model: 10; Rectangle { width: 10; height: 10 } }")},
        {"a list", 1,
         "ListView { width: 480; height: 400; model: 1000\n"
         "    delegate: Rectangle { width: 480; height: 24; color: index % 2 ? \"whitesmoke\" : \"white\"\n"
         "        Text { x: 28; text: \"Row number \" + index } } }\n"},
        {"a scene of 200 items", 1, largeScene()},
    };
}

std::unique_ptr<Stage> newStage(const QString &which)
{
    if (which == QLatin1String("quick"))
        return std::make_unique<QuickStage>();
    return std::make_unique<DeclarativeStage>();
}

} // namespace

// Only what runs in here is counted, so that it needs a name.
extern "C" Q_DECL_EXPORT Q_NEVER_INLINE void createCounted(Stage *stage)
{
    for (int i = 0; i < countedTimes; ++i)
        stage->create();
}

namespace {

/** What valgrind runs: the scene with the number @p index on the stage @p which, several times. */
void create(const QString &which, int index)
{
    const std::unique_ptr<Stage> stage = newStage(which);
    stage->open();
    stage->load(scenes().at(index).text);
    // The first one of a kind has much to set up.
    stage->create();
    createCounted(stage.get());
}

/** Returns how many instructions the scene with the number @p index takes on the stage @p which. */
double instructions(const QString &which, int index)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(QStringLiteral("valgrind"),
                  {QStringLiteral("--tool=callgrind"), QStringLiteral("--callgrind-out-file=/dev/null"),
                   QStringLiteral("--toggle-collect=createCounted"), QCoreApplication::applicationFilePath(),
                   which, QString::number(index)});
    process.waitForFinished(-1);
    static const QRegularExpression collected(QStringLiteral("Collected : (\\d+)"));
    const QByteArray output = process.readAll();
    const double count = collected.match(QString::fromLocal8Bit(output)).captured(1).toDouble();
    if (count <= 0)
        qFatal("valgrind counted nothing: %s", output.constData());
    return count / countedTimes;
}

void compareInstructions(int index)
{
    const Scene scene = scenes().at(index);
    const double ours = instructions(QStringLiteral("declarative"), index) / scene.count;
    const double theirs = instructions(QStringLiteral("quick"), index) / scene.count;
    std::printf("%-44s %9.0f     against %9.0f     ratio %5.2f  goal 1.00 %s\n", "  its instructions", ours,
                theirs, ours / theirs, ours <= theirs ? "met" : "MISSED");
    std::fflush(stdout);
}

void compareAll()
{
    BothStages stages;
    for (int i = 0; i < scenes().size(); ++i) {
        compareStages(scenes().at(i).name, scenes().at(i).text, stages.declarative, stages.quick, creation);
        compareInstructions(i);
    }
}

} // namespace

int main(int argc, char **argv)
{
    QQuickWindow::setSceneGraphBackend(QSGRendererInterface::Software);
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() == 3)
        create(arguments.at(1), arguments.at(2).toInt());
    else
        compareAll();
    return 0;
}
