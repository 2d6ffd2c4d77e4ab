#include <Vidtips/VTQmlTypes_p.h>

#include <QtDeclarative/QDeclarativeComponent>
#include <QtDeclarative/QDeclarativeEngine>
#include <QtTest/QTest>

using namespace Vidtips;

class tst_VTQmlTypes : public QObject
{
    Q_OBJECT

private slots:
    void types_data();
    void types();
    void preparedMoreThanOnce();
};

void tst_VTQmlTypes::types_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QByteArray>("className");
    QTest::newRow("content") << "VTXmlElement" << QByteArray("Vidtips::VTXmlElement");
    QTest::newRow("clip") << "VTVideoComponent" << QByteArray("Vidtips::VTVideoComponent");
    QTest::newRow("rectangle") << "VTStyledRectangle" << QByteArray("Vidtips::VTStyledRectangleComponent");
    QTest::newRow("scroll bar") << "VTScrollBar" << QByteArray("VTScrollBarComponent");
}

// Also for an engine that was there before, and when another manager does it again.
void tst_VTQmlTypes::types()
{
    QFETCH(QString, type);
    QFETCH(QByteArray, className);
    QDeclarativeEngine engine;
    registerQmlTypes();
    registerQmlTypes();
    QDeclarativeComponent component(&engine);
    component.setData("import com.corvale.vidtips.qml 1.0\n" + type.toUtf8() + " { }", QUrl());
    const QScopedPointer<QObject> object(component.create());
    QVERIFY2(object, qPrintable(component.errorString()));
    QVERIFY(object->inherits(className));
}

void tst_VTQmlTypes::preparedMoreThanOnce()
{
    const int before = QApplication::allWidgets().size();
    prepareDeclarativeModule();
    prepareDeclarativeModule();
    QCOMPARE(QApplication::allWidgets().size(), before);
}

QTEST_MAIN(tst_VTQmlTypes)
#include "tst_vtqmltypes.moc"
