#pragma once

#include <Vidtips/VTVideoSourceFFMPEG.h>

#include <QtCore/QSize>

/** What a clip is, as the library decodes it. */
struct ClipFacts
{
    bool opens = false;
    bool hasPicture = false;
    bool isWhole = true; ///< Whether frames says all; the clip may go on where it does not.
    QString problem; ///< Why it does not open, in the library's words.
    QSize size;
    double rate = 0.0; ///< Frames per second.
    double seconds = 0.0;
    qint64 frames = 0;

    /** The bytes of all frames when they are decoded. */
    qint64 memory() const { return qint64(size.width()) * size.height() * 4 * frames; }
};

/** Opens a clip with the library's decoder, decoding no more of it than it takes to know its length. */
class ClipProbe : public Vidtips::VTVideoSourceFFMPEG
{
    Q_OBJECT

public:
    /** A clip that does not say how long it is, is decoded until it takes more than @p budget bytes. */
    explicit ClipProbe(qint64 budget);
    ~ClipProbe() override;

    ClipFacts probe(const QString &path);

    /** Tells whether the clip at @p path is of a format that restricted content is refused. */
    bool isRefusedWhenRestricted(const QString &path);

private:
    void decodeUntilKnown(ClipFacts &facts);

    qint64 m_budget;
};
