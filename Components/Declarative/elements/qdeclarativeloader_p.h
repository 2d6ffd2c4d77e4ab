#pragma once

#include "item/qdeclarativeitem.h"

#include <QtCore/QPointer>
#include <QtCore/QUrl>

/**
 * Shows what a component or a file makes, made when asked for; a focus scope.
 *
 * A side of the loader that was set is given to the item, else the item's is taken as implicit size. The old
 * item leaves the scene at once and is destroyed at the next chance. sourceChanged tells of source and
 * sourceComponent alike, since setting one takes the other back; after each load it comes first, then
 * statusChanged, progressChanged, itemChanged and loaded.
 */
class QDeclarativeLoader : public QDeclarativeItem
{
    Q_OBJECT
    Q_PROPERTY(qreal implicitWidth READ implicitWidth NOTIFY implicitWidthChanged REVISION 1)
    Q_PROPERTY(qreal implicitHeight READ implicitHeight NOTIFY implicitHeightChanged REVISION 1)
    Q_PROPERTY(QUrl source READ source WRITE setSource NOTIFY sourceChanged)
    Q_PROPERTY(QQmlComponent *sourceComponent READ sourceComponent WRITE setSourceComponent RESET
                   resetSourceComponent NOTIFY sourceChanged)
    Q_PROPERTY(QGraphicsObject *item READ item NOTIFY itemChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(qreal progress READ progress NOTIFY progressChanged)

public:
    enum Status { Null, Ready, Loading, Error };
    Q_ENUM(Status)

    explicit QDeclarativeLoader(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeLoader() override;

    QUrl source() const;
    void setSource(const QUrl &);
    QQmlComponent *sourceComponent() const;
    void setSourceComponent(QQmlComponent *);
    void resetSourceComponent();
    QGraphicsObject *item() const;
    Status status() const;

    /** How much of a file from the network is there, 0 to 1. */
    qreal progress() const;

Q_SIGNALS:
    void itemChanged();
    void sourceChanged();
    void statusChanged();
    void progressChanged();
    void loaded();

protected:
    void componentComplete() override;
    void geometryChanged(const QRectF &newGeometry, const QRectF &oldGeometry) override;

private:
    void clear();
    void countGoing();
    void load();
    void finishLoading();
    QObject *createObject();
    void adopt(QGraphicsObject *);
    void announce();
    void takeSize();
    void giveSize();
    void noteGivenSize(QGraphicsObject *);
    void itemWidthChanged();
    void itemHeightChanged();

    QUrl url;
    QPointer<QQmlComponent> component;
    QPointer<QGraphicsObject> loadedItem;
    bool ownsComponent = false;
    bool isSizing = false;
    // Whether the item's width, its height, are ours and it has not set them since.
    bool givesWidth = false;
    bool givesHeight = false;
    int going = 0; ///< items given up since the event loop was reached
    QMetaObject::Connection waking;
};

QML_DECLARE_TYPE(QDeclarativeLoader)
