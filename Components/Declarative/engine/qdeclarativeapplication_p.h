#pragma once

#include <QtCore/QObject>

class QQmlEngine;

/**
 * What QML 1 knows of the program: `Qt.application`.
 *
 * Qt's own also has the program's names, which content could change for all that the program does, such as
 * where it keeps compiled code, and its command line.
 */
class QDeclarativeApplication : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool active READ isActive NOTIFY activeChanged)
    Q_PROPERTY(Qt::LayoutDirection layoutDirection READ layoutDirection NOTIFY layoutDirectionChanged)

public:
    /** Gives it to scripts of @p engine, and to its workers, in place of Qt's. Once, before any runs. */
    static void install(QQmlEngine *engine);

    bool isActive() const;
    Qt::LayoutDirection layoutDirection() const;

Q_SIGNALS:
    void activeChanged();
    void layoutDirectionChanged();

private:
    explicit QDeclarativeApplication(QObject *parent);
};
