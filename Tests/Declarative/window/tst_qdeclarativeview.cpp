#include <QtDeclarative/QDeclarativeItem>
#include <QtDeclarative/QDeclarativeView>

#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsProxyWidget>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsWidget>
#include <QtWidgets/QVBoxLayout>

class tst_QDeclarativeView : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void modules_data();
    void modules();
    void takesTheRootsSize();
    void missingFileIsAnError();
    void statusIsTold_data();
    void statusIsTold();
    void sameSourceLoadsAgain();
    void emptySource();
    void rootThatIsNoItem();
    void rootThatIsAWidget();
    void resizeModes();
    void rootWithoutASize();
    void resizedBeforeItIsShown_data();
    void resizedBeforeItIsShown();
    void sceneOfTheHost();
    void noScene();
    void runTimeErrorsKeepTheScene();
    void bindingsRestOnDestruction_data();
    void bindingsRestOnDestruction();
    void rootDestroyedByHost();
    void sourceSetByAHandler();
    void viewDeletedByAHandler_data();
    void viewDeletedByAHandler();
    void translucent();
    void embedded();

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

void tst_QDeclarativeView::statusIsTold_data()
{
    QTest::addColumn<QByteArray>("qml");
    QTest::addColumn<QDeclarativeView::Status>("status");
    QTest::addColumn<QString>("error");
    QTest::newRow("good") << QByteArray("Item {}") << QDeclarativeView::Ready << QString();
    QTest::newRow("syntax") << QByteArray("Item { width: }") << QDeclarativeView::Error << "Expected token";
    QTest::newRow("type") << QByteArray("Nonsense {}") << QDeclarativeView::Error << "Nonsense is not a type";
    QTest::newRow("not creatable") << QByteArray("Keys {}") << QDeclarativeView::Error
                                   << "Keys is only available via attached properties";
    QTest::newRow("two roots") << QByteArray("Item {}\nItem {}") << QDeclarativeView::Error << QString();
}

void tst_QDeclarativeView::statusIsTold()
{
    QFETCH(QByteArray, qml);
    QFETCH(QDeclarativeView::Status, status);
    QFETCH(QString, error);
    QDeclarativeView view;
    QCOMPARE(view.status(), QDeclarativeView::Null);
    QVector<QDeclarativeView::Status> told;
    bool hadRoot = false;
    connect(&view, &QDeclarativeView::statusChanged, &view, [&](QDeclarativeView::Status now) {
        told.append(now);
        hadRoot = view.rootObject();
    });
    const QUrl url = write("import QtQuick 1.0\n" + qml);
    if (status == QDeclarativeView::Error)
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("Scene")));
    view.setSource(url);
    QCOMPARE(told, QVector<QDeclarativeView::Status>{status});
    QCOMPARE(view.status(), status);
    QCOMPARE(hadRoot, status == QDeclarativeView::Ready);
    QCOMPARE(view.errors().isEmpty(), status == QDeclarativeView::Ready);
    if (view.errors().isEmpty())
        return;
    QCOMPARE(view.errors().first().url(), url);
    QVERIFY2(view.errors().first().description().contains(error),
             qPrintable(view.errors().first().description()));
}

void tst_QDeclarativeView::sameSourceLoadsAgain()
{
    QDeclarativeView view;
    const QUrl url = write("import QtQuick 1.0\nItem { property int n: 0 }");
    view.setSource(url);
    const QPointer<QGraphicsObject> first = view.rootObject();
    first->setProperty("n", 3);
    view.setSource(url);
    QVERIFY(!first);
    QCOMPARE(view.rootObject()->property("n").toInt(), 0);
    QCOMPARE(view.scene()->items().count(), 1);
}

void tst_QDeclarativeView::emptySource()
{
    QDeclarativeView view(write("import QtQuick 1.0\nItem { width: 30; height: 20 }"));
    const QPointer<QGraphicsObject> root = view.rootObject();
    QVERIFY(root);
    view.setSource(QUrl());
    QVERIFY(!root);
    QVERIFY(!view.rootObject());
    QCOMPARE(view.status(), QDeclarativeView::Null);
    QVERIFY(view.sizeHint() != QSize(30, 20));
}

