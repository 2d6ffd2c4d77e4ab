#pragma once

#include <QtCore/QList>
#include <QtCore/QStringList>
#include <QtCore/qlogging.h>

/** Takes every Qt message while it lives, in place of the output. One at a time, in one thread. */
class MessageRecorder
{
public:
    struct Message
    {
        QtMsgType type;
        QString text;
        QByteArray file;
        QByteArray function;
    };

    MessageRecorder()
    {
        Q_ASSERT(!current);
        current = this;
        m_previous = qInstallMessageHandler(&MessageRecorder::record);
    }

    ~MessageRecorder()
    {
        qInstallMessageHandler(m_previous);
        current = nullptr;
    }

    MessageRecorder(const MessageRecorder &) = delete;
    MessageRecorder &operator=(const MessageRecorder &) = delete;

    QList<Message> messages() const { return m_messages; }

    QStringList texts() const
    {
        QStringList texts;
        for (const Message &message : m_messages)
            texts << message.text;
        return texts;
    }

private:
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        current->m_messages.append({type, text, context.file, context.function});
    }

    static inline MessageRecorder *current = nullptr;
    QtMessageHandler m_previous;
    QList<Message> m_messages;
};
