#pragma once

#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QFile;
QT_END_NAMESPACE

namespace Vidtips {

/** The depth of a control file that is not in the package. */
constexpr int outsidePackage = -1;

/** Opens @p file for reading. Returns false when that fails or when it is no regular file. */
bool openRegular(QFile &file);

/** Tells whether the first element of the file at the path @p controlFile is `vidtips`. Reads no further. */
bool startsWithVidtips(const QString &controlFile);

/**
 * Returns how many levels the path @p controlFile is below the folder @p package, symbolic links followed: 0
 * for the folder itself, outsidePackage for what lies elsewhere.
 */
int depthInPackage(const QString &controlFile, const QString &package);

} // namespace Vidtips
