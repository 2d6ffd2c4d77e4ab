// Scenes made up of any elements whose handlers do anything to those around them. Each byte is a choice: the
// first how the scene is used, the others of what it is made. It is loaded, clicked, typed at, resized,
// painted and unloaded.

#include "FuzzInput.h"
#include "FuzzTarget.h"
#include "SceneText.h"

#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QCoreApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>

namespace {

void send(QWidget *widget, QEvent::Type type, const QPoint &at, Qt::MouseButtons buttons)
{
    const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, widget->mapToGlobal(at), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
}

void drag(QDeclarativeView *view, const QPoint &from, const QPoint &to)
{
    QWidget *viewport = view->viewport();
    send(viewport, QEvent::MouseButtonPress, from, Qt::LeftButton);
    for (int i = 1; i <= 4; ++i)
        send(viewport, QEvent::MouseMove, from + (to - from) * i / 4, Qt::LeftButton);
    send(viewport, QEvent::MouseButtonRelease, to, Qt::NoButton);
}

void type(QDeclarativeView *view, int key)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, QStringLiteral("a"));
        QCoreApplication::sendEvent(view, &event);
    }
}

/** Lets what is posted happen, and what is to be deleted go. */
void settle()
{
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void step(QDeclarativeView *view, quint8 choice)
{
    constexpr int keys[] = {Qt::Key_A, Qt::Key_Down, Qt::Key_Tab, Qt::Key_Left, Qt::Key_Backspace};
    const QPoint at(choice % 16 * 25, choice / 16 * 25);
    switch (choice % 5) {
    case 0:
        drag(view, at, at);
        break;
    case 1:
        drag(view, at, QPoint(200, 200));
        break;
    case 2:
        type(view, keys[choice / 5 % 5]);
        break;
    case 3:
        view->resize(choice * 3, choice * 2);
        break;
    case 4:
        view->grab();
        break;
    }
    settle();
}

} // namespace

void fuzz(const QByteArray &input)
{
    QDeclarativeView view;
    view.engine()->setOutputWarningsToStandardError(false);
    FuzzInput rest(input);
    const quint8 use = rest.takeByte();
    const QByteArray text = SceneText(&rest).text();
    if (qEnvironmentVariableIsSet("FUZZ_SHOW"))
        std::fprintf(stderr, "%s\n", text.constData());
    const QString path = writeFuzzFile(QStringLiteral("Scene.qml"), text);
    view.resize(400, 400);
    view.setSource(QUrl::fromLocalFile(path));
    // The texts themselves are right, or little would be tried.
    FUZZ_CHECK(view.status() == QDeclarativeView::Ready);
    view.show();
    settle();
    for (int i = 0; i < 6; ++i)
        step(&view, quint8(use * (i + 1) * 37));
    view.setSource(QUrl());
    settle();
}
