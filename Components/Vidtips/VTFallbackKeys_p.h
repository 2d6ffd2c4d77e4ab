#pragma once

#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QAction;
class QObject;
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/** What stands for a key where a command has no name; every function takes null and then finds nothing. */
namespace FallbackKeys {

/** Returns the name that @p action's icon has in icon themes; empty for an icon that comes from a picture. */
QString iconName(const QAction *action);

/** Returns @p text on one line, without mnemonics, shortcut and ellipsis. */
QString plainText(const QString &text);

/** Returns what @p widget, a button or a group box, is labelled with, as plainText(). */
QString label(const QWidget *widget);

/** Returns "QDialogButtonBox.Ok" and the like for a button that Qt made for a dialog or a wizard. */
QString standardButton(const QWidget *widget);

/** Returns the status bar or dock widget that @p widget is in; null for one that is itself such. */
QWidget *container(const QWidget *widget);

} // namespace FallbackKeys

} // namespace Vidtips
