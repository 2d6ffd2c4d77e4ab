#include "SourceCheck.h"

#include "shared/Places.h"

#include <QtCore/QFileInfo>
#include <QtCore/QMetaProperty>
#include <QtCore/QUrl>
#include <QtWidgets/QGraphicsObject>

namespace {

bool hasFailed(const QObject *item)
{
    const QMetaObject *const meta = item->metaObject();
    const QMetaProperty status = meta->property(meta->indexOfProperty("status"));
    return status.isEnumType() && status.read(item).toInt() == status.enumerator().keyToValue("Error");
}

QString problemWith(const QString &source)
{
    const QUrl address(source);
    const QString path = address.isLocalFile() ? address.toLocalFile() : source;
    const QString shown = QFileInfo(path).isAbsolute() ? Places::shown(path) : path;
    return QFileInfo(path).isAbsolute() && !QFileInfo::exists(path)
        ? QString("there is no \"%1\"").arg(shown)
        : QString("\"%1\" cannot be shown").arg(shown);
}

} // namespace

// A file that the content names is told of there.
QVector<ItemPlace> SourceCheck::run(const ShownTip &tip)
{
    QVector<ItemPlace> places;
    for (QGraphicsObject *item : tip.items()) {
        const QString source = hasFailed(item) ? item->property("source").toString() : QString();
        if (source.isEmpty())
            continue;
        tip.add("VT901", {item, source.section('/', -1), {}}, problemWith(source));
        places << ItemPlace::of(item);
    }
    return places;
}
