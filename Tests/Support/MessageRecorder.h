#pragma once

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QStringList>
#include <QtCore/qlogging.h>

/** Takes every Qt message of every thread while it lives, in place of the output. One at a time. */
class MessageRecorder
{
public:
    struct Message
    {
        QtMsgType type;
        QString text;
        QByteArray file;
        QByteArray function;
        int line;
        QByteArray category;
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

    QList<Message> messages() const
    {
        const QMutexLocker locker(&m_lock);
        return m_messages;
    }

    QStringList texts() const
    {
        QStringList texts;
        for (const Message &message : messages())
            texts << message.text;
        return texts;
    }

    /** Tells whether every message so far names file, line and function. */
    bool allHaveContext() const
    {
        for (const Message &message : messages()) {
            if (message.file.isEmpty() || message.function.isEmpty() || message.line <= 0)
                return false;
        }
        return true;
    }

private:
    static void record(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        const QMutexLocker locker(&current->m_lock);
        current->m_messages.append(
            {type, text, context.file, context.function, context.line, context.category});
    }

    static inline MessageRecorder *current = nullptr;
    QtMessageHandler m_previous;
    mutable QMutex m_lock;
    QList<Message> m_messages;
};
