#pragma once

#include <QtCore/QObject>
#include <QtGui/QAccessible>

QT_BEGIN_NAMESPACE
class QGraphicsObject;
QT_END_NAMESPACE

namespace Vidtips {

/** Tells assistive technology of what changes about an item that it has seen: a text, and a clip's playing.
 */
class VTItemWatch : public QObject
{
    Q_OBJECT

public:
    /** @p item outlives the object. */
    explicit VTItemWatch(QGraphicsObject *item);

private Q_SLOTS:
    void textHasChanged();
    void stateHasChanged();

private:
    Q_DISABLE_COPY(VTItemWatch)

    QGraphicsObject *const m_item;
};

} // namespace Vidtips
