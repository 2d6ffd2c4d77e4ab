#pragma once

#include "qdeclarativeitem_p.h"

#include <QtCore/QObject>

/** The attached object `LayoutMirroring`: turns the horizontal layout of an item, and of its children. */
class QDeclarativeLayoutMirroring : public QObject
{
    Q_OBJECT
    Q_PROPERTY(bool enabled READ isEnabled WRITE setEnabled RESET resetEnabled NOTIFY enabledChanged)
    Q_PROPERTY(
        bool childrenInherit READ childrenInherit WRITE setChildrenInherit NOTIFY childrenInheritChanged)

public:
    explicit QDeclarativeLayoutMirroring(QObject *parent = nullptr);

    static QDeclarativeLayoutMirroring *qmlAttachedProperties(QObject *);

    /** Whether the item is mirrored, set here or inherited. */
    bool isEnabled() const;
    void setEnabled(bool);
    void resetEnabled();
    bool childrenInherit() const;
    void setChildrenInherit(bool);

Q_SIGNALS:
    void enabledChanged();
    void childrenInheritChanged();

private:
    friend class QDeclarativeItemPrivate;

    QDeclarativeItem *const m_item;
};

QML_DECLARE_TYPEINFO(QDeclarativeLayoutMirroring, QML_HAS_ATTACHED_PROPERTIES)
