#pragma once

#include "WatchedScene.h"

#include <QtGui/QKeyEvent>

/** A watched scene whose items are found by their names and get keys. */
class ItemScene : public WatchedScene
{
public:
    /** Shows @p body, after @p imports besides QtQuick 1.1; ends the program when that fails. */
    explicit ItemScene(const QByteArray &body, const QByteArray &imports = {})
    {
        if (!load(imports + "\n" + body))
            qFatal("the scene does not become active");
    }

    QDeclarativeItem *root() { return qobject_cast<QDeclarativeItem *>(QmlScene::root()); }

    /** The item with that object name; ends the program when there is none. */
    QDeclarativeItem *item(const char *name)
    {
        auto *found = find(name);
        if (!found)
            qFatal("no item %s", name);
        return found;
    }

    QRectF geometry(const char *name)
    {
        const QDeclarativeItem *found = item(name);
        return QRectF(found->pos(), QSizeF(found->width(), found->height()));
    }

    /** Presses and releases @p key, and tells whether the press was accepted. */
    bool key(int key, const QString &text = {})
    {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(&view(), &press);
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
        QCoreApplication::sendEvent(&view(), &release);
        return press.isAccepted();
    }
};
