// A host that knows nothing but an installed Vidtips: it shows one tip, decodes the clip that its argument
// names, if there is one, and reports what happened.

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTInterface.h>
#include <Vidtips/VTManager.h>
#include <Vidtips/VTVersion.h>
#include <Vidtips/VTVideoSourceFFMPEG.h>

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>
#include <QtWidgets/QPushButton>

#include <cstdio>
#include <memory>

class ConsumerInterface : public Vidtips::VTInterface
{
public:
    using VTInterface::VTInterface;

    void handleMessage(Vidtips::VTMessageType type, const QString &message) override
    {
        // What is wrong with the QML comes as a message of this type.
        m_qmlIsFine = m_qmlIsFine && type != Vidtips::VTMessageDebug;
        std::fprintf(stderr, "%s\n", qPrintable(message));
    }

    void notification(Vidtips::VTNotification type, const QVariant &, const QString &key) override
    {
        if (type == Vidtips::VTNotificationShown)
            std::printf("shown %s with Vidtips %s\n", qPrintable(key), VIDTIPS_VERSION);
    }

    bool qmlIsFine() const { return m_qmlIsFine; }

private:
    bool m_qmlIsFine = true;
};

void decode(const QString &clip)
{
    Vidtips::VTVideoSourceFFMPEG source(nullptr);
    QEventLoop loop;
    QObject::connect(&source, &Vidtips::VTVideoSource::streamEnded, &loop, &QEventLoop::quit);
    QTimer::singleShot(60000, &loop, &QEventLoop::quit);
    source.setSource(QUrl::fromLocalFile(clip));
    source.start();
    loop.exec();
    std::printf("decoded %d pictures\n", int(source.loadedFrameCount()));
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    VTContext settings;
    settings.set(Vidtips::InstallEventFilter, true);
    settings.set(Vidtips::MessageThreshold, Vidtips::VTMessageDebug);
    ConsumerInterface interface(settings, {QStringLiteral(CONTENT_DIR)}, nullptr);
    // An index is the host's to delete, also the one that the manager makes.
    const std::unique_ptr<Vidtips::VTIndex> index(interface.manager()->index());

    QPushButton button(QStringLiteral("Draw a line"));
    button.setObjectName(QStringLiteral("draw.line"));
    button.show();
    if (!interface.show(button.objectName(), button.mapToGlobal(QPoint(5, 5)), &button))
        return EXIT_FAILURE;
    const QString title = interface.vidTipAttribute(button.objectName(), QStringLiteral("title"), {});
    QTimer::singleShot(100, &application, [] { QApplication::quit(); });
    application.exec();
    if (argc > 1)
        decode(QString::fromLocal8Bit(argv[1]));
    return title == QLatin1String("Line") && interface.qmlIsFine() ? EXIT_SUCCESS : EXIT_FAILURE;
}
