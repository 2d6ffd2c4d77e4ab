#pragma once

#include <QtCore/QFile>

/** How much address space the process came to have at once since this was made: also what is never touched.
 */
class MemoryPeak
{
public:
    /** Returns by how many MiB it grew. */
    qint64 growth() const { return (now() - m_before) / 1024; }

private:
    static qint64 now()
    {
        QFile status(QStringLiteral("/proc/self/status"));
        status.open(QIODevice::ReadOnly);
        const QList<QByteArray> lines = status.readAll().split('\n');
        for (const QByteArray &line : lines) {
            if (line.startsWith("VmPeak:"))
                return line.mid(7).simplified().split(' ').value(0).toLongLong();
        }
        qFatal("the system does not tell");
    }

    const qint64 m_before = now();
};
