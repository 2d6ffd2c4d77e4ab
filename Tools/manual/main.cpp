// Writes the manual page of the command-line tool, out of what the tool says about itself.

#include "CommandTable.h"
#include "shared/Command.h"

#include <cstdio>

namespace {

// Text as roff takes it: no hyphens for minus signs, and no line that is taken for a request.
QString plain(QString text)
{
    text.replace('\\', "\\e").replace('-', "\\-");
    return text.startsWith('.') || text.startsWith('\'') ? "\\&" + text : text;
}

QString bold(const QString &text)
{
    return "\\fB" + plain(text) + "\\fR";
}

QString optionPage(const QCommandLineOption &option)
{
    QStringList names;
    for (const QString &name : option.names())
        names << bold((name.size() == 1 ? "-" : "--") + name);
    const QString value =
        option.valueName().isEmpty() ? QString() : " \\fI" + plain(option.valueName()) + "\\fR";
    return ".TP\n" + names.join(", ") + value + '\n' + plain(option.description()) + '\n';
}

QString commandPage(const Command &command)
{
    QString page = QString(".SH %1\n").arg(command.name().toUpper()) + bold("vidtips " + command.name())
        + " [\\fIOPTION\\fR...] " + plain(command.arguments()) + '\n';
    for (const QString &paragraph : command.description())
        page += ".PP\n" + plain(paragraph) + '\n';
    for (const QCommandLineOption &option : command.options())
        page += optionPage(option);
    for (const Command::Example &example : command.examples())
        page += ".PP\n" + plain(example.second) + "\n.RS\n.EX\n"
            + plain(QString("vidtips %1 %2").arg(command.name(), example.first).trimmed()) + "\n.EE\n.RE\n";
    return page;
}

QString manualPage(const CommandTable &table)
{
    QString page = ".TH VIDTIPS 1 \"\" \"Vidtips\"\n.SH NAME\nvidtips \\- make and check the content of rich "
                   "tooltips\n.SH SYNOPSIS\n.B vidtips\n\\fICOMMAND\\fR [\\fIOPTION\\fR...] "
                   "[\\fIARGUMENT\\fR...]\n.SH COMMANDS\n";
    for (const auto &command : table.commands())
        page += ".TP\n" + bold(command->name()) + '\n' + plain(command->summary()) + '\n';
    for (const auto &command : table.commands())
        page += commandPage(*command);
    return page
        + ".SH EXIT STATUS\n.TP\n.B 0\nfine\n.TP\n.B 1\nthere are findings\n.TP\n.B 2\nwrong use or input "
          "that cannot be read\n.SH ENVIRONMENT\n.TP\n.B NO_COLOR\nset to anything, keeps colours out of the "
          "terminal\n";
}

} // namespace

int main()
{
    const QByteArray page = manualPage(CommandTable()).toUtf8();
    const bool isWritten =
        std::fwrite(page.constData(), 1, size_t(page.size()), stdout) == size_t(page.size());
    return isWritten && std::fflush(stdout) == 0 ? 0 : 1;
}
