#pragma once

#include <QtCore/QString>

namespace Vidtips {

class VTCodecs;

/**
 * The module with the codecs, which lies in a folder beside the library and brings FFmpeg with it.
 *
 * It is loaded when the first clip is opened, so that a program that shows none pays nothing for it, and
 * stays. Where it cannot be loaded the next clip tries again. A static library has the codecs inside instead.
 */
class VTCodecsModule
{
public:
    /** Returns the codecs, or null with the reason in @p problem. For any thread. */
    static VTCodecs *load(QString *problem);
};

} // namespace Vidtips
