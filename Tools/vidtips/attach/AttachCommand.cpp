#include "AttachCommand.h"

#include "ProgramKind.h"
#include "ProgramRun.h"
#include "shared/Console.h"
#include "shared/Content.h"
#include "shared/Locales.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QCoreApplication>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QStandardPaths>

#include <algorithm>

namespace {

// Where packages lie that are installed, or that a user has put there.
QStringList installedContent()
{
    QStringList folders = QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, "vidtips/Content",
                                                    QStandardPaths::LocateDirectory);
    const QDir own(QCoreApplication::applicationDirPath() + "/../share/vidtips/Content");
    if (own.exists())
        folders << own.canonicalPath();
    folders.removeDuplicates();
    return folders;
}

// A package is looked for in the folder that holds it.
QString dataPathOf(const QString &folder)
{
    const QFileInfo info(QFileInfo(folder).canonicalFilePath());
    return info.suffix() == "vidtips" ? info.path() : info.filePath();
}

bool hasTips(const Content &content)
{
    const std::vector<ControlFile> &files = content.controlFiles();
    const auto hasEntries = [](const ControlFile &file) {
        return file.isAdmitted && !file.entries().empty();
    };
    return std::any_of(files.begin(), files.end(), hasEntries);
}

QString readDataPaths(const QCommandLineParser &arguments, AttachSettings &settings)
{
    const QStringList own = arguments.values("data-path");
    QStringList folders = own + installedContent();
    if (folders.isEmpty() && settings.isTraced)
        return {};
    Content content;
    QString problem = folders.isEmpty() ? QString() : content.load(folders);
    if (!problem.isEmpty())
        return problem;
    for (const QString &folder : own) {
        if (content.emptyFolders().contains(QFileInfo(folder).canonicalFilePath()))
            return QString("there are no packages in %1").arg(folder);
    }
    if (!hasTips(content) && !settings.isTraced)
        return "there are no packages with tips; name their folder by --data-path";
    for (const QString &folder : qAsConst(folders))
        settings.dataPaths << dataPathOf(folder);
    settings.dataPaths.removeDuplicates();
    return {};
}

QString readSettings(const QCommandLineParser &arguments, AttachSettings &settings)
{
    settings.isTraced = arguments.isSet("trace");
    settings.locale = arguments.value("locale");
    QString problem = settings.locale.isEmpty() ? QString() : Locales::problemWith(settings.locale);
    return problem.isEmpty() ? readDataPaths(arguments, settings) : problem;
}

} // namespace

QStringList AttachCommand::description() const
{
    return {
        "Starts COMMAND, a program with windows of Qt 5, and shows tips in it, without the program having "
        "been made for that: for each command whose key has content in the packages. Everything else "
        "keeps its own tool tips. The shortcuts shown are the program's current ones.",
        "Packages are taken from the folders given, then from vidtips/Content in the folders for data of "
        "the user and the system. The key of a command is the name of its action or widget; without "
        "one, the name of its icon in icon themes, that of a standard button such as "
        "\"QDialogButtonBox.Ok\", or its text. --trace tells them.",
        "Input, output, signals and exit status are the program's own. A program that is linked "
        "statically, uses another version of Qt or runs in a sandbox cannot be had."};
}

QList<Command::Example> AttachCommand::examples() const
{
    return {{"--data-path Content librecad", "Start LibreCAD with the tips of the packages in Content."},
            {"--trace librecad", "Print key, class and text of each command that the pointer rests on."}};
}

QList<QCommandLineOption> AttachCommand::options() const
{
    return {{"data-path", "Take packages from FOLDER; may be given several times.", "FOLDER"},
            {"locale", "Show tips for LOCALE. The default is the language that the program uses.", "LOCALE"},
            {"trace",
             "For each object that the pointer rests on, print a line to the error stream: key, class, "
             "text, and \"tip\" where there is one; separated by tabs, \"-\" for no key."}};
}

int AttachCommand::run(const QCommandLineParser &arguments, Console &console)
{
    const QStringList command = arguments.positionalArguments();
    if (command.isEmpty())
        return console.fail("attach needs a command; see \"vidtips attach --help\"");
    AttachSettings settings;
    const QString path = ProgramKind::find(command.constFirst());
    QString problem = ProgramKind::problemWith(command.constFirst(), path);
    if (problem.isEmpty())
        problem = readSettings(arguments, settings);
    ProgramRun run;
    if (problem.isEmpty())
        problem = run.start(path, command.mid(1), settings);
    if (!problem.isEmpty())
        return console.fail(problem);
    run.wait();
    if (run.reports().isEmpty())
        console.note("vidtips: " + ProgramRun::untaken(command.constFirst()));
    return run.result();
}
