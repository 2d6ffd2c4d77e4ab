// How the time for a scene grows with its size, over three doublings. An exponent of 1 is as it should be.

#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QElapsedTimer>
#include <QtCore/QTemporaryDir>
#include <QtWidgets/QApplication>

#include <cmath>
#include <cstdio>

namespace {

constexpr double goal = 1.2;

struct Case
{
    const char *what;
    const char *body; ///< %1 stands for the size
};

const Case cases[] = {
    {"Repeater in an Item", "Item { Repeater { model: %1; Item { width: 10; height: 10 } } }"},
    {"Repeater in a Column", "Column { Repeater { model: %1; Item { width: 10; height: 10 } } }"},
    {"childrenRect",
     "Item { height: childrenRect.height; Repeater { model: %1; Item { y: index; width: 9; height: 1 } } }"},
    {"ListModel.append",
     "ListView { height: 100; model: ListModel { id: rows } delegate: Item { height: 20 }\n"
     "Component.onCompleted: { for (var i = 0; i < %1; ++i) rows.append({ v: i }) } }"},
    {"createObject into a Column",
     "Column { id: column; Component { id: box; Item { width: 9; height: 9 } }\n"
     "Component.onCompleted: { for (var i = 0; i < %1; ++i) box.createObject(column) } }"},
    {"rows without height", "ListView { height: 100; model: %1; delegate: Item { } }"},
    // Each time that it moves it makes one row that is not seen.
    {"a list with a full cache",
     "ListView { height: 100; cacheBuffer: 1000000; model: %1; delegate: Item { height: 10 }\n"
     "Component.onCompleted: { for (var i = 0; i < %1; ++i) contentY = i % 2 } }"},
    {"children[i] in a loop",
     "Item { id: all; Repeater { model: %1; Item { } }\n"
     "Component.onCompleted: { for (var i = 0; i < children.length; ++i) children[i].x = 1 } }"},
    {"a chain of anchors",
     "Item { id: all; Component { id: box\n"
     "Item { width: 1; property Item before; anchors.left: before.right } }\n"
     "Component.onCompleted: { var last = all\n"
     "for (var i = 0; i < %1; ++i) last = box.createObject(all, { before: last }) } }"},
};

/** Milliseconds that it takes to load the scene and to let go of it again. */
double measure(const QString &path, const Case &scene, int size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(path));
    file.write("import QtQuick 1.1\n" + QString::fromLatin1(scene.body).arg(size).toLatin1());
    file.close();
    QDeclarativeView view;
    view.show();
    QElapsedTimer timer;
    timer.start();
    view.setSource(QUrl::fromLocalFile(path));
    if (view.status() != QDeclarativeView::Ready)
        qFatal("%s does not load", scene.what);
    QCoreApplication::processEvents();
    view.setSource(QUrl());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return double(timer.nsecsElapsed()) / 1e6;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const QTemporaryDir folder;
    for (const Case &scene : cases) {
        if (argc > 1 && qstrcmp(argv[1], scene.what) != 0)
            continue;
        std::printf("%-32s", scene.what);
        double first = 0, last = 0;
        int number = 0;
        for (const int size : {2000, 4000, 8000, 16000}) {
            last = measure(folder.filePath(QStringLiteral("Scene%1.qml").arg(number++)), scene, size);
            first = first > 0 ? first : last;
            std::printf(" %9.1f", last);
            std::fflush(stdout);
        }
        const double exponent = std::log2(last / first) / 3;
        std::printf(" ms  exponent %4.2f  goal %.2f %s\n", exponent, goal,
                    exponent <= goal ? "met" : "MISSED");
    }
    return 0;
}
