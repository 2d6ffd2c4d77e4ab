#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/** What somebody may have meant who wrote a name that there is not. */
namespace Nearest {

/** Returns the name among @p names that is nearest to @p name; empty where none is near. */
QString to(const QString &name, const QStringList &names);

} // namespace Nearest
