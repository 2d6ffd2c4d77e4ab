#include <Vidtips/VTCommandPart_p.h>

#include <QtCore/QRect>
#include <QtGui/QStandardItemModel>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsRectItem>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QMenu>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableView>

using namespace Vidtips;

using TabChange = void (*)(QTabBar *);
using PageChange = void (*)(QTabWidget *);
using TableChange = void (*)(QTableView *);
using MenuChange = void (*)(QMenu *);
using SceneChange = void (*)(QGraphicsView *, QGraphicsItem *);
Q_DECLARE_METATYPE(TabChange)
Q_DECLARE_METATYPE(PageChange)
Q_DECLARE_METATYPE(TableChange)
Q_DECLARE_METATYPE(MenuChange)
Q_DECLARE_METATYPE(SceneChange)
Q_DECLARE_METATYPE(Vidtips::VTPartState)

namespace {

constexpr auto there = VTPartState::There;
constexpr auto elsewhere = VTPartState::Elsewhere;
constexpr auto gone = VTPartState::Gone;

QStandardItemModel *columnsOf(QTableView *table)
{
    return static_cast<QStandardItemModel *>(table->model());
}

} // namespace

class tst_VTCommandPart : public QObject
{
    Q_OBJECT

private slots:
    void whereThereIsNoPart();
    void tabs_data();
    void tabs();
    void pages_data();
    void pages();
    void sections_data();
    void sections();
    void entries_data();
    void entries();
    void items_data();
    void items();
    void itemIsTheOneThatFillsTheRectangle();
};

void tst_VTCommandPart::whereThereIsNoPart()
{
    QWidget window;
    QVERIFY(!checkOfPart(&window, QRect(0, 0, 9, 9), QPoint(5, 5)));
    QWidget child(&window);
    QVERIFY(!checkOfPart(&child, QRect(0, 0, 9, 9), QPoint(5, 5)));
    QTabBar bar;
    QVERIFY(!checkOfPart(&bar, bar.rect(), QPoint(0, 0)));
    QMenu menu;
    menu.addAction("Cut");
    QVERIFY(!checkOfPart(&menu, menu.rect(), QPoint(-5, -5)));
    QTableView table;
    QVERIFY(!checkOfPart(table.horizontalHeader()->viewport(), QRect(0, 0, 9, 9), QPoint(5, 5)));
    QGraphicsScene scene(0, 0, 100, 100);
    QGraphicsView view(&scene);
    QVERIFY(!checkOfPart(view.viewport(), QRect(0, 0, 9, 9), QPoint(5, 5)));
    QGraphicsView empty;
    QVERIFY(!checkOfPart(empty.viewport(), QRect(0, 0, 9, 9), QPoint(5, 5)));
    scene.addRect(0, 0, 100, 100);
    // A scroll bar of a view shows no part of the scene.
    QVERIFY(!checkOfPart(new QWidget(&view), QRect(0, 0, 9, 9), QPoint(5, 5)));
}

void tst_VTCommandPart::tabs_data()
{
    QTest::addColumn<TabChange>("change");
    QTest::addColumn<VTPartState>("expected");
    const auto row = [](const char *name, TabChange change, VTPartState expected) {
        QTest::newRow(name) << change << expected;
    };
    row(
        "nothing", [](QTabBar *) {}, there);
    row(
        "another name", [](QTabBar *bar) { bar->setTabText(1, "Bee"); }, there);
    row(
        "one more", [](QTabBar *bar) { bar->addTab("D"); }, there);
    row(
        "a later one goes", [](QTabBar *bar) { bar->removeTab(2); }, there);
    row(
        "an earlier one grows", [](QTabBar *bar) { bar->setTabText(0, QString(60, QLatin1Char('A'))); },
        elsewhere);
    row(
        "it goes", [](QTabBar *bar) { bar->removeTab(1); }, gone);
    row(
        "it and the later one go", [](QTabBar *bar) { bar->removeTab(1), bar->removeTab(1); }, gone);
    row(
        "all go", [](QTabBar *bar) { bar->removeTab(0), bar->removeTab(0), bar->removeTab(0); }, gone);
    row(
        "it goes, and the next has its name",
        [](QTabBar *bar) { bar->removeTab(1), bar->setTabText(1, "B"); }, gone);
    row(
        "bar deleted", [](QTabBar *bar) { delete bar; }, gone);
}

