#pragma once

#include "item/qdeclarativeitem.h"

/** An item that keeps the focus of the items inside it while it does not have the focus itself. */
class QDeclarativeFocusScope : public QDeclarativeItem
{
    Q_OBJECT

public:
    explicit QDeclarativeFocusScope(QDeclarativeItem *parent = nullptr);
};

/** A focus scope that can be made the active one of the scene. */
class QDeclarativeFocusPanel : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)

public:
    explicit QDeclarativeFocusPanel(QDeclarativeItem *parent = nullptr);

Q_SIGNALS:
    void activeChanged();

protected:
    bool sceneEvent(QEvent *) override;
};
