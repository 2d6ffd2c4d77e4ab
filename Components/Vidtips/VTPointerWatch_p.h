#pragma once

#include <QtCore/QObject>
#include <QtCore/QTimer>

QT_BEGIN_NAMESPACE
class QPoint;
class QWidget;
QT_END_NAMESPACE

namespace Vidtips {

/**
 * Knows where the pointer is, also when no movement tells: it looks once after something has changed, and now
 * and then while the pointer is where the application does not hear of it.
 */
class VTPointerWatch : public QObject
{
    Q_OBJECT

public:
    explicit VTPointerWatch(QObject *parent = nullptr);

    /** Looks as soon as the events that are waiting have been handled; several calls make one look. */
    void lookSoon();

    /** Looks no more until lookSoon() is called. */
    void rest();

Q_SIGNALS:
    /**
     * Emitted for each look: the pointer is at @p position, over @p widget, which is null over anything but
     * the application's own windows.
     */
    void looked(QWidget *widget, const QPoint &position);

private:
    Q_DISABLE_COPY(VTPointerWatch)
    void look();

    QTimer m_timer;
};

} // namespace Vidtips
