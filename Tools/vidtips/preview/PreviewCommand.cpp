#include "PreviewCommand.h"

#include "PreviewWindow.h"
#include "Screenshots.h"
#include "check/AdmissionCheck.h"
#include "check/StructureCheck.h"
#include "findings/FindingReport.h"
#include "shared/Console.h"
#include "shared/Content.h"
#include "shared/Locales.h"
#include "stage/PreviewKeys.h"
#include "stage/PreviewLook.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>
#include <QtCore/QProcess>
#include <QtWidgets/QApplication>

#include <algorithm>

namespace {

constexpr double largestScale = 4.0;
constexpr int longestDelay = 60000; // milliseconds

struct Request
{
    PreviewSettings settings;
    QString key;
    QString screenshot;
    int delay = 0;
    bool isAll = false;
};

double scaleOf(const QCommandLineParser &arguments)
{
    bool isNumber = false;
    const double scale = arguments.value("scale").toDouble(&isNumber);
    return isNumber && scale >= 1.0 && scale <= largestScale ? scale : 0.0;
}

QString readProperties(const QStringList &settings, QMap<QString, QString> &properties)
{
    for (const QString &setting : settings) {
        if (setting.indexOf('=') < 1)
            return QString("--set takes NAME=VALUE, not \"%1\"").arg(setting);
        properties.insert(setting.section('=', 0, 0), setting.section('=', 1));
    }
    return {};
}

// The key is the first argument that is no folder.
void readPositional(const QCommandLineParser &arguments, Request &request)
{
    QStringList &folders = request.settings.folders;
    folders = arguments.positionalArguments();
    const auto isKey = [](const QString &argument) { return !QFileInfo(argument).isDir(); };
    const auto key = std::find_if(folders.begin(), folders.end(), isKey);
    if (request.isAll || key == folders.end())
        return;
    request.key = *key;
    folders.erase(key);
}

bool readPhase(const QString &name, PreviewSettings &settings)
{
    static const QMap<QString, TipPhase> phases{
        {"first", TipPhase::First}, {"grown", TipPhase::AsItComes}, {"kept", TipPhase::Kept}};
    settings.phase = phases.value(name);
    return phases.contains(name);
}

// Returns what is wrong with the arguments, or nothing.
QString readRequest(const QCommandLineParser &arguments, Request &request)
{
    request.isAll = arguments.isSet("all");
    request.screenshot = arguments.value("screenshot");
    request.settings.locale = arguments.value("locale");
    request.settings.isSimple = arguments.isSet("simple");
    request.settings.isDark = arguments.isSet("dark");
    request.settings.isRestricted = arguments.isSet("restricted");
    request.settings.isStill = arguments.isSet("still");
    request.settings.isUnavailable = arguments.isSet("unavailable");
    request.settings.direction = arguments.isSet("right-to-left") ? Qt::RightToLeft : Qt::LayoutDirectionAuto;
    request.settings.scale = scaleOf(arguments);
    request.settings.keyData = arguments.value("key-data");
    readPositional(arguments, request);
    bool isNumber = false;
    request.delay = arguments.value("delay").toInt(&isNumber);
    if (request.settings.folders.isEmpty())
        return "preview needs a folder; see \"vidtips preview --help\"";
    if (!isNumber || request.delay < 0 || request.delay > longestDelay)
        return QString("--delay takes milliseconds, not \"%1\"").arg(arguments.value("delay"));
    if (scaleOf(arguments) <= 0.0)
        return QString("--scale takes a number from 1 to 4, not \"%1\"").arg(arguments.value("scale"));
    if (!readPhase(arguments.value("phase"), request.settings))
        return QString("--phase takes first, grown or kept, not \"%1\"").arg(arguments.value("phase"));
    if (request.isAll && request.screenshot.isEmpty())
        return "--all needs --screenshot and a folder";
    if (!request.settings.keyData.isEmpty() && !QFileInfo(request.settings.keyData).isFile())
        return QString("the key data cannot be read: %1").arg(request.settings.keyData);
    const QString &locale = request.settings.locale;
    QString problem = locale.isEmpty() ? QString() : Locales::problemWith(locale);
    if (!problem.isEmpty())
        return problem;
    return readProperties(arguments.values("set"), request.settings.properties);
}

// Entries after the first error of a file are lost, those of a file that is not admitted as well, and may be
// what is asked for.
bool tellLostFiles(const Content &content, Console &console)
{
    bool isTold = false;
    Findings findings;
    AdmissionCheck().run(content, findings);
    StructureCheck().run(content, findings);
    for (const Finding &finding : findings.sorted()) {
        if (FindingCatalogue::instance().find(finding.code)->severity != Severity::Error)
            continue;
        console.note(FindingReport::line(finding));
        isTold = true;
    }
    return isTold;
}

// Content in another language may be shown because that which was meant is lost.
void chooseLocale(const Content &content, const QString &key, PreviewSettings &settings)
{
    if (!settings.locale.isEmpty())
        return;
    const QString &usual = PreviewKeys::usualLocale;
    settings.locale = PreviewKeys::defaultLocale(content, key);
    if (settings.locale == usual)
        return;
    const QString problem = PreviewKeys::problemWith(content, key, usual);
    settings.whyLocale =
        QString("shown for %1: %2")
            .arg(settings.locale, problem.isEmpty() ? "no control file is for " + usual : problem);
}

// Chooses what was left open; returns why there is nothing to show.
QString complete(Request &request, const Content &content, QVector<PreviewKey> &keys)
{
    chooseLocale(content, request.key, request.settings);
    keys = PreviewKeys::in(content, request.settings.locale);
    if (request.key.isEmpty() && !keys.isEmpty())
        request.key = keys.constFirst().key;
    return PreviewKeys::problemWith(content, request.key, request.settings.locale);
}

QStringList argumentsFor(const PreviewSettings &settings, const QString &key)
{
    QStringList arguments{"preview", "--scale", QString::number(settings.scale), "--locale", settings.locale};
    const QVector<QPair<QString, bool>> switches{
        {"--simple", settings.isSimple},         {"--dark", settings.isDark},
        {"--still", settings.isStill},           {"--unavailable", settings.isUnavailable},
        {"--restricted", settings.isRestricted}, {"--right-to-left", settings.direction == Qt::RightToLeft}};
    for (const auto &each : switches) {
        if (each.second)
            arguments << each.first;
    }
    if (settings.phase != TipPhase::AsItComes)
        arguments << "--phase" << (settings.phase == TipPhase::First ? "first" : "kept");
    if (!settings.keyData.isEmpty())
        arguments << "--key-data" << settings.keyData;
    for (auto it = settings.properties.cbegin(); it != settings.properties.cend(); ++it)
        arguments << "--set" << it.key() + '=' + *it;
    arguments << "--";
    if (!key.isEmpty())
        arguments << key;
    return arguments + settings.folders;
}

// The scale of the display is read once, when a process begins.
int showWindow(const PreviewSettings &settings, const QString &key)
{
    QString lastKey;
    PreviewSettings last;
    {
        PreviewWindow window(settings, key);
        window.show();
        QApplication::exec();
        lastKey = window.currentKey();
        last = window.settings();
    }
    if (qFuzzyCompare(last.scale, settings.scale))
        return ExitFine;
    return QProcess::execute(QCoreApplication::applicationFilePath(), argumentsFor(last, lastKey));
}

} // namespace