void tst_QDeclarativeView::rootThatIsNoItem()
{
    QDeclarativeView view;
    QTest::ignoreMessage(QtWarningMsg,
                         QRegularExpression(QStringLiteral("only supports loading of root objects")));
    view.setSource(write("import QtQuick 1.0\nQtObject {}"));
    QVERIFY(!view.rootObject());
    QCOMPARE(view.status(), QDeclarativeView::Ready);
    QVERIFY(view.errors().isEmpty());
    QVERIFY(view.scene()->items().isEmpty());
    view.setSource(write("import QtQuick 1.0\nItem {}"));
    QCOMPARE(view.status(), QDeclarativeView::Ready);
    QVERIFY(view.errors().isEmpty());
}

void tst_QDeclarativeView::rootThatIsAWidget()
{
    qmlRegisterType<QGraphicsWidget>("Test", 1, 0, "Widget");
    QDeclarativeView view;
    view.setSource(write("import Test 1.0\nWidget { preferredSize: '70x40' }"));
    auto *widget = qobject_cast<QGraphicsWidget *>(view.rootObject());
    QVERIFY(widget);
    widget->resize(90, 60);
    view.show();
    QTRY_COMPARE(view.size(), QSize(90, 60));
    QCOMPARE(view.sizeHint(), QSize(90, 60));
    view.setResizeMode(QDeclarativeView::SizeRootObjectToView);
    view.resize(120, 50);
    QTRY_COMPARE(widget->size(), QSizeF(120, 50));
}

void tst_QDeclarativeView::resizeModes()
{
    QDeclarativeView view;
    view.setResizeMode(QDeclarativeView::SizeRootObjectToView);
    view.setSource(write("import QtQuick 1.0\nItem { width: 120; height: 80 }"));
    QCOMPARE(view.initialSize(), QSize(120, 80));
    QCOMPARE(view.size(), QSize(120, 80));
    view.show();
    QSignalSpy resized(&view, &QDeclarativeView::sceneResized);
    view.resize(200, 100);
    QTRY_COMPARE(resized.count(), 1);
    QCOMPARE(resized.first().first().toSize(), QSize(200, 100));
    QCOMPARE(view.rootObject()->property("width").toReal(), 200.0);
    QCOMPARE(view.sceneRect(), QRectF(0, 0, 200, 100));
    view.rootObject()->setProperty("width", 50);
    QTest::qWait(0);
    QCOMPARE(view.width(), 200);
    view.setResizeMode(QDeclarativeView::SizeViewToRootObject);
    QTRY_COMPARE(view.size(), QSize(50, 100));
    QCOMPARE(view.initialSize(), QSize(120, 80));
}

void tst_QDeclarativeView::rootWithoutASize()
{
    QDeclarativeView view;
    view.resize(200, 100);
    view.setSource(write("import QtQuick 1.0\nItem { Rectangle { width: 20; height: 20 } }"));
    QCOMPARE(view.initialSize(), QSize(0, 0));
    QCOMPARE(view.size(), QSize(0, 0));
    view.rootObject()->setProperty("width", 50);
    QTRY_COMPARE(view.size(), QSize(50, 0));
}

void tst_QDeclarativeView::resizedBeforeItIsShown_data()
{
    QTest::addColumn<bool>("loadFirst");
    QTest::addColumn<bool>("isInLayout");
    QTest::addColumn<QSize>("size");
    QTest::newRow("then loaded") << false << false << QSize(120, 80);
    QTest::newRow("then loaded, in a layout") << false << true << QSize(200, 100);
    QTest::newRow("after loading") << true << false << QSize(200, 100);
}

void tst_QDeclarativeView::resizedBeforeItIsShown()
{
    QFETCH(bool, loadFirst);
    QFETCH(bool, isInLayout);
    QFETCH(QSize, size);
    QWidget window;
    if (isInLayout)
        new QVBoxLayout(&window);
    auto *const view = new QDeclarativeView(&window);
    const QUrl source = write("import QtQuick 1.0\nItem { width: 120; height: 80 }");
    if (loadFirst)
        view->setSource(source);
    view->resize(200, 100);
    view->setResizeMode(QDeclarativeView::SizeRootObjectToView);
    if (!loadFirst)
        view->setSource(source);
    QCOMPARE(view->initialSize(), QSize(120, 80));
    QCOMPARE(view->size(), size);
    QCOMPARE(view->rootObject()->property("width").toInt(), size.width());
    QCOMPARE(view->rootObject()->property("height").toInt(), size.height());
}

void tst_QDeclarativeView::sceneOfTheHost()
{
    QGraphicsScene scene;
    QDeclarativeView view;
    view.setScene(&scene);
    view.setSource(write("import QtQuick 1.0\nRectangle { width: 30; height: 20 }"));
    QVERIFY(view.rootObject());
    QCOMPARE(view.rootObject()->scene(), &scene);
    QCOMPARE(scene.items().count(), 1);
    view.setSource(QUrl());
    QVERIFY(scene.items().isEmpty());
}

