#pragma once

#include <private/qquickstate_p.h>

/** A state as QML 1 enters it: with each change of a `when` the conditions of all states count as they are
 * now. */
class QDeclarativeState : public QQuickState
{
    Q_OBJECT
    Q_PROPERTY(bool when READ when WRITE setWhen)

public:
    explicit QDeclarativeState(QObject *parent = nullptr)
        : QQuickState(parent)
    {
    }

    void setWhen(bool when);

private:
    void updateWhen();
};
