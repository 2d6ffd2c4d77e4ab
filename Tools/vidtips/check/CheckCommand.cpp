#include "CheckCommand.h"

#include "AccessCheck.h"
#include "CatalogueCheck.h"
#include "ContentCheck.h"
#include "FileCheck.h"
#include "KeyDataCheck.h"
#include "QmlCheck.h"
#include "UserInterfaceCheck.h"
#include "clips/ClipCheck.h"
#include "findings/Finding.h"
#include "findings/FindingReport.h"
#include "restriction/RestrictionCheck.h"
#include "shared/Console.h"
#include "shared/Content.h"
#include "shared/Locales.h"
#include "stage/PackageWatcher.h"
#include "stage/PreviewSettings.h"
#include "strings/TranslationCheck.h"
#include "trial/TrialWorkers.h"
#include "vocabulary/ReadingCheck.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QEventLoop>
#include <QtCore/QFileInfo>

#include <csignal>
#include <cstdlib>

namespace {

constexpr double largestBudget = 1024.0 * 1024.0; // megabytes
const char defaultBudget[] = "256";
const char defaultLongest[] = "30";

struct Request
{
    QStringList folders;
    bool isRun = false;
    bool isJson = false;
    bool isRestricted = false;
    qint64 budget = 0;
    double longest = 0.0;
    QStringList keyData;
    QString sourceLocale;
};

// Returns what is wrong with the options; empty where nothing is.
QString readRequest(const QCommandLineParser &arguments, Request &request)
{
    request.folders = arguments.positionalArguments();
    request.isRun = arguments.isSet("run");
    request.isJson = arguments.isSet("json");
    request.isRestricted = arguments.isSet("restricted");
    if (request.isRestricted && !RestrictionCheck::isSupported())
        return "--restricted needs the library's own QML module";
    bool isNumber = false;
    const double budget = arguments.value("budget").toDouble(&isNumber);
    if (!isNumber || !(budget > 0.0 && budget <= largestBudget))
        return QString("--budget takes a number of megabytes, not \"%1\"").arg(arguments.value("budget"));
    request.budget = qint64(budget * ClipCheck::bytesPerMegabyte);
    request.longest = arguments.value("longest").toDouble(&isNumber);
    if (!isNumber || !(request.longest > 0.0))
        return QString("--longest takes a number of seconds, not \"%1\"").arg(arguments.value("longest"));
    request.sourceLocale = arguments.value("source-locale");
    QString problem = Locales::problemWith(request.sourceLocale);
    if (!problem.isEmpty())
        return problem;
    for (const QString &path : arguments.values("key-data")) {
        if (!QFileInfo(path).isFile() || !QFileInfo(path).isReadable())
            return QString("the key data cannot be read: %1").arg(path);
        request.keyData << QFileInfo(path).canonicalFilePath();
    }
    return {};
}

Content::Progress progressOf(Console &console, const char *what)
{
    return [&console, what](int done, int total) { console.progress(done, total, what); };
}

void checkFiles(const Content &content, const Request &request, Console &console, Findings &findings)
{
    FileCheck files;
    ContentCheck::run(content, files, findings);
    QmlCheck().run(files.qmlFiles(), findings, progressOf(console, "QML files"));
    AccessCheck().run(files.qmlFiles(), findings);
    if (request.isRestricted)
        RestrictionCheck(content).run(request.keyData + content.keyDataFiles(), findings);
    ReadingCheck::run(content, findings);
    UserInterfaceCheck().run(content, request.isRestricted, findings);
    ClipCheck(request.budget, request.longest).run(files.clips(), findings, progressOf(console, "clips"));
    CatalogueCheck(request.sourceLocale).run(content, findings);
    TranslationCheck::run(content, findings);
    KeyDataCheck().run(content, request.keyData, findings);
}

QStringList workerArguments(const Request &request)
{
    QStringList arguments{"check", "--source-locale", request.sourceLocale};
    for (const QString &keyData : request.keyData)
        arguments << "--key-data" << keyData;
    if (request.isRestricted)
        arguments << "--restricted";
    return arguments + QStringList("--") + request.folders;
}

PreviewSettings trialSettings(const Request &request)
{
    PreviewSettings settings;
    settings.keyData = request.keyData.value(0);
    settings.isRestricted = request.isRestricted;
    return settings;
}

// Returns what keeps the tips from being shown; empty for nothing.
QString checkTips(const Content &content, const Request &request, Console &console, Findings &findings)
{
    QString problem;
    TrialWorkers workers(TrialPlan::of(content, request.sourceLocale), workerArguments(request));
    workers.run(progressOf(console, "tips"), problem).addTo(findings);
    return problem;
}

int check(const Content &content, const Request &request, Console &console)
{
    Findings findings;
    checkFiles(content, request, console, findings);
    const QString problem = request.isRun ? checkTips(content, request, console, findings) : QString();
    if (!problem.isEmpty())
        return console.fail(problem);
    const FindingReport report(findings.sorted(), content.packages().size(),
                               int(content.controlFiles().size()));
    if (request.isJson)
        report.writeJson(console);
    else
        report.writeText(console);
    return report.hasFindings() ? ExitFindings : ExitFine;
}

volatile std::sig_atomic_t lastExitCode = ExitFine;

void endWatching(int)
{
    std::_Exit(int(lastExitCode));
}

// Ends by Ctrl+C. What changes during a check is checked after it.
int watch(const Request &request, Console &console)
{
    PackageWatcher watcher(nullptr);
    QEventLoop loop;
    bool isCurrent = false;
    QObject::connect(&watcher, &PackageWatcher::changed, &loop, [&] {
        isCurrent = false;
        loop.quit();
    });
    for (;;) {
        isCurrent = true;
        Content content;
        const QString problem = content.load(request.folders, progressOf(console, "control files"));
        // What cannot be read may come back.
        if (problem.isEmpty())
            watcher.watch(content, request.keyData + content.keyDataFiles());
        const int exitCode = problem.isEmpty() ? check(content, request, console) : console.fail(problem);
        lastExitCode = exitCode;
        lastExitCode = console.finish(exitCode);
        std::signal(SIGINT, &endWatching);
        if (console.isTerminal())
            console.note("Changed files are checked again; Ctrl+C ends.");
        if (isCurrent)
            loop.exec();
    }
}

} // namespace

