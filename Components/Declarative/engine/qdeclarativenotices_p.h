#pragma once

/** What the engine remarks on in content that is right as QML 1. */
namespace QDeclarativeNotices {

/** Keeps those remarks from the log, for as long as the program runs. */
void silence();

} // namespace QDeclarativeNotices
