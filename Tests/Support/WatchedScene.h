#pragma once

#include "QmlScene.h"

#include <QtCore/QStringList>
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
