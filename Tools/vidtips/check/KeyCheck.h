#pragma once

#include "shared/Position.h"

#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

class Content;
class Findings;
struct ControlFile;

/** Compares the keys of all control files: what is there twice, and what is missing in a locale. */
class KeyCheck
{
public:
    void run(const Content &content, Findings &findings);

private:
    struct Entry
    {
        QString file;
        Position position;
        QString locale; ///< In Qt's spelling; empty for every locale.
    };

    void collect(const ControlFile &file, Findings &findings);
    void checkDoubles(const QString &key, const QVector<Entry> &entries, Findings &findings);
    void checkLocales(const QString &key, const QVector<Entry> &entries, Findings &findings);

    QMap<QString, QVector<Entry>> m_keys;
    QStringList m_locales;
};
