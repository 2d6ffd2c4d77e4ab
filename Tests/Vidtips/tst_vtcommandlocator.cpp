#include <Vidtips/VTCommandLocator.h>

#include <QtCore/QTemporaryDir>
#include <QtGui/QStandardItemModel>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialogButtonBox>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QGraphicsItem>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QListView>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QTableView>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeView>
#include <QtWidgets/QWidgetAction>
#include <QtWidgets/QWizard>

using namespace Vidtips;

namespace {

constexpr int keyRole = Qt::UserRole + 7;

QPoint middleOf(const QWidget *widget)
{
    return widget->mapToGlobal(widget->rect().center());
}

QRect globalRect(const QWidget *widget)
{
    return QRect(widget->mapToGlobal(QPoint()), widget->size());
}

QPoint placeOf(const QAbstractItemView *view, const QModelIndex &index)
{
    return view->viewport()->mapToGlobal(view->visualRect(index).center());
}

template <typename Widget>
Widget *named(Widget *widget, const char *name)
{
    widget->setObjectName(name);
    return widget;
}

} // namespace

class tst_VTCommandLocator : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void nothingHasNoKey();
    void widgetsByName();
    void namesThatQtGives_data();
    void namesThatQtGives();
    void actionsByName();
    void toolButtonByItsAction();
    void toolButtonByItsMenu();
    void widgetOfAnAction();
    void widgetInAMenu();
    void menuByTheEntryUnderThePointer();
    void menuByItsCurrentEntryForTheKeyboard();
    void menuBarByTheMenusName();
    void tabs_data();
    void tabs();
    void tabOfADock();
    void tabOfAnMdiWindow();
    void partsOfCompoundWidgets();
    void itemsOnlyWithARole();
    void itemsByTheRole();
    void numbersAreNoKeys();
    void treeRowByItsFirstColumn();
    void itemRectangleEndsWithTheViewport();
    void comboList();
    void headerSections();
    void graphicsItems();
    void graphicsItemBelowAnotherWithoutKey();
    void commandsOfASubclass();
    void fallbacksAreNotTakenUnasked();
    void fallbacksOfActions_data();
    void fallbacksOfActions();
    void plainTexts_data();
    void plainTexts();
    void standardButtonsOfDialogs();
    void standardButtonsOfWizards();
    void labelsOfWidgets();
    void tabByItsText();
    void partsOfContainers();

private:
    VTCommandLocator::Command at(QObject *object, const QPoint &position) const
    {
        return m_locator->commandAt(object, position);
    }
    QString keyOf(QWidget *widget) const { return at(widget, middleOf(widget)).key; }
    void show();

    std::unique_ptr<VTCommandLocator> m_locator;
    std::unique_ptr<QMainWindow> m_window;
};

void tst_VTCommandLocator::init()
{
    m_locator = std::make_unique<VTCommandLocator>();
    m_window = std::make_unique<QMainWindow>();
    m_window->resize(600, 400);
    m_window->move(50, 60);
}

void tst_VTCommandLocator::cleanup()
{
    m_window.reset();
}

void tst_VTCommandLocator::show()
{
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_VTCommandLocator::nothingHasNoKey()
{
    QRect rect(1, 2, 3, 4);
    QCOMPARE(m_locator->keyAt(nullptr, QPoint(), rect), QString());
    QVERIFY(rect.isNull());
    QCOMPARE(m_locator->keyForAction(nullptr), QString());
    QCOMPARE(m_locator->keyForWidget(nullptr), QString());
    QCOMPARE(VTCommandLocator::nameOf(nullptr), QString());
}

void tst_VTCommandLocator::widgetsByName()
{
    auto *const button = named(new QPushButton(m_window.get()), "go");
    auto *const label = new QLabel(button);
    const VTCommandLocator::Command command = at(button, middleOf(button));
    QCOMPARE(command.key, QString("go"));
    QCOMPARE(command.object.data(), button);
    QVERIFY(command.rect.isNull());
    // What an application puts into a widget is not a part that Qt made for it.
    QCOMPARE(keyOf(label), QString());
}

void tst_VTCommandLocator::namesThatQtGives_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("key");
    QTest::newRow("none") << QString() << QString();
    QTest::newRow("the application's") << "quit"
                                       << "quit";
    QTest::newRow("qt_") << "qt_toolbar_ext_button" << QString();
    QTest::newRow("_q_") << "_q_qlineeditclearaction" << QString();
    QTest::newRow("__qt_") << "__qt__passive_wizardbutton1" << QString();
    QTest::newRow("qt within") << "about_qt_"
                               << "about_qt_";
}

