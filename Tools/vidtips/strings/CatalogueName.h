#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

class Content;
struct Package;

/** How the files of translations are named. */
namespace CatalogueName {

/** The file for @p locale, built ("qm") or to be translated ("ts") as @p suffix says. */
QString of(const QString &locale, const QString &suffix);

/** The locale that the file @p fileName is for. */
QString localeOf(const QString &fileName);

/** The folders for the catalogues of @p package: the usual one, and those that its tips name. */
QStringList foldersOf(const Content &content, const Package &package);

/** The locales that @p content has control files or catalogues for, in order. */
QStringList localesIn(const Content &content);

} // namespace CatalogueName
