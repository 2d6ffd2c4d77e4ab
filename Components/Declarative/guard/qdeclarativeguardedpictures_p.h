#pragma once

#include <QtCore/QString>

/** What pictures may do beside showing themselves. Any thread. */
namespace QDeclarativeGuardedPictures {

/**
 * Returns why the picture in the file @p fileName is not to be shown: it is of a format that few programs
 * need, or a drawing that names other files. Empty where it may be shown, and where it is no picture.
 */
QString problemOf(const QString &fileName);

} // namespace QDeclarativeGuardedPictures
