#pragma once

#include <QtCore/QFileSystemWatcher>
#include <QtCore/QObject>
#include <QtCore/QStringList>
#include <QtCore/QTimer>

class Content;

/** Tells when any file of the packages changes, also where an editor replaces the file. */
class PackageWatcher : public QObject
{
    Q_OBJECT

public:
    explicit PackageWatcher(QObject *parent);

    /** Watches everything that lies in the packages of @p content, and the files @p others. */
    void watch(const Content &content, const QStringList &others);

Q_SIGNALS:
    /** Something changed, and has not changed further for a moment. */
    void changed();

private:
    QFileSystemWatcher m_watcher;
    QTimer m_quiet;
};
