#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

/** How much a finding matters. Notes leave the exit code at 0. */
enum class Severity { Error, Warning, Note };

/** What a code stands for. */
struct FindingKind
{
    QString code;
    Severity severity = Severity::Error;
    QString title;
    QString why;
    QString mend;
    QStringList example; ///< Lines to be shown as they are.
};

/** Every code that the tool reports, with its explanation; read from the resource "findings.txt". */
class FindingCatalogue
{
public:
    /** The catalogue that is built in. */
    static const FindingCatalogue &instance();

    /** Returns the kind with @p code, in either case, or null. */
    const FindingKind *find(const QString &code) const;

    /** Every code, in ascending order. */
    QStringList codes() const { return m_kinds.keys(); }

    static QString severityName(Severity severity);

private:
    FindingCatalogue();

    QMap<QString, FindingKind> m_kinds;
};
