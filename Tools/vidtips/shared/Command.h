#pragma once

#include <QtCore/QCommandLineOption>
#include <QtCore/QList>
#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QStringList>

class Console;

QT_BEGIN_NAMESPACE
class QCommandLineParser;
QT_END_NAMESPACE

/** One command of the tool: what its help says, which options it takes and what it does. */
class Command
{
public:
    /** Whether the command uses windows or QML, and then whether anybody is to see them. */
    enum Display {
        NoDisplay, ///< Texts and files only.
        Offscreen, ///< QML and pictures, without a display.
        OnScreen, ///< Windows for the user.
    };

    /** An example for the help: the arguments, and what they do. */
    using Example = QPair<QString, QString>;

    virtual ~Command() = default;

    virtual QString name() const = 0;

    /** The positional arguments, as the synopsis shows them. */
    virtual QString arguments() const = 0;

    /** One line for the list of commands, without a full stop. */
    virtual QString summary() const = 0;

    /** The paragraphs of the help. */
    virtual QStringList description() const = 0;
    virtual QList<Example> examples() const = 0;
    virtual QList<QCommandLineOption> options() const = 0;

    /** Tells whether the arguments name another program, to which all options after its name belong. */
    virtual bool startsProgram() const { return false; }

    /** Returns what the run with these arguments needs. */
    virtual Display display(const QCommandLineParser &) const { return NoDisplay; }

    /** Sets what must be set before the application object exists, such as the scale of the display. */
    virtual void prepare(const QCommandLineParser &) const { }

    /** Does the work; returns an ExitCode. The output is written by the caller. */
    virtual int run(const QCommandLineParser &arguments, Console &console) = 0;
};
