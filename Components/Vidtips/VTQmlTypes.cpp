#include "VTQmlTypes_p.h"

#include "VTAccessible_p.h"
#include "VTScrollBarComponent.h"
#include "VTStyledRectangleComponent.h"
#include "VTVideoComponent.h"
#include "VTXmlElement.h"

#include <QtDeclarative/QDeclarativeView>
#include <QtDeclarative/qdeclarative.h>

namespace Vidtips {

namespace {

const char importUri[] = "com.corvale.vidtips.qml";

} // namespace

void registerQmlTypes()
{
    qmlRegisterType<VTVideoComponent>(importUri, 1, 0, "VTVideoComponent");
    qmlRegisterType<VTXmlElement>(importUri, 1, 0, "VTXmlElement");
    qmlRegisterType<VTStyledRectangleComponent>(importUri, 1, 0, "VTStyledRectangle");
    qmlRegisterType<VTScrollBarComponent>(importUri, 1, 0, "VTScrollBar");
    qmlRegisterUncreatableType<VTAccessible>(importUri, 1, 0, "VTAccessible",
                                             QStringLiteral("VTAccessible is attached to items"));
}

void prepareDeclarativeModule()
{
#ifdef VIDTIPS_DECLARATIVE_BUNDLED
    qmlRegisterDeclarativeTypes();
#else
    // Another module does that with its first view only.
    static bool isPrepared = false;
    if (!isPrepared)
        QDeclarativeView();
    isPrepared = true;
#endif
}

} // namespace Vidtips
