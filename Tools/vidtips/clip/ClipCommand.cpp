#include "ClipCommand.h"

#include "Ffmpeg.h"
#include "Recording.h"
#include "ScreenWindow.h"
#include "clips/ClipCheck.h"
#include "findings/Finding.h"
#include "findings/FindingReport.h"
#include "shared/Console.h"
#include "shared/Places.h"
#include "shared/SavedFile.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>

#include <cmath>

namespace {

constexpr int recordedRate = 30; // frames per second

QString noFolder(const QTemporaryDir &folder)
{
    return QString("there is no folder to work in: %1").arg(folder.errorString());
}

// What is written appears under its name when it is whole.
QString publish(const QString &from, const QString &to)
{
    QFile file(from);
    if (!file.open(QIODevice::ReadOnly))
        return QString("cannot read %1: %2").arg(from, file.errorString());
    return SavedFile::write(to, file.readAll());
}

// Records the window to @p file.
QString record(const ClipRequest &request, const QString &file, Console &console)
{
    ScreenWindow window;
    QString problem = window.find(request.window);
    if (!problem.isEmpty())
        return problem;
    const double length = request.wishes.length > 0.0 ? request.wishes.length : ClipRequest::recordedLength;
    console.note(QString("Recording \"%1\" (%2 x %3) for %4 s, in %5 s.")
                     .arg(window.title)
                     .arg(window.size.width())
                     .arg(window.size.height())
                     .arg(length)
                     .arg(request.wait));
    QThread::msleep(ulong(request.wait * 1000));
    problem = Ffmpeg::run({"-y", "-f", "x11grab", "-framerate", QString::number(recordedRate), "-window_id",
                           window.id, "-i", qEnvironmentVariable("DISPLAY"), "-t", QString::number(length),
                           "-c:v", "ffv1", "file:" + file});
    return problem.isEmpty() ? QString()
                             : QString("the window \"%1\" cannot be recorded: %2").arg(window.title, problem);
}

// Writes the clip in the first quality whose file is small enough.
QString write(const ClipRecipe &recipe, const QString &file, const ClipRequest &request)
{
    for (int step = 0; step < ClipRecipe::steps(); ++step) {
        const QString problem = Ffmpeg::run(recipe.arguments(file, step));
        if (!problem.isEmpty())
            return QString("cannot write %1: %2").arg(request.clip, problem);
        if (QFileInfo(file).size() <= request.fileSize)
            return {};
    }
    return QString("the clip takes %1 kB at its worst, the limit is %2 kB: choose a shorter part, a smaller "
                   "--size or a larger --file-size")
        .arg(std::ceil(double(QFileInfo(file).size()) / ClipRequest::bytesPerKilobyte))
        .arg(double(request.fileSize) / ClipRequest::bytesPerKilobyte);
}

// The middle shows more than the beginning, before anything has been done.
QString writePoster(const QString &clip, double seconds, const QString &file, const ClipRequest &request)
{
    const QString problem = Ffmpeg::run({"-y", "-ss", QString::number(seconds / 2, 'f', 3), "-i",
                                         "file:" + clip, "-frames:v", "1", "-update", "1", "file:" + file});
    return problem.isEmpty() ? QString() : QString("cannot write %1: %2").arg(request.poster, problem);
}

void writeLine(const QString &file, const QString &text, Console &console)
{
    console.writeLine(console.in(Console::Bold, file) + ": " + text);
}

// Tells what was made; a clip that is none of those that pass a check is a finding.
int report(const ClipRequest &request, const ClipRecipe &recipe, Console &console)
{
    const QString path = QFileInfo(request.clip).canonicalFilePath();
    Recording clip;
    const QString problem = clip.read(path);
    if (!problem.isEmpty())
        return console.fail(problem);
    writeLine(Places::shown(path), clip.description(), console);
    if (!recipe.concession().isEmpty())
        console.writeLine("To stay within the budget: " + recipe.concession() + '.');
    if (!request.poster.isEmpty())
        writeLine(Places::shown(QFileInfo(request.poster).canonicalFilePath()), "the poster", console);
    Findings findings;
    ClipCheck(request.wishes.budget, request.wishes.longest).run({path}, findings, [](int, int) {});
    for (const Finding &finding : findings.sorted())
        console.writeLine(FindingReport::line(finding));
    return findings.sorted().isEmpty() ? ExitFine : ExitFindings;
}

int convert(const ClipRequest &request, const QString &file, Console &console)
{
    Recording recording;
    QString problem = recording.read(file);
    ClipRecipe recipe;
    if (problem.isEmpty())
        problem = recipe.choose(recording, request.wishes);
    if (!problem.isEmpty())
        return console.fail(problem);
    writeLine(request.window.isEmpty() ? file : '"' + request.window + '"', recording.description(), console);
    const QTemporaryDir work;
    if (!work.isValid())
        return console.fail(noFolder(work));
    const QString clip = work.filePath("clip." + QFileInfo(request.clip).suffix().toLower());
    const QString poster = work.filePath("poster.png");
    problem = write(recipe, clip, request);
    if (problem.isEmpty() && !request.poster.isEmpty())
        problem = writePoster(clip, recipe.length(), poster, request);
    if (problem.isEmpty())
        problem = publish(clip, request.clip);
    if (problem.isEmpty() && !request.poster.isEmpty())
        problem = publish(poster, request.poster);
    return problem.isEmpty() ? report(request, recipe, console) : console.fail(problem);
}

// What was recorded once may not come again, so it is kept where no clip becomes of it.
int recordAndConvert(ClipRequest &request, Console &console)
{
    QTemporaryDir folder;
    if (!folder.isValid())
        return console.fail(noFolder(folder));
    const QString file = folder.filePath("recording.mkv");
    const QString problem = record(request, file, console);
    if (!problem.isEmpty())
        return console.fail(problem);
    const int exitCode = convert(request, file, console);
    if (exitCode == ExitBadInput) {
        folder.setAutoRemove(false);
        console.note("vidtips: the recording is kept: " + file);
    }
    return exitCode;
}

} // namespace