QStringList PreviewCommand::description() const
{
    return {"Shows the tip of KEY in the window that users see, beside a list of all keys. Without a KEY, "
            "shows the first one. The arrow keys walk the keys. When a file of a package changes, be it a "
            "control file, QML, a picture, a clip or a catalogue, the tip is shown anew. Errors appear over "
            "the tip with file and line, and a list has all that is found in it: Enter opens the file and "
            "copies the place. Options that say how tips are shown can be switched in the window, too.",
            "With --screenshot, writes the tip's picture to a file instead and needs no display; with --all "
            "as well, writes a picture of each tip and a page that shows them all to a folder. Errors of the "
            "QML then go to the error stream and give the exit code 1."};
}

QList<Command::Example> PreviewCommand::examples() const
{
    return {{"draw.line Content", "Show a tip and keep it up to date while its package is edited."},
            {"--locale de_DE --dark --scale 2 draw.line Content", "Show it in German, dark and enlarged."},
            {"--screenshot line.png draw.line Content", "Write a picture of the tip."},
            {"--screenshot sheet --all Content", "Write a contact sheet of all tips to sheet/index.html."}};
}

QList<QCommandLineOption> PreviewCommand::options() const
{
    return {{"simple", "Show simple tips instead of full ones."},
            {"dark", "Use dark colours."},
            {"restricted",
             "Show tips as hosts do that do not trust packages, by the setting RestrictContent. What is "
             "refused is listed with what else is found."},
            {"right-to-left", "Mirror tips, as for languages that are read from the right."},
            {"still", "Show tips as to users who want nothing to move."},
            {"unavailable", "Show tips as when their commands cannot be used now."},
            {"phase",
             "Show tips as they appear (first), as they become after a moment (grown, the default) or in the "
             "window of one that is kept open (kept).",
             "PHASE", "grown"},
            {"scale", "Enlarge everything, as on a display of high resolution; from 1 to 4.", "FACTOR", "1"},
            {"locale", "Show the content for LOCALE. The default is en_US where there is content for it.",
             "LOCALE"},
            {"key-data",
             "Use FILE as the host's key data. Key data in the folders DIR is found without this option.",
             "FILE"},
            {"set", "Fill the placeholder %(NAME)s in texts with VALUE; may be given several times.",
             "NAME=VALUE"},
            {"screenshot", "Write a picture to FILE; with --all, pictures and index.html to the folder FILE.",
             "FILE"},
            {"all", "Take pictures of all tips."},
            {"delay", "Take a picture so many milliseconds after the tip appeared. The default is 1300.",
             "MS", "1300"}};
}

