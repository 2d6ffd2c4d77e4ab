#pragma once

#include "VTPlacement.h"

QT_BEGIN_NAMESPACE
class QObject;
QT_END_NAMESPACE

namespace Vidtips {

/**
 * Returns what lies around a tip for @p object, which may be null, or for the rectangle @p rect in it, asked
 * for at the global position @p pointer and beginning @p offset beside that. The screen is null where there
 * is none.
 */
VTPlacement::Surroundings surroundingsOf(const QObject *object, const QRect &rect, const QPoint &pointer,
                                         const QSize &offset);

} // namespace Vidtips
