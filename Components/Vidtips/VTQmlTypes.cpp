#include "VTQmlTypes_p.h"

#include "VTAccessible_p.h"
#include "VTScrollBarComponent.h"
#include "VTStyledRectangleComponent.h"
#include "VTVideoComponent.h"
#include "VTXmlElement.h"

#include <QtCore/QUrl>
#include <QtDeclarative/qdeclarative.h>
#ifdef VIDTIPS_DECLARATIVE_BUNDLED
#include <QtDeclarative/qdeclarativepreparation.h>
#endif

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

#ifdef VIDTIPS_DECLARATIVE_BUNDLED
void prepareDeclarativeModule()
{
    QDeclarativePreparation::registerTypes();
}

std::unique_ptr<QObject> compileInterface(const QString &path, const std::function<void()> &done)
{
    const QUrl url = QUrl::fromLocalFile(path);
    if (!QDeclarativePreparation::isDue(url))
        return nullptr;
    auto preparation = std::make_unique<QDeclarativePreparation>(url);
    QObject::connect(preparation.get(), &QDeclarativePreparation::finished, preparation.get(), done);
    return preparation;
}
#else
// Another module does either with its first view only.
void prepareDeclarativeModule() { }

std::unique_ptr<QObject> compileInterface(const QString &, const std::function<void()> &)
{
    return nullptr;
}
#endif

} // namespace Vidtips
