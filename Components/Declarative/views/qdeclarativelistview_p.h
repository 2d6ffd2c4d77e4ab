#pragma once

#include "qdeclarativeitemview_p.h"

class QDeclarativeListView;
class QDeclarativeListViewPrivate;

/** The "section" group of a ListView: what splits the rows into sections, and what heads each. */
class QDeclarativeViewSection : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString property READ property WRITE setProperty NOTIFY propertyChanged)
    Q_PROPERTY(SectionCriteria criteria READ criteria WRITE setCriteria NOTIFY criteriaChanged)
    Q_PROPERTY(QQmlComponent *delegate READ delegate WRITE setDelegate NOTIFY delegateChanged)

public:
    enum SectionCriteria { FullString, FirstCharacter };
    Q_ENUM(SectionCriteria)

    explicit QDeclarativeViewSection(QObject *parent = nullptr);

    QString property() const { return m_property; }
    void setProperty(const QString &);
    SectionCriteria criteria() const { return m_criteria; }
    void setCriteria(SectionCriteria);
    QQmlComponent *delegate() const { return m_delegate; }
    void setDelegate(QQmlComponent *);

    /** The section of a row whose section property is @p value. */
    QString sectionOf(const QString &value) const;

Q_SIGNALS:
    void propertyChanged();
    void criteriaChanged();
    void delegateChanged();

private:
    QString m_property;
    QPointer<QQmlComponent> m_delegate;
    SectionCriteria m_criteria = FullString;
};

/** What a ListView attaches to its delegates. */
class QDeclarativeListViewAttached : public QDeclarativeItemViewAttached
{
    Q_OBJECT
    Q_PROPERTY(QDeclarativeListView *view READ view NOTIFY viewChanged)
    Q_PROPERTY(QString previousSection READ previousSection NOTIFY prevSectionChanged)
    Q_PROPERTY(QString nextSection READ nextSection NOTIFY nextSectionChanged)
    Q_PROPERTY(QString section READ section NOTIFY sectionChanged)

public:
    explicit QDeclarativeListViewAttached(QObject *item);

    QDeclarativeListView *view() const;
    QString previousSection() const { return m_previousSection; }
    QString section() const { return m_section; }
    QString nextSection() const { return m_nextSection; }
    void setSections(const QString &previous, const QString &section, const QString &next);

Q_SIGNALS:
    void prevSectionChanged();
    void sectionChanged();
    void nextSectionChanged();

private:
    QString m_previousSection;
    QString m_section;
    QString m_nextSection;
};

/**
 * Shows the rows of a model below or beside each other.
 *
 * The sizes of rows that have no item are taken to be the average of those that have, so contentHeight and
 * the position of the first row change as the view moves over rows of differing size.
 */
class QDeclarativeListView : public QDeclarativeItemView
{
    Q_OBJECT
    Q_PROPERTY(qreal highlightMoveSpeed READ highlightMoveSpeed WRITE setHighlightMoveSpeed NOTIFY
                   highlightMoveSpeedChanged)
    Q_PROPERTY(qreal highlightResizeSpeed READ highlightResizeSpeed WRITE setHighlightResizeSpeed NOTIFY
                   highlightResizeSpeedChanged)
    Q_PROPERTY(int highlightResizeDuration READ highlightResizeDuration WRITE setHighlightResizeDuration
                   NOTIFY highlightResizeDurationChanged)
    Q_PROPERTY(qreal spacing READ spacing WRITE setSpacing NOTIFY spacingChanged)
    Q_PROPERTY(Orientation orientation READ orientation WRITE setOrientation NOTIFY orientationChanged)
    Q_PROPERTY(QDeclarativeViewSection *section READ section CONSTANT)
    Q_PROPERTY(QString currentSection READ currentSection NOTIFY currentSectionChanged)
    Q_PROPERTY(SnapMode snapMode READ snapMode WRITE setSnapMode NOTIFY snapModeChanged)

public:
    enum Orientation { Horizontal = Qt::Horizontal, Vertical = Qt::Vertical };
    Q_ENUM(Orientation)
    enum SnapMode { NoSnap, SnapToItem, SnapOneItem };
    Q_ENUM(SnapMode)

    explicit QDeclarativeListView(QDeclarativeItem *parent = nullptr);
    ~QDeclarativeListView() override;

    /** Pixels per second; with a duration as well the faster of both counts. */
    qreal highlightMoveSpeed() const;
    void setHighlightMoveSpeed(qreal);
    qreal highlightResizeSpeed() const;
    void setHighlightResizeSpeed(qreal);
    /** Milliseconds, or -1 where the speed decides. */
    int highlightResizeDuration() const;
    void setHighlightResizeDuration(int);
    qreal spacing() const;
    void setSpacing(qreal);
    Orientation orientation() const;
    void setOrientation(Orientation);
    QDeclarativeViewSection *section();
    /** The section of the first row in view. */
    QString currentSection() const;
    SnapMode snapMode() const;
    void setSnapMode(SnapMode);

    Q_INVOKABLE void incrementCurrentIndex();
    Q_INVOKABLE void decrementCurrentIndex();

    static QDeclarativeListViewAttached *qmlAttachedProperties(QObject *);

Q_SIGNALS:
    void highlightMoveSpeedChanged();
    void highlightResizeSpeedChanged();
    void highlightResizeDurationChanged();
    void spacingChanged();
    void orientationChanged();
    void currentSectionChanged();
    void snapModeChanged();

protected:
    void keyPressEvent(QKeyEvent *) override;

private:
    Q_DISABLE_COPY(QDeclarativeListView)
    Q_DECLARE_PRIVATE_D(QGraphicsItem::d_ptr.data(), QDeclarativeListView)
};

QML_DECLARE_TYPE(QDeclarativeListView)
QML_DECLARE_TYPEINFO(QDeclarativeListView, QML_HAS_ATTACHED_PROPERTIES)
