#include <Vidtips/VTTipContainer_p.h>

#include <QtTest/QTest>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QGridLayout>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QTreeView>

using namespace Vidtips;

class tst_VTTipContainer : public QObject
{
    Q_OBJECT

private slots:
    void nothing();
    void widgetThatIsGone();
    void obstacles_data();
    void obstacles();
    void obstacleIsThatOfTheWidgetInside();
    void layoutOfTheHostIsUsed();
    void windowGetsFlagsAndPlace();
    void innerWidgetGetsNeither();
    void dockGetsAWidget();
    void dockKeepsItsWidget();
    void subWindowMakesRoom();
    void pageComesToTheFront_data();
    void pageComesToTheFront();
};

void tst_VTTipContainer::nothing()
{
    const VTTipContainer container;
    QWidget tip;
    QVERIFY(!container.widget());
    QCOMPARE(container.obstacle(), QString());
    container.take(&tip);
    QVERIFY(!tip.parentWidget());
    container.setTitle("Title");
    container.makeRoom();
    container.reveal(QPoint());
}

void tst_VTTipContainer::widgetThatIsGone()
{
    auto *const widget = new QWidget;
    const VTTipContainer container(widget);
    QCOMPARE(container.widget(), widget);
    delete widget;
    QVERIFY(!container.widget());
    container.setTitle("Title");
    container.makeRoom();
    container.reveal(QPoint());
}

void tst_VTTipContainer::obstacles_data()
{
    QTest::addColumn<QWidget *>("widget");
    QTest::addColumn<QString>("named");
    const auto row = [](QWidget *widget, const QString &named) {
        QTest::newRow(widget->metaObject()->className()) << widget << named;
    };
    row(new QWidget, {});
    row(new QDialog, {});
    row(new QDockWidget, {});
    row(new QMdiSubWindow, {});
    row(new QMainWindow, "QMainWindow");
    row(new QScrollArea, "QScrollArea");
    row(new QTreeView, "QTreeView");
    row(new QTabWidget, "QTabWidget");
    row(new QStackedWidget, "QStackedWidget");
    row(new QSplitter, "QSplitter");
    row(new QToolBar, "QToolBar");
}

void tst_VTTipContainer::obstacles()
{
    QFETCH(QWidget *, widget);
    QFETCH(QString, named);
    const std::unique_ptr<QWidget> owner(widget);
    const QString obstacle = VTTipContainer(widget).obstacle();
    QCOMPARE(obstacle.isEmpty(), named.isEmpty());
    QVERIFY(obstacle.contains(named));
}

void tst_VTTipContainer::obstacleIsThatOfTheWidgetInside()
{
    QDockWidget dock;
    dock.setWidget(new QTreeView);
    QVERIFY(VTTipContainer(&dock).obstacle().contains("QTreeView"));
}

void tst_VTTipContainer::layoutOfTheHostIsUsed()
{
    QWidget window;
    auto *const layout = new QGridLayout(&window);
    auto *const tip = new QWidget;
    VTTipContainer(&window).take(tip);
    QCOMPARE(window.layout(), layout);
    QCOMPARE(layout->indexOf(tip), 0);
    QCOMPARE(tip->parentWidget(), &window);
}

void tst_VTTipContainer::windowGetsFlagsAndPlace()
{
    QWidget window;
    const VTTipContainer container(&window);
    container.take(new QWidget);
    container.setTitle("Title");
    container.reveal(QPoint(120, 130));
    QVERIFY(window.isVisible());
    QCOMPARE(window.windowTitle(), QString("Title"));
    const Qt::WindowFlags added = Qt::WindowTitleHint | Qt::CustomizeWindowHint | Qt::WindowCloseButtonHint;
    QCOMPARE(window.windowFlags() & added, added);
    QCOMPARE(window.pos(), QPoint(120, 130));
}