QStringList CheckCommand::description() const
{
    return {
        "Reads the packages in the folders DIR and reports what would go wrong with them in a host: XML that "
        "is not well-formed, files that are never admitted and why, keys that are there twice or not at all, "
        "missing or damaged user interfaces, pictures, clips and catalogues, QML that does not compile.",
        "A DIR is a data path that holds packages, a folder of data paths, or a package. Name all data paths "
        "of a host together, because packages refer to each other.",
        "With --run, shows every tip once without a display as well, and reports what is wrong with what is "
        "seen. Several processes do that at once. With --watch, checks again whenever a file changes; Ctrl+C "
        "then ends with the exit code of the last check.",
        "Each finding has a code; \"vidtips explain CODE\" says more. Errors and warnings give the exit code "
        "1, notes do not. On a terminal, findings are grouped by file; elsewhere each is a line "
        "\"file:line:column: severity: message [code]\"."};
}

QList<Command::Example> CheckCommand::examples() const
{
    return {{"Content/Base Content/Extra", "Check the two data paths of a host."},
            {"--budget 64 --longest 10 Tools.vidtips", "Be strict about the clips of one package."},
            {"--run --watch Content", "Show every tip, and again whenever a file is saved."},
            {"--restricted Stranger.vidtips", "See whether a package keeps to itself."},
            {"--json Content > findings.json", "Let another program read the findings."}};
}

QList<QCommandLineOption> CheckCommand::options() const
{
    // For the processes that show tips.
    QCommandLineOption slice("slice", "Show a slice of the tips.", "SLICE");
    slice.setFlags(QCommandLineOption::HiddenFromHelp);
    return {
        slice,
        {"run",
         "Show every tip once as well, in each of its locales, by the full and the simple user interface, "
         "in light and dark colours, and report what is wrong with what is seen: texts that are cut, "
         "characters that no font here has, colours that are hard to read, small buttons."},
        {"watch", "Check again whenever a file changes, until Ctrl+C."},
        {"restricted",
         "Report as well what hosts refuse that do not trust packages, by the setting RestrictContent: what "
         "files name in so many words, and what tips ask for when they are shown."},
        {"json",
         "Write one JSON object: version, packages, controlFiles, counts and the array findings of code, "
         "severity, file, line, column, message."},
        {"budget",
         QString("Report clips that take more than MB megabytes when decoded, which is width x height x "
                 "4 x frames. The default is %1.")
             .arg(defaultBudget),
         "MB", defaultBudget},
        {"longest",
         QString("Report clips that last longer than SECONDS. The default is %1.").arg(defaultLongest),
         "SECONDS", defaultLongest},
        {"key-data",
         "Check FILE as the host's key data. Key data in the folders DIR is found without this option.",
         "FILE"},
        {"source-locale",
         "The locale that texts for every locale are written in, which needs no catalogue. The default "
         "is en_US.",
         "LOCALE", "en_US"}};
}

int CheckCommand::run(const QCommandLineParser &arguments, Console &console)
{
    if (arguments.positionalArguments().isEmpty())
        return console.fail("check needs a folder; see \"vidtips check --help\"");
    Request request;
    QString problem = readRequest(arguments, request);
    const QString slice = arguments.value("slice");
    Content content;
    if (problem.isEmpty())
        problem = content.load(request.folders,
                               slice.isEmpty() ? progressOf(console, "control files") : Content::Progress());
    if (!problem.isEmpty())
        return console.fail(problem);
    if (!slice.isEmpty())
        return TrialWorkers::work(content, TrialPlan::of(content, request.sourceLocale),
                                  trialSettings(request), slice);
    return arguments.isSet("watch") ? watch(request, console) : check(content, request, console);
}