void tst_VTCommandLocator::namesThatQtGives()
{
    QFETCH(QString, name);
    QObject object;
    object.setObjectName(name);
    QTEST(VTCommandLocator::nameOf(&object), "key");
    QTEST(at(&object, QPoint()).key, "key");
}

void tst_VTCommandLocator::actionsByName()
{
    QAction action("Print");
    QCOMPARE(m_locator->keyForAction(&action), QString());
    action.setObjectName("file.print");
    QCOMPARE(m_locator->keyForAction(&action), QString("file.print"));
    QMenu *const menu = named(new QMenu(m_window.get()), "recent");
    QCOMPARE(m_locator->keyForAction(menu->menuAction()), QString("recent"));
    menu->menuAction()->setObjectName("file.recent");
    QCOMPARE(m_locator->keyForAction(menu->menuAction()), QString("file.recent"));
}

void tst_VTCommandLocator::toolButtonByItsAction()
{
    QToolBar *const bar = m_window->addToolBar("Bar");
    QAction *const action = named(bar->addAction("Cut"), "edit.cut");
    show();
    auto *const button = static_cast<QToolButton *>(bar->widgetForAction(action));
    button->setObjectName("button");
    QCOMPARE(keyOf(button), QString("edit.cut"));
    action->setObjectName(QString());
    QCOMPARE(keyOf(button), QString("button"));
}

void tst_VTCommandLocator::toolButtonByItsMenu()
{
    auto *const button = new QToolButton(m_window.get());
    QMenu *const menu = named(new QMenu(button), "shapes");
    button->setMenu(menu);
    QCOMPARE(keyOf(button), QString("shapes"));
    button->setObjectName("draw");
    QCOMPARE(keyOf(button), QString("draw"));
}

void tst_VTCommandLocator::widgetOfAnAction()
{
    QToolBar *const bar = m_window->addToolBar("Bar");
    auto *const zoom = new QSpinBox;
    QAction *const action = named(bar->addWidget(zoom), "view.zoom");
    show();
    QCOMPARE(keyOf(zoom), QString("view.zoom"));
    QCOMPARE(keyOf(zoom->findChild<QLineEdit *>()), QString("view.zoom"));
    QCOMPARE(bar->widgetForAction(action), zoom);
}

void tst_VTCommandLocator::widgetInAMenu()
{
    QMenu *const menu = m_window->menuBar()->addMenu("View");
    auto *const action = named(new QWidgetAction(menu), "view.scale");
    auto *const scale = new QSpinBox;
    action->setDefaultWidget(scale);
    menu->addAction(action);
    menu->popup(QPoint(100, 100));
    QTRY_VERIFY(scale->isVisible());
    QCOMPARE(keyOf(scale), QString("view.scale"));
    menu->close();
}

void tst_VTCommandLocator::menuByTheEntryUnderThePointer()
{
    QMenu menu;
    menu.setObjectName("menu");
    QAction *const first = named(menu.addAction("First"), "first");
    QAction *const unnamed = menu.addAction("Unnamed");
    QAction *const more = menu.addMenu(named(new QMenu("More", &menu), "more"));
    menu.popup(QPoint(100, 100));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    menu.setActiveAction(unnamed);

    const auto entry = [&](QAction *action) {
        return at(&menu, menu.mapToGlobal(menu.actionGeometry(action).center()));
    };
    QCOMPARE(entry(first).key, QString("first"));
    QCOMPARE(entry(first).object.data(), first);
    QCOMPARE(
        entry(first).rect,
        QRect(menu.mapToGlobal(menu.actionGeometry(first).topLeft()), menu.actionGeometry(first).size()));
    QCOMPARE(entry(more).key, QString("more"));
    QCOMPARE(entry(unnamed).key, QString());
    menu.close();
}

