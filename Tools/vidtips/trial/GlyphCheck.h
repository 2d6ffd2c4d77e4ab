#pragma once

#include "ShownTip.h"

#include <QtCore/QHash>
#include <QtCore/QSet>
#include <QtGui/QFont>

/** Finds characters that no font has, so that boxes are seen in their place. */
class GlyphCheck
{
public:
    void run(const ShownTip &tip);

private:
    QString missingIn(const QString &words, const QFont &font);

    QHash<QString, QSet<uint>> m_known; ///< By font: characters that it, or another in its place, has.
};
