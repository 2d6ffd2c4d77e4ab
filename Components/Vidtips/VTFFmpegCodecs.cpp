#include "VTFFmpegCodecs_p.h"

#include "VTFFmpegDecoder_p.h"

namespace Vidtips {

VTFFmpegCodecs::VTFFmpegCodecs()
{
    av_log_set_level(AV_LOG_QUIET);
}

VTVideoDecoder *VTFFmpegCodecs::makeDecoder(Interruption interruption, void *context)
{
    return new VTFFmpegDecoder(interruption, context);
}

} // namespace Vidtips
