#include "ScreenWindow.h"

#include "shared/Nearest.h"

#include <QtCore/QProcess>
#include <QtCore/QRegularExpression>
#include <QtCore/QStandardPaths>

#include <algorithm>
#include <functional>
#include <iterator>

namespace {

constexpr int leastSide = 32; // pixels: programs have small windows that nobody sees
constexpr int longestRun = 20000; // milliseconds

// Returns why the command did not work, or nothing.
QString ask(const QStringList &arguments, QString &answer)
{
    const QString program = QStandardPaths::findExecutable("xwininfo");
    if (program.isEmpty())
        return "there is no command \"xwininfo\", which finds windows: install x11-utils";
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("LC_ALL", "C.UTF-8");
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    const bool isDone = process.waitForFinished(longestRun) && process.exitCode() == 0;
    answer = QString::fromUtf8(process.readAllStandardOutput());
    return isDone ? QString() : "the windows of the screen cannot be listed";
}

QVector<ScreenWindow> matching(const QVector<ScreenWindow> &windows,
                               const std::function<bool(const ScreenWindow &)> &matches)
{
    QVector<ScreenWindow> found;
    std::copy_if(windows.begin(), windows.end(), std::back_inserter(found), matches);
    return found;
}

QStringList titlesOf(const QVector<ScreenWindow> &windows)
{
    QStringList titles;
    for (const ScreenWindow &window : windows)
        titles << window.title;
    titles.removeDuplicates();
    return titles;
}

QString quoted(const QStringList &titles)
{
    return '"' + titles.join("\", \"") + '"';
}

QString noneOf(const QString &name, const QStringList &titles)
{
    const QString nearest = Nearest::to(name, titles);
    const QString problem = QString("there is no window \"%1\"").arg(name);
    if (!nearest.isEmpty())
        return problem + QString(": did you mean \"%1\"?").arg(nearest);
    return titles.isEmpty() ? problem : problem + ": there are " + quoted(titles);
}

} // namespace

QVector<ScreenWindow> ScreenWindow::listIn(const QString &tree)
{
    static const QRegularExpression line("^\\s+(0x[0-9a-f]+) \"(.*)\": \\(.*\\)\\s+(\\d+)x(\\d+)[+-]");
    QVector<ScreenWindow> windows;
    for (const QString &text : tree.split('\n')) {
        const QRegularExpressionMatch match = line.match(text);
        const QSize size(match.captured(3).toInt(), match.captured(4).toInt());
        if (match.hasMatch() && size.width() >= leastSide && size.height() >= leastSide)
            windows << ScreenWindow{match.captured(1), match.captured(2), size};
    }
    return windows;
}

QString ScreenWindow::choose(const QString &name, const QVector<ScreenWindow> &windows)
{
    QVector<ScreenWindow> found = matching(
        windows, [&](const ScreenWindow &window) { return window.id == name || window.title == name; });
    if (found.isEmpty())
        found = matching(windows, [&](const ScreenWindow &window) {
            return window.title.contains(name, Qt::CaseInsensitive);
        });
    if (found.isEmpty())
        return noneOf(name, titlesOf(windows));
    const QStringList titles = titlesOf(found);
    if (titles.size() > 1)
        return QString("several windows are called like \"%1\": %2").arg(name, quoted(titles));
    *this = found.constFirst();
    return {};
}

QString ScreenWindow::find(const QString &name)
{
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        return "there is no X server to record a window of";
    QString answer;
    QString problem = ask({"-root", "-tree"}, answer);
    if (problem.isEmpty())
        problem = choose(name, listIn(answer));
    if (problem.isEmpty())
        problem = ask({"-id", id}, answer);
    if (problem.isEmpty() && !answer.contains("Map State: IsViewable"))
        problem = QString("the window \"%1\" is not shown on the screen").arg(title);
    return problem;
}
