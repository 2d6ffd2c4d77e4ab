#include "Options.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QLocale>

namespace {

QString choice(QCommandLineParser &parser, const QString &name, const QStringList &allowed)
{
    QString value = parser.value(name);
    if (!allowed.contains(value)) {
        fputs(qPrintable(
                  Options::tr("--%1 must be one of: %2\n").arg(name, allowed.join(QStringLiteral(", ")))),
              stderr);
        exit(2);
    }
    return value;
}

// Says what the command line may hold.
void describe(QCommandLineParser &parser)
{
    const QString systemLanguage =
        QLocale::system().language() == QLocale::German ? QStringLiteral("de") : QStringLiteral("en");
    parser.setApplicationDescription(
        Options::tr("A small drafting application whose commands explain themselves."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {"language", Options::tr("Language of the application and its tips: en or de."), "name",
         systemLanguage},
        {"appearance", Options::tr("Appearance: light or dark."), "name", "light"},
        {"data-path", Options::tr("Folder with tip packages; may be given several times."), "folder"},
        {"right-to-left", Options::tr("Lay everything out from right to left.")},
        {"reserve-in-container", Options::tr("Pinned tips live in a window of this application.")},
        {"simple-tips", Options::tr("Start with simple tips.")},
        {"tips-off", Options::tr("Start without tips.")},
        {"modifier-only", Options::tr("Tips appear only while Ctrl is held.")},
        {"no-motion", Options::tr("Nothing moves in tips unless asked to.")},
        {"no-fallback", Options::tr("No tip for commands that have none.")},
        {"full-screen", Options::tr("Fill the screen.")},
        {"no-sample", Options::tr("Start with an empty drawing.")},
        {"debug-messages", Options::tr("Show every message of the tip library in the message panel.")},
        {"trace", Options::tr("Write where commands are and what happens to tips to standard output.")},
        {"idle", Options::tr("Time until an unattended tip hides; 0: never."), "milliseconds"},
    });
}

} // namespace

Options Options::parse(const QCoreApplication &application)
{
    QCommandLineParser parser;
    describe(parser);
    parser.process(application);

    Options options;
    options.language = choice(parser, "language", {"en", "de"});
    options.appearance = choice(parser, "appearance", {"light", "dark"});
    options.dataPaths = parser.values("data-path");
    if (options.dataPaths.isEmpty()) {
        const QString content = shareFolder() + QStringLiteral("/Content");
        options.dataPaths =
            QStringList{content + QStringLiteral("/Base"), content + QStringLiteral("/Extra")};
    }
    options.rightToLeft = parser.isSet("right-to-left");
    options.reserveInContainer = parser.isSet("reserve-in-container");
    options.simpleTips = parser.isSet("simple-tips");
    options.tipsOff = parser.isSet("tips-off");
    options.modifierOnly = parser.isSet("modifier-only");
    options.motion = !parser.isSet("no-motion");
    options.fallback = !parser.isSet("no-fallback");
    options.fullScreen = parser.isSet("full-screen");
    options.sample = !parser.isSet("no-sample");
    options.debugMessages = parser.isSet("debug-messages");
    options.trace = parser.isSet("trace");
    if (parser.isSet("idle"))
        options.idleInterval = parser.value("idle").toInt();
    return options;
}

QString Options::shareFolder()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath()
                           + QStringLiteral("/../share/vidtips-drafting"));
}
