#include "qdeclarativepropertytables_p.h"

#include <private/qqmlmetatype_p.h>
#include <private/qqmlpropertycachecreator_p.h>
#include <private/qqmltype_p.h>

namespace {

struct Completion;

} // namespace

QT_BEGIN_NAMESPACE

// Only what makes tables may change them, which Qt calls this.
template <>
class QQmlPropertyCacheCreator<Completion>
{
public:
    static void complete(QQmlPropertyCache *table)
    {
        QQmlPropertyCache::IndexCache all;
        all.reserve(table->propertyCount());
        for (int i = 0; i < table->propertyCount(); ++i)
            all.append(*table->maybeUnresolvedProperty(i));
        table->propertyIndexCache = all;
        table->propertyIndexCacheStart = 0;
    }
};

QT_END_NAMESPACE

void QDeclarativePropertyTables::complete()
{
    const auto types = QQmlMetaType::qmlTypes();
    for (const QQmlType &type : types) {
        if (type.module() != QLatin1String("QtQuick") || type.majorVersion() != 1 || !type.isCreatable())
            continue;
        QQmlPropertyCache *const table = QQmlMetaType::propertyCache(type, type.minorVersion());
        if (table != QQmlMetaType::propertyCache(type.metaObject()))
            QQmlPropertyCacheCreator<Completion>::complete(table);
    }
}
