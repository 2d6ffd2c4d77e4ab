#include "TrialPlan.h"

#include "shared/Content.h"
#include "stage/PreviewKeys.h"
#include "strings/CatalogueName.h"

#include <QtCore/QLocale>

bool TrialTip::sharesStage(const TrialTip &other) const
{
    return locale == other.locale && isSimple == other.isSimple && isDark == other.isDark;
}

QVector<TrialTip> TrialPlan::of(const Content &content, const QString &sourceLocale)
{
    QStringList locales = CatalogueName::localesIn(content);
    locales << QLocale(sourceLocale).name();
    locales.removeDuplicates();
    QVector<TrialTip> tips;
    for (const QString &locale : qAsConst(locales)) {
        const QVector<PreviewKey> keys = PreviewKeys::in(content, locale);
        for (const bool isDark : {false, true}) {
            for (const bool isSimple : {false, true}) {
                for (const PreviewKey &key : keys)
                    tips.append({key.key, locale, isSimple, isDark});
            }
        }
    }
    return tips;
}