Command::Display PreviewCommand::display(const QCommandLineParser &arguments) const
{
    return arguments.isSet("screenshot") ? Offscreen : OnScreen;
}

void PreviewCommand::prepare(const QCommandLineParser &arguments) const
{
    // A preview that began another one at another scale has set it, too.
    const double scale = scaleOf(arguments);
    if (scale > 1.0)
        qputenv("QT_SCALE_FACTOR", QByteArray::number(scale));
    else if (arguments.isSet("scale"))
        qunsetenv("QT_SCALE_FACTOR");
}

int PreviewCommand::run(const QCommandLineParser &arguments, Console &console)
{
    Request request;
    QString problem = readRequest(arguments, request);
    Content content;
    if (problem.isEmpty())
        problem = content.load(request.settings.folders);
    if (!problem.isEmpty())
        return console.fail(problem);
    QVector<PreviewKey> keys;
    problem = complete(request, content, keys);
    if (!problem.isEmpty()) {
        tellLostFiles(content, console);
        return console.fail(problem);
    }
    bool isOtherLost = false;
    if (!request.settings.whyLocale.isEmpty()) {
        isOtherLost = tellLostFiles(content, console);
        console.note(request.settings.whyLocale);
    }
    PreviewLook::apply(request.settings.isDark);
    if (!request.screenshot.isEmpty()) {
        Screenshots screenshots(content, request.settings, request.delay);
        const int code = request.isAll ? screenshots.all(keys, request.screenshot, console)
                                       : screenshots.one(request.key, request.screenshot, console);
        return isOtherLost ? qMax(code, int(ExitFindings)) : code;
    }
    return showWindow(request.settings, request.key);
}
