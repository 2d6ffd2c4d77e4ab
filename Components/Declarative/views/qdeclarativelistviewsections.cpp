#include "models/qdeclarativevisualmodel_p.h"
#include "qdeclarativelistview_p_p.h"

#include <QtQml/QQmlComponent>
#include <QtQml/QQmlContext>

QString QDeclarativeListViewPrivate::sectionAt(int index) const
{
    if (!section || section->property().isEmpty() || index < 0 || index >= visualModel->count())
        return {};
    return section->sectionOf(visualModel->instance()->stringValue(index, section->property()));
}

void QDeclarativeListViewPrivate::itemMade(Item *item)
{
    static_cast<QDeclarativeListViewAttached *>(item->attached)
        ->setSections(sectionAt(item->index - 1), sectionAt(item->index), sectionAt(item->index + 1));
}

void QDeclarativeListViewPrivate::updateSections()
{
    for (const auto &item : visibleItems) {
        if (item->index < 0)
            continue;
        static_cast<QDeclarativeListViewAttached *>(item->attached)
            ->setSections(sectionAt(item->index - 1), sectionAt(item->index), sectionAt(item->index + 1));
        updateHeading(item.get());
    }
}

/** Gives the first row of a section its heading, and takes it from a row that is that no more. */
void QDeclarativeListViewPrivate::updateHeading(Item *item)
{
    Q_Q(QDeclarativeListView);
    auto *listItem = static_cast<QDeclarativeListItem *>(item);
    const auto *attached = static_cast<QDeclarativeListViewAttached *>(item->attached);
    const bool wants = section && section->delegate() && !section->property().isEmpty()
        && attached->section() != attached->previousSection();
    const qreal position = item->position();
    if (listItem->heading && (!wants || listItem->headingSection != attached->section()))
        dropHeading(listItem);
    if (!wants || listItem->heading)
        return;
    auto *context = new QQmlContext(qmlContext(q));
    context->setContextProperty(QStringLiteral("section"), attached->section());
    listItem->heading = createPart(section->delegate(), content, context);
    listItem->headingSection = attached->section();
    if (listItem->heading)
        listItem->heading->setZValue(1);
    setItemPosition(item, position);
}

void QDeclarativeListViewPrivate::dropHeading(QDeclarativeListItem *item)
{
    discard(item->heading);
    item->heading = nullptr;
}

/** Takes the headings away, for those of another delegate. */
void QDeclarativeListViewPrivate::dropHeadings()
{
    if (work.postpone([this] { dropHeadings(); }))
        return;
    const QDeclarativeWork::Scope scope(&work);
    for (const auto &item : visibleItems) {
        const qreal position = item->position();
        dropHeading(static_cast<QDeclarativeListItem *>(item.get()));
        setItemPosition(item.get(), position);
    }
    layout();
}

/** Takes the section of the first row in view. */
void QDeclarativeListViewPrivate::viewMoved()
{
    Q_Q(QDeclarativeListView);
    QString now;
    if (section && !visibleItems.empty()) {
        const Item *first = visibleItems.front().get();
        for (auto it = visibleItems.rbegin(); it != visibleItems.rend(); ++it) {
            if ((*it)->endPosition() - 1 >= viewPosition())
                first = it->get();
        }
        now = static_cast<const QDeclarativeListViewAttached *>(first->attached)->section();
    }
    if (now == currentSection)
        return;
    currentSection = now;
    Q_EMIT q->currentSectionChanged();
}
