// What a .sci file says of a BorderImage, and the picture painted with it. The first two bytes are the item's
// size; the file follows.

#include "FuzzInput.h"
#include "FuzzScene.h"
#include "FuzzTarget.h"

namespace {
void writePicture()
{
    QByteArray picture("P3 4 4 255\n");
    for (int i = 0; i < 16; ++i)
        picture += QByteArray::number(i * 16) + " 128 0\n";
    writeFuzzFile("a.ppm", picture);
}
} // namespace

void fuzz(const QByteArray &input)
{
    auto &scene = theOne<FuzzScene>("BorderImage { }");
    static const bool hasPicture = (writePicture(), true);
    Q_UNUSED(hasPicture)
    QObject *const image = scene.item();
    FuzzInput rest(input);
    image->setProperty("width", rest.takeByte() * 400);
    image->setProperty("height", rest.takeByte() * 400);
    image->setProperty("source", QUrl::fromLocalFile(writeFuzzFile("a.sci", rest.rest())));
    scene.paint();
    image->setProperty("source", QUrl());
    FUZZ_CHECK(image->property("status").toInt() == 0);
}
