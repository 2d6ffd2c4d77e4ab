#pragma once

#include <QtCore/QVector>
#include <QtGui/QFont>
#include <QtGui/QTextLayout>

/**
 * Turns the markup of Text.StyledText into plain text with formats.
 *
 * Known are b, i, br and font with its color and size attributes, and the entities amp, lt, gt, quot and
 * nbsp; the tags of anything else are dropped and what they enclose is kept. Sizes 1 to 7 scale the font's
 * size in points, so they do nothing for a font whose size is given in pixels.
 */
class QDeclarativeStyledText
{
public:
    QDeclarativeStyledText(const QString &markup, const QFont &font);

    /** The text without markup; lines are separated by QChar::LineSeparator. */
    QString text() const { return plain; }

    /** What differs from the font and colour of the whole, in the order of the text. */
    QVector<QTextLayout::FormatRange> formats() const { return ranges; }

private:
    struct OpenTag
    {
        QString name;
        QTextCharFormat outerFormat;
    };

    int readTag(int start);
    int readEntity(int start);
    void openTag(const QString &name, const QString &attributes);
    void closeTag(const QString &name);
    void applyFont(const QString &attributes);
    void appendText(const QString &);

    const QString markup;
    const QFont font;
    QString plain;
    QVector<QTextLayout::FormatRange> ranges;
    QVector<OpenTag> openTags;
    QTextCharFormat format;
};
