#pragma once

#include <QtCore/QString>

/** What keys of tips are made of. */
namespace KeyName {

/** Returns what in @p key somebody who types it would not see or not type; nothing where nothing is. */
QString problemWith(const QString &key);

} // namespace KeyName