void tst_VTCommandPart::tabs()
{
    QFETCH(TabChange, change);
    QWidget window;
    auto *const bar = new QTabBar(&window);
    const QStringList names{"A", "B", "C"};
    for (const QString &name : names)
        bar->setTabData(bar->addTab(name), name);
    bar->setUsesScrollButtons(false);
    bar->setElideMode(Qt::ElideNone);
    const QPoint position = bar->tabRect(1).center();
    const auto check = checkOfPart(bar, bar->tabRect(1), position);
    QVERIFY(check);
    change(bar);
    QTEST(check(), "expected");
}

void tst_VTCommandPart::pages_data()
{
    QTest::addColumn<PageChange>("change");
    QTest::addColumn<VTPartState>("expected");
    const auto row = [](const char *name, PageChange change, VTPartState expected) {
        QTest::newRow(name) << change << expected;
    };
    row(
        "nothing", [](QTabWidget *) {}, there);
    row(
        "another name", [](QTabWidget *tabs) { tabs->setTabText(1, "Bee"); }, there);
    row(
        "a later one goes", [](QTabWidget *tabs) { delete tabs->widget(2); }, there);
    row(
        "an earlier one goes", [](QTabWidget *tabs) { delete tabs->widget(0); }, elsewhere);
    row(
        "it changes places", [](QTabWidget *tabs) { tabs->tabBar()->moveTab(1, 2); }, elsewhere);
    row(
        "it is taken out", [](QTabWidget *tabs) { tabs->removeTab(1); }, gone);
    row(
        "it is deleted", [](QTabWidget *tabs) { delete tabs->widget(1); }, gone);
    row(
        "all deleted", [](QTabWidget *tabs) { delete tabs; }, gone);
}

void tst_VTCommandPart::pages()
{
    QFETCH(PageChange, change);
    QWidget window;
    auto *const tabs = new QTabWidget(&window);
    const QStringList names{"First", "Second", "Third"};
    for (const QString &name : names)
        tabs->addTab(new QWidget, name);
    tabs->resize(400, 200);
    const QRect tab = tabs->tabBar()->tabRect(1);
    const auto check = checkOfPart(tabs->tabBar(), tab, tab.center());
    QVERIFY(check);
    change(tabs);
    QTEST(check(), "expected");
}

void tst_VTCommandPart::sections_data()
{
    QTest::addColumn<TableChange>("change");
    QTest::addColumn<VTPartState>("expected");
    const auto row = [](const char *name, TableChange change, VTPartState expected) {
        QTest::newRow(name) << change << expected;
    };
    row(
        "nothing", [](QTableView *) {}, there);
    row(
        "one more", [](QTableView *table) { columnsOf(table)->insertColumn(3); }, there);
    row(
        "a later one goes", [](QTableView *table) { columnsOf(table)->removeColumn(2); }, there);
    row(
        "an earlier one is wider", [](QTableView *table) { table->setColumnWidth(0, 300); }, elsewhere);
    row(
        "an earlier one is hidden", [](QTableView *table) { table->hideColumn(0); }, elsewhere);
    row(
        "it changes places", [](QTableView *table) { table->horizontalHeader()->moveSection(1, 2); },
        elsewhere);
    row(
        "it is hidden", [](QTableView *table) { table->hideColumn(1); }, gone);
    row(
        "it goes", [](QTableView *table) { columnsOf(table)->removeColumn(1); }, gone);
    row(
        "it was the last one", [](QTableView *table) { columnsOf(table)->removeColumns(1, 2); }, gone);
    row(
        "no model", [](QTableView *table) { table->setModel(nullptr); }, gone);
    row(
        "table deleted", [](QTableView *table) { delete table; }, gone);
}

void tst_VTCommandPart::sections()
{
    QFETCH(TableChange, change);
    QWidget window;
    auto *const table = new QTableView(&window);
    auto *const model = new QStandardItemModel(2, 3, table);
    model->setHorizontalHeaderLabels({"A", "B", "C"});
    table->setModel(model);
    table->resize(900, 200);
    QHeaderView *const header = table->horizontalHeader();
    header->resize(900, header->sizeHint().height());
    const QRect section(header->sectionViewportPosition(1), 0, header->sectionSize(1), 10);
    const auto check = checkOfPart(header->viewport(), section, section.center());
    QVERIFY(check);
    change(table);
    QTEST(check(), "expected");
}

