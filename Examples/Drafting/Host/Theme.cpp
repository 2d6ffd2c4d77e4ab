#include "Theme.h"

#include "Core/CanvasColors.h"

#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QStyleOption>
#include <QtWidgets/QToolTip>

namespace {

struct Tones
{
    QColor window, base, text, faint, button, line, accent, accentText, tip;
};

QPalette fromTones(const Tones &t)
{
    QPalette palette;
    palette.setColor(QPalette::Window, t.window);
    palette.setColor(QPalette::Base, t.base);
    palette.setColor(QPalette::AlternateBase, t.window);
    palette.setColor(QPalette::Button, t.button);
    for (QPalette::ColorRole role :
         {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        palette.setColor(role, t.text);
        palette.setColor(QPalette::Disabled, role, t.faint);
    }
    palette.setColor(QPalette::PlaceholderText, t.faint);
    palette.setColor(QPalette::ToolTipBase, t.tip);
    palette.setColor(QPalette::Highlight, t.accent);
    palette.setColor(QPalette::HighlightedText, t.accentText);
    palette.setColor(QPalette::Link, t.accent);
    palette.setColor(QPalette::Light, t.button.lighter(108));
    palette.setColor(QPalette::Midlight, t.button.lighter(104));
    palette.setColor(QPalette::Mid, t.line);
    palette.setColor(QPalette::Dark, t.line.darker(120));
    palette.setColor(QPalette::Shadow, t.line.darker(160));
    return palette;
}

// Icons of chosen menu items are drawn for the colour behind them.
class MenuStyle : public QProxyStyle
{
public:
    MenuStyle()
        : QProxyStyle(QStringLiteral("Fusion"))
    {
    }

    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (element != CE_MenuItem || !item || !(item->state & State_Selected)
            || !(item->state & State_Enabled)) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        QStyleOptionMenuItem chosen(*item);
        const int side = pixelMetric(PM_SmallIconSize, option, widget);
        if (!item->icon.isNull())
            chosen.icon = QIcon(
                item->icon.pixmap(widget->window()->windowHandle(), QSize(side, side), QIcon::Selected));
        QProxyStyle::drawControl(element, &chosen, painter, widget);
    }
};

} // namespace

QPalette Theme::palette(const QString &style)
{
    if (style == QLatin1String("dark"))
        return fromTones({"#20262e", "#171d25", "#e3e9f0", "#6b7684", "#2a323c", "#39434f", "#3b8cf0",
                          "#ffffff", "#d5dce4"});
    return fromTones(
        {"#f3f5f7", "#ffffff", "#1f2731", "#9aa4b0", "#f8f9fb", "#ccd3db", "#1f6feb", "#ffffff", "#ffffe1"});
}

CanvasColors Theme::canvas(const QString &style)
{
    return style == QLatin1String("dark") ? CanvasColors::dark() : CanvasColors::light();
}

void Theme::apply(const QString &style)
{
    QApplication::setStyle(new MenuStyle);
    const QPalette colors = palette(style);
    QApplication::setPalette(colors);
    // Simple tips of other packages may write in black on the tool-tip colour, whatever the rest looks like.
    QPalette tip = colors;
    tip.setColor(QPalette::ToolTipText, Qt::black);
    tip.setColor(QPalette::WindowText, Qt::black);
    QToolTip::setPalette(tip);
}
