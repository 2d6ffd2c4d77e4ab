#pragma once

#include <QtCore/QMutex>
#include <QtCore/QString>
#include <QtCore/QStringList>

/** Collects the debug messages of every thread while it lives, and tells whether each named its place in the
 * code. */
class MessageLog
{
public:
    MessageLog()
    {
        current() = this;
        m_previous = qInstallMessageHandler(&MessageLog::handle);
    }

    ~MessageLog()
    {
        qInstallMessageHandler(m_previous);
        current() = nullptr;
    }

    /** Returns the messages so far, oldest first. */
    QStringList messages()
    {
        const QMutexLocker locker(&m_lock);
        return m_messages;
    }

    /** Tells whether every message so far came with file, line and function. */
    bool allHaveContext()
    {
        const QMutexLocker locker(&m_lock);
        return m_allHaveContext;
    }

private:
    static MessageLog *&current()
    {
        static MessageLog *log = nullptr;
        return log;
    }

    static void handle(QtMsgType type, const QMessageLogContext &context, const QString &message)
    {
        MessageLog *const log = current();
        if (type != QtDebugMsg || !log)
            return;
        const QMutexLocker locker(&log->m_lock);
        log->m_messages << message;
        log->m_allHaveContext = log->m_allHaveContext && context.file && context.function && context.line > 0;
    }

    QMutex m_lock;
    QStringList m_messages;
    bool m_allHaveContext = true;
    QtMessageHandler m_previous = nullptr;
};
