#pragma once

#include <private/qqmltype_p.h>

/** Gives types that Qt registers in its own modules a place in QML 1's modules too. */
namespace QDeclarativeQtType {

using CreateFunction = void (*)(void *memory);

/** The type @p name of Qt's @p module 2; a Qt that lacks it cannot be worked with, so that is fatal. */
QQmlType find(const char *module, const char *name);

/** The function that makes an object of @p type in memory given to it; null for an abstract type. */
CreateFunction createFunction(const QQmlType &type);

/** What a copy of a type has in place of the original's; null keeps that. */
struct Replacement
{
    CreateFunction create = nullptr;
    const QMetaObject *metaObject = nullptr; ///< must stay for ever
    const char *noCreationReason = nullptr;
};

/** Registers @p type as @p name in QtQuick 1.0 and Qt 4.7. */
void registerCopy(const QQmlType &type, const char *name, const Replacement &replacement = {});

/** Makes @p type the one that its C++ class stands for, rather than a copy of it. */
void registerAgain(const QQmlType &type);

} // namespace QDeclarativeQtType
