#include "PreviewLook.h"

#include <QtGui/QPalette>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleFactory>
#include <QtWidgets/QToolTip>

namespace {

QPalette darkPalette()
{
    const QColor window(0x20, 0x26, 0x2e);
    const QColor text(0xe3, 0xe9, 0xf0);
    QPalette palette(QColor(0x2a, 0x32, 0x3c), window);
    for (QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
        palette.setColor(role, text);
    palette.setColor(QPalette::Base, QColor(0x17, 0x1d, 0x25));
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::Highlight, QColor(0x3b, 0x8c, 0xf0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

} // namespace

void PreviewLook::apply(bool isDark)
{
    QApplication::setStyle(QStyleFactory::create("Fusion"));
    const QPalette palette = isDark ? darkPalette() : QApplication::style()->standardPalette();
    QApplication::setPalette(palette);
    QToolTip::setPalette(palette);
}
