#pragma once

#include <QtCore/QString>

namespace Vidtips {

class VTWidget;
class VTXmlElement;

/** Returns the content that @p window, which may be null, shows; null where it shows none. */
VTXmlElement *contentOf(const VTWidget *window);

/** Returns the key of @p content; empty where it has none. */
QString keyOf(const VTXmlElement &content);

/** Tells whether @p content, which may be null, has the key @p key. Without a key it has no empty one either.
 */
bool hasKey(const VTXmlElement *content, const QString &key);

} // namespace Vidtips
