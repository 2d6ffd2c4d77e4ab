#pragma once

#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QRect>
#include <QtCore/QString>

QT_BEGIN_NAMESPACE
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/** What a call of VTManager::show() asks for. The host's callbacks may delete the object meanwhile. */
struct VTShowRequest
{
    QString key;
    QPoint position; ///< of the pointer, in global coordinates.
    QPointer<QObject> object; ///< what the tip is about; may be null.
    QRect rect; ///< of the object, or of a part of it, in global coordinates; may be null.

    /** Returns the object where that is a widget, else null. */
    QWidget *widget() const;

    /** Returns where the command is, in global coordinates; null where that is not known. */
    QRect place() const;

    /** Writes a line about the request into the log of decisions: what was decided. */
    void log(const QString &decision) const;
};

} // namespace Vidtips
