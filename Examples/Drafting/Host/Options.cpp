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

} // namespace

Options Options::parse(const QCoreApplication &application)
{
    const QString systemLanguage =
        QLocale::system().language() == QLocale::German ? QStringLiteral("de") : QStringLiteral("en");
    QCommandLineParser parser;
    parser.setApplicationDescription(tr("A small drafting application whose commands explain themselves."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOptions({
        {"language", tr("Language of the application and its tips: en or de."), "name", systemLanguage},
        {"appearance", tr("Appearance: light or dark."), "name", "light"},
        {"data-path", tr("Folder with tip packages; may be given several times."), "folder"},
        {"right-to-left", tr("Lay everything out from right to left.")},
        {"reserve-in-container", tr("Pinned tips live in a window of this application.")},
        {"simple-tips", tr("Start with simple tips.")},
        {"tips-off", tr("Start without tips.")},
        {"modifier-only", tr("Tips appear only while Ctrl is held.")},
        {"no-motion", tr("Nothing moves in tips unless asked to.")},
        {"no-fallback", tr("No tip for commands that have none.")},
        {"no-sample", tr("Start with an empty drawing.")},
        {"debug-messages", tr("Show every message of the tip library in the message panel.")},
        {"trace", tr("Write where commands are and what happens to tips to standard output.")},
        {"idle", tr("Time until an unattended tip hides; 0: never."), "milliseconds"},
    });
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
