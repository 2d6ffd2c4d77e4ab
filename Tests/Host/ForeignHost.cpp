#include "ForeignHost.h"

#include "RealPointer.h"

#include <QtCore/QDebug>
#include <QtGui/QHelpEvent>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDialog>
#include <QtWidgets/QGraphicsItem>
#include <QtWidgets/QGraphicsProxyWidget>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTreeWidget>

using namespace Vidtips;

namespace {

constexpr int itemKey = 0;

/** A tip with a pin in its left half, a button in its right, and a strip at its bottom; it knows two keys. */
const char userInterface[] = R"(
import QtQuick 1.1
Rectangle {
    id: root
    property QtObject tip: vidtip
    width: 160
    height: tip && tip.attribute("height") !== "" ? 1 * tip.attribute("height") : 100
    color: tip && tip.attribute("color") !== "" ? tip.attribute("color") : "#2060c0"
    focus: true
    Keys.onPressed: {
        if (event.key !== Qt.Key_F1 && event.key !== Qt.Key_Space)
            return;
        vidTipView.notification(event.key === Qt.Key_F1 ? 21 : 22, "key");
        event.accepted = true;
    }
    MouseArea { width: 80; height: 80; onClicked: vidTipView.reserved = true }
    MouseArea { x: 80; width: 80; height: 80; onClicked: vidTipView.notification(20, "clicked") }
}
)";

/** Does not keep the tests waiting. */
class PromptStyle : public QProxyStyle
{
public:
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_ToolTip_WakeUpDelay ? 100 : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

} // namespace

ForeignHost::ForeignHost(const std::function<void(VTContext &)> &configure)
{
    QApplication::setStyle(new PromptStyle);
    writeContent();
    makeWindow();
    VTContext settings;
    settings.set(InstallEventFilter, true);
    settings.set(HideDuration, 0);
    settings.set(IdleInterval, 60000);
    if (configure)
        configure(settings);
    m_session = std::make_unique<TestSession>(QStringList{m_packages.path()}, settings);
    qApp->installEventFilter(this);
}

ForeignHost::~ForeignHost()
{
    delete window;
    delete secondWindow;
}

void ForeignHost::writeContent()
{
    QByteArray tips;
    const QByteArrayList keys{"row 0", "row 1", "row 2",       "row 3",    "row 4",    "tab 0",    "tab 1",
                              "start", "stop",  "drain",       "more",     "deeper",   "choice 0", "choice 1",
                              "item",  "plain", "other",       "left",     "right",    "farther",  "embedded",
                              "inner", "asked", "asked again", "scrolled", "choice 2", "column"};
    for (const QByteArray &key : keys)
        tips += "<vidtip key=\"" + key + "\" title=\"" + key.toUpper() + "\"/>\n";
    tips += "<vidtip key=\"tall\" height=\"220\" color=\"#c02060\"/>\n"
            "<vidtip key=\"broken\" ui=\"ui/Broken.qml\"/>\n"
            "<vidtip key=\"broken wholly\" ui=\"ui/Broken.qml\" simple=\"ui/Broken.qml\"/>\n";
    m_packages.writeControl("Plant", "tips.xml", tips);
    m_packages.write("Plant.vidtips/ui/VidtipsUI.qml", userInterface);
    m_packages.write("Plant.vidtips/ui/Broken.qml", "import QtQuick 1.1\nItem { nothing: 1 }\n");
    m_packages.write("Plant.vidtips/ui/SimpleTooltip.qml",
                     "import QtQuick 1.1\nRectangle { width: 90; height: 30; color: \"#ffe0a0\" }\n");
}

void ForeignHost::makeWindow()
{
    window = new QMainWindow;
    window->setWindowTitle("Plant");
    auto *const page = new QWidget;
    window->setCentralWidget(page);
    QMenu *const menu = window->menuBar()->addMenu("Process");
    for (const QString &name : QStringList{"start", "stop", "drain"})
        menu->addAction("Make the plant " + name + " now")->setObjectName(name);
    QMenu *const more = menu->addMenu("More of it");
    more->menuAction()->setObjectName("more");
    more->addAction("Deeper")->setObjectName("deeper");
    plain = addButton(page, "plain", {500, 10});
    other = addButton(page, "other", {500, 50});
    edit = new QLineEdit(page);
    edit->setGeometry(500, 90, 120, 26);
    makeViews(page);
    makeMdi(page);
    window->setGeometry(60, 60, 660, 520);
    window->show();
    view->centerOn(0, 0);
    secondWindow = new QWidget;
    secondWindow->setWindowTitle("Archive");
    farther = addButton(secondWindow, "farther", {20, 20});
    secondWindow->setGeometry(820, 80, 300, 160);
    secondWindow->show();
    // The latest window, which window managers activate by themselves, first: that must not come in between
    // later.
    for (QWidget *const next : {secondWindow, static_cast<QWidget *>(window)}) {
        next->activateWindow();
        if (!RealPointer::waitForWindow(next))
            qWarning("the windows did not come up");
    }
}

