#include "qdeclarativescalegrid_p.h"

#include "bounds/qdeclarativebounds_p.h"

#include <QtCore/QDebug>
#include <QtCore/QIODevice>
#include <QtCore/QStringList>

void QDeclarativeScaleGrid::setMargins(const QMargins &margins)
{
    if (margins == m_margins)
        return;
    m_margins = margins;
    Q_EMIT borderChanged();
}

void QDeclarativeScaleGrid::setLeft(int left)
{
    setMargins(QMargins(left, top(), right(), bottom()));
}

void QDeclarativeScaleGrid::setTop(int top)
{
    setMargins(QMargins(left(), top, right(), bottom()));
}

void QDeclarativeScaleGrid::setRight(int right)
{
    setMargins(QMargins(left(), top(), right, bottom()));
}

void QDeclarativeScaleGrid::setBottom(int bottom)
{
    setMargins(QMargins(left(), top(), right(), bottom));
}

QDeclarativeGridScaledImage::QDeclarativeGridScaledImage(QIODevice *device)
{
    const QStringList lines =
        QString::fromUtf8(device->read(QDeclarativeBounds::description)).split(QLatin1Char('\n'));
    for (const QString &line : lines)
        readLine(line);
}

void QDeclarativeGridScaledImage::readLine(const QString &line)
{
    const int colon = line.indexOf(QLatin1Char(':'));
    if (colon < 0)
        return;
    const QString key = line.left(colon).trimmed();
    QString value = line.mid(colon + 1).trimmed();
    if (key == QLatin1String("border.left"))
        m_border.setLeft(value.toInt());
    else if (key == QLatin1String("border.top"))
        m_border.setTop(value.toInt());
    else if (key == QLatin1String("border.right"))
        m_border.setRight(value.toInt());
    else if (key == QLatin1String("border.bottom"))
        m_border.setBottom(value.toInt());
    else if (key == QLatin1String("source"))
        m_source = value.remove(QLatin1Char('"'));
    else if (key == QLatin1String("horizontalTileRule"))
        m_horizontalTileRule = tileRule(value);
    else if (key == QLatin1String("verticalTileRule"))
        m_verticalTileRule = tileRule(value);
}

Qt::TileRule QDeclarativeGridScaledImage::tileRule(const QString &name)
{
    const QString rule = QString(name).remove(QLatin1Char('"'));
    if (rule == QLatin1String("Repeat"))
        return Qt::RepeatTile;
    if (rule == QLatin1String("Round"))
        return Qt::RoundTile;
    if (rule != QLatin1String("Stretch"))
        qWarning("QDeclarativeGridScaledImage: Invalid tile rule specified. Using Stretch.");
    return Qt::StretchTile;
}

bool QDeclarativeGridScaledImage::isValid() const
{
    return !m_source.isEmpty() && m_border.left() >= 0 && m_border.top() >= 0 && m_border.right() >= 0
        && m_border.bottom() >= 0;
}

#include "moc_qdeclarativescalegrid_p.cpp"
