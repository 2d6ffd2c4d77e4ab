// Uses the stage, whose header has forward declarations only, and connects by signatures.

#include "forward.h"

#include <QtDeclarative/QDeclarativeError>
#include <QtDeclarative/QDeclarativeItem>
#include <QtDeclarative/QDeclarativePropertyMap>
#include <QtDeclarative/QDeclarativeView>

#include <QtTest/QtTest>

class host_forward : public QObject
{
    Q_OBJECT

private slots:
    void declaredNamesAreTheClasses();
    void propertyMap();

private:
    QDeclarativeItem *m_made = nullptr;

public slots:
    void take(QDeclarativeItem *item) { m_made = item; }
};

void host_forward::declaredNamesAreTheClasses()
{
    QDeclarativeView view;
    Host::Stage stage(&view);
    QVERIFY(connect(&stage, SIGNAL(made(QDeclarativeItem *)), this, SLOT(take(QDeclarativeItem *))));
    QScopedPointer<QDeclarativeItem> item(stage.make("import QtQuick 1.0\nItem { width: 30 }"));
    QVERIFY(item);
    QCOMPARE(item->width(), 30.0);
    QCOMPARE(m_made, item.data());
    QCOMPARE(stage.engine(), view.engine());
    QCOMPARE(stage.context()->engine(), view.engine());
}

void host_forward::propertyMap()
{
    QDeclarativeView view;
    Host::Stage stage(&view);
    stage.settings()->insert("size", 12);
    QDeclarativeError error;
    QCOMPARE(stage.evaluate("settings.size * 2", &error).toInt(), 24);
    QVERIFY(!error.isValid());
    stage.evaluate("nothing.size", &error);
    QVERIFY(error.isValid());
    QVERIFY(qobject_cast<QDeclarativePropertyMap *>(static_cast<QObject *>(stage.settings())));
}

QTEST_MAIN(host_forward)
#include "host_forward.moc"
