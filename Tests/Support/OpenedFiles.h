#pragma once

#include <QtCore/QFile>

#include <sys/inotify.h>
#include <unistd.h>

/** Tells whether files have been opened by anyone. One for all tests of a program: the system ends them
 * slowly. */
class OpenedFiles
{
public:
    OpenedFiles() = default;
    ~OpenedFiles() { close(m_descriptor); }
    Q_DISABLE_COPY(OpenedFiles)

    /** Goes on to tell of the file at @p path, and of what came before no longer. */
    void watch(const QString &path)
    {
        inotify_rm_watch(m_descriptor, m_watch);
        m_watch = inotify_add_watch(m_descriptor, QFile::encodeName(path).constData(), IN_OPEN);
        if (m_watch < 0)
            qFatal("cannot watch %s", qUtf8Printable(path));
        take();
    }

    /** Returns whether the file was opened since the last call. */
    bool take()
    {
        alignas(inotify_event) char events[4096];
        bool isOpened = false;
        while (read(m_descriptor, events, sizeof events) > 0)
            isOpened = true;
        return isOpened;
    }

private:
    const int m_descriptor = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    int m_watch = -1;
};
