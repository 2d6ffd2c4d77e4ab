#include "Icons.h"

#include <QtCore/QHash>
#include <QtGui/QGuiApplication>
#include <QtGui/QIconEngine>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>
#include <QtGui/QPalette>
#include <QtGui/QPixmap>

namespace {

// Strokes on a field of 24 by 24: M and L go to a point, Z closes, O is a circle (centre, radius), R a
// rectangle (corner, size), A an arc (centre, radius, start, sweep in degrees), D a dot; * turns to the
// accent colour.
const QHash<QString, QString> &strokes()
{
    static const QHash<QString, QString> table{
        {"file.new", "M6 3 L14 3 L19 8 L19 21 L6 21 Z * M14 3 L14 8 L19 8"},
        {"file.export", "M4 14 L4 20 L20 20 L20 14 * M12 4 L12 15 M8 11 L12 15 L16 11"},
        {"file.quit", "M14 4 L5 4 L5 20 L14 20 * M10 12 L21 12 M17 8 L21 12 L17 16"},
        {"edit.undo", "A13 14 6 -90 180 M13 8 L4 8 * M8 4 L4 8 L8 12"},
        {"edit.redo", "A11 14 6 -90 -180 M11 8 L20 8 * M16 4 L20 8 L16 12"},
        {"edit.select", "* M6 3 L6 18 L10 14 L13 20 L15.5 19 L12.5 13 L18 13 Z"},
        {"edit.selectAll",
         "M4 8 L4 4 L8 4 M16 4 L20 4 L20 8 M20 16 L20 20 L16 20 M8 20 L4 20 L4 16 * R8 8 8 8"},
        {"edit.delete", "M6 7 L7 20 L17 20 L18 7 * M4 7 L20 7 M9 7 L9 4 L15 4 L15 7"},
        {"draw.line", "M5 19 L19 5 * D5 19 D19 5"},
        {"draw.rectangle", "R4 6 16 12 * D4 6 D20 18"},
        {"draw.circle", "O12 12 8.5 * D12 12 D20.5 12"},
        {"draw.arc", "A12 17 10 30 120 * D3.4 12 D12 7 D20.6 12"},
        {"draw.polyline", "M4 18 L9 7 L14 15 L20 5 * D4 18 D9 7 D14 15 D20 5"},
        {"modify.move",
         "M12 3 L12 21 M3 12 L21 12 * M9 6 L12 3 L15 6 M9 18 L12 21 L15 18 M6 9 L3 12 L6 15 M18 9 L21 12 "
         "L18 15"},
        {"modify.rotate", "A12 12 8 20 290 * M14.5 7.5 L19.8 9.6 L21.5 4.2 D12 12"},
        {"modify.mirror", "M9.5 6 L3 18 L9.5 18 Z * M12 3 L12 21 M14.5 6 L21 18 L14.5 18 Z"},
        {"view.zoomIn", "O10 10 6.5 M15 15 L21 21 * M10 7 L10 13 M7 10 L13 10"},
        {"view.zoomOut", "O10 10 6.5 M15 15 L21 21 * M7 10 L13 10"},
        {"view.fit",
         "M4 9 L4 4 L9 4 M15 4 L20 4 L20 9 M20 15 L20 20 L15 20 M9 20 L4 20 L4 15 * R8.5 9.5 7 5"},
        {"view.snap", "M4 8 L20 8 M4 16 L20 16 M8 4 L8 20 M16 4 L16 20 * D16 8 O16 8 4"},
        {"view.grid", "R4 4 16 16 M4 9.3 L20 9.3 M4 14.6 L20 14.6 * M9.3 4 L9.3 20 M14.6 4 L14.6 20"},
        {"tips.help", "O12 12 8.5 * M12 11 L12 16.5 D12 7.5"},
    };
    return table;
}

struct Drawing
{
    QPainterPath lines[2];
    QPainterPath dots[2];
};

QVector<qreal> numbers(const QString &text)
{
    QVector<qreal> result;
    for (const QString &part : text.split(QLatin1Char(' '), Qt::SkipEmptyParts))
        result.append(part.toDouble());
    return result;
}

void addStroke(Drawing &drawing, int tone, QChar kind, const QVector<qreal> &n)
{
    QPainterPath &lines = drawing.lines[tone];
    if (kind == QLatin1Char('M'))
        lines.moveTo(n.at(0), n.at(1));
    else if (kind == QLatin1Char('L'))
        lines.lineTo(n.at(0), n.at(1));
    else if (kind == QLatin1Char('Z'))
        lines.closeSubpath();
    else if (kind == QLatin1Char('O'))
        lines.addEllipse(QPointF(n.at(0), n.at(1)), n.at(2), n.at(2));
    else if (kind == QLatin1Char('R'))
        lines.addRect(n.at(0), n.at(1), n.at(2), n.at(3));
    else if (kind == QLatin1Char('D'))
        drawing.dots[tone].addEllipse(QPointF(n.at(0), n.at(1)), 2, 2);
    else if (kind == QLatin1Char('A')) {
        const QRectF box(n.at(0) - n.at(2), n.at(1) - n.at(2), 2 * n.at(2), 2 * n.at(2));
        lines.arcMoveTo(box, n.at(3));
        lines.arcTo(box, n.at(3), n.at(4));
    }
}

Drawing parsed(const QString &text)
{
    Drawing drawing;
    int tone = 0;
    for (int at = 0; at < text.size();) {
        const QChar kind = text.at(at++);
        if (kind == QLatin1Char('*'))
            tone = 1;
        if (!kind.isLetter())
            continue;
        const int start = at;
        while (at < text.size() && !text.at(at).isLetter() && text.at(at) != QLatin1Char('*'))
            ++at;
        addStroke(drawing, tone, kind, numbers(text.mid(start, at - start)));
    }
    return drawing;
}

class Engine : public QIconEngine
{
public:
    explicit Engine(const QString &name)
        : m_name(name)
    {
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const QPalette palette = QGuiApplication::palette();
        const bool selected = mode == QIcon::Selected;
        const QColor &ink = palette.color(group, selected ? QPalette::HighlightedText : QPalette::ButtonText);
        const bool plain = selected || mode == QIcon::Disabled;
        const QColor accent = plain ? ink : palette.color(QPalette::Highlight);
        Icons::paint(painter, m_name, rect, ink, accent);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new Engine(m_name); }

private:
    QString m_name;
};

} // namespace

QIcon Icons::icon(const QString &name)
{
    return strokes().contains(name) ? QIcon(new Engine(name)) : QIcon();
}

void Icons::paint(QPainter *painter, const QString &name, const QRectF &rect, const QColor &ink,
                  const QColor &accent)
{
    const Drawing drawing = parsed(strokes().value(name));
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(rect.topLeft());
    painter->scale(rect.width() / 24, rect.height() / 24);
    for (int tone = 0; tone < 2; ++tone) {
        const QColor color = tone == 0 ? ink : accent;
        painter->setPen(QPen(color, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->setBrush(Qt::NoBrush);
        painter->drawPath(drawing.lines[tone]);
        painter->setPen(Qt::NoPen);
        painter->setBrush(color);
        painter->drawPath(drawing.dots[tone]);
    }
    painter->restore();
}
