#pragma once

#include "QmlScene.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QStringList>
#include <QtGui/QMouseEvent>
#include <QtWidgets/QGraphicsObject>

/** What a scene has said. It outlives the view, whose handlers may fail to the very end. */
struct SceneMessages
{
    QStringList warnings;
};

/** A QML 1 scene that is shown in an active window, and whose messages are kept instead of written. */
class WatchedScene : public SceneMessages, public QmlScene
{
public:
    WatchedScene()
    {
        // The view shrinks to a root without a size, and a window that has none is never active.
        view().setMinimumSize(1, 1);
        view().engine()->setOutputWarningsToStandardError(false);
        QObject::connect(view().engine(), &QQmlEngine::warnings, &view(),
                         [this](const QList<QQmlError> &errors) {
                             for (const QQmlError &error : errors)
                                 warnings += error.description();
                         });
    }

    /** Shows @p body, which follows an import of QtQuick 1.1; returns whether the window is active. */
    bool load(const QByteArray &body)
    {
        QmlScene::load("import QtQuick 1.1\n" + body);
        view().show();
        return QTest::qWaitForWindowActive(&view());
    }

    /** Returns the item that has @p name as objectName, wherever it stands. */
    QGraphicsObject *item(const char *name)
    {
        const auto items = view().scene()->items();
        for (QGraphicsItem *item : items) {
            QGraphicsObject *object = item->toGraphicsObject();
            if (object && object->objectName() == QLatin1String(name))
                return object;
        }
        return nullptr;
    }

    void press(const QPoint &at) { QTest::mousePress(view().viewport(), Qt::LeftButton, {}, at); }
    void release(const QPoint &at) { QTest::mouseRelease(view().viewport(), Qt::LeftButton, {}, at); }
    void click(const QPoint &at) { QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, at); }

    /** Moves the mouse with @p buttons held. */
    void move(const QPoint &at, Qt::MouseButtons buttons = Qt::LeftButton)
    {
        QWidget *viewport = view().viewport();
        QMouseEvent event(QEvent::MouseMove, at, viewport->mapToGlobal(at), Qt::NoButton, buttons, {});
        QCoreApplication::sendEvent(viewport, &event);
    }

    /** Presses at the first place of @p way and moves to the others. */
    void drag(const QVector<QPoint> &way)
    {
        press(way.first());
        for (const QPoint &at : way.mid(1))
            move(at);
    }

    /** Waits longer than a movement before a release counts as a flick; returns whether it could. */
    static bool letRest()
    {
        QElapsedTimer timer;
        timer.start();
        return QTest::qWaitFor([&timer] { return timer.hasExpired(120); });
    }

    QVariant value(const char *property) { return root()->property(property); }

    /** Runs @p script in the scene's context; its error is a message like others. */
    QVariant evaluate(const char *script)
    {
        QQmlExpression expression(qmlContext(root()), root(), QString::fromUtf8(script));
        QVariant result = expression.evaluate();
        if (expression.hasError())
            warnings += expression.error().description();
        return result;
    }
};
