#pragma once

namespace Vidtips {

/** Makes the types of the library known to QML, for `import com.corvale.vidtips.qml 1.0`. */
void registerQmlTypes();

/**
 * Has the declarative module make what it makes once in a process, which takes longer than showing a tip
 * does: its first view registers all element types. Does nothing when called again. GUI thread only.
 */
void prepareDeclarativeModule();

} // namespace Vidtips
