#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

/** A command that a program has, with what the program itself says of it. */
struct HarvestedCommand
{
    QString key;
    QString source; ///< What the key comes from: "name", "icon", "button", "text" or "none".
    bool hasUsableKey = false; ///< Whether a tip can be made by the key.
    QString keyProblem; ///< Why a key that tells the command apart cannot be written; empty for nothing.
    QString className;
    QString title;
    QString summary;
    QString shortcut; ///< In the portable spelling.
    QString group; ///< The menu, tool bar or dock that it is in.
    QString icon; ///< Path of the picture at scale 1, without ".png"; empty for none.

    /** Tells whether the program says nothing of the command that a user could read. */
    bool isSilent() const { return title.isEmpty() && summary.isEmpty(); }

    /** Returns the name that the program's source could give to the command. */
    QString suggestedName() const;

    /** Returns the key, however odd, so that it can be shown in a line. */
    QString shownKey() const;

    /**
     * Reads what the tool's module has written to @p folder. Names, icons that no other command shows, and
     * standard buttons are usable keys, and texts where @p takesTexts says so; of several commands with the
     * same key only the first one is kept. Texts lose what XML cannot hold. Returns what is wrong, or
     * nothing.
     */
    static QString read(const QString &folder, bool takesTexts, QVector<HarvestedCommand> &commands);
};