void tst_VTCommandLocator::menuByItsCurrentEntryForTheKeyboard()
{
    QMenu menu;
    menu.addAction("First");
    QAction *const second = named(menu.addAction("Second"), "second");
    menu.popup(QPoint(100, 100));
    QVERIFY(QTest::qWaitForWindowExposed(&menu));
    const QPoint elsewhere(5, 5);
    QCOMPARE(at(&menu, elsewhere).key, QString());
    menu.setActiveAction(second);
    QCOMPARE(at(&menu, elsewhere).key, QString("second"));
    menu.close();
}

void tst_VTCommandLocator::menuBarByTheMenusName()
{
    QMenuBar *const bar = m_window->menuBar();
    bar->setNativeMenuBar(false);
    QMenu *const menu = named(bar->addMenu("File"), "file");
    show();
    const QRect title = bar->actionGeometry(menu->menuAction());
    const VTCommandLocator::Command command = at(bar, bar->mapToGlobal(title.center()));
    QCOMPARE(command.key, QString("file"));
    QCOMPARE(command.rect, QRect(bar->mapToGlobal(title.topLeft()), title.size()));
}

void tst_VTCommandLocator::tabs_data()
{
    QTest::addColumn<QVariant>("data");
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("key");
    QTest::newRow("data before the page's name") << QVariant("tab.data") << "page"
                                                 << "tab.data";
    QTest::newRow("the page's name") << QVariant() << "page"
                                     << "page";
    QTest::newRow("a number is the application's own") << QVariant(12) << "page"
                                                       << "page";
    QTest::newRow("neither: the whole widget") << QVariant() << QString() << "tabs";
}

void tst_VTCommandLocator::tabs()
{
    QFETCH(QVariant, data);
    QFETCH(QString, page);
    QFETCH(QString, key);
    auto *const tabs = named(new QTabWidget, "tabs");
    tabs->addTab(named(new QWidget, "front"), "Front");
    auto *const widget = new QWidget;
    widget->setObjectName(page);
    tabs->addTab(widget, "Second");
    tabs->tabBar()->setTabData(1, data);
    m_window->setCentralWidget(tabs);
    show();
    QTabBar *const bar = tabs->tabBar();
    const QRect tab = bar->tabRect(1);
    const VTCommandLocator::Command command = at(bar, bar->mapToGlobal(tab.center()));
    QCOMPARE(command.key, key);
    if (key == "tabs")
        QCOMPARE(command.rect, globalRect(tabs));
    else
        QCOMPARE(command.rect, QRect(bar->mapToGlobal(tab.topLeft()), tab.size()));
}

void tst_VTCommandLocator::tabOfADock()
{
    auto *const layers = named(new QDockWidget("Layers"), "layers");
    auto *const colours = named(new QDockWidget("Colours"), "colours");
    m_window->addDockWidget(Qt::LeftDockWidgetArea, layers);
    m_window->tabifyDockWidget(layers, colours);
    show();
    auto *const bar = m_window->findChild<QTabBar *>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(bar);
    for (int i = 0; i < 2; ++i) {
        const QString expected = bar->tabText(i) == "Layers" ? "layers" : "colours";
        QCOMPARE(at(bar, bar->mapToGlobal(bar->tabRect(i).center())).key, expected);
    }
}

