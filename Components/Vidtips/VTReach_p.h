#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace Vidtips {

/** How far content may reach, as the settings and the content say at one moment. */
struct VTReach
{
    bool isRestricted = false;
    QStringList folders; ///< those of the content's packages, where it is restricted

    /** Tells whether content may read the file or folder at @p path. */
    bool admitsFile(const QString &path) const;
};

bool operator==(const VTReach &one, const VTReach &other);

inline bool operator!=(const VTReach &one, const VTReach &other)
{
    return !(one == other);
}

} // namespace Vidtips
