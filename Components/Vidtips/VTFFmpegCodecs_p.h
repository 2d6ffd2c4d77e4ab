#pragma once

#include "VTVideoDecoder_p.h"

#include <QtCore/QObject>

namespace Vidtips {

/** Decoders that use FFmpeg. The first object silences its log. */
class VTFFmpegCodecs : public QObject, public VTCodecs
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID VTCodecs_iid)
    Q_INTERFACES(Vidtips::VTCodecs)

public:
    VTFFmpegCodecs();

    VTVideoDecoder *makeDecoder(Interruption interruption, void *context) override;
};

} // namespace Vidtips
