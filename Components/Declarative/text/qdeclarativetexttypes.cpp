#include "qdeclarativetexttypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativefontloader_p.h"
#include "qdeclarativetext_p.h"

void registerDeclarativeTextTypes()
{
    qRegisterMetaType<QDeclarativeText::HAlignment>();
    qRegisterMetaType<QDeclarativeText::VAlignment>();
    qRegisterMetaType<QDeclarativeText::TextStyle>();
    qRegisterMetaType<QDeclarativeText::TextFormat>();
    qRegisterMetaType<QDeclarativeText::TextElideMode>();
    qRegisterMetaType<QDeclarativeText::LineHeightMode>();
    registerDeclarativeType<QDeclarativeText>("Text");
    registerDeclarativeType<QDeclarativeFontLoader>("FontLoader");
}
