#pragma once

#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace Vidtips {

class VTWidget;
class VTXmlElement;

/** Returns the content that @p window, which may be null, shows; null where it shows none. */
VTXmlElement *contentOf(const VTWidget *window);

/** Returns what goes with @p content, which may be null: its root container, which is its parent, else
 * itself. */
QObject *treeOf(VTXmlElement *content);

/** Tells whether @p object, which may be null, is @p tree or below it. */
bool isInTree(const QObject *object, const QObject *tree);

/** Returns the key of @p content; empty where it has none. */
QString keyOf(const VTXmlElement &content);

/** Tells whether @p content, which may be null, has the key @p key. Without a key it has no empty one either.
 */
bool hasKey(const VTXmlElement *content, const QString &key);

} // namespace Vidtips
