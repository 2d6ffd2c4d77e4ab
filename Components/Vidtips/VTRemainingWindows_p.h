#pragma once

#include <QtCore/QtGlobal>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/** The windows that nothing else may delete before the application object is destroyed. */
namespace VTRemainingWindows {

/** Deletes @p window with the application object, if it is not deleted before. */
void add(QWidget *window);

} // namespace VTRemainingWindows

} // namespace Vidtips
