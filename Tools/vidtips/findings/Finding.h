#pragma once

#include "shared/Position.h"

#include <QtCore/QString>
#include <QtCore/QVector>

/** Something that is wrong with content. What its code means is in the FindingCatalogue. */
struct Finding
{
    QString code;
    QString file; ///< Absolute path of the file or folder.
    Position position;
    QString message; ///< One sentence without a full stop, specific to this place.

    friend bool operator==(const Finding &a, const Finding &b)
    {
        return a.code == b.code && a.file == b.file && a.position == b.position && a.message == b.message;
    }
};

/** Collects findings; the order of their files and places is that of the report. */
class Findings
{
public:
    void add(const QString &code, const QString &file, Position position, const QString &message)
    {
        m_list.append({code, file, position, message});
    }

    /** Returns the findings by file, place and code. */
    QVector<Finding> sorted() const;

    /** Tells whether anything with one of the codes was found in the file @p file. */
    bool contains(const QString &file, const QVector<QString> &codes) const;

    /** Tells whether @p code was found in that line of the file @p file. */
    bool containsAt(const QString &file, int line, const QString &code) const;

    /** Tells whether that very message is one of the file @p file. */
    bool says(const QString &file, const QString &message) const;

private:
    QVector<Finding> m_list;
};