void ForeignHost::makeViews(QWidget *page)
{
    tree = new QTreeWidget(page);
    tree->setGeometry(10, 10, 200, 150);
    tree->setHeaderHidden(true);
    for (int i = 0; i < 40; ++i) {
        auto *const rowItem = new QTreeWidgetItem(tree, {QString("Row %1").arg(i)});
        rowItem->setData(0, Qt::UserRole, QString("row %1").arg(i));
    }
    tabs = new QTabBar(page);
    for (int i = 0; i < 3; ++i)
        tabs->setTabData(tabs->addTab(QString("Tab %1").arg(i)), QString("tab %1").arg(i));
    tabs->setGeometry(230, 10, 250, 30);
    combo = new QComboBox(page);
    for (int i = 0; i < 3; ++i)
        combo->addItem(QString("Choice %1").arg(i), QString("choice %1").arg(i));
    combo->setGeometry(230, 60, 150, 28);
    auto *const scene = new QGraphicsScene(0, 0, 600, 600, page);
    scene->addRect(20, 20, 80, 50, QPen(), Qt::darkCyan)->setData(itemKey, "item");
    embedded = new QPushButton("embedded");
    embedded->setObjectName("embedded");
    scene->addWidget(embedded)->setPos(20, 90);
    view = new QGraphicsView(scene, page);
    view->setGeometry(230, 110, 250, 150);
    scrollArea = new QScrollArea(page);
    auto *const content = new QWidget;
    content->resize(100, 900);
    addButton(content, "scrolled", {5, 5});
    scrollArea->setWidget(content);
    scrollArea->setGeometry(500, 130, 150, 130);
}

void ForeignHost::makeMdi(QWidget *page)
{
    mdi = new QMdiArea(page);
    mdi->setGeometry(10, 280, 630, 190);
    for (const QString &name : QStringList{"left", "right"}) {
        auto *const content = new QWidget;
        addButton(content, name, {15, 10});
        QMdiSubWindow *const inner = mdi->addSubWindow(content);
        inner->setGeometry(name == "left" ? 5 : 260, 5, 240, 110);
    }
}

QPushButton *ForeignHost::addButton(QWidget *parent, const QString &name, const QPoint &position) const
{
    auto *const button = new QPushButton(name, parent);
    button->setObjectName(name);
    button->setGeometry(QRect(position, QSize(110, 28)));
    return button;
}

QDialog *ForeignHost::openDialog(QWidget *parent, Qt::WindowModality modality, const QString &buttonName)
{
    auto *const dialog = new QDialog(parent);
    dialog->setWindowModality(modality);
    dialog->setWindowTitle(buttonName);
    addButton(dialog, buttonName, {20, 20})->setAutoDefault(false);
    dialog->setGeometry(QRect(parent->pos() + QPoint(200, 130), QSize(280, 160)));
    dialog->show();
    // Window managers do so, but not every screen has one.
    dialog->activateWindow();
    if (!RealPointer::waitForWindow(dialog))
        qWarning("the dialog %s did not come up", qPrintable(buttonName));
    return dialog;
}

bool ForeignHost::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() != QEvent::ToolTip || !m_session)
        return false;
    QRect rect;
    const QPoint position = static_cast<QHelpEvent *>(event)->globalPos();
    const QString key = locate(watched, position, &rect);
    return !key.isEmpty() && host()->show(key, position, watched, rect);
}

