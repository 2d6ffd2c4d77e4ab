#pragma once

namespace Vidtips {

/** Makes the types of the library known to QML, for `import com.corvale.vidtips.qml 1.0`. */
void registerQmlTypes();

/**
 * Has the declarative module register all element types, which it does once in a process and which takes
 * longer than showing a tip does. Does nothing when called again. GUI thread only.
 */
void prepareDeclarativeModule();

} // namespace Vidtips
