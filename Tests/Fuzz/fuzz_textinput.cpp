// The TextInput element with any mask, text and keys. A line of the mask and a line of the text come first;
// each byte after them is a key or a change of the item.

#include "FuzzInput.h"
#include "FuzzScene.h"
#include "FuzzTarget.h"

#include <QtGui/QKeyEvent>

namespace {

void pressKey(FuzzScene *scene, int key, Qt::KeyboardModifiers modifiers, const QString &text = QString())
{
    QKeyEvent press(QEvent::KeyPress, key, modifiers, text);
    QCoreApplication::sendEvent(scene->view().scene(), &press);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers, text);
    QCoreApplication::sendEvent(scene->view().scene(), &release);
}

void change(QObject *item, FuzzInput *input)
{
    const int value = input->takeInteger();
    switch (input->takeByte() % 6) {
    case 0:
        item->setProperty("cursorPosition", value);
        break;
    case 1:
        QMetaObject::invokeMethod(item, "select", Q_ARG(int, value), Q_ARG(int, input->takeInteger()));
        break;
    case 2:
        item->setProperty("maximumLength", value);
        break;
    case 3:
        item->setProperty("echoMode", value & 3);
        break;
    case 4:
        item->setProperty("text", input->takeText());
        break;
    case 5:
        item->setProperty("inputMask", input->takeText());
        break;
    }
}

void type(FuzzScene *scene, FuzzInput *input)
{
    constexpr int keys[] = {Qt::Key_Left, Qt::Key_Right, Qt::Key_Home,   Qt::Key_End,
                            Qt::Key_Up,   Qt::Key_Down,  Qt::Key_Delete, Qt::Key_Backspace};
    constexpr Qt::KeyboardModifiers modifiers[] = {Qt::NoModifier, Qt::ShiftModifier, Qt::ControlModifier};
    const quint8 byte = input->takeByte();
    if (byte < 8 * 3)
        pressKey(scene, keys[byte % 8], modifiers[byte / 8]);
    else if (byte < ' ')
        change(scene->item(), input);
    else
        pressKey(scene, 0, Qt::NoModifier, QString(QChar(byte)));
}

void checkPositions(const QObject *item)
{
    const int length = item->property("text").toString().size();
    const int start = item->property("selectionStart").toInt();
    const int end = item->property("selectionEnd").toInt();
    FUZZ_CHECK(start >= 0 && start <= end);
    // Over a mask the positions count its blanks too.
    if (item->property("inputMask").toString().isEmpty())
        FUZZ_CHECK(end <= length && item->property("cursorPosition").toInt() <= length);
    FUZZ_CHECK(item->property("selectedText").toString().size() <= end - start);
}

} // namespace

void fuzz(const QByteArray &input)
{
    auto &scene = theOne<FuzzScene>("TextInput { width: 100; height: 30; focus: true }");
    QObject *const item = scene.item();
    FuzzInput rest(input);
    item->setProperty("inputMask", QString());
    item->setProperty("maximumLength", 32767);
    item->setProperty("echoMode", 0);
    item->setProperty("text", QString());
    item->setProperty("inputMask", QString::fromUtf8(rest.takeLine()));
    item->setProperty("text", QString::fromUtf8(rest.takeLine()));
    checkPositions(item);
    while (!rest.isEmpty()) {
        type(&scene, &rest);
        checkPositions(item);
    }
    scene.paint();
}
