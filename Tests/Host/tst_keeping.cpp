#include "RealPointer.h"
#include "TestHost.h"
#include "TestPackage.h"

#include <QtGui/QScreen>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMainWindow>
#include <QtWidgets/QMdiArea>
#include <QtWidgets/QMdiSubWindow>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTreeView>
#include <QtWidgets/QVBoxLayout>

using namespace Vidtips;

namespace {

const QColor tipColor("#2060c0");
using RealPointer::patience;

/** A tip whose left half pins it. It takes keys, and grows when it gets one. */
const char userInterface[] = R"(import QtQuick 1.1
    Rectangle {
        id: root
        width: 160; height: 100; color: "#2060c0"; focus: true
        Keys.onPressed: height = 150
        MouseArea { width: 80; height: 100; onClicked: vidTipView.reserved = true }
    })";

/** A window with a dock, an MDI area and tabs, where tips can be kept. */
class KeepingWindow : public QMainWindow
{
public:
    KeepingWindow()
        : m_tabs(new QTabWidget)
        , m_area(new QMdiArea)
        , m_dock(new QDockWidget("Kept tips", this))
    {
        auto *const page = new QWidget;
        for (const char *key : {"first", "second"}) {
            auto *const command = new QPushButton(key, page);
            command->setObjectName(key);
            command->setGeometry(20, key == QByteArray("first") ? 20 : 330, 120, 30);
        }
        m_tabs->addTab(page, "Commands");
        m_tabs->addTab(m_area, "Windows");
        setCentralWidget(m_tabs);
        addDockWidget(Qt::RightDockWidgetArea, m_dock);
        setGeometry(60, 60, 800, 500);
    }

    QPushButton *command(const QString &key) const { return findChild<QPushButton *>(key); }

    /** Makes what a host may return of createWindow(). */
    QWidget *container(const QByteArray &kind)
    {
        if (kind == "window")
            return new QWidget(this, Qt::Tool);
        if (kind == "dialog")
            return new QDialog(this);
        if (kind == "inner widget of a dock") {
            m_dock->setWidget(new QWidget);
            return m_dock->widget();
        }
        if (kind == "dock that is hidden")
            m_dock->hide();
        if (kind == "dock that floats")
            m_dock->setFloating(true);
        if (kind.startsWith("dock"))
            return m_dock;
        if (kind == "MDI window")
            return m_area->addSubWindow(new QMdiSubWindow);
        if (kind == "widget in an MDI window") {
            auto *const inner = new QWidget;
            m_area->addSubWindow(inner);
            return inner;
        }
        if (kind == "tab page") {
            auto *const tips = new QWidget;
            m_tabs->addTab(tips, "Tips");
            return tips;
        }
        if (kind == "view")
            return new QTreeView(m_dock);
        return nullptr;
    }

private:
    QTabWidget *m_tabs;
    QMdiArea *m_area;
    QDockWidget *m_dock;
};

} // namespace

/** Keeps tips with the real pointer, in everything that a host may supply for them. */
class tst_Keeping : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void keptTip_data();
    void keptTip();
    void severalTipsInOneDock();
    void keptTipsAreToldApartByTheirTitles();
    void keptTipIsAboveOthersOnlyWhenAsked();
    void keptTipStaysAboveHoweverOftenItIsAsked();
    void keptTipIsMinimisedWithItsWindow();
    void unsuitableContainer();

private:
    bool hover(const QString &key);
    bool pin();
    VTWidget *keep(const QString &key);
    bool isSeen(const QWidget *tip, int y = 50) const;
    bool isAboveOthers(const QWidget *window) const;
    VTWidget *tip() const { return m_session->window(); }

    std::unique_ptr<TestPackages> m_packages;
    std::unique_ptr<TestSession> m_session;
    std::unique_ptr<KeepingWindow> m_window;
};

void tst_Keeping::init()
{
    m_packages = std::make_unique<TestPackages>();
    m_packages->writeControl("Keeping", "tips.xml",
                             R"(<vidtip key="first" title="First"/><vidtip key="second" title="Second"/>)");
    m_packages->write("Keeping.vidtips/ui/VidtipsUI.qml", userInterface);
    VTContext settings;
    settings.set(InstallEventFilter, true);
    settings.set(AlwaysShowToolTips, true);
    settings.set(HideDuration, 0);
    settings.set(IdleInterval, 60000);
    settings.set(TooltipOffset, QSize(20, 30));
    QCursor::setPos(1200, 780);
    m_window = std::make_unique<KeepingWindow>();
    m_session = std::make_unique<TestSession>(QStringList{m_packages->path()}, settings);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(RealPointer::waitForWindow(m_window.get()));
}

