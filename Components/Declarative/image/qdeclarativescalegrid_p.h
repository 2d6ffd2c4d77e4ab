#pragma once

#include <QtCore/QMargins>
#include <QtCore/QObject>
#include <QtCore/QString>

class QIODevice;

/** The border of a BorderImage: how far from each edge, in pixels, the picture is kept as it is. */
class QDeclarativeScaleGrid : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int left READ left WRITE setLeft NOTIFY borderChanged)
    Q_PROPERTY(int top READ top WRITE setTop NOTIFY borderChanged)
    Q_PROPERTY(int right READ right WRITE setRight NOTIFY borderChanged)
    Q_PROPERTY(int bottom READ bottom WRITE setBottom NOTIFY borderChanged)

public:
    using QObject::QObject;

    const QMargins &margins() const { return m_margins; }
    void setMargins(const QMargins &);

    int left() const { return m_margins.left(); }
    void setLeft(int);
    int top() const { return m_margins.top(); }
    void setTop(int);
    int right() const { return m_margins.right(); }
    void setRight(int);
    int bottom() const { return m_margins.bottom(); }
    void setBottom(int);

Q_SIGNALS:
    void borderChanged();

private:
    QMargins m_margins;
};

/**
 * What a .sci file says: lines of a key, a colon and a value.
 *
 * The keys are source, border.left, border.top, border.right, border.bottom, horizontalTileRule and
 * verticalTileRule. Other lines are ignored. A tile rule that does not exist is warned of.
 */
class QDeclarativeGridScaledImage
{
public:
    QDeclarativeGridScaledImage() = default;

    /** Reads at most 64 KiB of @p device, which need not be open: Qt then warns of it. */
    explicit QDeclarativeGridScaledImage(QIODevice *device);

    /** Whether a picture and all four borders are there. */
    bool isValid() const;

    /** The picture's address, relative to the file. */
    QString source() const { return m_source; }
    QMargins border() const { return m_border; }
    Qt::TileRule horizontalTileRule() const { return m_horizontalTileRule; }
    Qt::TileRule verticalTileRule() const { return m_verticalTileRule; }

private:
    void readLine(const QString &line);
    static Qt::TileRule tileRule(const QString &name);

    QString m_source;
    QMargins m_border = QMargins(-1, -1, -1, -1);
    Qt::TileRule m_horizontalTileRule = Qt::StretchTile;
    Qt::TileRule m_verticalTileRule = Qt::StretchTile;
};
