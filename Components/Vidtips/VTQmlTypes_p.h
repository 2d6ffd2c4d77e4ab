#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

#include <functional>
#include <memory>

namespace Vidtips {

/** Makes the types of the library known to QML, for `import com.corvale.vidtips.qml 1.0`. */
void registerQmlTypes();

/**
 * Has the declarative module register what types it can before there is an engine. Does nothing when called
 * again. GUI thread only.
 */
void prepareDeclarativeModule();

/**
 * Has the user interface at @p path compiled for Qt's cache, on a thread, and calls @p done when that has
 * ended. Returns what is at work, which may be destroyed at any time; null where there is nothing to do. GUI
 * thread only.
 */
std::unique_ptr<QObject> compileInterface(const QString &path, const std::function<void()> &done);

} // namespace Vidtips
