#pragma once

#include <QtCore/QVector>
#include <QtGui/QFont>
#include <QtGui/QTextLayout>

#include <limits>

class QPainter;

/**
 * Plain or styled text broken into lines, the half of Text that is not full rich text.
 *
 * Made anew when anything that has a part in it changes; drawing reuses the glyphs found then.
 */
class QDeclarativeTextLayout
{
public:
    struct Parameters
    {
        QString text; ///< lines are separated by QChar::LineSeparator
        QVector<QTextLayout::FormatRange> formats;
        QFont font;
        qreal width = 0; ///< in pixels; has a meaning only with hasWidth
        bool hasWidth = false; ///< else the text is as wide as it needs
        Qt::Alignment alignment = Qt::AlignLeft; ///< has a meaning only with a width
        QTextOption::WrapMode wrapMode = QTextOption::NoWrap;
        Qt::TextElideMode elide = Qt::ElideNone;
        int maximumLineCount = std::numeric_limits<int>::max();
        qreal lineHeight = 1; ///< in pixels if fixed, else a factor
        bool lineHeightIsFixed = false;
        bool isStyled = false; ///< a single line of styled text is not elided
        int sourceLength = 0; ///< the characters of the text with its markup
    };

    void layOut(const Parameters &);

    /** The size that the lines take, rounded up to whole pixels. */
    QSizeF size() const { return lineBounds; }

    /** Where the lines are; differs from size() where text is wider than its width. */
    QRectF boundingRect() const { return bounds; }
    int lineCount() const { return qMax(1, layout.lineCount()); }

    /** Whether text is missing at the end, or was elided. */
    bool isTruncated() const { return truncated; }

    /** Returns the width of the longest line if none is wrapped or elided. */
    static qreal naturalWidth(const Parameters &);

    /**
     * Draws the lines at @p position that reach into @p exposed, in the pen's colour what no format gives a
     * colour of its own.
     */
    void draw(QPainter *, const QPointF &position, const QRectF &exposed) const;

private:
    void breakLines(const Parameters &);
    bool elideSingleLine(const Parameters &);
    void elideLine(QTextLine *, const Parameters &);
    void measure();

    QTextLayout layout;
    QSizeF lineBounds;
    QRectF bounds;
    QRectF ellipsis; ///< what stands behind the last line where lines are missing
    qreal height = 0;
    bool truncated = false;
};
