#include "RealPointer.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <Vidtips/VTCommandLocator.h>

#include <QtGui/QStandardItemModel>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QGraphicsItem>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QTreeView>
#include <QtWidgets/QVBoxLayout>

using namespace Vidtips;

namespace {

constexpr int keyRole = Qt::UserRole + 1;
constexpr int keyData = 4;

QStandardItem *itemWithKey(const QString &text, const QString &key)
{
    auto *const item = new QStandardItem(text);
    item->setData(key, keyRole);
    return item;
}

/** A place on the screen, and the widget that it lies in. */
struct Place
{
    QWidget *widget;
    QRect rect; ///< in the widget's coordinates.

    QPoint center() const { return widget->mapToGlobal(rect.center()); }
};

/** A window whose commands are places in larger widgets: rows, tabs, sections, drawn items, entries. */
class PlacesWindow : public QMainWindow
{
public:
    PlacesWindow()
    {
        m_model.setHorizontalHeaderLabels({"Layer", "Pen"});
        m_model.setHeaderData(1, Qt::Horizontal, "column.pen", keyRole);
        m_model.appendRow({itemWithKey("Walls", "row.walls"), new QStandardItem("thick")});
        m_model.appendRow({itemWithKey("Doors", "row.doors"), new QStandardItem("thin")});
        m_tree.setModel(&m_model);
        m_scene.setSceneRect(0, 0, 300, 100);
        m_scene.addRect(20, 20, 80, 40, Qt::NoPen, Qt::red)->setData(keyData, "item.door");
        m_scene.addRect(180, 20, 80, 40, Qt::NoPen, Qt::blue)->setData(keyData, "item.window");
        m_view.setScene(&m_scene);
        m_combo.addItems({"Solid", "Dashed"});
        m_combo.setItemData(1, "line.dashed", keyRole);
        m_spin.setObjectName("radius");
        addMdiWindow("plan");
        addMdiWindow("section");
        m_mdi.setViewMode(QMdiArea::TabbedView);
        auto *const page = new QWidget;
        auto *const layout = new QVBoxLayout(page);
        for (QWidget *widget : {static_cast<QWidget *>(&m_tree), static_cast<QWidget *>(&m_view),
                                static_cast<QWidget *>(&m_combo), static_cast<QWidget *>(&m_spin),
                                static_cast<QWidget *>(&m_mdi)})
            layout->addWidget(widget);
        setCentralWidget(page);
        m_menu = menuBar()->addMenu("Edit");
        m_menu->setObjectName("menu.edit");
        for (const char *key : {"entry.cut", "entry.paste"})
            m_menu->addAction(key)->setObjectName(key);
        m_tool = addToolBar("Tools")->addAction("Measure");
        m_tool->setObjectName("tool.measure");
        setGeometry(60, 60, 600, 640);
    }

    /** Returns where the command @p key is, after opening what it is in. */
    Place place(const QString &key)
    {
        if (key.startsWith("row."))
            return {m_tree.viewport(), m_tree.visualRect(m_model.index(key == "row.walls" ? 0 : 1, 1))};
        if (key == "column.pen")
            return {m_tree.header()->viewport(),
                    QRect(m_tree.header()->sectionViewportPosition(1), 0, 60, m_tree.header()->height())};
        if (key.startsWith("item."))
            return {m_view.viewport(),
                    m_view.mapFromScene(QRectF(key == "item.door" ? 20 : 180, 20, 80, 40)).boundingRect()};
        if (key == "line.dashed") {
            m_combo.showPopup();
            return {m_combo.view()->viewport(),
                    m_combo.view()->visualRect(m_combo.model()->index(1, m_combo.modelColumn()))};
        }
        if (key.startsWith("entry.")) {
            m_menu->popup(mapToGlobal(QPoint(200, 100)));
            return {m_menu, m_menu->actionGeometry(m_menu->actions().at(key == "entry.cut" ? 0 : 1))};
        }
        if (key == "menu.edit")
            return {menuBar(), menuBar()->actionGeometry(m_menu->menuAction())};
        if (key == "radius")
            return {m_spin.findChild<QLineEdit *>(), QRect(2, 2, 10, 10)};
        if (key == "tool.measure") {
            QWidget *const button = findChild<QToolBar *>()->widgetForAction(m_tool);
            return {button, button->rect()};
        }
        auto *const tabs = m_mdi.findChild<QTabBar *>();
        return {tabs, tabs->tabRect(key == "plan" ? 0 : 1)};
    }