void tst_VTCommandLocator::tabOfAnMdiWindow()
{
    auto *const area = new QMdiArea;
    area->setViewMode(QMdiArea::TabbedView);
    area->addSubWindow(named(new QWidget, "plan"))->setWindowTitle("Plan");
    QMdiSubWindow *const second = area->addSubWindow(named(new QWidget, "section"));
    second->setWindowTitle("Section");
    m_window->setCentralWidget(area);
    show();
    auto *const bar = area->findChild<QTabBar *>();
    QVERIFY(bar);
    QCOMPARE(at(bar, bar->mapToGlobal(bar->tabRect(1).center())).key, QString("section"));
    second->setObjectName("window");
    QCOMPARE(at(bar, bar->mapToGlobal(bar->tabRect(1).center())).key, QString("window"));
}

void tst_VTCommandLocator::partsOfCompoundWidgets()
{
    auto *const page = new QWidget;
    auto *const spin = named(new QSpinBox(page), "radius");
    auto *const combo = named(new QComboBox(page), "layer");
    combo->setEditable(true);
    combo->move(0, 50);
    auto *const area = named(new QScrollArea(page), "area");
    area->move(0, 100);
    m_window->setCentralWidget(page);
    show();
    auto *const edit = spin->findChild<QLineEdit *>();
    const VTCommandLocator::Command command = at(edit, middleOf(edit));
    QCOMPARE(command.key, QString("radius"));
    QCOMPARE(command.object.data(), spin);
    QCOMPARE(command.rect, globalRect(spin));
    QCOMPARE(keyOf(combo->lineEdit()), QString("layer"));
    QCOMPARE(keyOf(area->viewport()), QString("area"));
    combo->lineEdit()->setObjectName("own");
    QCOMPARE(keyOf(combo->lineEdit()), QString("own"));
}

void tst_VTCommandLocator::itemsOnlyWithARole()
{
    QStandardItemModel model;
    auto *const item = new QStandardItem("Walls");
    item->setData("walls", keyRole);
    model.appendRow(item);
    auto *const view = named(new QListView, "list");
    view->setModel(&model);
    m_window->setCentralWidget(view);
    show();
    QCOMPARE(m_locator->itemRole(), -1);
    const VTCommandLocator::Command command = at(view->viewport(), placeOf(view, model.index(0, 0)));
    QCOMPARE(command.key, QString("list"));
    QCOMPARE(command.rect, globalRect(view));
}

void tst_VTCommandLocator::itemsByTheRole()
{
    m_locator->setItemRole(keyRole);
    QStandardItemModel model(2, 2);
    model.setData(model.index(1, 1), "cell", keyRole);
    auto *const view = named(new QTableView, "table");
    view->setModel(&model);
    m_window->setCentralWidget(view);
    show();
    const VTCommandLocator::Command cell = at(view->viewport(), placeOf(view, model.index(1, 1)));
    QCOMPARE(cell.key, QString("cell"));
    QCOMPARE(cell.object.data(), view);
    const QRect rect = view->visualRect(model.index(1, 1));
    QCOMPARE(cell.rect, QRect(view->viewport()->mapToGlobal(rect.topLeft()), rect.size()));
    QCOMPARE(at(view->viewport(), placeOf(view, model.index(1, 0))).key, QString("table"));
    const QPoint beyond = view->viewport()->mapToGlobal(view->viewport()->rect().bottomRight());
    QCOMPARE(at(view->viewport(), beyond).key, QString("table"));
}

void tst_VTCommandLocator::numbersAreNoKeys()
{
    m_locator->setItemRole(keyRole);
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), 42, keyRole);
    auto *const view = new QListView;
    view->setModel(&model);
    m_window->setCentralWidget(view);
    show();
    QCOMPARE(at(view->viewport(), placeOf(view, model.index(0, 0))).key, QString());
    model.setData(model.index(0, 0), QByteArray("bytes"), keyRole);
    QCOMPARE(at(view->viewport(), placeOf(view, model.index(0, 0))).key, QString("bytes"));
}

