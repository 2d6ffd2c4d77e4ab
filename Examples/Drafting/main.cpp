#include "Host/MainWindow.h"
#include "Host/Options.h"

#include <QtWidgets/QApplication>

int main(int argc, char *argv[])
{
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Drafting"));
    QCoreApplication::setApplicationVersion(QStringLiteral("1.0"));
    const Options options = Options::parse(application);
    MainWindow window(options);
    if (options.fullScreen)
        window.showFullScreen();
    else
        window.show();
    return QApplication::exec();
}
