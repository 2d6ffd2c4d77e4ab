#pragma once

#include "qdeclarativekeys_p.h"

/** The attached object `KeyNavigation`: which item gets the focus on arrow and tabulator keys. */
class QDeclarativeKeyNavigation : public QObject, public QDeclarativeKeyFilter
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativeItem *left READ left WRITE setLeft NOTIFY leftChanged)
    Q_PROPERTY(QDeclarativeItem *right READ right WRITE setRight NOTIFY rightChanged)
    Q_PROPERTY(QDeclarativeItem *up READ up WRITE setUp NOTIFY upChanged)
    Q_PROPERTY(QDeclarativeItem *down READ down WRITE setDown NOTIFY downChanged)
    Q_PROPERTY(QDeclarativeItem *tab READ tab WRITE setTab NOTIFY tabChanged)
    Q_PROPERTY(QDeclarativeItem *backtab READ backtab WRITE setBacktab NOTIFY backtabChanged)
    Q_PROPERTY(Priority priority READ priority WRITE setPriority NOTIFY priorityChanged)

public:
    enum Priority { BeforeItem, AfterItem };
    Q_ENUM(Priority)

    explicit QDeclarativeKeyNavigation(QObject *parent = nullptr);

    static QDeclarativeKeyNavigation *qmlAttachedProperties(QObject *);

    QDeclarativeItem *left() const { return m_targets[Left]; }
    void setLeft(QDeclarativeItem *item) { setTarget(Left, item); }
    QDeclarativeItem *right() const { return m_targets[Right]; }
    void setRight(QDeclarativeItem *item) { setTarget(Right, item); }
    QDeclarativeItem *up() const { return m_targets[Up]; }
    void setUp(QDeclarativeItem *item) { setTarget(Up, item); }
    QDeclarativeItem *down() const { return m_targets[Down]; }
    void setDown(QDeclarativeItem *item) { setTarget(Down, item); }
    QDeclarativeItem *tab() const { return m_targets[Tab]; }
    void setTab(QDeclarativeItem *item) { setTarget(Tab, item); }
    QDeclarativeItem *backtab() const { return m_targets[Backtab]; }
    void setBacktab(QDeclarativeItem *item) { setTarget(Backtab, item); }
    Priority priority() const { return m_afterItem ? AfterItem : BeforeItem; }
    void setPriority(Priority);

Q_SIGNALS:
    void leftChanged();
    void rightChanged();
    void upChanged();
    void downChanged();
    void tabChanged();
    void backtabChanged();
    void priorityChanged();

private:
    enum Direction { Left, Right, Up, Down, Tab, Backtab, Directions };

    void setTarget(Direction, QDeclarativeItem *);
    Direction direction(int key) const;
    void moveFocus(Direction);
    void keyPressed(QKeyEvent *, bool post) override;
    void keyReleased(QKeyEvent *, bool post) override;

    QDeclarativeItem *const m_item;
    QPointer<QDeclarativeItem> m_targets[Directions];
};

QML_DECLARE_TYPEINFO(QDeclarativeKeyNavigation, QML_HAS_ATTACHED_PROPERTIES)
