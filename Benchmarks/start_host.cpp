// A host as small as one can be, which says what it took to come to its first idle moment. Compiled twice:
// WITH_TIPS has tips in it, the other has never heard of them.

#include "Deadline.h"

#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QGraphicsObject>
#include <QtWidgets/QGraphicsScene>
#include <QtWidgets/QPushButton>

#ifdef WITH_TIPS
#include <Vidtips/VTContext.h>
#include <Vidtips/VTInterface.h>
#include <Vidtips/VTManager.h>
#include <Vidtips/VTView.h>
#include <Vidtips/VTWidget.h>
#endif

#include <cstdio>
#include <ctime>

namespace {

/** Returns the resident memory of the process in KiB. */
int residentMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    const QByteArray text = status.readAll();
    return text.mid(text.indexOf("VmRSS:") + 6, 20).trimmed().split(' ').constFirst().toInt();
}

/** Returns the processor time of the process or of the thread, as @p clock says. */
double milliseconds(clockid_t clock)
{
    timespec used;
    clock_gettime(clock, &used);
    return double(used.tv_sec) * 1e3 + double(used.tv_nsec) / 1e6;
}

void tell()
{
    std::printf("%.3f %d\n", milliseconds(CLOCK_PROCESS_CPUTIME_ID), residentMemory());
    std::fflush(stdout);
}

#ifdef WITH_TIPS
/** An application that measures how long the library's preparations keep other events waiting. */
class Application : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        const bool isPreparation =
            receiver->inherits("Vidtips::VTPreparation") || receiver->inherits("QDeclarativePreparation");
        const double before = milliseconds(CLOCK_THREAD_CPUTIME_ID);
        const bool result = QApplication::notify(receiver, event);
        if (isPreparation)
            longestPiece = qMax(longestPiece, milliseconds(CLOCK_THREAD_CPUTIME_ID) - before);
        return result;
    }

    double longestPiece = 0; ///< in milliseconds of processor time
};
#else
using Application = QApplication;
#endif

void runFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

#ifdef WITH_TIPS
/** Waits until the window of tips is painted. */
class FirstPaint : public QObject
{
public:
    FirstPaint() { qApp->installEventFilter(this); }

    void wait() const
    {
        const Deadline deadline("the first tip");
        while (!m_isPainted)
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        m_isPainted |= event->type() == QEvent::Paint && watched->isWidgetType()
            && static_cast<QWidget *>(watched)->window()->inherits("Vidtips::VTWidget");
        return false;
    }

private:
    bool m_isPainted = false;
};

/** Shows the first tip of the process once that is idle; tells the processor time until it is painted. */
void showFirst(Vidtips::VTInterface &host, const QString &key, const Application &application)
{
    runFor(1000);
    const FirstPaint paint;
    const double before = milliseconds(CLOCK_PROCESS_CPUTIME_ID);
    host.show(key, QPoint(50, 50), nullptr);
    paint.wait();
    std::printf("%.3f %.3f\n", milliseconds(CLOCK_PROCESS_CPUTIME_ID) - before, application.longestPiece);
    std::fflush(stdout);
}

/** Returns the clip on screen, which comes when the tip has grown; empty until it is decoded to its end. */
QString decodedClip(const Vidtips::VTManager &manager)
{
    const QList<QGraphicsItem *> items = manager.widget()->view()->scene()->items();
    for (const QGraphicsItem *item : items) {
        const QObject *const object = item->toGraphicsObject();
        if (object && object->inherits("Vidtips::VTVideoComponent")
            && object->property("loadProgress").toDouble() >= 1)
            return object->property("source").toString();
    }
    return {};
}

/** Shows tips with clips in turn, and tells what the process holds after each was hidden. */
void showTips(Vidtips::VTInterface &host, const QStringList &keys, int count)
{
    QString clipBefore;
    for (int i = 0; i < count; ++i) {
        const Deadline deadline("the next clip");
        host.show(keys.at(i % keys.size()), QPoint(50, 50), nullptr);
        QString clip;
        for (; clip.isEmpty() || clip == clipBefore; clip = decodedClip(*host.manager()))
            runFor(100);
        clipBefore = clip;
        host.manager()->widget()->hide();
        runFor(200);
        tell();
    }
}
#endif

} // namespace

int main(int argc, char *argv[])
{
    Application application(argc, argv);
#ifdef WITH_TIPS
    VTContext settings;
    settings.set(Vidtips::ContentLocale, QStringLiteral("en_US"));
    settings.set(Vidtips::HideDuration, 0);
    const QString content = QStringLiteral(CONTENT_DIR);
    Vidtips::VTInterface host(
        settings, {content + QStringLiteral("/Base"), content + QStringLiteral("/Extra")}, nullptr);
#endif
    QPushButton button(QStringLiteral("Line"));
    button.show();
    // What the library does when the host is idle for the first time belongs to it.
    runFor(100);
    tell();
#ifdef WITH_TIPS
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    if (arguments.size() == 1)
        showFirst(host, arguments.constFirst(), application);
    else if (arguments.size() > 1)
        showTips(host, arguments.mid(1), arguments.constFirst().toInt());
#endif
    // Coming to an end is not measured.
    std::_Exit(0);
}
