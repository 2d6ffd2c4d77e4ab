#pragma once

#include "item/qdeclarativeanchors_p.h"

#include <QtWidgets/QGraphicsWidget>

#include <memory>

/** What every graphics widget has in QML besides its own properties: anchors, and lines to anchor others to.
 */
class QDeclarativeGraphicsWidget : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativeAnchors *anchors READ anchors DESIGNABLE false CONSTANT FINAL)
    Q_PROPERTY(QDeclarativeAnchorLine left READ left CONSTANT FINAL)
    Q_PROPERTY(QDeclarativeAnchorLine right READ right CONSTANT FINAL)
    Q_PROPERTY(QDeclarativeAnchorLine horizontalCenter READ horizontalCenter CONSTANT FINAL)
    Q_PROPERTY(QDeclarativeAnchorLine top READ top CONSTANT FINAL)
    Q_PROPERTY(QDeclarativeAnchorLine bottom READ bottom CONSTANT FINAL)
    Q_PROPERTY(QDeclarativeAnchorLine verticalCenter READ verticalCenter CONSTANT FINAL)

public:
    /** Made by the engine for the graphics widget @p widget, which owns it. */
    explicit QDeclarativeGraphicsWidget(QObject *widget);

    QDeclarativeAnchors *anchors();
    QDeclarativeAnchorLine left() const { return {widget(), QDeclarativeAnchorLine::Left}; }
    QDeclarativeAnchorLine right() const { return {widget(), QDeclarativeAnchorLine::Right}; }
    QDeclarativeAnchorLine horizontalCenter() const { return {widget(), QDeclarativeAnchorLine::HCenter}; }
    QDeclarativeAnchorLine top() const { return {widget(), QDeclarativeAnchorLine::Top}; }
    QDeclarativeAnchorLine bottom() const { return {widget(), QDeclarativeAnchorLine::Bottom}; }
    QDeclarativeAnchorLine verticalCenter() const { return {widget(), QDeclarativeAnchorLine::VCenter}; }

private:
    QGraphicsWidget *widget() const { return static_cast<QGraphicsWidget *>(parent()); }

    std::unique_ptr<QDeclarativeAnchors> m_anchors; ///< made when QML first names them
};