void tst_VTTipContainer::innerWidgetGetsNeither()
{
    QWidget window;
    window.setGeometry(100, 100, 300, 200);
    auto *const inner = new QWidget(&window);
    inner->setGeometry(10, 20, 100, 80);
    const Qt::WindowFlags flags = inner->windowFlags();
    const VTTipContainer container(inner);
    container.take(new QWidget);
    window.show();
    container.reveal(QPoint(120, 130));
    QCOMPARE(inner->windowFlags(), flags);
    QVERIFY(!inner->isWindow());
    QCOMPARE(inner->pos(), QPoint(10, 20));
    QCOMPARE(window.geometry(), QRect(100, 100, 300, 200));
}

void tst_VTTipContainer::dockGetsAWidget()
{
    QMainWindow window;
    auto *const dock = new QDockWidget("Tips", &window);
    auto *const behind = new QDockWidget("Layers", &window);
    window.addDockWidget(Qt::LeftDockWidgetArea, dock);
    window.tabifyDockWidget(dock, behind);
    window.show();
    behind->raise();
    dock->hide();
    const Qt::WindowFlags flags = dock->windowFlags();
    auto *const tip = new QWidget;
    const VTTipContainer container(dock);
    container.take(tip);
    container.setTitle("Title");
    container.reveal(QPoint(5, 5));
    QVERIFY(dock->widget());
    QCOMPARE(tip->parentWidget(), dock->widget());
    QCOMPARE(dock->windowFlags(), flags);
    QCOMPARE(dock->windowTitle(), QString("Title"));
    QTRY_VERIFY(tip->isVisible());
    QTRY_VERIFY(!dock->visibleRegion().isEmpty());
}

void tst_VTTipContainer::dockKeepsItsWidget()
{
    QDockWidget dock;
    auto *const panel = new QWidget;
    dock.setWidget(panel);
    QWidget *const tips[] = {new QWidget, new QWidget};
    for (QWidget *tip : tips)
        VTTipContainer(&dock).take(tip);
    QCOMPARE(dock.widget(), panel);
    QCOMPARE(tips[0]->parentWidget(), panel);
    QCOMPARE(tips[1]->parentWidget(), panel);
    QCOMPARE(panel->layout()->count(), 2);
}

void tst_VTTipContainer::subWindowMakesRoom()
{
    QMdiArea area;
    area.resize(600, 400);
    QMdiSubWindow *const window = area.addSubWindow(new QMdiSubWindow);
    area.show();
    auto *const tip = new QWidget;
    tip->setFixedSize(150, 100);
    const VTTipContainer container(window);
    container.take(tip);
    container.reveal(QPoint());
    QCOMPARE(area.activeSubWindow(), window);
    QVERIFY(!window->isWindow());
    QVERIFY(window->widget()->width() >= 150 && window->widget()->height() >= 100);
    tip->setFixedSize(200, 180);
    container.makeRoom();
    QVERIFY(window->widget()->width() >= 200 && window->widget()->height() >= 180);
    window->showMaximized();
    const QSize maximized = window->size();
    tip->setFixedSize(250, 280);
    container.makeRoom();
    QCOMPARE(window->size(), maximized);
}

void tst_VTTipContainer::pageComesToTheFront_data()
{
    QTest::addColumn<bool>("isInside");
    QTest::newRow("the page") << false;
    QTest::newRow("a widget in it") << true;
}

void tst_VTTipContainer::pageComesToTheFront()
{
    QFETCH(bool, isInside);
    QTabWidget tabs;
    auto *const stack = new QStackedWidget;
    tabs.addTab(new QWidget, "First");
    tabs.addTab(stack, "Second");
    stack->addWidget(new QWidget);
    auto *const page = new QWidget;
    stack->addWidget(page);
    tabs.show();
    QWidget *const inner = isInside ? new QWidget(page) : page;
    auto *const tip = new QWidget;
    const VTTipContainer container(inner);
    container.take(tip);
    container.reveal(QPoint());
    QCOMPARE(tabs.currentWidget(), stack);
    QCOMPARE(tabs.tabBar()->currentIndex(), 1);
    QCOMPARE(stack->currentWidget(), page);
    QVERIFY(tip->isVisible());
}

QTEST_MAIN(tst_VTTipContainer)
#include "tst_vttipcontainer.moc"