void tst_VTCommandPart::entries_data()
{
    QTest::addColumn<MenuChange>("change");
    QTest::addColumn<VTPartState>("expected");
    const auto row = [](const char *name, MenuChange change, VTPartState expected) {
        QTest::newRow(name) << change << expected;
    };
    row(
        "nothing", [](QMenu *) {}, there);
    row(
        "another name", [](QMenu *menu) { menu->actions().at(1)->setText("Bee"); }, there);
    row(
        "disabled", [](QMenu *menu) { menu->actions().at(1)->setEnabled(false); }, there);
    row(
        "a later one goes", [](QMenu *menu) { delete menu->actions().at(2); }, there);
    row(
        "an earlier one goes", [](QMenu *menu) { delete menu->actions().at(0); }, elsewhere);
    row(
        "it is hidden", [](QMenu *menu) { menu->actions().at(1)->setVisible(false); }, gone);
    row(
        "it is taken out", [](QMenu *menu) { menu->removeAction(menu->actions().at(1)); }, gone);
    row(
        "it is deleted", [](QMenu *menu) { delete menu->actions().at(1); }, gone);
    row(
        "menu deleted", [](QMenu *menu) { delete menu; }, gone);
}

void tst_VTCommandPart::entries()
{
    QFETCH(MenuChange, change);
    QWidget window;
    auto *const menu = new QMenu(&window);
    const QStringList names{"A", "B", "C"};
    for (const QString &name : names)
        menu->addAction(new QAction(name, &window));
    menu->resize(menu->sizeHint());
    const QRect entry = menu->actionGeometry(menu->actions().at(1));
    const auto check = checkOfPart(menu, entry, entry.center());
    QVERIFY(check);
    change(menu);
    QTEST(check(), "expected");
}

void tst_VTCommandPart::items_data()
{
    QTest::addColumn<SceneChange>("change");
    QTest::addColumn<VTPartState>("expected");
    const auto row = [](const char *name, SceneChange change, VTPartState expected) {
        QTest::newRow(name) << change << expected;
    };
    row(
        "nothing", [](QGraphicsView *, QGraphicsItem *) {}, there);
    row(
        "moved a little", [](QGraphicsView *, QGraphicsItem *item) { item->moveBy(3, 0); }, there);
    row(
        "covered", [](QGraphicsView *view, QGraphicsItem *) { view->scene()->addRect(0, 0, 90, 90); }, there);
    row(
        "moved away", [](QGraphicsView *, QGraphicsItem *item) { item->moveBy(60, 0); }, elsewhere);
    row(
        "turned away", [](QGraphicsView *view, QGraphicsItem *) { view->translate(0, 60); }, elsewhere);
    row(
        "hidden", [](QGraphicsView *, QGraphicsItem *item) { item->hide(); }, gone);
    row(
        "deleted", [](QGraphicsView *, QGraphicsItem *item) { delete item; }, gone);
    row(
        "cleared", [](QGraphicsView *view, QGraphicsItem *) { view->scene()->clear(); }, gone);
    row(
        "no scene", [](QGraphicsView *view, QGraphicsItem *) { view->setScene(nullptr); }, gone);
    row(
        "view deleted", [](QGraphicsView *view, QGraphicsItem *) { delete view; }, gone);
}

void tst_VTCommandPart::items()
{
    QFETCH(SceneChange, change);
    QGraphicsScene scene(0, 0, 100, 100);
    QGraphicsItem *const item = scene.addRect(10, 10, 20, 20);
    auto *const view = new QGraphicsView(&scene);
    view->setFrameShape(QFrame::NoFrame);
    view->setTransformationAnchor(QGraphicsView::NoAnchor);
    view->resize(100, 100);
    const QPoint position = view->mapFromScene(20, 20);
    const auto check = checkOfPart(view->viewport(), QRect(position, QSize(1, 1)), position);
    QVERIFY(check);
    const QPointer<QGraphicsView> remaining(view);
    change(view, item);
    QTEST(check(), "expected");
    delete remaining;
}

// What lies on a command is often a part of it.
void tst_VTCommandPart::itemIsTheOneThatFillsTheRectangle()
{
    QGraphicsScene scene(0, 0, 100, 100);
    QGraphicsItem *const below = scene.addRect(10, 10, 40, 40, Qt::NoPen);
    QGraphicsItem *const above = scene.addRect(20, 20, 20, 20, Qt::NoPen);
    QGraphicsView view(&scene);
    const QPoint position = view.mapFromScene(30, 30);
    const QRect large = view.mapFromScene(below->sceneBoundingRect()).boundingRect();
    const auto checkOfLarge = checkOfPart(view.viewport(), large, position);
    const auto checkOfTopmost = checkOfPart(view.viewport(), large.adjusted(0, 0, 1, 1), position);
    delete above;
    QCOMPARE(checkOfLarge(), there);
    QCOMPARE(checkOfTopmost(), gone);
}

QTEST_MAIN(tst_VTCommandPart)
#include "tst_vtcommandpart.moc"
