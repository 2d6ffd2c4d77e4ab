// An engine that never meets a view, with what a host gives it: pictures, network access, warnings.

#include <QtDeclarative/qdeclarativecomponent.h>
#include <QtDeclarative/qdeclarativecontext.h>
#include <QtDeclarative/qdeclarativeengine.h>
#include <QtDeclarative/qdeclarativeerror.h>
#include <QtDeclarative/qdeclarativeexpression.h>
#include <QtDeclarative/qdeclarativeimageprovider.h>
#include <QtDeclarative/qdeclarativelist.h>
#include <QtDeclarative/qdeclarativenetworkaccessmanagerfactory.h>
#include <QtDeclarative/qdeclarativeproperty.h>

#include <QtNetwork/QNetworkAccessManager>
#include <QtTest/QtTest>

class Colours : public QDeclarativeImageProvider
{
public:
    Colours()
        : QDeclarativeImageProvider(QDeclarativeImageProvider::Pixmap)
    {
    }

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize)
    {
        QPixmap pixmap(requestedSize.isValid() ? requestedSize : QSize(20, 10));
        pixmap.fill(QColor(id));
        if (size)
            *size = QSize(20, 10);
        return pixmap;
    }
};

class Factory : public QDeclarativeNetworkAccessManagerFactory
{
public:
    QNetworkAccessManager *create(QObject *parent) { return m_made = new QNetworkAccessManager(parent); }

    QNetworkAccessManager *m_made = nullptr;
};

class host_engine : public QObject
{
    Q_OBJECT

private slots:
    void importsWithoutAView();
    void signalsByTheirSignatures();
    void contexts();
    void imageProvider();
    void networkAccess();
    void properties();

public slots:
    void take(const QList<QDeclarativeError> &errors) { m_errors += errors; }
    void take(QDeclarativeComponent::Status status) { m_status = status; }

private:
    QObject *make(QDeclarativeEngine *engine, const QByteArray &qml)
    {
        QDeclarativeComponent component(engine);
        component.setData("import QtQuick 1.0\n" + qml, QUrl());
        foreach (const QDeclarativeError &error, component.errors())
            qWarning() << error;
        return component.create();
    }

    QList<QDeclarativeError> m_errors;
    QDeclarativeComponent::Status m_status = QDeclarativeComponent::Null;
};

void host_engine::importsWithoutAView()
{
    QDeclarativeEngine engine;
    QScopedPointer<QObject> item(make(&engine, "Rectangle { Text { text: 'a' } }"));
    QVERIFY(item);
    QVERIFY(item->inherits("QGraphicsObject"));
    QVERIFY(engine.evaluate("typeof openDatabaseSync").isString());
}

void host_engine::signalsByTheirSignatures()
{
    QDeclarativeEngine engine;
    engine.setOutputWarningsToStandardError(false);
    QVERIFY(connect(&engine, SIGNAL(warnings(QList<QDeclarativeError>)), this,
                    SLOT(take(QList<QDeclarativeError>))));
    QScopedPointer<QObject> item(make(&engine, "Item { width: nothing }"));
    QCOMPARE(m_errors.count(), 1);
    QVERIFY(m_errors.first().description().contains("nothing"));

    QDeclarativeComponent component(&engine);
    QVERIFY(connect(&component, SIGNAL(statusChanged(QDeclarativeComponent::Status)), this,
                    SLOT(take(QDeclarativeComponent::Status))));
    component.setData("import QtQuick 1.0\nItem {}", QUrl());
    QCOMPARE(m_status, QDeclarativeComponent::Ready);
}

void host_engine::contexts()
{
    QDeclarativeEngine engine;
    QDeclarativeContext *context = new QDeclarativeContext(engine.rootContext(), &engine);
    context->setContextProperty("answer", 42);
    QDeclarativeComponent component(&engine);
    component.setData(
        "import QtQuick 1.0\nItem { property int said: answer; property Component part: Item {} }", QUrl());
    QScopedPointer<QObject> item(component.create(context));
    QVERIFY(item);
    QCOMPARE(item->property("said").toInt(), 42);
    QDeclarativeContext *inner = QDeclarativeEngine::contextForObject(item.data());
    QCOMPARE(inner->engine(), &engine);
    QCOMPARE(inner->parentContext(), context);
    QCOMPARE(qmlContext(item.data()), inner);
    QCOMPARE(qmlEngine(item.data()), &engine);
    QVERIFY(qobject_cast<QDeclarativeEngine *>(static_cast<QObject *>(&engine)));
    QDeclarativeComponent *part = qvariant_cast<QDeclarativeComponent *>(item->property("part"));
    QVERIFY(part);
    QCOMPARE(part->creationContext(), inner);
    QCOMPARE(qobject_cast<QDeclarativeComponent *>(item->property("part").value<QObject *>()), part);
    QScopedPointer<QObject> made(part->create());
    QVERIFY(made);
}

void host_engine::imageProvider()
{
    QDeclarativeEngine engine;
    Colours *colours = new Colours;
    engine.addImageProvider("colours", colours);
    QCOMPARE(engine.imageProvider("colours"), colours);
    QScopedPointer<QObject> image(make(&engine, "Image { source: 'image://colours/red' }"));
    QVERIFY(image);
    QTRY_COMPARE(image->property("width").toInt(), 20);
}

void host_engine::networkAccess()
{
    Factory factory;
    QDeclarativeEngine engine;
    engine.setNetworkAccessManagerFactory(&factory);
    QCOMPARE(engine.networkAccessManagerFactory(), &factory);
    QVERIFY(engine.networkAccessManager());
    QCOMPARE(engine.networkAccessManager(), factory.m_made);
}

void host_engine::properties()
{
    QDeclarativeEngine engine;
    QScopedPointer<QObject> item(make(&engine, "Item { width: 10; Item {} }"));
    QVERIFY(item);
    QDeclarativeProperty width(item.data(), "width", &engine);
    QCOMPARE(width.read().toInt(), 10);
    QVERIFY(width.write(30));
    QCOMPARE(QDeclarativeProperty::read(item.data(), "width").toInt(), 30);
    QVERIFY(QDeclarativeProperty(item.data(), "children").propertyTypeCategory()
            == QDeclarativeProperty::List);
    const QVariant list = QDeclarativeProperty(item.data(), "children", qmlContext(item.data())).read();
    QCOMPARE(qvariant_cast<QDeclarativeListReference>(list).count(), 1);
    QDeclarativeExpression expression(qmlContext(item.data()), item.data(), "width * 2");
    QSignalSpy changed(&expression, SIGNAL(valueChanged()));
    expression.setNotifyOnValueChanged(true);
    QCOMPARE(expression.evaluate().toInt(), 60);
    width.write(40);
    QCOMPARE(changed.count(), 1);
}

QTEST_MAIN(host_engine)
#include "host_engine.moc"
