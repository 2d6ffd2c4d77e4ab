#pragma once

#include "Finding.h"
#include "FindingCatalogue.h"

#include <QtCore/QMap>

class Console;

/** Writes findings for people, who get them by file, or as lines that editors follow, or for machines. */
class FindingReport
{
public:
    FindingReport(const QVector<Finding> &findings, int packages, int files);

    /** The name of @p severity in its colour, as wide as every other's. */
    static QString column(Severity severity, const Console &console);

    /** Returns @p finding as a line that editors follow: "file:line:column: severity: message [code]". */
    static QString line(const Finding &finding);

    /** Whether anything graver than a note was found. */
    bool hasFindings() const;

    /** Grouped by file and aligned on a terminal; elsewhere one line each, "file:line:column: severity: ...".
     */
    void writeText(Console &console) const;

    /** One JSON object with the array "findings". */
    void writeJson(Console &console) const;

private:
    void writeGrouped(Console &console) const;
    void writeLines(Console &console) const;
    QString summary() const;

    QVector<Finding> m_findings;
    QMap<int, int> m_counts;
    int m_packages;
    int m_files;
};
