#pragma once

#include "ItemPlace.h"
#include "findings/Finding.h"

#include <QtCore/QRectF>
#include <QtCore/QVector>

#include <functional>

class Content;
class PreviewStage;

QT_BEGIN_NAMESPACE
class QGraphicsItem;
class QGraphicsObject;
class QPainterPath;
QT_END_NAMESPACE

/** A text of a tip. */
struct ShownText
{
    QGraphicsObject *item = nullptr;
    QString words; ///< Without markup.
    QRectF painted; ///< Where its letters stand, in the item.
};

/** A tip that is on a stage, as checks look at it. */
class ShownTip
{
public:
    using Report = std::function<void(const Finding &)>;

    ShownTip(const Content &content, const PreviewStage &stage, const Report &report);

    const PreviewStage &stage() const { return m_stage; }
    const QVector<QGraphicsObject *> &items() const { return m_items; }

    /** The texts that can be seen, though perhaps not wholly. */
    const QVector<ShownText> &texts() const { return m_texts; }

    /** The user interface's file. */
    QString userInterface() const;

    /** The size of the tip's content. */
    QSizeF size() const;

    /** What can be seen of @p rect of @p item, in the scene. */
    QRectF seen(const QGraphicsItem *item, const QRectF &rect) const;

    /** Reports what is wrong with @p item where it is written. */
    void add(const QString &code, QGraphicsObject *item, const QString &message) const;

    /** Reports what is wrong with the words of @p text, where the content has them, or else where the item
     * is. */
    void add(const QString &code, const ShownText &text, const QString &message) const;

    /** Reports what is wrong with the user interface as a whole. */
    void add(const QString &code, const QString &message) const;

private:
    ItemPlace placeOf(QGraphicsObject *item) const;
    ItemPlace placeOf(const QString &words) const;

    const Content &m_content;
    const PreviewStage &m_stage;
    const Report m_report;
    QVector<QGraphicsObject *> m_items;
    QVector<ShownText> m_texts;
};
