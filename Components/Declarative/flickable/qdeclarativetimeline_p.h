#pragma once

#include <private/qquicktimeline_p_p.h>

/**
 * Qt's time line, which moves values along curves from frame to frame.
 *
 * Qt exports the time line but not the classes of the values that it moves; their few members are defined in
 * our source. Include this header rather than Qt's.
 */
using QDeclarativeTimeLine = QQuickTimeLine;
