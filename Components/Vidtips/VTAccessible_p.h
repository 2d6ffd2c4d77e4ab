#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtDeclarative/qdeclarative.h>
#include <QtGui/QAccessible>

QT_BEGIN_NAMESPACE
class QGraphicsItem;
QT_END_NAMESPACE

namespace Vidtips {

/**
 * What QML says of an item to those who do not see it: the attached type VTAccessible. Texts, clips, pictures
 * and clickable areas are known without it; it gives them names, and makes one thing of what consists of
 * several items.
 */
class VTAccessible : public QObject
{
    Q_OBJECT
    /** What the item is; NoRole leaves it to what kind of item it is. */
    Q_PROPERTY(Role role READ role WRITE setRole NOTIFY roleChanged)
    /** What it is called, in the user's language. */
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    /** What there is to say besides. */
    Q_PROPERTY(QString description READ description WRITE setDescription NOTIFY descriptionChanged)
    /** The item is of no interest, as a decoration is; what is inside it may be. */
    Q_PROPERTY(bool ignored READ isIgnored WRITE setIgnored NOTIFY ignoredChanged)

public:
    /** What an item can be. There is more inside a Grouping or a List; the others are all of a piece. */
    enum Role {
        NoRole = QAccessible::NoRole,
        StaticText = QAccessible::StaticText,
        Heading = QAccessible::Heading,
        Button = QAccessible::Button,
        Link = QAccessible::Link,
        Graphic = QAccessible::Graphic,
        Animation = QAccessible::Animation,
        List = QAccessible::List,
        ListItem = QAccessible::ListItem,
        Grouping = QAccessible::Grouping
    };
    Q_ENUM(Role)

    /** Makes what is attached to @p item, which owns it. */
    explicit VTAccessible(QObject *item);

    /** Called by the engine for the first mention of the type in @p object. */
    static VTAccessible *qmlAttachedProperties(QObject *object);

    /** Returns what is attached to @p item, or null. */
    static VTAccessible *of(const QObject *item);

    /** Tells whether what is inside an item of @p role is part of it and not told. */
    static bool isWhole(QAccessible::Role role);

    Role role() const { return m_role; }
    void setRole(Role role);
    QString name() const { return m_name; }
    void setName(const QString &name);
    QString description() const { return m_description; }
    void setDescription(const QString &description);
    bool isIgnored() const { return m_ignored; }
    void setIgnored(bool ignored);

    /** Tells whether QML handles pressed(). */
    bool canBePressed() const;

Q_SIGNALS:
    /** Emitted when the role changed. */
    void roleChanged();
    /** Emitted when the name changed. */
    void nameChanged();
    /** Emitted when the description changed. */
    void descriptionChanged();
    /** Emitted when ignored changed. */
    void ignoredChanged();
    /** Emitted when somebody who does not use the pointer presses the item. Without a handler it is clicked.
     */
    void pressed();

private:
    Q_DISABLE_COPY(VTAccessible)
    void tell(QAccessible::Event change) const;

    Role m_role = NoRole;
    QString m_name;
    QString m_description;
    bool m_ignored = false;
};

} // namespace Vidtips

QML_DECLARE_TYPEINFO(Vidtips::VTAccessible, QML_HAS_ATTACHED_PROPERTIES)
