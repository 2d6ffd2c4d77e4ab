#pragma once

#include <QtCore/QMetaEnum>
#include <QtCore/QStringList>
#include <QtGui/QAccessible>

/** Names @p object's role as QAccessible does. */
inline QString accessibleRole(QAccessibleInterface *object)
{
    return QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(object->role()));
}

/** Returns what can be done with @p object. */
inline QStringList accessibleActions(QAccessibleInterface *object)
{
    QAccessibleActionInterface *const actions = object->actionInterface();
    return actions ? actions->actionNames() : QStringList();
}

/**
 * Returns what is inside @p object, a line for each: two blanks for each level, the role, the name in quotes
 * and the actions. Fails the process when parents and children do not agree.
 */
inline QStringList accessibleTree(QAccessibleInterface *object, int level = 0)
{
    QStringList lines;
    for (int i = 0; i < object->childCount(); ++i) {
        QAccessibleInterface *const child = object->child(i);
        if (!child || child->parent() != object || object->indexOfChild(child) != i)
            qFatal("child %d of %s has another parent", i, qPrintable(object->text(QAccessible::Name)));
        QStringList words{accessibleRole(child), '"' + child->text(QAccessible::Name) + '"'};
        words << accessibleActions(child);
        lines << QString(2 * level, ' ') + words.join(' ') << accessibleTree(child, level + 1);
    }
    return lines;
}
