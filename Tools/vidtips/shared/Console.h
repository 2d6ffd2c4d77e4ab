#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QElapsedTimer>
#include <QtCore/QString>

#include <cstdio>

/** What a command ends with. */
enum ExitCode {
    ExitFine = 0, ///< Nothing to report.
    ExitFindings = 1, ///< The command worked and found something wrong with the content.
    ExitBadInput = 2, ///< The command line or its input cannot be used, or the result cannot be written.
};

/**
 * The terminal, or the pipes, that the tool talks to.
 *
 * Output is kept until finish(), so that a command which fails midway writes nothing but its error.
 */
class Console
{
public:
    enum Colour { Plain, Bold, Dim, Red, Yellow, Cyan };

    /** Writes to these streams, which must outlive it. */
    explicit Console(std::FILE *output = stdout, std::FILE *errors = stderr);

    /** Colours are used on a terminal unless the variable NO_COLOR is set to anything. */
    bool usesColours() const { return m_colours; }

    /** Tells whether a person reads the output, who likes it grouped and aligned. */
    bool isTerminal() const { return m_outputIsTerminal; }

    /** The columns of the terminal; 80 where there is none. */
    int width() const;

    /** The columns that running text takes, which is harder to read the wider it is. */
    int textWidth() const;

    /** Returns @p text in @p colour where colours are used. */
    QString in(Colour colour, const QString &text) const;

    /** Adds @p text to the output. */
    void write(const QString &text);
    void writeLine(const QString &text = QString());

    /** Writes the output; returns @p exitCode, or ExitBadInput where the output cannot be written. */
    int finish(int exitCode);

    /** Writes "vidtips: @p problem" to the error stream, drops the output and returns ExitBadInput. */
    int fail(const QString &problem);

    /** Writes a line to the error stream now. */
    void note(const QString &text);

    /** On a terminal, shows how far work that takes long has come; erased when @p done reaches @p total. */
    void progress(int done, int total, const QString &what);

    /** Breaks @p text into lines that fit @p width, each after @p indent blanks. */
    static QString wrapped(const QString &text, int indent, int width);

private:
    std::FILE *m_outputStream;
    std::FILE *m_errorStream;
    QByteArray m_output;
    QElapsedTimer m_clock;
    qint64 m_lastProgress = 0;
    bool m_outputIsTerminal;
    bool m_errorIsTerminal;
    bool m_colours;
};
