#pragma once

/** What Qt's engine knows of the properties of the QML 1 types. */
namespace QDeclarativePropertyTables {

/**
 * Has each type's table hold all of its properties itself.
 *
 * For each object that it makes the engine goes through those that a table leaves to the ones of base
 * classes, in search of such as must be set. QML 1 has none, but items have forty properties and more, and
 * what has versions leaves all of them to others. To be called when the types are registered, and before any
 * is used.
 */
void complete();

} // namespace QDeclarativePropertyTables
