// The Text element with markup of its own, which is parsed, laid out and painted. The first four bytes choose
// how; the markup follows.

#include "FuzzInput.h"
#include "FuzzScene.h"
#include "FuzzTarget.h"

namespace {

int formatOf(quint8 byte)
{
    // Mostly the markup that is parsed here: rich text is Qt's.
    constexpr int values[] = {4, 4, 4, 4, 4, 4, 2, 0};
    return values[byte % 8];
}

void configure(QObject *text, FuzzInput *input)
{
    const quint8 layout = input->takeByte();
    text->setProperty("textFormat", formatOf(input->takeByte()));
    text->setProperty("wrapMode", layout % 5);
    text->setProperty("elide", layout / 5 % 4);
    text->setProperty("horizontalAlignment", 1 << (layout / 20 % 4));
    const quint8 size = input->takeByte();
    text->setProperty("width", size % 16 * 7);
    text->setProperty("height", size / 16 * 4);
    const quint8 lines = input->takeByte();
    text->setProperty("maximumLineCount", lines % 8 ? lines % 8 : 1000);
    text->setProperty("lineHeight", lines / 8 / 4.0);
    text->setProperty("style", lines / 64);
}

} // namespace

void fuzz(const QByteArray &input)
{
    auto &scene = theOne<FuzzScene>("Text { }");
    QObject *const text = scene.item();
    FuzzInput rest(input);
    configure(text, &rest);
    const QString markup = QString::fromUtf8(rest.rest());
    text->setProperty("text", markup);
    FUZZ_CHECK(text->property("text").toString() == markup);
    FUZZ_CHECK(text->property("paintedWidth").toReal() >= 0);
    FUZZ_CHECK(text->property("lineCount").toInt() <= text->property("maximumLineCount").toInt());
    scene.paint();
}
