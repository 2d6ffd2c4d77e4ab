#include <QtDeclarative/QDeclarativeItem>
#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QTemporaryDir>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

class tst_QDeclarativeView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void modules_data();
    void modules();
    void takesTheRootsSize();
    void missingFileIsAnError();

private:
    QUrl write(const QByteArray &qml);

    QTemporaryDir m_folder;
    int m_files = 0;
};

void tst_QDeclarativeView::initTestCase()
{
    QVERIFY(m_folder.isValid());
}

QUrl tst_QDeclarativeView::write(const QByteArray &qml)
{
    QFile file(m_folder.filePath(QStringLiteral("Scene%1.qml").arg(++m_files)));
    if (!file.open(QIODevice::WriteOnly) || file.write(qml) != qml.size())
        qFatal("cannot write %s", qPrintable(file.fileName()));
    return QUrl::fromLocalFile(file.fileName());
}

void tst_QDeclarativeView::modules_data()
{
    QTest::addColumn<QByteArray>("import");
    QTest::newRow("QtQuick 1.0") << QByteArray("import QtQuick 1.0");
    QTest::newRow("QtQuick 1.1") << QByteArray("import QtQuick 1.1");
    QTest::newRow("Qt 4.7") << QByteArray("import Qt 4.7");
}

void tst_QDeclarativeView::modules()
{
    QFETCH(QByteArray, import);
    QDeclarativeView view;
    view.setSource(write(import + R"(
        Item {
            id: root; width: 200; height: 100
            property int pushed: 0
            Item { objectName: "child"; x: 10; width: root.width / 2; rotation: 10
                   transform: Scale { xScale: 2 } }
            states: State { name: "wide"; PropertyChanges { target: root; width: 300 } }
            transitions: Transition { NumberAnimation { property: "width"; duration: 10 } }
            Timer { interval: 1; running: true; onTriggered: root.state = "wide" }
            Connections { target: root; onStateChanged: root.pushed++ }
        })"));
    QVERIFY(view.errors().isEmpty());
    QCOMPARE(view.status(), QDeclarativeView::Ready);
    auto *child = view.rootObject()->findChild<QDeclarativeItem *>(QStringLiteral("child"));
    QVERIFY(child);
    QCOMPARE(child->width(), 100.0);
    QTRY_COMPARE(view.rootObject()->property("width").toReal(), 300.0);
    QCOMPARE(view.rootObject()->property("pushed").toInt(), 1);
    QCOMPARE(child->width(), 150.0);
}

void tst_QDeclarativeView::takesTheRootsSize()
{
    QDeclarativeView view;
    view.setSource(write("import QtQuick 1.0\nItem { width: 120; height: 80 }"));
    QCOMPARE(view.size(), QSize(120, 80));
    QCOMPARE(view.initialSize(), QSize(120, 80));
    view.show();
    QSignalSpy resized(&view, &QDeclarativeView::sceneResized);
    view.rootObject()->setProperty("height", 90);
    QTRY_COMPARE(view.size(), QSize(120, 90));
    QTRY_COMPARE(resized.count(), 1);
    view.setResizeMode(QDeclarativeView::SizeRootObjectToView);
    view.resize(50, 60);
    QTRY_COMPARE(view.rootObject()->property("width").toInt(), 50);
}

void tst_QDeclarativeView::missingFileIsAnError()
{
    QDeclarativeView view;
    QSignalSpy status(&view, &QDeclarativeView::statusChanged);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("NoSuch")));
    view.setSource(QUrl::fromLocalFile(m_folder.filePath(QStringLiteral("NoSuch.qml"))));
    QCOMPARE(view.status(), QDeclarativeView::Error);
    QCOMPARE(view.errors().count(), 1);
    QVERIFY(!view.rootObject());
    QVERIFY(status.count() >= 1);
}

QTEST_MAIN(tst_QDeclarativeView)
#include "tst_qdeclarativeview.moc"
