#pragma once

#include "HarvestedCommand.h"

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/**
 * What the program said when its commands were harvested last, in the file harvest.json of the package. By it
 * what the program has changed is told from what authors have.
 */
class HarvestState
{
public:
    HarvestState(const QString &package, const QString &locale);

    /** Reads the file where there is one; returns what is wrong, or nothing. */
    QString read();

    /** Returns what the program said of @p key; tells by @p isKnown whether it had the command. */
    HarvestedCommand command(const QString &key, bool *isKnown) const;

    /** Returns the keys of all commands that the program has had. */
    QStringList keys() const;

    /** Keeps @p command as it is now. */
    void set(const HarvestedCommand &command);

    /** Writes the file; returns what is wrong, or nothing. */
    QString write() const;

private:
    QString m_path;
    QString m_locale;
    QJsonObject m_locales;
    QJsonObject m_commands;
};
