#pragma once

#include <QtCore/QPoint>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/** Where the pointer is, as far as the application can know. */
struct VTPointer
{
    /** In global coordinates; far from everything where the pointer is none of the application's business. */
    QPoint position;

    /** Under the pointer; null over anything but the application's own windows. */
    QWidget *widget = nullptr;

    /** Looks where it is. */
    static VTPointer now();
};

} // namespace Vidtips
