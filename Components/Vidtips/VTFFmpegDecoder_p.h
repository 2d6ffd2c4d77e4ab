#pragma once

#include "VTFFmpegCompat_p.h"
#include "VTVideoDecoder_p.h"

namespace Vidtips {

/** Decodes the first video stream of a media file with FFmpeg. */
class VTFFmpegDecoder : public VTVideoDecoder
{
public:
    /** Makes a decoder that asks @p interruption with @p context whether to give up. */
    VTFFmpegDecoder(VTCodecs::Interruption interruption, void *context);
    ~VTFFmpegDecoder() override;

    const char *open(const QString &fileName) override;
    void close() override;
    bool isOpen() const override;
    VTClipFacts facts() const override;
    Outcome nextPicture(QImage *picture, int *repeats) override;
    void seekToStart() override;
    void seek(double seconds, bool backward) override;
    void setRestricted(bool isRestricted) override { this->isRestricted = isRestricted; }

private:
    Q_DISABLE_COPY(VTFFmpegDecoder)

    // What the scaler is set up for.
    struct ScalerInput
    {
        int width = 0;
        int height = 0;
        AVPixelFormat format = AV_PIX_FMT_NONE;
        int colourSpace = AVCOL_SPC_UNSPECIFIED;
        int colourRange = AVCOL_RANGE_UNSPECIFIED;
    };

    const char *openAll(const QString &fileName);
    const char *openContainer(const QString &fileName);
    const char *openDecoder();
    const char *allocatePictures();
    double streamDuration() const;
    double decoderTimeBase() const;
    bool readPacket();
    bool convertPicture();
    bool newPixels();
    void scale(uint8_t *target, int bytesPerLine);
    bool fillsDirectly(const ScalerInput &input) const;
    bool makeScaler(const ScalerInput &input);
    bool updateScaler();
    void followColours(int colourSpace, int colourRange);

    const AVIOInterruptCB interrupt;
    bool isRestricted = false;
    AVFormatContext *formatContext = nullptr;
    AVCodecContext *codecContext = nullptr;
    FFmpegCompat::Codec *codec = nullptr;
    AVFrame *frame = nullptr;
    // The picture that image shows.
    AVFrame *shownFrame = nullptr;
    AVFrame *rgbFrame = nullptr;
    AVPacket *packet = nullptr;
    AVStream *stream = nullptr;
    QImage image;
    int videoStreamIndex = -1;
    SwsContext *scaleContext = nullptr;
    bool isDirect = false;
    ScalerInput scalerInput;
};

} // namespace Vidtips
