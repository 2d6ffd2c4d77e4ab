#pragma once

#include <QtCore/QString>

/** What keys of tips are made of. */
namespace KeyName {

/** Returns why @p key is none: it is empty, or holds what nobody sees or types. Nothing where it is one. */
QString problemWith(const QString &key);

} // namespace KeyName
