#include "ItemPlace.h"

#include <QtCore/QFileInfo>
#include <QtCore/QUrl>

#ifdef VIDTIPS_DECLARATIVE_BUNDLED
#include <QtQml/private/qqmlcontext_p.h>
#include <QtQml/private/qqmldata_p.h>
#endif

ItemPlace ItemPlace::of(QObject *item)
{
#ifdef VIDTIPS_DECLARATIVE_BUNDLED
    const QQmlData *const data = QQmlData::get(item);
    if (data && data->outerContext)
        return {QFileInfo(data->outerContext->url().toLocalFile()).canonicalFilePath(),
                {data->lineNumber, data->columnNumber}};
#else
    Q_UNUSED(item)
#endif
    return {};
}
