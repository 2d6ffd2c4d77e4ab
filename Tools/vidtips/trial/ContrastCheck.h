#pragma once

#include "ShownTip.h"

#include <QtGui/QColor>

QT_BEGIN_NAMESPACE
class QImage;
QT_END_NAMESPACE

/**
 * Finds texts that are hard to read on what is painted behind them, by the Web Content Accessibility
 * Guidelines 2.2, level AA: 4.5 to 1, and 3 to 1 for large letters.
 */
class ContrastCheck
{
public:
    static void run(const ShownTip &tip);

    /** The contrast of two opaque colours as the guidelines define it, from 1 to 21. */
    static qreal between(QRgb one, QRgb other);

private:
    static void checkText(const ShownTip &tip, const ShownText &text, const QColor &colour,
                          const QImage &behind, QImage &whole);
};
