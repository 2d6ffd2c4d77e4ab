#include "qdeclarativepathviewtypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativepathview_p.h"

void registerDeclarativePathViewTypes()
{
    registerDeclarativeType<QDeclarativePathView>("PathView");
}
