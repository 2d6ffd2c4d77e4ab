#include "ViewTest.h"

#include <QtTest/QSignalSpy>
#include <QtWidgets/QGraphicsObject>

using namespace Vidtips;

/** How a view, by its loadQML(), comes to another user interface. */
class tst_VTViewLoader : public ViewTest
{
    Q_OBJECT

private slots:
    void init() { makeView(); }
    void cleanup() { endView(); }
    void missingFileIsReported_data();
    void missingFileIsReported();
    void loadedFileIsKept();
    void fileOfAHandlerWaits();
    void fileAsksForItself();
    void filesInACircle();
};

void tst_VTViewLoader::missingFileIsReported_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << "/nowhere/a.qml";
    QTest::newRow("empty") << "";
    QTest::newRow("folder") << QDir::tempPath();
    QTest::newRow("with a marker") << "/nowhere/%1.qml";
}

void tst_VTViewLoader::missingFileIsReported()
{
    QFETCH(QString, path);
    const QString file = packages->filePath("Basic.vidtips/ui/VidtipsUI.qml");
    view->loadQML(file);
    const QPointer<QGraphicsObject> root(view->rootObject());
    QVERIFY(root);
    view->loadQML(path);
    QCOMPARE(messages(), (QList<QPair<int, QString>>{{400, "Can't find :" + path}}));
    QCOMPARE(view->source(), QUrl::fromLocalFile(file));
    QCOMPARE(view->rootObject(), root.data());
}

void tst_VTViewLoader::loadedFileIsKept()
{
    const QString file = packages->filePath("Basic.vidtips/ui/VidtipsUI.qml");
    const QString other = packages->write("a b#c%20.qml", "import QtQuick 1.0\nItem { objectName: \"odd\" }");
    view->loadQML(file);
    const QPointer<QGraphicsObject> root(view->rootObject());
    view->loadQML(file);
    QVERIFY(root);
    QCOMPARE(view->rootObject(), root.data());
    view->loadQML(other);
    QVERIFY(!root);
    QCOMPARE(view->rootObject()->objectName(), QStringLiteral("odd"));
    QVERIFY(messages().isEmpty());
}

void tst_VTViewLoader::fileOfAHandlerWaits()
{
    const QString first = packages->write("first.qml", "import QtQuick 1.0\nItem { objectName: 'first' }");
    const QString last = packages->write("last.qml", "import QtQuick 1.0\nItem { objectName: 'last' }");
    setContent();
    view->exposeContent("here");
    view->loadQML(packages->write("loads.qml", R"(import QtQuick 1.0
        Item {
            property int step: 0
            property variant files
            onStepChanged: { vidTipView.loadQML(files[0]); vidTipView.loadQML(files[1]); step = 2 }
        })"));
    const QPointer<QGraphicsObject> root(view->rootObject());
    root->setProperty("files", QStringList{first, last});
    QStringList loaded;
    connect(view.data(), &QDeclarativeView::statusChanged, this,
            [&] { loaded << view->rootObject()->objectName(); });
    root->setProperty("step", 1);
    QVERIFY(root);
    QCOMPARE(root->property("step").toInt(), 2);
    QTRY_COMPARE(loaded, QStringList{"last"});
    QVERIFY(!root);
}

void tst_VTViewLoader::fileAsksForItself()
{
    setContent();
    view->exposeContent("here");
    const QString file = packages->filePath("itself.qml");
    packages->write("itself.qml",
                    "import QtQuick 1.0\nItem { Component.onCompleted: { vidTipView.notification(9, 0); "
                    "vidTipView.loadQML('"
                        + file.toUtf8() + "') } }");
    QSignalSpy changes(view.data(), &QDeclarativeView::statusChanged);
    view->loadQML(file);
    QVERIFY(view->rootObject());
    QTRY_COMPARE(changes.count(), 2);
    QCOMPARE(session->host->notifications.count(), 1);
    QVERIFY(messages().isEmpty());
}

void tst_VTViewLoader::filesInACircle()
{
    setContent();
    view->exposeContent("here");
    const QString a = packages->filePath("a.qml");
    const QString b = packages->filePath("b.qml");
    const QByteArray loading = "import QtQuick 1.0\nItem { Component.onCompleted: vidTipView.loadQML('";
    packages->write("a.qml", loading + b.toUtf8() + "') }");
    packages->write("b.qml", loading + a.toUtf8() + "') }");
    view->loadQML(a);
    QTRY_COMPARE(messages().count(), 1);
    QVERIFY(messages().first().second.startsWith(view->source().toLocalFile()));
    QVERIFY(view->rootObject());
    const QPointer<QGraphicsObject> root(view->rootObject());
    // Another is loaded all the same.
    view->loadQML(packages->filePath("Basic.vidtips/ui/VidtipsUI.qml"));
    QVERIFY(!root && view->rootObject());
}

QTEST_MAIN(tst_VTViewLoader)

#include "tst_vtviewloader.moc"
