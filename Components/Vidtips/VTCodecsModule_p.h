#pragma once

#include <QtCore/QString>

namespace Vidtips {

class VTCodecs;

/**
 * The module with the codecs, which lies in a folder beside the library and brings FFmpeg with it.
 *
 * It is loaded when the first clip is opened, so that a program that shows none pays nothing for it, and
 * stays. Where it cannot be loaded the next clip tries again.
 */
class VTCodecsModule
{
public:
    /** Returns the codecs, or null with the reason in @p problem. For any thread. */
    static VTCodecs *load(QString *problem);

    /** Returns the absolute path of the module. */
    static QString path();
};

} // namespace Vidtips
