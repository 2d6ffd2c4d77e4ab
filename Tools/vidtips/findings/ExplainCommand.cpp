#include "ExplainCommand.h"

#include "FindingCatalogue.h"
#include "FindingReport.h"
#include "shared/Console.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace {

void writeRow(const FindingKind &kind, Console &console)
{
    console.writeLine(QString("%1  %2  %3")
                          .arg(console.in(Console::Bold, kind.code),
                               FindingReport::column(kind.severity, console), kind.title));
}

void writeWhole(const FindingKind &kind, Console &console)
{
    const int width = console.textWidth();
    writeRow(kind, console);
    console.writeLine("\n" + console.in(Console::Bold, "WHY IT MATTERS"));
    console.writeLine(Console::wrapped(kind.why, 4, width));
    console.writeLine("\n" + console.in(Console::Bold, "HOW TO MEND IT"));
    console.writeLine(Console::wrapped(kind.mend, 4, width));
    console.writeLine("\n" + console.in(Console::Bold, "EXAMPLE"));
    for (const QString &line : kind.example)
        console.writeLine(console.in(Console::Cyan, line));
}

QJsonObject asJson(const FindingKind &kind)
{
    return {{"code", kind.code},   {"severity", FindingCatalogue::severityName(kind.severity)},
            {"title", kind.title}, {"why", kind.why},
            {"mend", kind.mend},   {"example", kind.example.join('\n')}};
}

} // namespace

QStringList ExplainCommand::description() const
{
    return {"Says what the findings with the codes CODE are, why they matter and how to mend them, with an "
            "example. Without a CODE, lists all of them."};
}

QList<Command::Example> ExplainCommand::examples() const
{
    return {{"VT303", "Say what a finding of that code means."}, {"", "List every code."}};
}

QList<QCommandLineOption> ExplainCommand::options() const
{
    return {{"json", "Write a JSON array of code, severity, title, why, mend and example."}};
}

int ExplainCommand::run(const QCommandLineParser &arguments, Console &console)
{
    const FindingCatalogue &catalogue = FindingCatalogue::instance();
    const QStringList asked = arguments.positionalArguments();
    QJsonArray list;
    for (const QString &code : asked.isEmpty() ? catalogue.codes() : asked) {
        const FindingKind *const kind = catalogue.find(code);
        if (!kind)
            return console.fail(QString("there is no code \"%1\"; \"vidtips explain\" lists all").arg(code));
        if (arguments.isSet("json")) {
            list.append(asJson(*kind));
        } else if (asked.isEmpty()) {
            writeRow(*kind, console);
        } else {
            if (code != asked.constFirst())
                console.writeLine();
            writeWhole(*kind, console);
        }
    }
    if (arguments.isSet("json"))
        console.write(QString::fromUtf8(QJsonDocument(list).toJson()));
    return ExitFine;
}
