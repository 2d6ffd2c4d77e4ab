#include <Vidtips/VTCommandLocator.h>

#include <QtCore/QAbstractTableModel>
#include <QtTest/QTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QMenu>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableView>
#include <QtWidgets/QToolButton>
#include <QtWidgets/QTreeView>

#include <functional>
#include <memory>
#include <utility>

using namespace Vidtips;

namespace {

/** Does what it is to do, once. */
class Trap
{
public:
    std::function<void()> act;

    void spring()
    {
        const auto once = std::exchange(act, nullptr);
        if (once)
            once();
    }
};

class TrapModel : public QAbstractTableModel
{
public:
    explicit TrapModel(Trap &trap)
        : m_trap(trap)
    {
    }

    int rowCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 2; }
    int columnCount(const QModelIndex &parent = {}) const override { return parent.isValid() ? 0 : 2; }

    QVariant data(const QModelIndex &index, int role) const override
    {
        return role == Qt::UserRole ? spring(index.column() == 0) : QVariant();
    }

    QVariant headerData(int, Qt::Orientation, int role) const override
    {
        return role == Qt::UserRole ? spring(true) : QVariant();
    }

private:
    QVariant spring(bool hasKey) const
    {
        m_trap.spring();
        return hasKey ? QVariant(QStringLiteral("key")) : QVariant();
    }

    Trap &m_trap;
};

class TrapItem : public QGraphicsObject
{
public:
    explicit TrapItem(Trap &trap)
        : m_trap(trap)
    {
        setData(0, QStringLiteral("key"));
    }

    QRectF boundingRect() const override
    {
        m_trap.spring();
        return {0, 0, 50, 50};
    }

    QPainterPath shape() const override
    {
        QPainterPath path;
        path.addRect(0, 0, 50, 50);
        return path;
    }

    void paint(QPainter *, const QStyleOptionGraphicsItem *, QWidget *) override { }

private:
    Trap &m_trap;
};

/** A host's locator. */
class TrapLocator : public VTCommandLocator
{
public:
    explicit TrapLocator(Trap &trap)
        : m_trap(trap)
    {
        setItemRole(Qt::UserRole);
        setGraphicsDataKey(0);
        setFallbacks(Fallbacks(IconName | StandardButton | Text | Container));
    }

    QString keyForAction(const QAction *action) const override
    {
        Trap &trap = m_trap;
        const QString key = VTCommandLocator::keyForAction(action);
        trap.spring();
        return key;
    }

    QString keyForWidget(const QWidget *widget) const override
    {
        Trap &trap = m_trap;
        const QString key = VTCommandLocator::keyForWidget(widget);
        trap.spring();
        return key;
    }

private:
    Trap &m_trap;
};

} // namespace

/** Looks for commands whose program takes away what is looked at. */
class tst_HostileCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void itemViews_data();
    void itemViews();
    void headers();
    void graphicsViews();
    void menus_data();
    void menus();
    void tabs_data();
    void tabs();
    void widgets_data();
    void widgets();
    void partsOfContainers_data();
    void partsOfContainers();

private:
    VTCommandLocator::Command at(QWidget *widget, const QPoint &place) const
    {
        return locator->commandAt(widget, widget->mapToGlobal(place));
    }

    Trap trap;
    std::unique_ptr<TrapLocator> locator;
};

void tst_HostileCommands::init()
{
    locator = std::make_unique<TrapLocator>(trap);
}

void tst_HostileCommands::cleanup()
{
    trap.act = nullptr;
}

void tst_HostileCommands::itemViews_data()
{
    QTest::addColumn<bool>("isTree");
    QTest::addColumn<QString>("victim");
    for (const char *victim : {"view", "model", "locator"}) {
        QTest::addRow("a table's %s", victim) << false << victim;
        QTest::addRow("a tree's %s", victim) << true << victim;
    }
}

// In the second column, which has no key, so that a tree's row is asked for that of its first.
void tst_HostileCommands::itemViews()
{
    QFETCH(bool, isTree);
    QFETCH(QString, victim);
    auto model = std::make_unique<TrapModel>(trap);
    std::unique_ptr<QAbstractItemView> view;
    if (isTree)
        view = std::make_unique<QTreeView>();
    else
        view = std::make_unique<QTableView>();
    view->setModel(model.get());
    view->resize(400, 200);
    view->show();
    const QPoint place = view->visualRect(model->index(0, 1)).center();
    QVERIFY(view->indexAt(place).column() == 1);
    const QPoint position = view->viewport()->mapToGlobal(place);
    trap.act = [&] {
        if (victim == "view")
            view.reset();
        else if (victim == "model")
            model.reset();
        else
            locator.reset();
    };
    const VTCommandLocator::Command command = locator->commandAt(view.get(), position);
    QVERIFY(!trap.act);
    QCOMPARE(command.key, isTree && victim == "locator" ? QString("key") : QString());
}

