#include "qdeclarativelistview_p.h"

#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativelistview_p_p.h"

#include <QtGui/QKeyEvent>
#include <QtQml/QQmlComponent>

QDeclarativeViewSection::QDeclarativeViewSection(QObject *parent)
    : QObject(parent)
{
}

void QDeclarativeViewSection::setProperty(const QString &property)
{
    if (property == m_property)
        return;
    m_property = property;
    Q_EMIT propertyChanged();
}

void QDeclarativeViewSection::setCriteria(SectionCriteria criteria)
{
    if (criteria == m_criteria)
        return;
    m_criteria = criteria;
    Q_EMIT criteriaChanged();
}

void QDeclarativeViewSection::setDelegate(QQmlComponent *delegate)
{
    if (delegate == m_delegate)
        return;
    m_delegate = delegate;
    Q_EMIT delegateChanged();
}

QString QDeclarativeViewSection::sectionOf(const QString &value) const
{
    return m_criteria == FirstCharacter ? value.left(1) : value;
}

QDeclarativeListViewAttached::QDeclarativeListViewAttached(QObject *item)
    : QDeclarativeItemViewAttached(item)
{
}

QDeclarativeListView *QDeclarativeListViewAttached::view() const
{
    return qobject_cast<QDeclarativeListView *>(itemView());
}

void QDeclarativeListViewAttached::setSections(const QString &previous, const QString &section,
                                               const QString &next)
{
    if (m_previousSection != previous) {
        m_previousSection = previous;
        Q_EMIT prevSectionChanged();
    }
    if (m_section != section) {
        m_section = section;
        Q_EMIT sectionChanged();
    }
    if (m_nextSection != next) {
        m_nextSection = next;
        Q_EMIT nextSectionChanged();
    }
}

QDeclarativeListViewPrivate::QDeclarativeListViewPrivate()
    : highlightPlace([this](qreal place) {
        const QDeclarativeWork::Scope scope(&work);
        if (highlightItem)
            placeAt(highlightItem, place);
    })
    , highlightLength([this](qreal length) {
        if (!highlightItem)
            return;
        const QDeclarativeWork::Scope scope(&work);
        const qreal place = placeOf(highlightItem);
        if (scrolled() == Qt::Horizontal)
            highlightItem->setWidth(length);
        else
            highlightItem->setHeight(length);
        if (runsBackwards())
            placeAt(highlightItem, place);
    })
{
    direction = QDeclarativeFlickable::VerticalFlick;
}

/** Has the model tell of changes of what the sections are made from. */
void QDeclarativeListViewPrivate::watchSections()
{
    QQmlInstanceModel *model = visualModel->instance();
    if (!model || !section)
        return;
    const QByteArray role = section->property().toUtf8();
    model->setWatchedRoles(role.isEmpty() ? QList<QByteArray>() : QList<QByteArray>{role});
}

QDeclarativeListView::QDeclarativeListView(QDeclarativeItem *parent)
    : QDeclarativeItemView(*new QDeclarativeListViewPrivate, parent)
{
    connect(this, &QDeclarativeItemView::modelChanged, this, [this] { d_func()->watchSections(); });
}

QDeclarativeListView::~QDeclarativeListView() = default;

qreal QDeclarativeListView::highlightMoveSpeed() const
{
    return d_func()->highlightMoveSpeed;
}

void QDeclarativeListView::setHighlightMoveSpeed(qreal speed)
{
    Q_D(QDeclarativeListView);
    if (speed == d->highlightMoveSpeed)
        return;
    d->highlightMoveSpeed = speed;
    Q_EMIT highlightMoveSpeedChanged();
}

qreal QDeclarativeListView::highlightResizeSpeed() const
{
    return d_func()->highlightResizeSpeed;
}

void QDeclarativeListView::setHighlightResizeSpeed(qreal speed)
{
    Q_D(QDeclarativeListView);
    if (speed == d->highlightResizeSpeed)
        return;
    d->highlightResizeSpeed = speed;
    Q_EMIT highlightResizeSpeedChanged();
}

int QDeclarativeListView::highlightResizeDuration() const
{
    return d_func()->highlightResizeDuration;
}

