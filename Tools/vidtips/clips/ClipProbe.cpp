#include "ClipProbe.h"

#include "shared/Diagnostics.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QSemaphore>
#include <QtCore/QUrl>

namespace {

constexpr int longestProbe = 20000; // milliseconds
constexpr int lookEvery = 1; // millisecond

} // namespace

ClipProbe::ClipProbe(qint64 budget)
    : VTVideoSourceFFMPEG(nullptr)
    , m_budget(budget)
{
}

ClipProbe::~ClipProbe()
{
    quit();
}

ClipFacts ClipProbe::probe(const QString &path)
{
    ClipFacts facts;
    Diagnostics::take();
    // Opened on this thread, which then knows at once whether it worked.
    changeSetSource(QUrl::fromLocalFile(path));
    facts.opens = loadSource();
    if (!facts.opens) {
        facts.problem = Diagnostics::take().value(0);
        return facts;
    }
    facts.size = QSize(int(frameWidth()), int(frameHeight()));
    facts.rate = frameRate();
    facts.seconds = duration();
    facts.frames = qRound64(facts.seconds * facts.rate);
    decodeUntilKnown(facts);
    Diagnostics::take();
    return facts;
}

bool ClipProbe::isRefusedWhenRestricted(const QString &path)
{
    Diagnostics::take();
    setRestricted(true);
    changeSetSource(QUrl::fromLocalFile(path));
    const bool isOpen = loadSource();
    const QString problem = Diagnostics::take().value(0);
    setRestricted(false);
    return !isOpen && problem.startsWith("Restricted content is refused");
}

void ClipProbe::decodeUntilKnown(ClipFacts &facts)
{
    QSemaphore ended;
    connect(
        this, &ClipProbe::streamEnded, this, [&ended] { ended.release(); }, Qt::DirectConnection);
    const bool isLengthKnown = facts.frames > 0;
    const qint64 frameSize = qMax<qint64>(1, qint64(facts.size.width()) * facts.size.height() * 4);
    const qint64 enough = isLengthKnown ? 1 : m_budget / frameSize + 1;
    QElapsedTimer clock;
    clock.start();
    start();
    bool isEnd = false;
    while (!isEnd && qint64(loadedFrameCount()) < enough && clock.elapsed() < longestProbe)
        isEnd = ended.tryAcquire(1, lookEvery);
    quit();
    disconnect(this, &ClipProbe::streamEnded, this, nullptr);
    const auto decoded = qint64(loadedFrameCount());
    facts.hasPicture = decoded > 0;
    if (isLengthKnown)
        return;
    facts.frames = decoded;
    facts.isWhole = isEnd;
    facts.seconds = facts.rate > 0.0 ? double(decoded) / facts.rate : 0.0;
}
