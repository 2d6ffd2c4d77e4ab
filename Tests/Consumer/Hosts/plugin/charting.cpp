// A plugin with an item of its own, as a qmldir names it.

#include <QtDeclarative/QDeclarativeContext>
#include <QtDeclarative/QDeclarativeEngine>
#include <QtDeclarative/QDeclarativeExtensionPlugin>
#include <QtDeclarative/QDeclarativeItem>
#include <QtDeclarative/qdeclarative.h>

class Chart : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(int bars READ bars CONSTANT)

public:
    explicit Chart(QDeclarativeItem *parent = 0)
        : QDeclarativeItem(parent)
    {
    }
    int bars() const { return 3; }
};

class ChartingPlugin : public QDeclarativeExtensionPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDeclarativeExtensionInterface")

public:
    void registerTypes(const char *uri) { qmlRegisterType<Chart>(uri, 1, 0, "Chart"); }

    void initializeEngine(QDeclarativeEngine *engine, const char *uri)
    {
        Q_UNUSED(uri)
        engine->rootContext()->setContextProperty("chartUnit", "mm");
    }
};

#include "charting.moc"
