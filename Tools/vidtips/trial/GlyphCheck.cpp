#include "GlyphCheck.h"

#include <QtGui/QGlyphRun>
#include <QtGui/QTextLayout>
#include <QtWidgets/QGraphicsObject>

namespace {

// As they are written: a mark that is alone stands on a circle, and others are not seen at all.
bool isSeenAlone(uint character)
{
    // What stands for a picture.
    if (character == QChar::ObjectReplacementCharacter)
        return false;
    switch (QChar::category(character)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_SpacingCombining:
    case QChar::Mark_Enclosing:
    case QChar::Separator_Space:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
    case QChar::Other_Control:
    case QChar::Other_Format:
        return false;
    default:
        return true;
    }
}

// Qt looks through the fonts that stand in for this one; glyph 0 is each font's box.
bool hasGlyphs(const QString &text, const QFont &font)
{
    QTextLayout layout(text, font);
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    const QList<QGlyphRun> runs = layout.glyphRuns();
    for (const QGlyphRun &run : runs) {
        if (run.glyphIndexes().contains(0))
            return false;
    }
    return true;
}

} // namespace

void GlyphCheck::run(const ShownTip &tip)
{
    for (const ShownText &text : tip.texts()) {
        const QString missing = missingIn(text.words, text.item->property("font").value<QFont>());
        if (!missing.isEmpty())
            tip.add("VT905", text, QString("no font has %1").arg(missing));
    }
}

QString GlyphCheck::missingIn(const QString &words, const QFont &font)
{
    QSet<uint> &known = m_known[font.toString()];
    QStringList missing;
    for (const uint character : words.toUcs4()) {
        if (known.contains(character) || !isSeenAlone(character))
            continue;
        const QString alone = QString::fromUcs4(&character, 1);
        if (hasGlyphs(alone, font))
            known << character;
        else
            missing << QString("\"%1\" (U+%2)")
                           .arg(alone, QString::number(character, 16).toUpper().rightJustified(4, '0'));
    }
    missing.removeDuplicates();
    return missing.join(", ");
}
