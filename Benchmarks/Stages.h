#pragma once

#include "Measure.h"

#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtGui/QPaintEvent>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlEngine>
#include <QtQuick/QQuickItem>
#include <QtQuickWidgets/QQuickWidget>

#include <functional>
#include <memory>

const QSize canvasSize(480, 400);

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

/** A stage of either module. Both are shown, and neither covers the other. */
struct BothStages
{
    BothStages()
    {
        quick.window()->move(canvasSize.width() + 20, 0);
        quick.open();
        declarative.open();
    }

    QuickStage quick;
    DeclarativeStage declarative;
};

inline void Stage::open()
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

inline void Stage::load(const QByteArray &scene)
{
    m_component = std::make_unique<QQmlComponent>(engine());
    m_component->setData(import() + scene, QUrl());
    if (!m_component->isReady()) {
        std::fprintf(stderr, "%s", qPrintable(m_component->errorString()));
        std::exit(1);
    }
}

inline QObject *Stage::create()
{
    QObject *object = m_component->create();
    if (!object)
        qFatal("%s", qPrintable(m_component->errorString()));
    place(object);
    return object;
}

inline void Stage::destroy(QObject *object)
{
    delete object;
    waitForFrame();
}

inline void Stage::waitForFrame()
{
    const int before = frames;
    QTimer::singleShot(10000, this, [this, before] {
        if (frames == before)
            qFatal("nothing was painted");
    });
    while (frames == before)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

inline bool Stage::eventFilter(QObject *, QEvent *event)
{
    if (event->type() != QEvent::Paint)
        return false;
    ++frames;
    for (const QRect &rect : static_cast<QPaintEvent *>(event)->region())
        paintedArea += double(rect.width()) * rect.height();
    return false;
}

/** Returns forty groups of five items, as a dialogue's rows: anchors, bindings and states included. */
inline QByteArray largeScene()
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

/** Returns the processor time of @p work in milliseconds: waiting for a frame's turn does not count. */
template <typename Work>
double cpuMilliseconds(Work work)
{
    const double before = processSeconds();
    work();
    return (processSeconds() - before) * 1000;
}

/** Returns the milliseconds that creating the loaded scene takes; its first frame does not count. */
inline double creation(Stage &stage)
{
    QObject *object = nullptr;
    const double time = cpuMilliseconds([&] { object = stage.create(); });
    stage.waitForFrame();
    stage.destroy(object);
    return time;
}

/** Compares what @p measure takes with @p scene on both stages. */
inline void compareStages(const char *what, const QByteArray &scene, Stage &ours, Stage &theirs,
                          const std::function<double(Stage &)> &measure)
{
    ours.load(scene);
    theirs.load(scene);
    compareMeasured(
        what, "ms", 21, 1.0, [&] { return measure(ours); }, [&] { return measure(theirs); });
}
