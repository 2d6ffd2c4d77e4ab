#pragma once

/** The libraries of this process. */
namespace LoadedLibraries {

/**
 * Tells whether a library whose file name begins with @p name came into the process before this module did,
 * so that the program itself has it.
 */
bool isBeforeThis(const char *name);

} // namespace LoadedLibraries