QStringList ClipCommand::description() const
{
    return {
        "Makes of RECORDING, a video of the screen in any format that ffmpeg reads, a clip that a tip can "
        "show: cut to a part, scaled to the size that it is shown in, at a constant frame rate, with "
        "colours that name their kind, without sound, small in memory and as a file. CLIP is a .mp4 "
        "(H.264) or a .webm (VP9); without it, the clip lies beside the recording. Tells what the "
        "recording was and what the clip is.",
        "A recording that would take too much memory gives a slower clip, not below 10 frames a second, "
        "and then a smaller one, down to half the size; a file that is too large is compressed more. "
        "Where neither is enough, nothing is written. What is written passes \"vidtips check\".",
        "With --record, a window of the X server's screen is recorded first. The commands ffmpeg and, "
        "for --record, xwininfo do the work."};
}

QList<Command::Example> ClipCommand::examples() const
{
    return {{"hedge.mkv tips/Garden.vidtips/Resources/hedge.mp4", "Make a clip of a recording."},
            {"--crop 640x360+120+80 --from 2 --length 5 hedge.mkv hedge.webm",
             "Take five seconds of a part of the screen."},
            {"--record \"Garden\" --length 8 hedge.mp4", "Record a window, and make a clip of that."}};
}

int ClipCommand::run(const QCommandLineParser &arguments, Console &console)
{
    ClipRequest request;
    QString problem = request.read(arguments);
    if (problem.isEmpty())
        problem = Ffmpeg::missing();
    if (!problem.isEmpty())
        return console.fail(problem);
    return request.window.isEmpty() ? convert(request, request.recording, console)
                                    : recordAndConvert(request, console);
}