QString ForeignHost::locate(QObject *object, const QPoint &position, QRect *rect) const
{
    const auto *const widget = qobject_cast<QWidget *>(object);
    if (!widget)
        return {};
    const QPoint inside = widget->mapFromGlobal(position);
    QString key;
    if (widget == tabs) {
        key = tabs->tabData(tabs->tabAt(inside)).toString();
        *rect = tabs->tabRect(tabs->tabAt(inside));
    } else if (const auto *const menu = qobject_cast<const QMenu *>(widget)) {
        return menu->actionAt(inside) ? menu->actionAt(inside)->objectName() : QString();
    } else if (const auto *const header = qobject_cast<QHeaderView *>(widget->parent())) {
        const int section = header->logicalIndexAt(inside);
        key = header->model()->headerData(section, Qt::Horizontal, Qt::UserRole).toString();
        *rect = QRect(header->sectionViewportPosition(section), 0, header->sectionSize(section),
                      widget->height());
    } else if (const auto *const list = qobject_cast<QAbstractItemView *>(widget->parent())) {
        const QModelIndex index = list->indexAt(inside);
        key = index.data(Qt::UserRole).toString();
        *rect = list->visualRect(index);
    } else if (widget == view->viewport()) {
        const QGraphicsItem *const item = view->itemAt(inside);
        key = item ? item->data(itemKey).toString() : QString();
        *rect = item ? view->mapFromScene(item->sceneBoundingRect()).boundingRect() : QRect();
    }
    *rect = rect->isNull() ? QRect() : QRect(widget->mapToGlobal(rect->topLeft()), rect->size());
    return key;
}

QString ForeignHost::shownKey() const
{
    return isShown() && m_session->content() ? m_session->content()->attribute("key") : QString();
}

bool ForeignHost::hover(const QPoint &position, const QString &key)
{
    const RealPointer::ToolTipRequests requests;
    const auto hasCome = [&] {
        return shownKey() == key && RealPointer::isOnScreen(tip()) && requests.haveReached(position);
    };
    if (RealPointer::moveTo(position) && QTest::qWaitFor(hasCome, RealPointer::patience))
        return true;
    qWarning() << "no tip of" << key << "on the screen; shown:" << shownKey() << "pointer:" << QCursor::pos()
               << "to be at" << position << "over" << QApplication::widgetAt(position) << "in"
               << QApplication::activeWindow();
    if (isShown())
        qWarning() << "tip at" << tip()->geometry() << "for the X server at" << RealPointer::placeOf(tip())
                   << "covered by" << QApplication::widgetAt(RealPointer::center(tip()));
    return false;
}

bool ForeignHost::hover(const QWidget *command)
{
    return hover(RealPointer::center(command), command->objectName());
}

QPoint ForeignHost::row(int index) const
{
    const QRect rect = tree->visualItemRect(tree->topLevelItem(index));
    return tree->viewport()->mapToGlobal(rect.center());
}

QPoint ForeignHost::tab(int index) const
{
    return tabs->mapToGlobal(tabs->tabRect(index).center());
}

QPoint ForeignHost::entry(const QMenu *menu, int index) const
{
    return menu->mapToGlobal(menu->actionGeometry(menu->actions().at(index)).center());
}

QPoint ForeignHost::item() const
{
    return view->viewport()->mapToGlobal(view->mapFromScene(QPointF(60, 45)));
}

QPoint ForeignHost::nowhere() const
{
    return {1240, 760};
}

QMenu *ForeignHost::openMenu()
{
    QMenuBar *const bar = window->menuBar();
    QAction *const title = bar->actions().constFirst();
    QMenu *const menu = title->menu();
    RealPointer::click(bar->mapToGlobal(bar->actionGeometry(title).center()));
    if (!QTest::qWaitFor([=] { return menu->isVisible(); }, RealPointer::patience))
        qWarning("the menu did not open");
    return menu;
}

void ForeignHost::picture(const QString &name) const
{
    const QString folder = qEnvironmentVariable("VIDTIPS_PICTURES");
    if (folder.isEmpty())
        return;
    const QPoint inTip = RealPointer::center(tip());
    const auto isPainted = [&] {
        const QPixmap pixel = window->screen()->grabWindow(0, inTip.x(), inTip.y(), 1, 1);
        return pixel.toImage().pixelColor(0, 0) == QColor("#2060c0");
    };
    if (!QTest::qWaitFor(isPainted, RealPointer::patience)
        || !window->screen()->grabWindow(0).save(folder + '/' + name + ".png"))
        qWarning("there is no picture of %s", qPrintable(name));
}
