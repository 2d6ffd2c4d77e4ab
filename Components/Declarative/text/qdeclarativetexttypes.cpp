#include "qdeclarativetexttypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativefontloader_p.h"
#include "qdeclarativetext_p.h"

void registerDeclarativeTextTypes()
{
    registerDeclarativeType<QDeclarativeText>("Text");
    registerDeclarativeType<QDeclarativeFontLoader>("FontLoader");
}
