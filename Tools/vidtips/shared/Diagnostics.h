#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

/**
 * What the libraries write to Qt's debug stream.
 *
 * Nothing of it reaches the user as it is: a command takes what it has a use for. What would end the program,
 * such as a display that cannot be opened, ends it with one line and ExitBadInput.
 */
namespace Diagnostics {

/** Begins to keep messages instead of printing them. */
void capture();

/** Returns the messages since the last call. */
QStringList take();

} // namespace Diagnostics
