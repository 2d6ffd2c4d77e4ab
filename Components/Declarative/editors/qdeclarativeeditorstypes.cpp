#include "qdeclarativeeditorstypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativepainteditem_p.h"
#include "qdeclarativetextedit_p.h"
#include "qdeclarativetexteditor_p.h"
#include "qdeclarativetextinput_p.h"

void registerDeclarativeEditorsTypes()
{
    registerDeclarativeRevision<QDeclarativePaintedItem>();
    registerDeclarativeRevision<QDeclarativeTextEditor>();
    registerDeclarativeType<QDeclarativeTextInput>("TextInput");
    registerDeclarativeType<QDeclarativeTextEdit>("TextEdit");
}