void tst_Keeping::cleanup()
{
    m_window.reset();
    m_session.reset();
    m_packages.reset();
}

// Two steps, because a pointer that jumps straight onto a widget sends it no movement.
bool tst_Keeping::hover(const QString &key)
{
    const QWidget *const command = m_window->command(key);
    const QPoint center = command->mapToGlobal(command->rect().center());
    const RealPointer::ToolTipRequests requests;
    QCursor::setPos(center - QPoint(3, 3));
    if (!QTest::qWaitFor([=] { return command->underMouse(); }, patience))
        return false;
    QCursor::setPos(center);
    return QTest::qWaitFor(
        [&] {
            return requests.haveReached(center) && tip() && tip()->isVisible() && m_session->content()
                && m_session->content()->attribute("key") == key;
        },
        patience);
}

/** Clicks the left half of the tip as a user does; tells whether it was kept. */
bool tst_Keeping::pin()
{
    const QPointer<VTWidget> shown = tip();
    const QPoint place = shown->mapToGlobal(QPoint(40, 50));
    QCursor::setPos(place);
    const auto isOverTip = [&] {
        const QWidget *const widget = QApplication::widgetAt(place);
        return widget && shown && shown->isAncestorOf(widget) && widget->underMouse();
    };
    QProcess xdotool;
    if (!QTest::qWaitFor(isOverTip, patience))
        return false;
    xdotool.start("xdotool", {"click", "1"});
    return xdotool.waitForFinished(patience) && QTest::qWaitFor([&] { return tip() != shown; }, patience);
}

/** Keeps the tip of a command, at the second attempt where a window manager hides the first by its
 * activations. */
VTWidget *tst_Keeping::keep(const QString &key)
{
    for (int attempt = 0; attempt < 3; ++attempt) {
        VTWidget *const shown = hover(key) ? tip() : nullptr;
        if (shown && pin())
            return shown;
        QCursor::setPos(1200, 780);
    }
    return nullptr;
}

bool tst_Keeping::isSeen(const QWidget *tip, int y) const
{
    const QPoint place = tip->mapToGlobal(QPoint(120, y));
    const QPixmap shot = QGuiApplication::primaryScreen()->grabWindow(0, place.x(), place.y(), 1, 1);
    return shot.toImage().pixelColor(0, 0) == tipColor;
}

/** Asks the window manager. */
bool tst_Keeping::isAboveOthers(const QWidget *window) const
{
    QProcess xprop;
    xprop.start("xprop", {"-id", QString::number(window->winId()), "_NET_WM_STATE"});
    return xprop.waitForFinished(patience) && xprop.readAll().contains("_NET_WM_STATE_ABOVE");
}

void tst_Keeping::keptTip_data()
{
    QTest::addColumn<QByteArray>("kind");
    for (const char *kind :
         {"none", "window", "dialog", "inner widget of a dock", "dock", "dock that is hidden",
          "dock that floats", "MDI window", "widget in an MDI window", "tab page"})
        QTest::newRow(kind) << QByteArray(kind);
}

void tst_Keeping::keptTip()
{
    QFETCH(QByteArray, kind);
    QWidget *const container = m_window->container(kind);
    const bool isWindow = container && container->isWindow();
    const Qt::WindowFlags flags = container ? container->windowFlags() : Qt::WindowFlags();
    const QSize windowSize = m_window->size();
    m_session->host->onCreateWindow = [=] { return container; };
    const QPointer<VTWidget> kept = keep("first");
    QVERIFY(kept);

    QTRY_VERIFY_WITH_TIMEOUT(isSeen(kept), patience);
    QCOMPARE((container ? container : kept)->windowTitle(), QString("First"));
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activeWindow(), patience);
    QTRY_COMPARE(QApplication::activeWindow(), kept->window());
    QTRY_COMPARE(QApplication::focusWidget(), kept->view());
    if (container && !isWindow) {
        QCOMPARE(container->windowFlags(), flags);
        QVERIFY(!container->isWindow());
        QCOMPARE(m_window->windowState(), Qt::WindowStates());
        QCOMPARE(m_window->size(), windowSize);
        QVERIFY(m_window->maximumWidth() > 5000);
    }

    // It goes on living there.
    QProcess xdotool;
    xdotool.start("xdotool", {"key", "a"});
    QVERIFY(xdotool.waitForFinished(patience));
    QTRY_VERIFY(kept->height() >= 150);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(kept), patience);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(kept, 145), patience);

    // And the next tip has a window of its own again.
    m_window->findChild<QTabWidget *>()->setCurrentIndex(0);
    QVERIFY(hover("second"));
    QVERIFY(tip() != kept);
    delete container;
    delete kept;
}