void tst_VTCommandLocator::treeRowByItsFirstColumn()
{
    m_locator->setItemRole(keyRole);
    QStandardItemModel model;
    auto *const name = new QStandardItem("Walls");
    name->setData("walls", keyRole);
    auto *const own = new QStandardItem("on");
    own->setData("visible", keyRole);
    auto *const parent = new QStandardItem("Building");
    parent->appendRow({name, new QStandardItem("4 mm"), own});
    model.appendRow(parent);
    model.setColumnCount(3);
    auto *const view = new QTreeView;
    view->setModel(&model);
    view->expandAll();
    m_window->setCentralWidget(view);
    show();
    const auto cell = [&](int column) {
        return at(view->viewport(), placeOf(view, name->index().siblingAtColumn(column)));
    };
    QCOMPARE(cell(1).key, QString("walls"));
    const QRect row(0, view->visualRect(name->index()).y(), view->viewport()->width(),
                    view->visualRect(name->index()).height());
    QCOMPARE(cell(1).rect, QRect(view->viewport()->mapToGlobal(row.topLeft()), row.size()));
    QCOMPARE(cell(0).rect, cell(1).rect);
    QCOMPARE(cell(2).key, QString("visible"));
    QVERIFY(cell(2).rect != cell(1).rect);
}

void tst_VTCommandLocator::itemRectangleEndsWithTheViewport()
{
    m_locator->setItemRole(keyRole);
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), "wide", keyRole);
    auto *const view = new QTableView;
    view->setModel(&model);
    view->setColumnWidth(0, 5000);
    m_window->setCentralWidget(view);
    show();
    const QWidget *const viewport = view->viewport();
    const VTCommandLocator::Command command = at(view->viewport(), viewport->mapToGlobal(QPoint(5, 5)));
    QCOMPARE(command.rect.width(), viewport->width());
    QCOMPARE(command.rect.left(), viewport->mapToGlobal(QPoint()).x());
}

void tst_VTCommandLocator::comboList()
{
    m_locator->setItemRole(keyRole);
    auto *const combo = named(new QComboBox(m_window.get()), "pens");
    combo->addItems({"thin", "thick"});
    combo->setItemData(0, "pen.thin", keyRole);
    show();
    combo->showPopup();
    QAbstractItemView *const list = combo->view();
    QVERIFY(QTest::qWaitForWindowExposed(list->window()));
    QCOMPARE(at(list->viewport(), placeOf(list, list->model()->index(0, 0))).key, QString("pen.thin"));
    const VTCommandLocator::Command other = at(list->viewport(), placeOf(list, list->model()->index(1, 0)));
    QCOMPARE(other.key, QString("pens"));
    // The combo box is elsewhere: a tip for a row is for the list.
    QCOMPARE(other.rect, globalRect(list->window()));
    combo->hidePopup();
}

void tst_VTCommandLocator::headerSections()
{
    m_locator->setItemRole(keyRole);
    QStandardItemModel model(2, 2);
    model.setHeaderData(1, Qt::Horizontal, "column", keyRole);
    model.setHeaderData(1, Qt::Vertical, "row", keyRole);
    auto *const view = named(new QTableView, "table");
    view->setModel(&model);
    m_window->setCentralWidget(view);
    show();
    const QHeaderView *const columns = view->horizontalHeader();
    const auto column = [&](int section) {
        const QPoint place(columns->sectionViewportPosition(section) + 4, 4);
        return at(columns->viewport(), columns->viewport()->mapToGlobal(place));
    };
    QCOMPARE(column(1).key, QString("column"));
    const QPoint corner(columns->sectionViewportPosition(1), 0);
    QCOMPARE(column(1).rect,
             QRect(columns->viewport()->mapToGlobal(corner),
                   QSize(columns->sectionSize(1), columns->viewport()->height())));
    QCOMPARE(column(0).key, QString("table"));
    const QHeaderView *const rows = view->verticalHeader();
    const QPoint place(4, rows->sectionViewportPosition(1) + 4);
    const VTCommandLocator::Command row = at(rows->viewport(), rows->viewport()->mapToGlobal(place));
    QCOMPARE(row.key, QString("row"));
    QCOMPARE(row.rect.height(), rows->sectionSize(1));
    QCOMPARE(row.rect.width(), rows->viewport()->width());
}

