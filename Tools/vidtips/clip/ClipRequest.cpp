#include "ClipRequest.h"

#include "clips/ClipCheck.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

namespace {

const char defaultSize[] = "352x198";
const char defaultRate[] = "20";
const char defaultBudget[] = "64";
const char defaultFileSize[] = "1024";
const char defaultLongest[] = "30";
const char defaultWait[] = "3";
constexpr double mostSeconds = 24.0 * 3600.0;
constexpr double mostFrames = 120.0; // per second
constexpr double mostMegabytes = 1024.0 * 1024.0;
constexpr int mostPixels = 16384; // of a side

/** The values of options, the first of which that is none is told. */
class Values
{
public:
    explicit Values(const QCommandLineParser &arguments)
        : m_arguments(arguments)
    {
    }

    QString problem() const { return m_problem; }

    double number(const QString &option, double least, double most, const QString &what)
    {
        const QString text = m_arguments.value(option);
        bool isNumber = text.isEmpty();
        const double value = isNumber ? 0.0 : text.toDouble(&isNumber);
        if (text.isEmpty() || (isNumber && value >= least && value <= most))
            return value;
        return refuse(option, QString("%1 from %2 to %3").arg(what).arg(least).arg(most)), 0.0;
    }

    QSize size(const QString &option)
    {
        static const QRegularExpression pattern("^(\\d{1,5})x(\\d{1,5})$");
        const QRegularExpressionMatch match = pattern.match(m_arguments.value(option));
        const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
        if (!isSize(size))
            refuse(option, "WIDTHxHEIGHT in pixels");
        return size;
    }

    QRect rectangle(const QString &option)
    {
        static const QRegularExpression pattern("^(\\d{1,5})x(\\d{1,5})\\+(\\d{1,5})\\+(\\d{1,5})$");
        const QRegularExpressionMatch match = pattern.match(m_arguments.value(option));
        const QRect rectangle(match.captured(3).toInt(), match.captured(4).toInt(), match.captured(1).toInt(),
                              match.captured(2).toInt());
        if (m_arguments.isSet(option) && !isSize(rectangle.size()))
            refuse(option, "WIDTHxHEIGHT+X+Y in pixels");
        return rectangle;
    }

private:
    static bool isSize(const QSize &size)
    {
        return qMin(size.width(), size.height()) >= 2 && qMax(size.width(), size.height()) <= mostPixels;
    }

    void refuse(const QString &option, const QString &what)
    {
        if (m_problem.isEmpty())
            m_problem = QString("--%1 takes %2, not \"%3\"").arg(option, what, m_arguments.value(option));
    }

    const QCommandLineParser &m_arguments;
    QString m_problem;
};

QString problemWithTarget(const QString &path, bool isForced)
{
    const QFileInfo file(path);
    if (file.isDir())
        return QString("a folder has this name: %1").arg(path);
    if (!QFileInfo(file.path()).isDir())
        return QString("no such folder: %1").arg(file.path());
    if (file.exists() && !isForced)
        return QString("%1 exists; --force replaces it").arg(path);
    return {};
}

} // namespace

QList<QCommandLineOption> ClipRequest::options()
{
    return {
        {"record",
         "Record the window whose title or id is WINDOW; a part of the title is enough. The clip is then the "
         "only argument.",
         "WINDOW"},
        {"wait",
         QString("Begin to record after SECONDS, to have the pointer where it should be. The default is %1.")
             .arg(defaultWait),
         "SECONDS", defaultWait},
        {"crop", "Take that part of the picture alone: WIDTHxHEIGHT+X+Y, in pixels of the recording.",
         "PART"},
        {"size",
         QString("Scale the picture down until it fits into WIDTHxHEIGHT. The default is %1, the size in the "
                 "shipped user interface.")
             .arg(defaultSize),
         "SIZE", defaultSize},
        {"rate",
         QString("Have FPS frames a second, or as many as a slower recording has. The default is %1.")
             .arg(defaultRate),
         "FPS", defaultRate},
        {"from", "Begin at SECONDS of the recording.", "SECONDS"},
        {"length",
         QString("Take SECONDS of it. The default is all that follows; of a window, %1.").arg(recordedLength),
         "SECONDS"},
        {"longest",
         QString("Refuse to make a clip that lasts longer than SECONDS. The default is %1.")
             .arg(defaultLongest),
         "SECONDS", defaultLongest},
        {"budget",
         QString("Let the clip take MB megabytes when decoded, which is width x height x 4 x frames. The "
                 "default is %1.")
             .arg(defaultBudget),
         "MB", defaultBudget},
        {"file-size",
         QString("Let the clip's file take KB kilobytes. The default is %1.").arg(defaultFileSize), "KB",
         defaultFileSize},
        {"poster", "Also write the picture in the middle of the clip to FILE, a .png.", "FILE"},
        {"force", "Replace files that exist."}};
}

QString ClipRequest::read(const QCommandLineParser &arguments)
{
    QString problem = readFiles(arguments);
    if (problem.isEmpty())
        problem = readWishes(arguments);
    return problem.isEmpty() ? problemWithTargets() : problem;
}

QString ClipRequest::readWishes(const QCommandLineParser &arguments)
{
    Values values(arguments);
    wishes.crop = values.rectangle("crop");
    wishes.most = values.size("size");
    wishes.rate = values.number("rate", 1.0, mostFrames, "frames per second");
    wishes.from = values.number("from", 0.0, mostSeconds, "seconds");
    wishes.length = values.number("length", 0.1, mostSeconds, "seconds");
    wishes.longest = values.number("longest", 0.1, mostSeconds, "seconds");
    wishes.budget =
        qint64(values.number("budget", 0.1, mostMegabytes, "megabytes") * ClipCheck::bytesPerMegabyte);
    fileSize = qint64(values.number("file-size", 1.0, mostMegabytes * 1024, "kilobytes") * bytesPerKilobyte);
    wait = values.number("wait", 0.0, mostSeconds, "seconds");
    return values.problem();
}

// Returns what is wrong with the names of files.
QString ClipRequest::readFiles(const QCommandLineParser &arguments)
{
    QStringList files = arguments.positionalArguments();
    window = arguments.value("record");
    if (window.isEmpty() && !files.isEmpty())
        recording = files.takeFirst();
    if (window.isEmpty() && recording.isEmpty())
        return "clip needs a recording, or --record; see \"vidtips clip --help\"";
    if (files.size() > 1)
        return QString("clip makes one clip, and \"%1\" is too much").arg(files.at(1));
    const QFileInfo source(recording);
    clip = files.isEmpty() ? source.path() + '/' + source.completeBaseName() + ".mp4" : files.constFirst();
    if (files.isEmpty() && !window.isEmpty())
        return "clip needs the name of the clip; see \"vidtips clip --help\"";
    poster = arguments.value("poster");
    isForced = arguments.isSet("force");
    return {};
}

// Returns what keeps the files from being written.
QString ClipRequest::problemWithTargets() const
{
    const QFileInfo file(clip);
    if (file.exists() && !recording.isEmpty() && file == QFileInfo(recording))
        return "the clip would replace the recording: give it another name";
    if (!ClipRecipe::suffixes().contains(file.suffix().toLower()))
        return QString("clips are written as .%1, not as \"%2\"")
            .arg(ClipRecipe::suffixes().join(" or ."), file.fileName());
    QString problem = problemWithTarget(clip, isForced);
    if (!problem.isEmpty() || poster.isEmpty())
        return problem;
    if (QFileInfo(poster).suffix().toLower() != "png")
        return QString("posters are written as .png, not as \"%1\"").arg(poster);
    return problemWithTarget(poster, isForced);
}
