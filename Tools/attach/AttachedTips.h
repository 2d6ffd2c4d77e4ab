#pragma once

#include <Vidtips/VTCommandLocator.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTInterface.h>

#include <QtCore/QPoint>
#include <QtCore/QPointer>
#include <QtCore/QSet>

#include <memory>

struct AttachSettings;

/** Tips in a program that does not know of them. */
class AttachedTips : public Vidtips::VTInterface
{
    Q_OBJECT

public:
    /** Makes the tips; who calls it deletes them before the application. */
    static AttachedTips *create(const AttachSettings &settings);
    ~AttachedTips() override;

    QString keyAt(QObject *object, const QPoint &position, QRect &rect) override;
    QString shortCutForObject(const QString &key, QObject *object, const QString &shortcut) override;
    void notification(Vidtips::VTNotification type, const QVariant &value, const QString &text) override;
    void handleMessage(Vidtips::VTMessageType type, const QString &message) override;

private:
    AttachedTips(VTContext &context, const AttachSettings &settings);
    void trace(QObject *object, const QPoint &position);
    bool isTraced(QObject *object, const QPoint &position) const;
    bool isForeignTip(const QWidget *window) const;

    const std::unique_ptr<Vidtips::VTIndex> m_index; ///< The manager's, which is its host's to delete.
    Vidtips::VTCommandLocator m_locator;
    Vidtips::VTCommandLocator::Command m_command; ///< What the pointer rested on last.
    QPointer<QObject> m_traced;
    QPoint m_tracedPosition;
    const bool m_traces;
    QSet<QString> m_asked; ///< The keys of commands that the pointer has rested on.
};
