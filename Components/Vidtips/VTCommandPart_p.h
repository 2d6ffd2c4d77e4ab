#pragma once

#include <QtCore/QtGlobal>

#include <functional>

QT_BEGIN_NAMESPACE
class QPoint;
class QRect;
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/** What has become of a part of a widget. */
enum class VTPartState { There, Elsewhere, Gone };

/**
 * Returns a function that tells what has become of the tab, the section of a header, the entry of a menu or
 * the item of a scene that is in @p rect at @p position, both in the coordinates of @p widget; null where
 * there is none. The function may be called whatever is gone by then.
 */
std::function<VTPartState()> checkOfPart(QWidget *widget, const QRect &rect, const QPoint &position);

} // namespace Vidtips
