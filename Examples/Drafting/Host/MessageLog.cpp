#include "MessageLog.h"

#include <QtCore/QTime>
#include <QtGui/QPainter>

namespace {

constexpr int maximumLines = 500;

QIcon dot(const QColor &color)
{
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(QPointF(16, 16), 8, 8);
    return QIcon(pixmap);
}

QColor severityColor(MessageLog::Severity severity)
{
    switch (severity) {
    case MessageLog::Error:
        return "#d1372b";
    case MessageLog::Warning:
        return "#d98a00";
    case MessageLog::Information:
        return "#3b8cf0";
    case MessageLog::Debug:
        break;
    }
    return "#8a94a0";
}

} // namespace

MessageLog::MessageLog(QWidget *parent)
    : QListWidget(parent)
{
    setFrameShape(NoFrame);
    setSelectionMode(ExtendedSelection);
    setUniformItemSizes(true);
    setIconSize(QSize(12, 12));
}

void MessageLog::append(Severity severity, const QString &text)
{
    if (count() >= maximumLines)
        delete takeItem(0);
    const QString time = QTime::currentTime().toString(QStringLiteral("HH:mm:ss"));
    addItem(new QListWidgetItem(dot(severityColor(severity)), time + QStringLiteral("  ") + text));
    scrollToBottom();
}