void tst_HostileCommands::headers()
{
    TrapModel model(trap);
    auto view = std::make_unique<QTableView>();
    view->setModel(&model);
    view->resize(400, 200);
    view->show();
    trap.act = [&view] { view.reset(); };
    QVERIFY(at(view->horizontalHeader(), QPoint(5, 5)).key.isEmpty());
    QVERIFY(!view);
}

void tst_HostileCommands::graphicsViews()
{
    QGraphicsScene scene;
    auto *const item = new TrapItem(trap);
    scene.addItem(item);
    auto view = std::make_unique<QGraphicsView>(&scene);
    view->resize(200, 200);
    view->show();
    const QPoint place = view->mapFromScene(QPointF(25, 25));
    QCOMPARE(view->itemAt(place), item);
    // Asked for the items at a place Qt asks for bounds itself, and would not survive it.
    int calls = 0;
    std::function<void()> count = [&] {
        ++calls;
        trap.act = count;
    };
    trap.act = count;
    view->items(place);
    const int ofQt = calls;
    calls = 0;
    std::function<void()> wait = [&] {
        if (calls++ == ofQt)
            view.reset();
        else
            trap.act = wait;
    };
    trap.act = wait;
    QVERIFY(at(view.get(), place).key.isEmpty());
    QVERIFY(!view);
}

void tst_HostileCommands::menus_data()
{
    QTest::addColumn<bool>("isMenu");
    QTest::newRow("the menu") << true;
    QTest::newRow("the action") << false;
}

void tst_HostileCommands::menus()
{
    QFETCH(bool, isMenu);
    auto menu = std::make_unique<QMenu>();
    QAction *const action = menu->addAction("Line");
    menu->popup(QPoint(10, 10));
    const QPoint place = menu->actionGeometry(action).center();
    trap.act = [&] {
        if (isMenu)
            menu.reset();
        else
            delete action;
    };
    const VTCommandLocator::Command command = at(menu.get(), place);
    QVERIFY(!trap.act);
    QVERIFY(command.key.isEmpty());
}

void tst_HostileCommands::tabs_data()
{
    QTest::addColumn<QString>("victim");
    QTest::newRow("the tabs") << "tabs";
    QTest::newRow("the page") << "page";
    QTest::newRow("the locator") << "locator";
}

void tst_HostileCommands::tabs()
{
    QFETCH(QString, victim);
    auto tabs = std::make_unique<QTabWidget>();
    auto *const page = new QWidget;
    tabs->addTab(page, "First");
    tabs->addTab(new QWidget, "Second");
    tabs->show();
    trap.act = [&] {
        if (victim == "tabs")
            tabs.reset();
        else if (victim == "page")
            delete page;
        else
            locator.reset();
    };
    const VTCommandLocator::Command command = at(tabs->tabBar(), tabs->tabBar()->tabRect(0).center());
    QVERIFY(!trap.act);
    QCOMPARE(command.key, victim == "locator" ? QString("First") : QString());
}

void tst_HostileCommands::widgets_data()
{
    QTest::addColumn<QString>("victim");
    QTest::newRow("the button") << "button";
    QTest::newRow("its action") << "action";
    QTest::newRow("the locator") << "locator";
}

void tst_HostileCommands::widgets()
{
    QFETCH(QString, victim);
    auto button = std::make_unique<QToolButton>();
    auto action = std::make_unique<QAction>();
    button->setDefaultAction(action.get());
    button->show();
    trap.act = [&] {
        if (victim == "button")
            button.reset();
        else if (victim == "action")
            action.reset();
        else
            locator.reset();
    };
    const VTCommandLocator::Command command = at(button.get(), QPoint(5, 5));
    QVERIFY(!trap.act);
    QCOMPARE(command.key, QString());
}

void tst_HostileCommands::partsOfContainers_data()
{
    QTest::addColumn<QString>("victim");
    QTest::newRow("the part") << "part";
    QTest::newRow("its parent") << "parent";
    QTest::newRow("the container") << "container";
    QTest::newRow("the locator") << "locator";
}

// The part itself is asked first, so the trap waits for its parent.
void tst_HostileCommands::partsOfContainers()
{
    QFETCH(QString, victim);
    auto container = std::make_unique<QStatusBar>();
    auto *const parent = new QWidget;
    container->addWidget(parent);
    auto *const part = new QWidget(parent);
    container->show();
    trap.act = [&] {
        trap.act = [&] {
            if (victim == "part")
                delete part;
            else if (victim == "parent")
                delete parent;
            else if (victim == "container")
                container.reset();
            else
                locator.reset();
        };
    };
    const VTCommandLocator::Command command = at(part, QPoint(1, 1));
    QVERIFY(!trap.act);
    QCOMPARE(command.key, QString());
}

QTEST_MAIN(tst_HostileCommands)
#include "tst_hostilecommands.moc"
