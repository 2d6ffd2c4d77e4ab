#pragma once

#include <Vidtips/VTInterface.h>

#include <QtCore/QStringList>

#include <random>

/** A host that counts what it is told, and gives every other tip that is pinned a container. */
class SoakHost : public Vidtips::VTInterface
{
public:
    /**
     * Loads the packages of @p dataPaths, for the commands in @p window; @p random is shared with whoever
     * drives the host.
     */
    SoakHost(VTContext &context, const QStringList &dataPaths, const QWidget &window, std::mt19937 &random);
    /** Deletes the index, which is the host's to delete. */
    ~SoakHost() override;

    QString keyForObject(QObject *object) override;
    QWidget *createWindow(Vidtips::VTWindowType type) override;
    bool openExternalResource(Vidtips::VTExternalResourceType type, const QString &resource) override;
    void handleMessage(Vidtips::VTMessageType type, const QString &message) override;
    void notification(Vidtips::VTNotification type, const QVariant &value, const QString &text) override;

    int shown() const { return m_shown; }
    int hidden() const { return m_hidden; }
    /** Every message of the library since the last time this was asked. */
    QStringList takeMessages();

private:
    const QWidget &m_window;
    std::mt19937 &m_random;
    QStringList m_messages;
    int m_shown = 0;
    int m_hidden = 0;
};
