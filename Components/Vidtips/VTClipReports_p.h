#pragma once

#include <QtCore/QList>
#include <QtCore/QMutex>
#include <QtCore/QObject>
#include <QtCore/QUrl>

namespace Vidtips {

/** What became of a clip: its first picture is there, or there will be none for the reason given. */
struct VTClipReport
{
    QUrl clip;
    QString problem;
};

/** Carries reports from the thread that decodes clips to the one that shows them. */
class VTClipReports : public QObject
{
    Q_OBJECT

public:
    /** Adds a report. For any thread. */
    void add(const QUrl &clip, const QString &problem);

    /** Returns the reports that were added, in their order, and forgets them. For any thread. */
    QList<VTClipReport> take();

Q_SIGNALS:
    /** A report was added, on the thread that adds it. */
    void added();

private:
    QMutex m_lock;
    QList<VTClipReport> m_reports;
};

} // namespace Vidtips
