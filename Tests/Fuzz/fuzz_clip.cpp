// Opening and decoding a clip, which is the whole input; its last bytes are also the positions that the
// source is moved to on the way.

#include "FuzzTarget.h"

#include <Vidtips/VTVideoFrame.h>
#include <Vidtips/VTVideoSourceFFMPEG.h>

#include <QtCore/QSet>
#include <QtCore/QUrl>

using namespace Vidtips;

namespace {

constexpr quint64 memoryLimit = 16 * 1024 * 1024;
constexpr int moves = 4;

/** A source that runs on the caller's thread until it has nothing left to do. */
class Source : public VTVideoSourceFFMPEG
{
public:
    explicit Source(const QByteArray &positions)
        : VTVideoSourceFFMPEG(nullptr)
        , m_positions(positions)
    {
        setMemoryLimit(memoryLimit);
    }
    ~Source() override { clearChanges(); }

    void play(const QUrl &url)
    {
        setSource(url);
        // Each of them decodes one picture, from where changeSetAction() moves to.
        for (int i = 0; i < m_positions.size(); ++i)
            setAction(Decode);
        run();
    }

    void changeSetAction(Action action) override
    {
        if (action == Decode && m_next < m_positions.size())
            changeSetPosition(quint8(m_positions.at(m_next++)));
        // An idle source would wait for more to do.
        VTVideoSourceFFMPEG::changeSetAction(action == Idle ? Stop : action);
    }

private:
    const QByteArray m_positions;
    int m_next = 0;
};

void checkFrames(Source *source)
{
    const quint64 count = source->loadedFrameCount();
    // Equal pictures share their pixels.
    QSet<qint64> pictures;
    for (quint64 i = 0; i < count; ++i) {
        const VTVideoFrame frame = source->getFrame(uint(i));
        FUZZ_CHECK(!frame.isNull() && frame.format() == QImage::Format_RGB32);
        FUZZ_CHECK(frame.width() == source->frameWidth() && frame.height() == source->frameHeight());
        FUZZ_CHECK(frame.pts() >= 0.0);
        pictures.insert(frame.cacheKey());
    }
    if (count)
        FUZZ_CHECK(quint64(pictures.size()) * quint64(source->getFrame(0).sizeInBytes()) <= memoryLimit);
}

} // namespace

void fuzz(const QByteArray &input)
{
    const QUrl url = QUrl::fromLocalFile(writeFuzzFile("clip", input));
    {
        Source straight({});
        straight.play(url);
        FUZZ_CHECK(!straight.isOpen());
        checkFrames(&straight);
    }
    Source moved(input.right(moves));
    moved.play(url);
    checkFrames(&moved);
}
