#include "ForeignHost.h"
#include "ProcessUse.h"
#include "RealPointer.h"

#include <QtCore/QRandomGenerator>
#include <QtDeclarative/QDeclarativeEngine>
#include <QtGui/QPixmapCache>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsView>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QTabBar>
#include <QtWidgets/QTreeWidget>

#include <cmath>

using namespace Vidtips;

/** Thousands of tips in a host with everything, for commands that come and go. */
class tst_ManyShows : public QObject
{
    Q_OBJECT

private slots:
    void nothingGrows();

private:
    void showOne();
    void end();
    void showMany(int count);
    ProcessUse use();
    ProcessUse useAtRest();

    std::unique_ptr<ForeignHost> m_host;
    QRandomGenerator m_random{20};
};

// In every kind of place, also on a button that is made for it.
void tst_ManyShows::showOne()
{
    ForeignHost &host = *m_host;
    const int index = m_random.bounded(2);
    const auto show = [&](const QString &key, const QPoint &place, QWidget *widget, const QRect &rect) {
        QVERIFY(host.host()->show(key, place, widget, rect));
    };
    QScopedPointer<QPushButton> made;
    switch (m_random.bounded(6)) {
    case 0:
        show(QString("row %1").arg(index), host.row(index), host.tree->viewport(),
             QRect(host.row(index) - QPoint(40, 8), QSize(80, 16)));
        break;
    case 1:
        show(QString("tab %1").arg(index), host.tab(index), host.tabs, QRect());
        break;
    case 2:
        show("item", host.item(), host.view->viewport(), QRect());
        break;
    case 3:
        show("farther", RealPointer::center(host.farther), host.farther, QRect());
        break;
    case 4:
        show(index ? "embedded" : "tall", RealPointer::center(host.embedded), host.embedded, QRect());
        break;
    default:
        made.reset(host.addButton(host.window->centralWidget(), "other", {500, 230}));
        made->show();
        show("other", RealPointer::center(made.data()), made.data(), QRect());
    }
    QCoreApplication::processEvents();
}

/** Ends the tip in one of the ways in which tips end, or leaves it to the next. */
void tst_ManyShows::end()
{
    switch (m_random.bounded(4)) {
    case 0:
        m_host->tip()->hideAnimated();
        break;
    case 1:
        m_host->tip()->hide();
        break;
    case 2:
        m_host->window->move(m_host->window->pos() + QPoint(m_random.bounded(2) ? 1 : -1, 0));
        break;
    default:
        break;
    }
    QCoreApplication::processEvents();
}

void tst_ManyShows::showMany(int count)
{
    for (int i = 0; i < count; ++i) {
        showOne();
        end();
        m_host->host()->notifications.clear();
        // What the test's own index writes down.
        m_host->session()->index.requests.clear();
        m_host->session()->index.roots.removeAll(nullptr);
    }
}

// The X server and the timers of Qt give back what they hold on to some time later.
ProcessUse tst_ManyShows::useAtRest()
{
    ProcessUse now;
    const auto isAtRest = [&] {
        const ProcessUse before = now;
        now = ProcessUse::now(m_host->window);
        return std::abs(now.heap - before.heap) < 0.001 && now.threads == before.threads
            && now.handles == before.handles && now.windows == before.windows
            && now.pixmaps == before.pixmaps;
    };
    [&] { QTRY_VERIFY_WITH_TIMEOUT(isAtRest(), 30000); }();
    return now;
}

ProcessUse tst_ManyShows::use()
{
    m_host->host()->show("plain", RealPointer::center(m_host->plain), m_host->plain);
    m_host->tip()->hide();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    m_host->tip()->view()->engine()->collectGarbage();
    QPixmapCache::clear();
    return useAtRest();
}

void tst_ManyShows::nothingGrows()
{
    ProcessUse::prepare();
    m_host = std::make_unique<ForeignHost>([](VTContext &settings) { settings.set(HideDuration, 20); });
    showMany(1000);
    // Measuring opens a connection of its own.
    use();
    const ProcessUse before = use();
    showMany(5000);
    const ProcessUse after = use();
    qInfo("heap %.3f → %.3f MiB, resident %.1f → %.1f MiB", before.heap, after.heap, before.resident,
          after.resident);
    QVERIFY(after.threads <= before.threads);
    QVERIFY(after.handles <= before.handles);
    QVERIFY(after.windows <= before.windows);
    // A window's picture may just be made anew; what tips leave behind would be there by the hundred.
    QVERIFY2(after.pixmaps < before.pixmaps + 10, qPrintable(QString::number(after.pixmaps)));
    // Less than ten bytes a tip.
    QVERIFY2(after.heap - before.heap < 0.05, qPrintable(QString::number(after.heap - before.heap)));
}

QTEST_MAIN(tst_ManyShows)
#include "tst_manyshows.moc"
