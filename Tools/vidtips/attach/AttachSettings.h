#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

class QProcessEnvironment;

/** What the tool asks of its module in another program; it travels in the environment of that program. */
struct AttachSettings
{
    QStringList dataPaths; ///< Absolute.
    QString locale; ///< Of the tips; empty for the program's own.
    QString reportFile; ///< A file to which the module adds a line for each thing that the tool waits for.
    QString harvestFolder; ///< Where the program's commands are written to; empty for tips.
    int harvestWait = 0; ///< Milliseconds: how long a window with menus or tool bars may take to come.
    bool isTraced = false; ///< Whether each hovered object is printed.

    /** Has the programs that are started in @p environment load the module in the folder @p plugins. */
    void writeTo(QProcessEnvironment &environment, const QString &plugins) const;

    /**
     * Takes the settings out of this process's environment, so that programs which it starts know nothing of
     * them.
     */
    static AttachSettings takeFromEnvironment();
};
