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
#include "shared/Console.h"
#include "shared/Content.h"
#include "shared/Locales.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>

namespace {

constexpr double largestBudget = 1024.0 * 1024.0; // megabytes
const char defaultBudget[] = "256";
const char defaultLongest[] = "30";

struct Limits
{
    qint64 budget = 0;
    double longest = 0.0;
    QStringList keyData;
    QString sourceLocale;
};

// Returns what is wrong with the options; empty where nothing is.
QString readLimits(const QCommandLineParser &arguments, Limits &limits)
{
    bool isNumber = false;
    const double budget = arguments.value("budget").toDouble(&isNumber);
    if (!isNumber || !(budget > 0.0 && budget <= largestBudget))
        return QString("--budget takes a number of megabytes, not \"%1\"").arg(arguments.value("budget"));
    limits.budget = qint64(budget * ClipCheck::bytesPerMegabyte);
    limits.longest = arguments.value("longest").toDouble(&isNumber);
    if (!isNumber || !(limits.longest > 0.0))
        return QString("--longest takes a number of seconds, not \"%1\"").arg(arguments.value("longest"));
    limits.sourceLocale = arguments.value("source-locale");
    QString problem = Locales::problemWith(limits.sourceLocale);
    if (!problem.isEmpty())
        return problem;
    for (const QString &path : arguments.values("key-data")) {
        if (!QFileInfo(path).isFile() || !QFileInfo(path).isReadable())
            return QString("the key data cannot be read: %1").arg(path);
        limits.keyData << QFileInfo(path).canonicalFilePath();
    }
    return {};
}

void checkAll(const Content &content, const Limits &limits, Console &console, Findings &findings)
{
    const auto progressOf = [&console](const char *what) {
        return [&console, what](int done, int total) { console.progress(done, total, what); };
    };
    FileCheck files;
    ContentCheck::run(content, files, findings);
    QmlCheck().run(files.qmlFiles(), findings, progressOf("QML files"));
    AccessCheck().run(files.qmlFiles(), findings);
    UserInterfaceCheck().run(content, findings);
    ClipCheck(limits.budget, limits.longest).run(files.clips(), findings, progressOf("clips"));
    CatalogueCheck(limits.sourceLocale).run(content, findings);
    KeyDataCheck().run(content, limits.keyData, findings);
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
        "Each finding has a code; \"vidtips explain CODE\" says more. Errors and warnings give the exit code "
        "1, notes do not. On a terminal, findings are grouped by file; elsewhere each is a line "
        "\"file:line:column: severity: message [code]\"."};
}

QList<Command::Example> CheckCommand::examples() const
{
    return {{"Content/Base Content/Extra", "Check the two data paths of a host."},
            {"--budget 64 --longest 10 Tools.vidtips", "Be strict about the clips of one package."},
            {"--json Content > findings.json", "Let another program read the findings."}};
}

QList<QCommandLineOption> CheckCommand::options() const
{
    return {{"json",
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
    Limits limits;
    QString problem = readLimits(arguments, limits);
    Content content;
    if (problem.isEmpty())
        problem = content.load(arguments.positionalArguments(), [&console](int done, int total) {
            console.progress(done, total, "control files");
        });
    if (!problem.isEmpty())
        return console.fail(problem);
    Findings findings;
    checkAll(content, limits, console, findings);
    const FindingReport report(findings.sorted(), content.packages().size(),
                               int(content.controlFiles().size()));
    if (arguments.isSet("json"))
        report.writeJson(console);
    else
        report.writeText(console);
    return report.hasFindings() ? ExitFindings : ExitFine;
}
