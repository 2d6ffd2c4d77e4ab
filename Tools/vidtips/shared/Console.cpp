#include "Console.h"

#include <QtCore/QFile>
#include <QtCore/QStringList>
#include <QtCore/QtGlobal>

#include <cerrno>
#include <cstdio>
#include <cstring>

#ifdef Q_OS_UNIX
#include <csignal>
#include <fcntl.h>
#include <sys/ioctl.h>
#include <unistd.h>
#else
#include <io.h>
#endif

namespace {

constexpr int defaultWidth = 80;
constexpr int readableWidth = 100;
constexpr int firstProgressAfter = 500; // milliseconds: shorter work needs no telling
constexpr int progressEvery = 100; // milliseconds

bool isTerminalStream(FILE *stream)
{
#ifdef Q_OS_UNIX
    return isatty(fileno(stream));
#else
    return _isatty(_fileno(stream));
#endif
}

// A standard stream that was closed would be the next file that is opened, and output would go there. One
// that cannot be written takes its place.
void reserveStandardStreams()
{
#ifdef Q_OS_UNIX
    int file = open("/dev/null", O_RDONLY);
    while (file >= 0 && file <= STDERR_FILENO)
        file = open("/dev/null", O_RDONLY);
    if (file >= 0)
        close(file);
#endif
}

const char *escapeFor(Console::Colour colour)
{
    switch (colour) {
    case Console::Plain:
        return "";
    case Console::Bold:
        return "\033[1m";
    case Console::Dim:
        return "\033[2m";
    case Console::Red:
        return "\033[1;31m";
    case Console::Yellow:
        return "\033[1;33m";
    case Console::Cyan:
        return "\033[36m";
    }
    return "";
}

} // namespace

Console::Console(std::FILE *output, std::FILE *errors)
    : m_outputStream(output)
    , m_errorStream(errors)
    , m_outputIsTerminal(isTerminalStream(output))
    , m_errorIsTerminal(isTerminalStream(errors))
    , m_colours(m_outputIsTerminal && qEnvironmentVariableIsEmpty("NO_COLOR"))
{
#ifdef Q_OS_UNIX
    // A reader that goes away is an error of writing, told and answered by the exit code, not a signal.
    std::signal(SIGPIPE, SIG_IGN);
#endif
    reserveStandardStreams();
    m_clock.start();
}

int Console::width() const
{
#ifdef Q_OS_UNIX
    winsize size = {};
    if (m_outputIsTerminal && ioctl(fileno(m_outputStream), TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        return size.ws_col;
#endif
    return defaultWidth;
}

int Console::textWidth() const
{
    return qMin(width(), readableWidth);
}

QString Console::in(Colour colour, const QString &text) const
{
    if (!m_colours || colour == Plain || text.isEmpty())
        return text;
    return QLatin1String(escapeFor(colour)) + text + QLatin1String("\033[0m");
}

void Console::write(const QString &text)
{
    m_output += text.toUtf8();
}

void Console::writeLine(const QString &text)
{
    write(text + '\n');
}

int Console::finish(int exitCode)
{
    const QByteArray output = m_output;
    m_output.clear();
    errno = 0;
    const bool isWritten =
        std::fwrite(output.constData(), 1, size_t(output.size()), m_outputStream) == size_t(output.size());
    if (isWritten && std::fflush(m_outputStream) == 0)
        return exitCode;
    return fail(QString("cannot write the output: %1").arg(QString::fromLocal8Bit(std::strerror(errno))));
}

int Console::fail(const QString &problem)
{
    m_output.clear();
    note("vidtips: " + problem);
    return ExitBadInput;
}

void Console::note(const QString &text)
{
    std::fputs((text + '\n').toUtf8().constData(), m_errorStream);
    std::fflush(m_errorStream);
}

void Console::progress(int done, int total, const QString &what)
{
    if (!m_errorIsTerminal)
        return;
    const qint64 now = m_clock.elapsed();
    if (done >= total) {
        if (m_lastProgress > 0)
            std::fputs("\r\033[K", m_errorStream);
        m_lastProgress = 0;
        return;
    }
    if (now < firstProgressAfter || now - m_lastProgress < progressEvery)
        return;
    m_lastProgress = now;
    const QString line = QString("\r\033[K%1 of %2 %3").arg(done).arg(total).arg(what);
    std::fputs(line.toUtf8().constData(), m_errorStream);
    std::fflush(m_errorStream);
}

QString Console::wrapped(const QString &text, int indent, int width)
{
    const QString margin(indent, ' ');
    QStringList lines;
    QString line;
    for (const QString &word : text.split(' ', Qt::SkipEmptyParts)) {
        if (!line.isEmpty() && indent + line.size() + 1 + word.size() > width) {
            lines << margin + line;
            line.clear();
        }
        line += (line.isEmpty() ? "" : " ") + word;
    }
    lines << margin + line;
    return lines.join('\n');
}