void QDeclarativeListView::setHighlightResizeDuration(int duration)
{
    Q_D(QDeclarativeListView);
    if (duration == d->highlightResizeDuration)
        return;
    d->highlightResizeDuration = duration;
    Q_EMIT highlightResizeDurationChanged();
}

qreal QDeclarativeListView::spacing() const
{
    return d_func()->spacing;
}

void QDeclarativeListView::setSpacing(qreal spacing)
{
    Q_D(QDeclarativeListView);
    if (spacing == d->spacing)
        return;
    d->spacing = spacing;
    if (isComponentComplete())
        d->layoutWhenIdle();
    Q_EMIT spacingChanged();
}

QDeclarativeListView::Orientation QDeclarativeListView::orientation() const
{
    return d_func()->orientation;
}

void QDeclarativeListView::setOrientation(Orientation orientation)
{
    Q_D(QDeclarativeListView);
    if (orientation == d->orientation || d->work.postpone([=] { setOrientation(orientation); }))
        return;
    const QDeclarativeWork::Scope scope(&d->work);
    d->clear();
    d->setViewPosition(0);
    d->setContentSize(d->mainAxis(), -1);
    d->orientation = orientation;
    setFlickableDirection(orientation == Vertical ? VerticalFlick : HorizontalFlick);
    if (isComponentComplete())
        d->regenerate();
    Q_EMIT orientationChanged();
}

QDeclarativeViewSection *QDeclarativeListView::section()
{
    Q_D(QDeclarativeListView);
    if (!d->section) {
        d->section = new QDeclarativeViewSection(this);
        connect(d->section, &QDeclarativeViewSection::propertyChanged, this, [d] {
            d->watchSections();
            d->layoutWhenIdle();
        });
        connect(d->section, &QDeclarativeViewSection::delegateChanged, this, [d] { d->dropHeadings(); });
    }
    return d->section;
}

QString QDeclarativeListView::currentSection() const
{
    return d_func()->currentSection;
}

QDeclarativeListView::SnapMode QDeclarativeListView::snapMode() const
{
    return d_func()->snapMode;
}

void QDeclarativeListView::setSnapMode(SnapMode mode)
{
    Q_D(QDeclarativeListView);
    if (mode == d->snapMode)
        return;
    d->snapMode = mode;
    Q_EMIT snapModeChanged();
}

void QDeclarativeListView::incrementCurrentIndex()
{
    const int last = count() - 1;
    if (currentIndex() < last)
        setCurrentIndex(currentIndex() + 1);
    else if (isWrapEnabled() && last >= 0)
        setCurrentIndex(0);
}

void QDeclarativeListView::decrementCurrentIndex()
{
    const int last = count() - 1;
    if (currentIndex() > 0)
        setCurrentIndex(qMin(currentIndex() - 1, last));
    else if (isWrapEnabled() && last >= 0)
        setCurrentIndex(last);
}

void QDeclarativeListView::keyPressEvent(QKeyEvent *event)
{
    Q_D(QDeclarativeListView);
    const bool isVertical = orientation() == Vertical;
    int back = isVertical ? Qt::Key_Up : Qt::Key_Left;
    int forth = isVertical ? Qt::Key_Down : Qt::Key_Right;
    if (d->runsBackwards())
        std::swap(back, forth);
    const bool isBack = event->key() == back;
    if (count() == 0 || !isInteractive() || (!isBack && event->key() != forth)) {
        QDeclarativeItemView::keyPressEvent(event);
        return;
    }
    const bool hasWay = isBack ? currentIndex() > 0 : currentIndex() < count() - 1;
    if (!hasWay && !isWrapEnabled()) {
        QDeclarativeItemView::keyPressEvent(event);
        return;
    }
    // A key that is held down stops at the end once.
    if (hasWay || !event->isAutoRepeat()) {
        if (isBack)
            decrementCurrentIndex();
        else
            incrementCurrentIndex();
    }
    event->accept();
}

QDeclarativeListViewAttached *QDeclarativeListView::qmlAttachedProperties(QObject *object)
{
    return new QDeclarativeListViewAttached(object);
}
