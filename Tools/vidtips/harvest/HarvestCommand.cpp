#include "HarvestCommand.h"

#include "HarvestRun.h"
#include "HarvestedPackage.h"
#include "attach/ProgramKind.h"
#include "package/PackageSkeleton.h"
#include "shared/Console.h"
#include "shared/Locales.h"
#include "shared/Places.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <functional>

namespace {

constexpr int longestWait = 3600; // seconds

struct Request
{
    QStringList command;
    QString program;
    QString folder;
    QString name;
    QString locale;
    QString shared;
    int wait = 0; ///< Seconds.
};

QString nameOf(const QCommandLineParser &arguments, const QString &program)
{
    const QString given = arguments.value("name");
    return given.isEmpty() ? QFileInfo(program).completeBaseName() : given;
}

QString readRequest(const QCommandLineParser &arguments, Request &request)
{
    request.command = arguments.positionalArguments();
    if (request.command.isEmpty() || !arguments.isSet("into"))
        return "harvest needs --into FOLDER and a command; see \"vidtips harvest --help\"";
    request.program = ProgramKind::find(request.command.constFirst());
    QString problem = ProgramKind::problemWith(request.command.constFirst(), request.program);
    request.folder = arguments.value("into");
    request.name = nameOf(arguments, request.program);
    request.locale = arguments.value("locale");
    request.shared = arguments.value("search");
    bool isNumber = false;
    request.wait = arguments.value("wait").toInt(&isNumber);
    if (problem.isEmpty() && (!isNumber || request.wait < 1 || request.wait > longestWait))
        problem = QString("--wait takes seconds, not \"%1\"").arg(arguments.value("wait"));
    if (problem.isEmpty() && !QFileInfo(request.folder).isDir())
        problem = QString("no such folder: %1").arg(request.folder);
    if (problem.isEmpty())
        problem = Locales::problemWith(request.locale);
    return problem.isEmpty() ? PackageSkeleton::problemWith(request.name) : problem;
}

bool hasUsableKeys(const QVector<HarvestedCommand> &commands)
{
    const auto isUsable = [](const HarvestedCommand &command) { return command.hasUsableKey; };
    return std::any_of(commands.begin(), commands.end(), isUsable);
}

QString counted(int count, const QString &what)
{
    return QString("%1 %2").arg(count).arg(what);
}

void writeSummary(const HarvestedPackage &package, Console &console)
{
    console.writeLine(
        console.in(Console::Bold, Places::shown(QFileInfo(package.path()).canonicalFilePath())) + ": "
        + QStringList{counted(package.added().size(), "new"), counted(package.kept(), "kept"),
                      counted(package.changes().size(), "changed"), counted(package.gone().size(), "gone")}
              .join(", "));
    for (const HarvestedPackage::Change &change : package.changes())
        console.writeLine(QString("changed  %1: %2 \"%3\" -> \"%4\"")
                              .arg(change.key, change.what, change.before, change.now));
    for (const QString &key : package.gone())
        console.writeLine("gone     " + key);
}

QString unnamed(const HarvestedCommand &command)
{
    if (command.hasUsableKey || !command.keyProblem.isEmpty() || command.title.isEmpty())
        return {};
    return QString("  %1: %2 \"%3\", for example \"%4\"")
        .arg(command.group, command.className, command.title, command.suggestedName());
}

QString unwritable(const HarvestedCommand &command)
{
    if (command.keyProblem.isEmpty())
        return {};
    return QString("  %1: %2 \"%3\", whose name \"%4\" %5")
        .arg(command.group, command.className, command.title, command.shownKey(), command.keyProblem);
}

void writeLeftOut(const QString &heading, const QVector<HarvestedCommand> &commands,
                  const std::function<QString(const HarvestedCommand &)> &lineOf, Console &console)
{
    QStringList lines;
    for (const HarvestedCommand &command : commands)
        lines << lineOf(command);
    lines.removeAll(QString());
    if (!lines.isEmpty())
        console.writeLine('\n' + heading + '\n' + lines.join('\n'));
}

void writeAllLeftOut(const QVector<HarvestedCommand> &commands, const HarvestedPackage &package,
                     Console &console)
{
    writeLeftOut("These commands have no names, so there are no tips for them. In the program's source, "
                 "setObjectName() gives a name:",
                 commands, unnamed, console);
    const auto silent = [&package](const HarvestedCommand &command) {
        if (!command.hasUsableKey || !command.isSilent() || package.hasTip(command.key))
            return QString();
        return QString("  %1: %2, key \"%3\"").arg(command.group, command.className, command.key);
    };
    writeLeftOut(
        "Of these commands the program says nothing, so there are no tips for them until you write some:",
        commands, silent, console);
    writeLeftOut("The names of these commands cannot be keys, so there are no tips for them:", commands,
                 unwritable, console);
}

} // namespace

QStringList HarvestCommand::description() const
{
    return {
        "Starts COMMAND, a program with windows of Qt 5, waits until its windows are up, lists the commands "
        "of its menus, tool bars and windows, ends it, and writes the package NAME.vidtips: for each command "
        "a tip with key, title, summary and icon, in control files by menu or tool bar; shortcuts go to the "
        "key data NAME.keys.xml beside the package. Commands without names, and those of which the program "
        "says nothing, are listed. The program is used as it is: dialogs that it opens first have to be "
        "answered.",
        "Where the package is there already, it is brought up to date: new commands are added, and nothing "
        "that is there is changed. Comments tell of commands that are gone and of texts that are not what "
        "they were. Tips that were taken out of the package stay out of it; what the program said last is in "
        "the package's harvest.json."};
}

QList<Command::Example> HarvestCommand::examples() const
{
    return {{"--into tips librecad", "Make tips/librecad.vidtips."},
            {"--into tips --name LibreCAD --locale de_DE librecad",
             "Harvest German texts, with the program in German."}};
}

QList<QCommandLineOption> HarvestCommand::options() const
{
    return {
        {"into", "Make the package in FOLDER.", "FOLDER"},
        {"name", "Name the package NAME. The default is the program's name.", "NAME"},
        {"locale", "Make tips for LOCALE. The default is en_US.", "LOCALE", "en_US"},
        {"search", "Use the user interface of the package SHARED instead of one of its own.", "SHARED"},
        {"texts",
         "Make tips also for commands that have only a text, with that as their key. They are found as long "
         "as "
         "the program says these words, so in one language only."},
        {"wait",
         "Wait SECONDS for a window with menus or tool bars; then take what windows there are. The default "
         "is 30.",
         "SECONDS", "30"}};
}

int HarvestCommand::run(const QCommandLineParser &arguments, Console &console)
{
    Request request;
    QString problem = readRequest(arguments, request);
    QVector<HarvestedCommand> commands;
    HarvestRun run;
    if (problem.isEmpty())
        problem = run.harvest(request.program, request.command, request.wait, console);
    if (problem.isEmpty())
        problem = HarvestedCommand::read(run.folder(), arguments.isSet("texts"), commands);
    if (problem.isEmpty() && !hasUsableKeys(commands))
        problem = "no command of the program has a name; --texts takes their texts instead";
    HarvestedPackage package(request.folder, request.name, request.locale);
    package.setShared(request.shared);
    if (problem.isEmpty())
        problem = package.update(commands);
    if (!problem.isEmpty())
        return console.fail(problem);
    writeSummary(package, console);
    writeAllLeftOut(commands, package, console);
    return ExitFine;
}
