#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

class Content;

/** How the files of translations are named. */
namespace CatalogueName {

/** The file for @p locale, built ("qm") or to be translated ("ts") as @p suffix says. */
QString of(const QString &locale, const QString &suffix);

/** The locale that the file @p fileName is for. */
QString localeOf(const QString &fileName);

/** The locales that @p content has control files or catalogues for, in order. */
QStringList localesIn(const Content &content);

} // namespace CatalogueName