void tst_Keeping::severalTipsInOneDock()
{
    m_session->host->onCreateWindow = [this] { return m_window->container("dock"); };
    const QPointer<VTWidget> first = keep("first");
    QVERIFY(first);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(first), patience);
    const QPointer<VTWidget> second = keep("second");
    QVERIFY(second);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(second), patience);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(first), patience);
    QCOMPARE(first->parentWidget(), second->parentWidget());
}

void tst_Keeping::keptTipsAreToldApartByTheirTitles()
{
    const QPointer<VTWidget> first = keep("first");
    QVERIFY(first);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(first), patience);
    const QPointer<VTWidget> second = keep("second");
    QVERIFY(second);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(second), patience);
    for (const QPointer<VTWidget> &kept : {first, second}) {
        QProcess xdotool;
        xdotool.start("xdotool", {"getwindowname", QString::number(kept->winId())});
        QVERIFY(xdotool.waitForFinished(patience));
        QCOMPARE(xdotool.readAll().trimmed(), kept->windowTitle().toUtf8());
    }
    QCOMPARE(first->windowTitle(), QString("First"));
    QCOMPARE(second->windowTitle(), QString("Second"));
    delete first;
    delete second;
}

void tst_Keeping::keptTipIsAboveOthersOnlyWhenAsked()
{
    const QPointer<VTWidget> kept = keep("first");
    QVERIFY(kept);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(kept), patience);
    // A window that has nothing to do with the kept tip's.
    QWidget other;
    other.setGeometry(kept->geometry().adjusted(-60, -40, 60, 40));
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other, patience));
    QTRY_VERIFY_WITH_TIMEOUT(!isSeen(kept), patience);
    m_session->manager()->setStayOnTop(true);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(kept), patience);
    m_session->manager()->setStayOnTop(false);
    other.raise();
    other.activateWindow();
    QTRY_VERIFY_WITH_TIMEOUT(!isSeen(kept), patience);
    delete kept;
}

void tst_Keeping::keptTipStaysAboveHoweverOftenItIsAsked()
{
    const QPointer<VTWidget> kept = keep("first");
    QVERIFY(kept);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(kept), patience);
    for (int i = 0; i < 6; ++i) {
        m_session->manager()->setStayOnTop(i % 2 == 0);
        m_session->manager()->setStayOnTop(i % 2 == 1);
        QTRY_COMPARE_WITH_TIMEOUT(isAboveOthers(kept), i % 2 == 1, patience);
    }
    delete kept;
}

void tst_Keeping::keptTipIsMinimisedWithItsWindow()
{
    const QPointer<VTWidget> kept = keep("first");
    QVERIFY(kept);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(kept), patience);
    for (int i = 0; i < 2; ++i) {
        QVERIFY(RealPointer::xdotool({"windowminimize", QString::number(m_window->winId())}));
        QTRY_VERIFY_WITH_TIMEOUT(m_window->isMinimized(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(!isSeen(kept), patience);
        QVERIFY(RealPointer::xdotool({"windowactivate", QString::number(m_window->winId())}));
        QTRY_VERIFY_WITH_TIMEOUT(!m_window->isMinimized(), patience);
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(kept), patience);
    }
    delete kept;
}

void tst_Keeping::unsuitableContainer()
{
    m_session->host->onCreateWindow = [this] { return m_window->container("view"); };
    const QPointer<VTWidget> kept = keep("first");
    QVERIFY(kept);
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(kept), patience);
    QVERIFY(kept->isWindow());
    QCOMPARE(m_session->host->messages.count(), 1);
    QCOMPARE(m_session->host->messages.first().first, int(VTMessageWarning));
    QVERIFY(m_session->host->messages.first().second.contains("QTreeView"));
    delete kept;
}

QTEST_MAIN(tst_Keeping)
#include "tst_keeping.moc"
