#pragma once

#include "QmlScene.h"
#include "TestPaths.h"

/** The status of a picture, as QML sees it. */
enum Status { Null, Ready, Loading, Error };
Q_DECLARE_METATYPE(Status)

/** Two by two blocks: red and green above blue and black. */
inline QImage blocks(int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const QColor top = x < width / 2 ? Qt::red : Qt::green;
            const QColor bottom = x < width / 2 ? Qt::blue : Qt::black;
            image.setPixelColor(x, y, y < height / 2 ? top : bottom);
        }
    }
    return image;
}

/** A scene around @p image, which notes what it is told. */
inline QByteArray scene(const QByteArray &image)
{
    return "import QtQuick 1.1\nItem { id: root; width: 100; height: 100; property variant log: []\n"
           "function note(what) { var l = root.log; l.push(what); root.log = l }\n"
        + image + " }";
}

inline QSizeF sizeOf(const QDeclarativeItem *item)
{
    return QSizeF(item->width(), item->height());
}

/** The address of one of the pictures that the recorded scenes show. */
inline QUrl galleryFile(const char *name)
{
    return QUrl::fromLocalFile(TestPaths::source("Tests/Declarative/gallery/images/") + QLatin1String(name));
}
