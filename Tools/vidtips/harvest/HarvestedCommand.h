#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

/** A command that a program has, with what the program itself says of it. */
struct HarvestedCommand
{
    QString key;
    QString source; ///< What the key comes from: "name", "icon", "button", "text" or "none".
    QString className;
    QString title;
    QString summary;
    QString shortcut; ///< In the portable spelling.
    QString group; ///< The menu, tool bar or dock that it is in.
    QString icon; ///< Path of the picture at scale 1, without ".png"; empty for none.

    /** Tells whether the key is the program's own, so that it stays from run to run and in every language. */
    bool hasUsableKey() const { return source == "name" || source == "icon" || source == "button"; }

    /** Returns the name that the program's source could give to the command. */
    QString suggestedName() const;

    /**
     * Reads what the tool's module has written to @p folder. Commands that share an icon's name have no
     * usable key then, and of those with the same name only the first one is kept. Returns what is wrong, or
     * nothing.
     */
    static QString read(const QString &folder, QVector<HarvestedCommand> &commands);
};
