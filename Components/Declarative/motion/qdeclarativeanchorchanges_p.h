#pragma once

#include "item/qdeclarativeanchors_p.h"

#include <QtCore/QPointer>

#include <private/qqmlabstractbinding_p.h>
#include <private/qquickstate_p.h>

/** The `anchors` of AnchorChanges: lines that a state sets, and such that it releases with `undefined`. */
class QDeclarativeAnchorSet : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QQmlScriptString left READ left WRITE setLeft)
    Q_PROPERTY(QQmlScriptString right READ right WRITE setRight)
    Q_PROPERTY(QQmlScriptString horizontalCenter READ horizontalCenter WRITE setHorizontalCenter)
    Q_PROPERTY(QQmlScriptString top READ top WRITE setTop)
    Q_PROPERTY(QQmlScriptString bottom READ bottom WRITE setBottom)
    Q_PROPERTY(QQmlScriptString verticalCenter READ verticalCenter WRITE setVerticalCenter)
    Q_PROPERTY(QQmlScriptString baseline READ baseline WRITE setBaseline)

public:
    enum Line { Left, Right, HorizontalCenter, Top, Bottom, VerticalCenter, Baseline, Lines };

    explicit QDeclarativeAnchorSet(QObject *parent = nullptr)
        : QObject(parent)
    {
    }

    /** What the state says of @p line; empty where it says nothing. */
    QQmlScriptString script(Line line) const { return m_scripts[line]; }

    QQmlScriptString left() const { return m_scripts[Left]; }
    void setLeft(const QQmlScriptString &script) { m_scripts[Left] = script; }
    QQmlScriptString right() const { return m_scripts[Right]; }
    void setRight(const QQmlScriptString &script) { m_scripts[Right] = script; }
    QQmlScriptString horizontalCenter() const { return m_scripts[HorizontalCenter]; }
    void setHorizontalCenter(const QQmlScriptString &script) { m_scripts[HorizontalCenter] = script; }
    QQmlScriptString top() const { return m_scripts[Top]; }
    void setTop(const QQmlScriptString &script) { m_scripts[Top] = script; }
    QQmlScriptString bottom() const { return m_scripts[Bottom]; }
    void setBottom(const QQmlScriptString &script) { m_scripts[Bottom] = script; }
    QQmlScriptString verticalCenter() const { return m_scripts[VerticalCenter]; }
    void setVerticalCenter(const QQmlScriptString &script) { m_scripts[VerticalCenter] = script; }
    QQmlScriptString baseline() const { return m_scripts[Baseline]; }
    void setBaseline(const QQmlScriptString &script) { m_scripts[Baseline] = script; }

private:
    QQmlScriptString m_scripts[Lines];
};

/** Gives an item other anchors while a state is active, and its own ones back afterwards. */
class QDeclarativeAnchorChanges : public QQuickStateOperation, public QQuickStateActionEvent
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativeItem *target READ target WRITE setTarget)
    Q_PROPERTY(QDeclarativeAnchorSet *anchors READ anchors CONSTANT)

public:
    explicit QDeclarativeAnchorChanges(QObject *parent = nullptr);

    QDeclarativeItem *target() const { return m_target; }
    void setTarget(QDeclarativeItem *target) { m_target = target; }
    QDeclarativeAnchorSet *anchors() { return &m_anchors; }

    /** What an animation of this change has to move: x, y, width and height, as far as they differ. */
    ActionList additionalActions() const;

    ActionList actions() override;
    EventType type() const override { return AnchorChanges; }
    void execute() override;
    bool isReversable() override { return true; }
    void reverse() override;
    void saveOriginals() override;
    bool needsCopy() override { return true; }
    void copyOriginals(QQuickStateActionEvent *) override;
    void rewind() override;
    void saveCurrentValues() override;
    void saveTargetValues() override;
    bool changesBindings() override { return true; }
    void clearBindings() override;
    bool mayOverride(QQuickStateActionEvent *) override;

private:
    using Line = QDeclarativeAnchorSet::Line;
    static constexpr int Lines = QDeclarativeAnchorSet::Lines;

    struct Original
    {
        QQmlAbstractBinding::Ptr binding;
        QDeclarativeAnchorLine line;
    };

    QQmlProperty property(int line) const;
    QRectF geometry() const;
    void moveTo(const QRectF &);
    void restore(int line);
    void apply(int line);
    bool isConcerned(int line) const;
    bool hadLine(std::initializer_list<int> lines) const;
    bool setsAny(std::initializer_list<Line> lines) const;
    bool setsBoth(int from, int to, int centre) const;

    QPointer<QDeclarativeItem> m_target;
    QDeclarativeAnchorSet m_anchors;
    Original m_original[Lines];
    QRectF m_originalGeometry;
    QRectF m_currentGeometry;
    QRectF m_targetGeometry;
};
