#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

#include <memory>
#include <vector>

class Command;
class Console;

/** The commands of the tool, and the help that is made from them. */
class CommandTable
{
public:
    CommandTable();
    ~CommandTable();

    const std::vector<std::unique_ptr<Command>> &commands() const { return m_commands; }

    /** Returns the command @p name, or null. */
    Command *find(const QString &name) const;

    /** Returns the name that is nearest to @p name, for an error; empty where none is near. */
    QString nearest(const QString &name) const;

    /** The help of the tool: its commands and what its exit codes mean. */
    QString overview(const Console &console) const;

    /** The help of one command, in the order of a manual page. */
    static QString manual(const Command &command, const Console &console);

private:
    std::vector<std::unique_ptr<Command>> m_commands;
};
