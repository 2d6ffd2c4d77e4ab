#include "qdeclarativeviewstypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativegridview_p.h"
#include "qdeclarativelistview_p.h"

void registerDeclarativeViewsTypes()
{
    registerDeclarativeRevision<QDeclarativeItemView>();
    registerDeclarativeType<QDeclarativeViewSection>("ViewSection");
    registerDeclarativeType<QDeclarativeListView>("ListView");
    registerDeclarativeType<QDeclarativeGridView>("GridView");
}