    void closePopups()
    {
        m_menu->close();
        m_combo.hidePopup();
    }

private:
    void addMdiWindow(const QString &name)
    {
        auto *const page = new QWidget;
        page->setObjectName(name);
        m_mdi.addSubWindow(page)->setWindowTitle(name);
    }

    QStandardItemModel m_model;
    QTreeView m_tree;
    QGraphicsScene m_scene;
    QGraphicsView m_view;
    QComboBox m_combo;
    QSpinBox m_spin;
    QMdiArea m_mdi;
    QMenu *m_menu = nullptr;
    QAction *m_tool = nullptr;
};

} // namespace

/** Hovers places within widgets with the real pointer. */
class tst_Places : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void placeShowsItsTip_data();
    void placeShowsItsTip();
    void neighbouringPlaces_data();
    void neighbouringPlaces();

private:
    bool hover(const QString &key);

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<PlacesWindow> m_window;
    VTCommandLocator m_locator;
};

void tst_Places::init()
{
    m_packages = std::make_unique<TestPackages>();
    QByteArray tips;
    for (const char *key :
         {"row.walls", "row.doors", "column.pen", "item.door", "item.window", "line.dashed", "entry.cut",
          "entry.paste", "menu.edit", "radius", "tool.measure", "plan", "section"})
        tips += QByteArray("<vidtip key=\"") + key + "\"/>\n";
    m_packages->writeControl("Places", "tips.xml", tips);
    m_packages->writeUserInterface("Places");
    VTContext settings;
    settings.set(InstallEventFilter, true);
    settings.set(HideDuration, 0);
    settings.set(IdleInterval, 60000);
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
    m_locator.setItemRole(keyRole);
    m_locator.setGraphicsDataKey(keyData);
    m_session->host->onKeyAt = [this](QObject *object, const QPoint &position, QRect &rect) {
        return m_locator.keyAt(object, position, rect);
    };
    QCursor::setPos(1200, 780);
    m_window = std::make_unique<PlacesWindow>();
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get(), RealPointer::patience));
}

void tst_Places::cleanup()
{
    m_window.reset();
    m_session.reset();
    m_packages.reset();
}

// Two steps, because a pointer that jumps straight onto a widget sends it no movement.
bool tst_Places::hover(const QString &key)
{
    const Place place = m_window->place(key);
    if (!QTest::qWaitForWindowExposed(place.widget->window(), RealPointer::patience))
        return false;
    const RealPointer::ToolTipRequests requests;
    QCursor::setPos(place.center() - QPoint(3, 2));
    if (!QTest::qWaitFor([&] { return place.widget->underMouse(); }, RealPointer::patience))
        return false;
    QCursor::setPos(place.center());
    const auto hasCome = [&] {
        return requests.haveReached(place.center()) && m_session->window() && m_session->window()->isVisible()
            && m_session->content() && m_session->content()->attribute("key") == key;
    };
    return QTest::qWaitFor(hasCome, RealPointer::patience);
}

void tst_Places::placeShowsItsTip_data()
{
    QTest::addColumn<QString>("key");
    for (const char *key : {"row.walls", "column.pen", "item.window", "line.dashed", "entry.paste",
                            "menu.edit", "radius", "tool.measure", "section"})
        QTest::newRow(key) << key;
}

void tst_Places::placeShowsItsTip()
{
    QFETCH(QString, key);
    QVERIFY(hover(key));
    QCOMPARE(m_session->host->notificationTexts(), QStringList{"0 " + key});
    const QRect rect = m_session->manager()->referenceRect();
    QCOMPARE(rect.isNull(), key == "tool.measure");
    QVERIFY(rect.isNull() || rect.contains(QCursor::pos()));
    m_window->closePopups();
}

void tst_Places::neighbouringPlaces_data()
{
    QTest::addColumn<QString>("from");
    QTest::addColumn<QString>("to");
    QTest::newRow("rows") << "row.walls"
                          << "row.doors";
    QTest::newRow("items of a scene") << "item.door"
                                      << "item.window";
    QTest::newRow("entries") << "entry.cut"
                             << "entry.paste";
    QTest::newRow("tabs") << "plan"
                          << "section";
}

// One widget all the while, so nothing but the place tells one command from the other.
void tst_Places::neighbouringPlaces()
{
    QFETCH(QString, from);
    QFETCH(QString, to);
    QVERIFY(hover(from));
    const QRect rect = m_session->manager()->referenceRect();
    QVERIFY(hover(to));
    QVERIFY(!m_session->manager()->referenceRect().intersects(rect));
    m_window->closePopups();
}

QTEST_MAIN(tst_Places)
#include "tst_places.moc"
