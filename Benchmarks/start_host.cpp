// A host as small as one can be, which says what it took to come to its first idle moment. Compiled twice:
// WITH_TIPS has tips in it, the other has never heard of them.

#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#ifdef WITH_TIPS
#include <Vidtips/VTContext.h>
#include <Vidtips/VTInterface.h>
#include <Vidtips/VTManager.h>
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

void tell()
{
    timespec used;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    std::printf("%.3f %d\n", double(used.tv_sec) * 1e3 + double(used.tv_nsec) / 1e6, residentMemory());
    std::fflush(stdout);
}

void runFor(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

#ifdef WITH_TIPS
/** Shows tips with clips in turn, and tells what the process holds after each was hidden. */
void showTips(Vidtips::VTInterface &host, const QStringList &keys, int count)
{
    for (int i = 0; i < count; ++i) {
        host.show(keys.at(i % keys.size()), QPoint(50, 50), nullptr);
        runFor(1500);
        host.manager()->widget()->hide();
        runFor(200);
        tell();
    }
}
#endif

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
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
    if (arguments.size() > 1)
        showTips(host, arguments.mid(1), arguments.constFirst().toInt());
#endif
    // Coming to an end is not measured.
    std::_Exit(0);
}
