#include "SourceCheck.h"

#include "shared/Places.h"
#include "stage/PreviewStage.h"

#include <QtCore/QFileInfo>
#include <QtCore/QUrl>
#include <QtWidgets/QGraphicsObject>

namespace {

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
        const QString source =
            PreviewStage::hasStatus(item, "Error") ? item->property("source").toString() : QString();
        if (source.isEmpty())
            continue;
        tip.add("VT901", {item, source.section('/', -1), {}}, problemWith(source));
        places << ItemPlace::of(item);
    }
    return places;
}