void tst_VTCommandLocator::graphicsItems()
{
    QGraphicsScene scene(0, 0, 300, 200);
    QGraphicsRectItem *const door = scene.addRect(50, 40, 60, 30, Qt::NoPen);
    door->setData(3, "door");
    auto *const handle = new QGraphicsRectItem(55, 45, 5, 5, door);
    handle->setPen(Qt::NoPen);
    auto *const view = named(new QGraphicsView(&scene), "plan");
    m_window->setCentralWidget(view);
    show();
    const auto point = [&](qreal x, qreal y) {
        return at(view->viewport(), view->viewport()->mapToGlobal(view->mapFromScene(x, y)));
    };
    QCOMPARE(point(80, 50).key, QString("plan"));
    m_locator->setGraphicsDataKey(3);
    QCOMPARE(point(80, 50).key, QString("door"));
    QCOMPARE(point(57, 47).key, QString("door"));
    QCOMPARE(point(200, 150).key, QString("plan"));
    const QRect rect = view->mapFromScene(QRectF(50, 40, 60, 30)).boundingRect();
    QCOMPARE(point(57, 47).rect, QRect(view->viewport()->mapToGlobal(rect.topLeft()), rect.size()));
}

void tst_VTCommandLocator::graphicsItemBelowAnotherWithoutKey()
{
    QGraphicsScene scene(0, 0, 300, 200);
    scene.addRect(50, 40, 60, 30)->setData(3, "door");
    scene.addRect(0, 0, 300, 200)->setZValue(5);
    auto *const view = new QGraphicsView(&scene);
    m_window->setCentralWidget(view);
    show();
    m_locator->setGraphicsDataKey(3);
    QCOMPARE(at(view->viewport(), view->viewport()->mapToGlobal(view->mapFromScene(80, 50))).key,
             QString("door"));
}

void tst_VTCommandLocator::commandsOfASubclass()
{
    class ByText : public VTCommandLocator
    {
    public:
        QString keyForAction(const QAction *action) const override
        {
            const QString key = VTCommandLocator::keyForAction(action);
            return key.isEmpty() && action ? action->text().toLower() : key;
        }
        QString keyForWidget(const QWidget *widget) const override
        {
            const QString key = VTCommandLocator::keyForWidget(widget);
            const auto *const button = qobject_cast<const QAbstractButton *>(widget);
            return key.isEmpty() && button ? button->text().toLower() : key;
        }
    };
    m_locator = std::make_unique<ByText>();
    QToolBar *const bar = m_window->addToolBar("Bar");
    QAction *const action = bar->addAction("Cut");
    auto *const button = new QPushButton("Next", m_window.get());
    QMenu menu;
    menu.addAction(action);
    show();
    QCOMPARE(keyOf(bar->widgetForAction(action)), QString("cut"));
    QCOMPARE(keyOf(button), QString("next"));
    menu.setActiveAction(action);
    QCOMPARE(at(&menu, QPoint(-5, -5)).key, QString("cut"));
}

void tst_VTCommandLocator::fallbacksAreNotTakenUnasked()
{
    QCOMPARE(m_locator->fallbacks(), VTCommandLocator::Fallbacks(VTCommandLocator::NoFallback));
    QAction action("Print");
    action.setIcon(QIcon::fromTheme("document-print"));
    QCOMPARE(m_locator->keyForAction(&action), QString());
    auto *const box = new QDialogButtonBox(QDialogButtonBox::Ok, m_window.get());
    QCOMPARE(keyOf(box->button(QDialogButtonBox::Ok)), QString());
    m_window->setStatusBar(named(new QStatusBar, "status"));
    auto *const label = new QLabel("12, 7");
    m_window->statusBar()->addWidget(label);
    QCOMPARE(keyOf(label), QString());
}