void tst_QDeclarativeView::noScene()
{
    QDeclarativeView view;
    view.setScene(nullptr);
    view.setSource(write("import QtQuick 1.0\nRectangle { width: 30; height: 20 }"));
    QVERIFY(view.rootObject());
    QCOMPARE(view.size(), QSize(30, 20));
}

void tst_QDeclarativeView::runTimeErrorsKeepTheScene()
{
    QDeclarativeView view;
    view.engine()->setOutputWarningsToStandardError(false);
    QSignalSpy warnings(view.engine(), &QQmlEngine::warnings);
    view.setSource(write("import QtQuick 1.0\nItem { width: missing.width; height: 20 }"));
    QCOMPARE(view.status(), QDeclarativeView::Ready);
    QVERIFY(view.errors().isEmpty());
    QCOMPARE(view.rootObject()->property("height").toInt(), 20);
    QCOMPARE(warnings.count(), 1);
}

void tst_QDeclarativeView::bindingsRestOnDestruction_data()
{
    QTest::addColumn<bool>("replaced");
    QTest::newRow("with the view") << false;
    QTest::newRow("by another source") << true;
}

void tst_QDeclarativeView::bindingsRestOnDestruction()
{
    QFETCH(bool, replaced);
    QStringList seen;
    QQmlPropertyMap log;
    {
        QDeclarativeView view;
        view.engine()->setOutputWarningsToStandardError(false);
        connect(view.engine(), &QQmlEngine::warnings, &view, [&seen](const QList<QQmlError> &errors) {
            for (const QQmlError &error : errors)
                seen.append(error.description());
        });
        view.rootContext()->setContextProperty(QStringLiteral("log"), &log);
        view.setSource(write(R"(import QtQuick 1.0
            Item {
                id: root; width: a.width + b.x; height: childrenRect.height + b.children.length
                Item { id: a; width: 10; height: b.height; anchors.left: b.right }
                Item { id: b; x: a.width; height: 5; Item { width: root.width; onParentChanged: a.width } }
                Timer { interval: 1; running: true; repeat: true; onTriggered: a.width++ }
                onWidthChanged: a.x = b.x
                property QtObject look: QtObject { property int size: 3 }
                Component {
                    id: part
                    Item {
                        property QtObject own: root.look
                        width: own.size
                        Item { width: parent.own.size; height: root.look.size }
                    }
                }
                Loader { id: loader; sourceComponent: part }
                Loader { sourceComponent: part; Component.onCompleted: sourceComponent = undefined }
                Loader { Loader { sourceComponent: part } }
                Repeater { model: 2; delegate: part }
                ListView { width: 10; height: 10; model: 2; delegate: part }
                GridView { width: 10; height: 10; model: 2; delegate: part }
                Component.onDestruction: log.last = "width " + a.width + ", children " + b.children.length
            })"));
        QCOMPARE(view.status(), QDeclarativeView::Ready);
        view.show();
        if (replaced)
            view.setSource(write("import QtQuick 1.0\nItem {}"));
    }
    QVERIFY(log.value(QStringLiteral("last")).toString().endsWith(QStringLiteral("children 1")));
    QVERIFY2(seen.isEmpty(), qPrintable(seen.join(QLatin1Char('\n'))));
}

void tst_QDeclarativeView::rootDestroyedByHost()
{
    QDeclarativeView view(write("import QtQuick 1.0\nItem { width: 30; height: 20 }"));
    view.show();
    delete view.rootObject();
    QVERIFY(!view.rootObject());
    view.resize(70, 70);
    view.setResizeMode(QDeclarativeView::SizeRootObjectToView);
    view.setSource(write("import QtQuick 1.0\nItem { width: 30; height: 20 }"));
    QCOMPARE(view.rootObject()->property("width").toInt(), 30);
    view.resize(70, 70);
    QTRY_COMPARE(view.rootObject()->property("width").toInt(), 70);
}

static const char halfRed[] =
    "import QtQuick 1.0\n"
    "Item { width: 40; height: 20; Rectangle { width: 20; height: 20; color: '#80ff0000' } }";

void tst_QDeclarativeView::translucent()
{
    QDeclarativeView view;
    view.setAttribute(Qt::WA_TranslucentBackground);
    view.setStyleSheet(QStringLiteral("background: transparent"));
    view.viewport()->setAutoFillBackground(false);
    view.setSource(write(halfRed));
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    QImage picture(view.size(), QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    static_cast<QWidget &>(view).render(&picture, QPoint(), QRegion(), QWidget::DrawChildren);
    QCOMPARE(picture.pixelColor(30, 10).alpha(), 0);
    QCOMPARE(picture.pixelColor(10, 10).alpha(), 128);
    QCOMPARE(picture.pixelColor(10, 10).red(), 255);
}

void tst_QDeclarativeView::embedded()
{
    QWidget window;
    window.resize(100, 60);
    QPalette palette;
    palette.setColor(QPalette::Window, Qt::blue);
    window.setPalette(palette);
    auto *view = new QDeclarativeView(&window);
    view->setStyleSheet(QStringLiteral("background: transparent"));
    view->viewport()->setAutoFillBackground(false);
    view->setSource(write(halfRed));
    view->move(10, 10);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QImage picture = window.grab().toImage();
    QCOMPARE(picture.pixelColor(45, 20), QColor(Qt::blue));
    QVERIFY(picture.pixelColor(20, 20).red() > 120 && picture.pixelColor(20, 20).blue() > 120);

    QGraphicsScene scene;
    auto *second = new QDeclarativeView;
    second->setSource(write("import QtQuick 1.0\nRectangle { width: 90; height: 80; color: 'red' }"));
    QGraphicsProxyWidget *proxy = scene.addWidget(second);
    QCOMPARE(proxy->size(), QSizeF(90, 80));
    QGraphicsView outer(&scene);
    outer.setFrameStyle(QFrame::NoFrame);
    outer.setSceneRect(0, 0, 90, 80);
    outer.resize(90, 80);
    outer.show();
    QVERIFY(QTest::qWaitForWindowExposed(&outer));
    const QImage inScene = outer.grab().toImage();
    QCOMPARE(inScene.pixelColor(20, 10), QColor(Qt::red));
}

void tst_QDeclarativeView::sourceSetByAHandler()
{
    QDeclarativeView view;
    const QUrl first = write("import QtQuick 1.0\nItem { objectName: 'first' }");
    const QUrl second = write("import QtQuick 1.0\nItem { objectName: 'second' }");
    view.rootContext()->setContextProperty(QStringLiteral("view"), &view);
    view.setSource(write(R"(import QtQuick 1.0
        Item {
            property int step: 0
            property variant sources
            onStepChanged: { view.source = sources[0]; view.source = sources[1]; step = 2 }
        })"));
    const QPointer<QGraphicsObject> root(view.rootObject());
    root->setProperty("sources", QVariantList{first, second});
    root->setProperty("step", 1);
    QVERIFY(root);
    QCOMPARE(root->property("step").toInt(), 2);
    QCOMPARE(view.source(), second);
    QCOMPARE(view.status(), QDeclarativeView::Loading);
    QTRY_COMPARE(view.status(), QDeclarativeView::Ready);
    QCOMPARE(view.rootObject()->objectName(), QStringLiteral("second"));
    QVERIFY(!root);
}

void tst_QDeclarativeView::viewDeletedByAHandler_data()
{
    QTest::addColumn<bool>("isBeingMade");
    QTest::newRow("of the root object") << false;
    QTest::newRow("while the root object is made") << true;
}

// The host's slot that the handler calls; the rest of the handler runs afterwards.
void tst_QDeclarativeView::viewDeletedByAHandler()
{
    QFETCH(bool, isBeingMade);
    QPointer<QDeclarativeView> view(new QDeclarativeView);
    const QPointer<QDeclarativeEngine> engine(view->engine());
    QTimer host;
    connect(&host, &QTimer::objectNameChanged, [&] {
        delete view;
        // As an event loop of a dialog would.
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
    });
    view->rootContext()->setContextProperty(QStringLiteral("host"), &host);
    view->setSource(write(R"(import QtQuick 1.0
        Item {
            property int step: 0
            onStepChanged: { host.objectName = "first"; host.interval = 7 }
            Component.onCompleted: step = )"
                          + QByteArray::number(int(isBeingMade)) + " }"));
    if (!isBeingMade)
        view->rootObject()->setProperty("step", 1);
    QVERIFY(!view);
    QCOMPARE(host.interval(), 7);
    QTRY_VERIFY(!engine);
}

QTEST_MAIN(tst_QDeclarativeView)
#include "tst_qdeclarativeview.moc"
