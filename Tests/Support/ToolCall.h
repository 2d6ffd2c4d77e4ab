#pragma once

#include "CommandTable.h"
#include "shared/Command.h"
#include "shared/Console.h"
#include "shared/Diagnostics.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QDir>
#include <QtCore/QStringList>

#include <cstdio>

/**
 * One call of a command of the tool within the test, which takes a fraction of the time of a ToolRun. The
 * test has the application, and is linked with the tool.
 */
class ToolCall
{
public:
    /** Calls the tool with @p arguments, the command first, in the folder @p folder. */
    ToolCall(const QStringList &arguments, const QString &folder)
    {
        const QString before = QDir::currentPath();
        std::FILE *const outputFile = std::tmpfile();
        std::FILE *const errorFile = std::tmpfile();
        const CommandTable table;
        Command *const command = table.find(arguments.constFirst());
        if (command && outputFile && errorFile && QDir::setCurrent(folder)) {
            Console console(outputFile, errorFile);
            exitCode = console.finish(call(*command, arguments, console));
            output = written(outputFile);
            errors = written(errorFile);
        }
        QDir::setCurrent(before);
        for (std::FILE *file : {outputFile, errorFile}) {
            if (file)
                std::fclose(file);
        }
    }

    int exitCode = -1;
    QString output;
    QString errors;

private:
    static int call(Command &command, const QStringList &arguments, Console &console)
    {
        QCommandLineParser parser;
        parser.addOptions(command.options());
        if (!parser.parse(arguments))
            return console.fail(parser.errorText());
        Diagnostics::capture();
        Diagnostics::take();
        command.prepare(parser);
        return command.run(parser, console);
    }

    static QString written(std::FILE *file)
    {
        std::rewind(file);
        QByteArray text;
        char buffer[4096];
        while (const std::size_t size = std::fread(buffer, 1, sizeof buffer, file))
            text.append(buffer, int(size));
        return QString::fromUtf8(text);
    }
};
