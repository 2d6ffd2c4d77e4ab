// Content that imports a plugin.

#include <QtDeclarative/QDeclarativeComponent>
#include <QtDeclarative/QDeclarativeEngine>

#include <QtTest/QtTest>

class host_plugin : public QObject
{
    Q_OBJECT

private slots:
    void importsThePlugin();
    void loadsAPluginByName();
};

void host_plugin::importsThePlugin()
{
    QDeclarativeEngine engine;
    engine.addImportPath(IMPORTS);
    QDeclarativeComponent component(&engine);
    component.setData(
        "import QtQuick 1.0\nimport Charting 1.0\n"
        "Item { property int bars: chart.bars; property string unit: chartUnit; Chart { id: chart } }",
        QUrl());
    if (component.isError())
        qWarning() << component.errors();
    QScopedPointer<QObject> item(component.create());
    QVERIFY(item);
    QCOMPARE(item->property("bars").toInt(), 3);
    QCOMPARE(item->property("unit").toString(), QString("mm"));
}

void host_plugin::loadsAPluginByName()
{
    QDeclarativeEngine engine;
    QString error;
    QVERIFY(!engine.importPlugin(QString(IMPORTS) + "/Charting/libnone.so", "Other", &error));
    QVERIFY(!error.isEmpty());
}

QTEST_MAIN(host_plugin)
#include "host_plugin.moc"
