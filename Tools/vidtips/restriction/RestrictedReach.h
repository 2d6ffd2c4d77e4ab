#pragma once

#include <QtCore/QPair>
#include <QtCore/QStringList>
#include <QtCore/QVector>

class Content;
struct ControlFile;

QT_BEGIN_NAMESPACE
class QUrl;
QT_END_NAMESPACE

/** How far the files of packages reach where the host restricts content, by the library's own judgement. */
class RestrictedReach
{
public:
    explicit RestrictedReach(const Content &content);
    ~RestrictedReach();

    /** Tells whether entries of @p control may have the file at @p path. */
    bool admits(const ControlFile &control, const QString &path) const;

    /**
     * Tells whether code in the file at @p path may read what is at @p url, for whichever tip of a package
     * that searches the file's own it is.
     */
    bool admitsForCode(const QString &path, const QUrl &url) const;

private:
    const Content &m_content;
    QVector<QStringList> m_folders; ///< that the control files search, each once
};
