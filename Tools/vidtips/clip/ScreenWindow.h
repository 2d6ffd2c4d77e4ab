#pragma once

#include <QtCore/QSize>
#include <QtCore/QString>
#include <QtCore/QVector>

/** A window on the X server's screen, which can be recorded. */
struct ScreenWindow
{
    QString id; ///< As the X server calls it, "0x1400003".
    QString title;
    QSize size;

    /**
     * Finds the window that @p name means: its id, its title, or a part of the title that no other has;
     * returns why there is none to record, or nothing.
     */
    QString find(const QString &name);

    /** Reads what "xwininfo -root -tree" wrote: the windows that have a title and a size worth recording. */
    static QVector<ScreenWindow> listIn(const QString &tree);

    /** Chooses among @p windows as find() does. */
    QString choose(const QString &name, const QVector<ScreenWindow> &windows);
};
