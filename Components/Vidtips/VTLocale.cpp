#include "VTLocale_p.h"

#include <QtCore/QCache>

namespace Vidtips {

QLocale localeNamed(const QString &name)
{
    constexpr int mostNames = 100; // what content calls its locale may be anything
    static thread_local QCache<QString, QLocale> known(mostNames);
    if (const QLocale *const locale = known.object(name))
        return *locale;
    const QLocale locale(name);
    known.insert(name, new QLocale(locale));
    return locale;
}

} // namespace Vidtips
