#pragma once

#include <QtGui/QColor>

/** The colours of the drawing area. */
struct CanvasColors
{
    QColor paper;
    QColor minorGrid;
    QColor majorGrid;
    QColor ink;
    QColor accent;

    /** Dark lines on light paper. */
    static CanvasColors light() { return {"#fbfcfd", "#eceff3", "#dde2e9", "#28323e", "#1f6feb"}; }

    /** Light lines on dark paper; the clips are drawn in these. */
    static CanvasColors dark() { return {"#171d25", "#202832", "#2a3441", "#dfe6ee", "#58a6ff"}; }
};
