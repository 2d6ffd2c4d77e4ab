// Shows, works, pins and closes tips at random for a set time, and tells what that leaves behind. Two hosts
// share the process: one whose tips are all shown by the same window, and one whose tips are pinned and
// closed. With --hostile, packages of strangers are among the others, and both hosts restrict content.

#include "HostilePackages.h"
#include "Record.h"
#include "Session.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QElapsedTimer>
#include <QtCore/QRandomGenerator>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <numeric>

namespace {

constexpr int actsInTurn = 20;
constexpr double millisecondsPerHour = 3600.0 * 1000.0;

struct Options
{
    double seconds = 0.0;
    quint32 seed = 0;
    bool gross = false;
    bool hostile = false;
    QStringList dataPaths;
};

Options optionsOf(const QCoreApplication &application)
{
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions({
        {"seconds", "How long it runs.", "number", "60"},
        {"seed", "Repeats the acts of an earlier run.", "number"},
        {"hostile", "Mixes in tips that hold the host up or ask for what they are refused."},
        {"gross", "Judges memory by its first and last sample, for a run too short for a trend."},
    });
    parser.addPositionalArgument("content", "The folder whose folders hold the packages.");
    parser.process(application);
    Options options;
    options.seconds = parser.value("seconds").toDouble();
    options.seed =
        parser.isSet("seed") ? parser.value("seed").toUInt() : QRandomGenerator::system()->generate();
    options.gross = parser.isSet("gross");
    options.hostile = parser.isSet("hostile");
    const QString content = parser.positionalArguments().value(0);
    options.dataPaths << content + QLatin1String("/Base") << content + QLatin1String("/Extra");
    return options;
}

int problems = 0;

// What Qt has to say of itself: of its connection to the X server, which may lag behind, and of its timer,
// when the last animation ends and a QML timer starts before the next event.
bool isOfQt(const QMessageLogContext &context, const QString &text)
{
    return qstrncmp(context.category, "qt.qpa", 6) == 0
        || text == QLatin1String("QUnifiedTimer::stopAnimationDriver: driver is not running");
}

void countProblems(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtDebugMsg || type == QtInfoMsg || isOfQt(context, text) || HostilePackages::isExpected(text))
        return;
    ++problems;
    std::fprintf(stderr, "%s\n", qPrintable(text));
}

using Sessions = std::array<Session *, 2>;

void takeMessages(const Session *session)
{
    // Sessions name clips of other tips on purpose, also such as no package has.
    QStringList messages = session->host().takeMessages();
    const auto isMeant = [](const QString &message) {
        return message.contains(QLatin1String("Could not find the clip "))
            || HostilePackages::isExpected(message);
    };
    messages.erase(std::remove_if(messages.begin(), messages.end(), isMeant), messages.end());
    for (const QString &message : qAsConst(messages))
        std::fprintf(stderr, "%s\n", qPrintable(message));
    problems += messages.size();
}

int total(const Sessions &sessions, int (Session::*count)() const)
{
    return std::accumulate(sessions.begin(), sessions.end(), 0,
                           [=](int sum, const Session *session) { return sum + (session->*count)(); });
}

void actFor(Session &session, int acts)
{
    while (acts-- > 0)
        session.act();
}

void run(const Sessions &sessions, const Options &options, HostilePackages &hostile, Record &record)
{
    // The first sixth of the time fills caches; a sample takes about two seconds.
    const auto whole = qint64(options.seconds * 1000.0);
    const qint64 interval = std::clamp<qint64>(whole / 12, 1500, 5000);
    QElapsedTimer timer;
    timer.start();
    for (qint64 next = interval; timer.elapsed() < whole; next = timer.elapsed() + interval) {
        while (timer.elapsed() < next) {
            for (Session *session : sessions)
                actFor(*session, actsInTurn);
        }
        for (Session *session : sessions) {
            takeMessages(session);
            session->rest();
        }
        if (options.hostile)
            hostile.renew();
        record.add(double(timer.elapsed()) / millisecondsPerHour, ProcessUse::now(sessions.front()->window()),
                   total(sessions, &Session::shown));
    }
    record.forgetBefore(double(whole) / 6.0 / millisecondsPerHour);
}

} // namespace

int main(int argc, char **argv)
{
    ProcessUse::prepare();
    QApplication application(argc, argv);
    qInstallMessageHandler(&countProblems);
    Options options = optionsOf(application);
    HostilePackages hostile;
    if (options.hostile)
        options.dataPaths << hostile.path();
    std::printf("seed %u, %.0f s\n", options.seed, options.seconds);
    std::fflush(stdout);
    bool isSteady = false;
    {
        Session lasting(options.dataPaths, Session::Life::Long, QPoint(100, 60), options.seed);
        Session passing(options.dataPaths, Session::Life::Short, QPoint(100, 460), options.seed + 1);
        const Sessions sessions{&lasting, &passing};
        if (options.hostile)
            std::for_each(sessions.begin(), sessions.end(), [](Session *session) { session->distrust(); });
        Record record;
        run(sessions, options, hostile, record);
        record.printTable();
        std::printf("%d acts: %d tips shown, %d hidden, %d pinned; %d clips opened\n",
                    total(sessions, &Session::acts), total(sessions, &Session::shown),
                    total(sessions, &Session::hidden), total(sessions, &Session::pinned),
                    total(sessions, &Session::clips));
        isSteady = record.judge(options.gross);
        std::for_each(sessions.begin(), sessions.end(), &takeMessages);
    }
    std::printf("messages           %d: %s\n", problems, problems ? "see above" : "none");
    return isSteady && problems == 0 ? 0 : 1;
}
