#include "CommandTable.h"
#include "shared/Command.h"
#include "shared/Console.h"
#include "shared/Diagnostics.h"

#include <Vidtips/VTVersion.h>

#include <QtCore/QCommandLineParser>
#include <QtWidgets/QApplication>

namespace {

QStringList argumentList(int argc, char *argv[])
{
    QStringList list;
    for (int i = 0; i < argc; ++i)
        list << QString::fromLocal8Bit(argv[i]);
    return list;
}

bool hasScreen()
{
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")
        || !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

int runOnDisplay(Command &command, const QCommandLineParser &parser, Console &console, int argc, char *argv[])
{
    const Command::Display display = command.display(parser);
    if (display == Command::OnScreen && !hasScreen())
        return console.fail("there is no display to show a window on");
    if (display == Command::Offscreen)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    command.prepare(parser);
    std::unique_ptr<QCoreApplication> application;
    // The application takes no part in reading the arguments.
    argc = 1;
    if (display == Command::NoDisplay)
        application = std::make_unique<QCoreApplication>(argc, argv);
    else
        application = std::make_unique<QApplication>(argc, argv);
    return console.finish(command.run(parser, console));
}

int runCommand(Command &command, const QStringList &arguments, Console &console, int argc, char *argv[])
{
    QCommandLineParser parser;
    parser.addOptions(command.options());
    parser.addOption(QCommandLineOption(QStringList{"h", "help"}));
    if (command.startsProgram())
        parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    if (!parser.parse(arguments)) {
        QString problem = parser.errorText();
        if (problem.endsWith('.'))
            problem.chop(1);
        return console.fail(QString("%1; see \"vidtips %2 --help\"").arg(problem, command.name()));
    }
    if (parser.isSet("help")) {
        console.write(CommandTable::manual(command, console));
        return console.finish(ExitFine);
    }
    return runOnDisplay(command, parser, console, argc, argv);
}

int unknownCommand(const CommandTable &table, const QString &name, Console &console)
{
    const QString nearest = table.nearest(name);
    const QString hint = nearest.isEmpty() ? "see \"vidtips --help\"" : "did you mean \"" + nearest + "\"?";
    return console.fail(QString("there is no command \"%1\"; %2").arg(name, hint));
}

} // namespace

int main(int argc, char *argv[])
{
    Console console;
    Diagnostics::capture();
    const CommandTable table;
    QStringList arguments = argumentList(argc, argv);
    // "help COMMAND" is another way to write "COMMAND --help".
    if (arguments.value(1) == "help" && arguments.size() > 2)
        arguments = QStringList{arguments.at(0), arguments.at(2), "--help"};
    const QString name = arguments.value(1);
    if (name.isEmpty())
        return console.fail("a command is missing; see \"vidtips --help\"");
    if (QStringList({"-h", "--help", "help"}).contains(name)) {
        console.write(table.overview(console));
        return console.finish(ExitFine);
    }
    if (QStringList({"-v", "--version"}).contains(name)) {
        console.writeLine("vidtips " VIDTIPS_VERSION);
        return console.finish(ExitFine);
    }
    Command *const command = table.find(name);
    if (!command)
        return unknownCommand(table, name, console);
    arguments.removeAt(1);
    return runCommand(*command, arguments, console, argc, argv);
}
