#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

QT_BEGIN_NAMESPACE
class QUrl;
QT_END_NAMESPACE

namespace Vidtips {

/**
 * Judges what restricted content may read: files below some folders, by their real paths, and nothing else.
 *
 * Its functions ask the file system at each call and keep nothing, so they may be called on any thread.
 */
class VTContentGate
{
public:
    /** Makes a gate to @p folders; those that do not exist, now, let nothing through. */
    explicit VTContentGate(const QStringList &folders = {});

    /** Tells whether the file or folder at @p path lies below the folders, links followed. */
    bool admitsFile(const QString &path) const;

    /**
     * Tells whether @p url may be read: an address of a file or a resource below the folders, a picture of
     * one of the host's image providers, or nothing at all.
     */
    bool admits(const QUrl &url) const;

private:
    QStringList m_roots;
};

} // namespace Vidtips