void tst_VTCommandLocator::fallbacksOfActions_data()
{
    using Locator = VTCommandLocator;
    QTest::addColumn<int>("fallbacks");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("icon");
    QTest::addColumn<QString>("key");
    const int both = Locator::IconName | Locator::Text;
    QTest::newRow("the name first") << both << "file.print"
                                    << "printer"
                                    << "file.print";
    QTest::newRow("then the icon") << both << ""
                                   << "printer"
                                   << "printer";
    QTest::newRow("then the text") << both << ""
                                   << ""
                                   << "Print";
    QTest::newRow("only the icon") << int(Locator::IconName) << ""
                                   << ""
                                   << "";
    QTest::newRow("only the text") << int(Locator::Text) << ""
                                   << "printer"
                                   << "Print";
    QTest::newRow("a name of Qt's is none") << both << "qt_print"
                                            << ""
                                            << "Print";
}

void tst_VTCommandLocator::fallbacksOfActions()
{
    QFETCH(int, fallbacks);
    QFETCH(QString, name);
    QFETCH(QString, icon);
    // A theme of our own, as what is installed differs.
    QTemporaryDir folder;
    const QString sizes = folder.path() + "/theme/16x16";
    QVERIFY(QDir().mkpath(sizes));
    QPixmap picture(16, 16);
    picture.fill(Qt::red);
    QVERIFY(picture.save(sizes + "/printer.png"));
    QFile index(folder.path() + "/theme/index.theme");
    QVERIFY(index.open(QIODevice::WriteOnly));
    index.write("[Icon Theme]\nName=theme\nDirectories=16x16\n[16x16]\nSize=16\n");
    index.close();
    QIcon::setThemeSearchPaths({folder.path()});
    QIcon::setThemeName("theme");

    QAction action("&Print...");
    action.setObjectName(name);
    action.setIcon(icon.isEmpty() ? QIcon(picture) : QIcon::fromTheme(icon));
    m_locator->setFallbacks(VTCommandLocator::Fallbacks(fallbacks));
    QTEST(m_locator->keyForAction(&action), "key");
    // The command is the same in a tool bar.
    QToolBar *const bar = m_window->addToolBar("Bar");
    bar->addAction(&action);
    QTEST(keyOf(bar->widgetForAction(&action)), "key");
}

void tst_VTCommandLocator::plainTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("plain");
    QTest::newRow("nothing") << QString() << QString();
    QTest::newRow("mnemonic") << "Save &As"
                              << "Save As";
    QTest::newRow("ampersand") << "Cut && Paste"
                               << "Cut & Paste";
    QTest::newRow("last ampersand") << "Cut &"
                                    << "Cut &";
    QTest::newRow("mnemonic after the text") << QString::fromUtf8("開く(&O)…") << QString::fromUtf8("開く");
    QTest::newRow("three dots") << "Open..."
                                << "Open";
    QTest::newRow("dots after a blank") << "Open ..."
                                        << "Open";
    QTest::newRow("only dots") << "..." << QString();
    QTest::newRow("shortcut") << "Quit\tCtrl+Q"
                              << "Quit";
    QTest::newRow("lines") << "Fit\n  all"
                           << "Fit all";
    QTest::newRow("dots within") << "Level 1.5"
                                 << "Level 1.5";
}

void tst_VTCommandLocator::plainTexts()
{
    QFETCH(QString, text);
    QTEST(VTCommandLocator::plainText(text), "plain");
}

void tst_VTCommandLocator::standardButtonsOfDialogs()
{
    m_locator->setFallbacks(VTCommandLocator::StandardButton);
    auto *const box =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::RestoreDefaults, m_window.get());
    QPushButton *const own = box->addButton("Apply to all", QDialogButtonBox::ApplyRole);
    QCOMPARE(keyOf(box->button(QDialogButtonBox::Ok)), QString("QDialogButtonBox.Ok"));
    QCOMPARE(keyOf(box->button(QDialogButtonBox::RestoreDefaults)),
             QString("QDialogButtonBox.RestoreDefaults"));
    QCOMPARE(keyOf(own), QString());
    own->setObjectName("applyAll");
    QCOMPARE(keyOf(own), QString("applyAll"));
    QCOMPARE(keyOf(new QPushButton("OK", m_window.get())), QString());
}

