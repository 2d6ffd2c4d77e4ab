#pragma once

#include <QtCore/QHash>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtGui/QTextDocument>

class QQuickPixmap;
class QPainter;

/**
 * A rich text whose pictures come through the engine: its image providers, its network access, its cache.
 *
 * Addresses of pictures are relative to the file that the owner is written in. A picture that is still on its
 * way takes no room; when it is there the text changes its size and loaded() is emitted.
 */
class QDeclarativeTextDocument : public QTextDocument
{
    Q_OBJECT

public:
    /** @p owner is what messages name and addresses are relative to; it has to outlive the document. */
    explicit QDeclarativeTextDocument(QObject *owner);
    ~QDeclarativeTextDocument() override;

    /** Replaces the text. Pictures of the text before are let go. */
    void setMarkup(const QString &);

    /** Returns @p markup, or its words alone, with a message, where tables are nested too deep in it. */
    QString bounded(const QString &markup) const;

    /**
     * Draws what reaches into @p exposed in @p color, in which @p everything is drawn even where the text
     * names other colours.
     */
    void draw(QPainter *, const QColor &color, bool everything, const QRectF &exposed);

Q_SIGNALS:
    void loaded();

protected:
    QVariant loadResource(int type, const QUrl &name) override;

private Q_SLOTS:
    void pictureFinished();

private:
    struct Picture
    {
        QQuickPixmap *source = nullptr;
        bool isPending = true;
    };

    bool refuses(const QUrl &name) const;
    void settle(Picture &);
    QVariant picture(const Picture &) const;

    QObject *const owner;
    QHash<QUrl, Picture> pictures;
};
