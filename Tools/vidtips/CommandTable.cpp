#include "CommandTable.h"

#include "attach/AttachCommand.h"
#include "check/CheckCommand.h"
#include "clip/ClipCommand.h"
#include "findings/ExplainCommand.h"
#include "harvest/HarvestCommand.h"
#include "package/KeysCommand.h"
#include "package/NewCommand.h"
#include "preview/PreviewCommand.h"
#include "shared/Command.h"
#include "shared/Console.h"
#include "shared/Nearest.h"
#include "strings/StringsCommand.h"
#include "vocabulary/SchemaCommand.h"

namespace {

QString heading(const Console &console, const QString &text)
{
    return console.in(Console::Bold, text) + '\n';
}

QString optionLine(const QCommandLineOption &option)
{
    QStringList names;
    for (const QString &name : option.names())
        names << (name.size() == 1 ? "-" : "--") + name;
    return names.join(", ") + (option.valueName().isEmpty() ? QString() : ' ' + option.valueName());
}

QString exitCodes(const Console &console)
{
    return heading(console, "EXIT STATUS")
        + "    0  fine\n    1  there are findings\n    2  wrong use or input that cannot be read\n";
}

} // namespace

CommandTable::CommandTable()
{
    m_commands.push_back(std::make_unique<CheckCommand>());
    m_commands.push_back(std::make_unique<ExplainCommand>());
    m_commands.push_back(std::make_unique<KeysCommand>());
    m_commands.push_back(std::make_unique<PreviewCommand>());
    m_commands.push_back(std::make_unique<StringsCommand>());
    m_commands.push_back(std::make_unique<SchemaCommand>());
    m_commands.push_back(std::make_unique<NewCommand>());
    m_commands.push_back(std::make_unique<ClipCommand>());
    m_commands.push_back(std::make_unique<AttachCommand>());
    m_commands.push_back(std::make_unique<HarvestCommand>());
}

CommandTable::~CommandTable() = default;

Command *CommandTable::find(const QString &name) const
{
    for (const auto &command : m_commands) {
        if (command->name() == name)
            return command.get();
    }
    return nullptr;
}

QString CommandTable::nearest(const QString &name) const
{
    QStringList names;
    for (const auto &command : m_commands)
        names << command->name();
    return Nearest::to(name, names);
}

QString CommandTable::overview(const Console &console) const
{
    QString text = heading(console, "NAME") + "    vidtips - make and check the content of rich tooltips\n\n"
        + heading(console, "SYNOPSIS") + "    vidtips COMMAND [OPTION...] [ARGUMENT...]\n\n"
        + heading(console, "COMMANDS");
    for (const auto &command : m_commands)
        text += QString("    %1  %2\n").arg(command->name(), -8).arg(command->summary());
    text += "\n    \"vidtips COMMAND --help\" says more about each.\n\n" + heading(console, "OPTIONS")
        + "    -h, --help     this text, or that of a command\n    -v, --version  the version\n\n";
    return text + exitCodes(console);
}

QString CommandTable::manual(const Command &command, const Console &console)
{
    const int width = console.textWidth();
    QString text = heading(console, "NAME") + "    vidtips " + command.name() + " - " + command.summary()
        + "\n\n" + heading(console, "SYNOPSIS") + "    vidtips " + command.name() + " [OPTION...] "
        + command.arguments() + "\n\n" + heading(console, "DESCRIPTION");
    for (const QString &paragraph : command.description())
        text += Console::wrapped(paragraph, 4, width) + "\n\n";
    text += heading(console, "OPTIONS");
    QList<QCommandLineOption> options = command.options();
    options << QCommandLineOption({"h", "help"}, "Show this text.");
    for (const QCommandLineOption &option : qAsConst(options)) {
        if (option.flags().testFlag(QCommandLineOption::HiddenFromHelp))
            continue;
        text += "    " + optionLine(option) + '\n' + Console::wrapped(option.description(), 8, width) + '\n';
    }
    text += '\n' + exitCodes(console) + '\n' + heading(console, "EXAMPLES");
    for (const Command::Example &example : command.examples())
        text += Console::wrapped(example.second, 4, width) + "\n        "
            + console.in(Console::Cyan, QString("vidtips %1 %2").arg(command.name(), example.first).trimmed())
            + '\n';
    return text;
}