void tst_VTCommandLocator::standardButtonsOfWizards()
{
    m_locator->setFallbacks(VTCommandLocator::StandardButton);
    QWizard wizard;
    wizard.setOptions(QWizard::HaveHelpButton | QWizard::HaveCustomButton1 | QWizard::HaveCustomButton3);
    wizard.addPage(new QWizardPage);
    wizard.show();
    const QVector<QPair<QWizard::WizardButton, QString>> expected = {
        {QWizard::BackButton, "BackButton"},       {QWizard::NextButton, "NextButton"},
        {QWizard::CommitButton, "CommitButton"},   {QWizard::FinishButton, "FinishButton"},
        {QWizard::CancelButton, "CancelButton"},   {QWizard::HelpButton, "HelpButton"},
        {QWizard::CustomButton1, "CustomButton1"}, {QWizard::CustomButton2, "CustomButton2"},
        {QWizard::CustomButton3, "CustomButton3"}};
    for (const auto &[which, name] : expected)
        QCOMPARE(keyOf(wizard.button(which)), "QWizard." + name);
}

void tst_VTCommandLocator::labelsOfWidgets()
{
    m_locator->setFallbacks(VTCommandLocator::Text);
    QCOMPARE(keyOf(new QPushButton("&Next...", m_window.get())), QString("Next"));
    auto *const icon = new QToolButton(m_window.get());
    icon->setToolTip("Pick a colour...");
    QCOMPARE(keyOf(icon), QString("Pick a colour"));
    QCOMPARE(keyOf(new QGroupBox("Pen && brush", m_window.get())), QString("Pen & brush"));
    QCOMPARE(keyOf(new QLabel("Width", m_window.get())), QString());
}

void tst_VTCommandLocator::tabByItsText()
{
    auto *const tabs = new QTabWidget;
    tabs->addTab(new QWidget, "&General");
    m_window->setCentralWidget(tabs);
    show();
    QTabBar *const bar = tabs->tabBar();
    const QPoint place = bar->mapToGlobal(bar->tabRect(0).center());
    QCOMPARE(at(bar, place).key, QString());
    m_locator->setFallbacks(VTCommandLocator::Text);
    QCOMPARE(at(bar, place).key, QString("General"));
    QCOMPARE(at(bar, place).rect, QRect(bar->mapToGlobal(bar->tabRect(0).topLeft()), bar->tabRect(0).size()));
}

void tst_VTCommandLocator::partsOfContainers()
{
    m_locator->setFallbacks(VTCommandLocator::Container);
    auto *const place = named(new QWidget, "coordinates");
    auto *const label = new QLabel("12, 7", place);
    auto *const other = new QLabel("mm");
    m_window->setStatusBar(named(new QStatusBar, "status"));
    m_window->statusBar()->addWidget(place);
    m_window->statusBar()->addWidget(other);
    auto *const dock = named(new QDockWidget("Layers"), "layers");
    dock->setWidget(new QWidget);
    auto *const inDock = new QLabel("Walls", dock->widget());
    m_window->addDockWidget(Qt::LeftDockWidgetArea, dock);
    m_window->setCentralWidget(named(new QWidget, "page"));
    auto *const elsewhere = new QLabel("Page", m_window->centralWidget());
    show();
    const VTCommandLocator::Command command = at(label, middleOf(label));
    QCOMPARE(command.key, QString("coordinates"));
    QCOMPARE(command.object.data(), place);
    QCOMPARE(command.rect, globalRect(place));
    QCOMPARE(keyOf(other), QString("status"));
    QCOMPARE(keyOf(inDock), QString("layers"));
    QCOMPARE(keyOf(elsewhere), QString());
    // What is around the bar or the dock has nothing to do with them.
    m_window->setObjectName("window");
    dock->setObjectName(QString());
    QCOMPARE(keyOf(inDock), QString());
}

QTEST_MAIN(tst_VTCommandLocator)
#include "tst_vtcommandlocator.moc"
