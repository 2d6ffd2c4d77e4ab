// From show() to the first painted pixel, against a plain tooltip; and what a tip costs while nothing moves.

#include "Measure.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTInterface.h>
#include <Vidtips/VTManager.h>
#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtGui/QPaintEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QToolTip>

using namespace Vidtips;

namespace {

const QString firstKey = QStringLiteral("draw.line");
const QString secondKey = QStringLiteral("draw.circle");

/** Counts the paint events of windows of one class and of what is inside them. */
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(const char *className)
        : m_className(className)
    {
        qApp->installEventFilter(this);
    }

    /** Waits until more has been painted than @p before. */
    void waitForPaint(int before)
    {
        while (paints == before)
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->isWidgetType()
            && static_cast<QWidget *>(watched)->window()->inherits(m_className))
            ++paints;
        return false;
    }

    int paints = 0;

private:
    const char *const m_className;
};

void runFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/** Shows the tips and the plain tooltips that are compared, each until it is painted. */
class Shows
{
public:
    Shows(VTInterface &host, const QPoint &position)
        : m_host(host)
        , m_position(position)
        , m_text(QStringLiteral("<b>%1</b> (L)<br>%2")
                     .arg(host.vidTipAttribute(firstKey, QStringLiteral("title"), {}),
                          QStringLiteral("Draws a straight line between two points.")))
    {
    }

    void showTip()
    {
        m_isFirst = !m_isFirst;
        const int before = tipPaints.paints;
        m_host.manager()->show(m_isFirst ? firstKey : secondKey, m_position, nullptr, QRect());
        tipPaints.waitForPaint(before);
    }

    void showPlain()
    {
        // A text of its own each time: the same text would only keep the tooltip.
        const int before = m_plainPaints.paints;
        QToolTip::showText(m_position, m_text + QString(++m_shown % 2, QLatin1Char('.')));
        m_plainPaints.waitForPaint(before);
    }

    void hideBoth()
    {
        if (VTWidget *window = m_host.manager()->widget())
            window->hide();
        QToolTip::hideText();
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (window->inherits("QTipLabel"))
                window->hide();
        }
        QCoreApplication::processEvents();
    }

    PaintWatch tipPaints{"Vidtips::VTWidget"};

private:
    VTInterface &m_host;
    const QPoint m_position;
    const QString m_text;
    PaintWatch m_plainPaints{"QTipLabel"};
    bool m_isFirst = false;
    int m_shown = 0;
};

void measureFirst(Shows &shows)
{
    QElapsedTimer timer;
    timer.start();
    shows.showPlain();
    const double plain = timer.nsecsElapsed() / 1e6;
    shows.hideBoth();
    timer.start();
    shows.showTip();
    const double tip = timer.nsecsElapsed() / 1e6;
    shows.hideBoth();
    std::printf("%-44s %9.3f ms  against %9.3f ms  ratio %5.2f  goal 2.00 %s\n",
                "first show of the process to first paint", tip, plain, tip / plain,
                tip <= 2 * plain ? "met" : "MISSED");
}

void measureIdle(VTInterface &host, const QWidget &button, PaintWatch &watch)
{
    constexpr int seconds = 4;
    host.show(firstKey, button.mapToGlobal(QPoint(5, 5)), nullptr);
    // The tip has grown and its clip has come to its end by then.
    runFor(15000);
    const int paints = watch.paints;
    const double before = processSeconds();
    runFor(seconds * 1000);
    const double share = 100.0 * (processSeconds() - before) / seconds;
    const int painted = watch.paints - paints;
    std::printf("%-44s %d repaints, %.2f %% of a core  goal 0, < 0.5 %% %s\n",
                "a shown tip whose clip stands still", painted, share,
                painted == 0 && share < 0.5 ? "met" : "MISSED");
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    VTContext settings;
    settings.set(ContentLocale, QStringLiteral("en_US"));
    settings.set(HideDuration, 0);
    settings.set(IdleInterval, 0);
    const QString content = QStringLiteral(CONTENT_DIR);
    VTInterface host(settings, {content + QStringLiteral("/Base"), content + QStringLiteral("/Extra")},
                     nullptr);
    host.setGlobalProperty(QStringLiteral("motion"), QStringLiteral("off"));
    QPushButton button(QStringLiteral("Line"));
    button.show();
    // A window that becomes active hides a plain tooltip.
    runFor(500);
    Shows shows(host, button.mapToGlobal(QPoint(5, 5)));
    measureFirst(shows);
    compare(
        "show to first paint, warm", 41, 0.8, [&] { shows.showTip(); }, [&] { shows.showPlain(); },
        [&] { shows.hideBoth(); });
    measureIdle(host, button, shows.tipPaints);
}
