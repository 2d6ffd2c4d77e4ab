#include "qdeclarativemodelstypes_p.h"

#include "engine/qdeclarativeregistration_p.h"
#include "qdeclarativefolderlistmodel_p.h"
#include "qdeclarativelistmodel_p.h"
#include "qdeclarativelistmodelparser_p.h"
#include "qdeclarativevisualdatamodel_p.h"
#include "qdeclarativevisualitemmodel_p.h"
#include "qdeclarativexmllistmodel_p.h"

void registerDeclarativeModelsTypes()
{
    const auto registerListModel = [](const char *uri, int major, int minor) {
        // The type keeps its parser until the program ends.
        qmlRegisterCustomType<QDeclarativeListModel>(uri, major, minor, "ListModel",
                                                     new QDeclarativeListModelParser);
    };
    registerListModel("QtQuick", 1, 0);
    registerListModel("Qt", 4, 7);
    registerDeclarativeType<QDeclarativeListElement>("ListElement");
    registerDeclarativeType<QDeclarativeVisualDataModel>("VisualDataModel");
    registerDeclarativeType<QDeclarativeVisualItemModel>("VisualItemModel");
    registerDeclarativeType<QDeclarativeXmlListModel>("XmlListModel");
    registerDeclarativeType<QDeclarativeXmlRole>("XmlRole");
    qmlRegisterType<QDeclarativeFolderListModel>("Qt.labs.folderlistmodel", 1, 0, "FolderListModel");
}
