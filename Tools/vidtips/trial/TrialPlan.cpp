#include "TrialPlan.h"

#include "shared/Content.h"
#include "stage/PreviewKeys.h"
#include "strings/CatalogueName.h"

#include <QtCore/QFileInfo>
#include <QtCore/QLocale>

#include <algorithm>

namespace {

// Such a key vanishes, of which another finding tells.
bool isTwiceInFile(const PreviewKey &key)
{
    const std::vector<const XmlNode *> entries = key.file->entries();
    const auto isIts = [&key](const XmlNode *entry) { return entry->attribute("key") == key.key; };
    return std::count_if(entries.begin(), entries.end(), isIts) > 1;
}

// Where there is no user interface, a finding of its own says so.
void addTips(const Content &content, const QVector<PreviewKey> &keys, TrialTip tip, QVector<TrialTip> &tips)
{
    const FileCategory &category = tip.isSimple ? Content::simpleUserInterface : Content::fullUserInterface;
    for (const PreviewKey &key : keys) {
        const QFileInfo file(content.find(*key.file, key.entry, category));
        tip.key = key.key;
        tip.userInterface = file.canonicalFilePath();
        if (file.isFile() && !isTwiceInFile(key))
            tips << tip;
    }
}

} // namespace

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
            addTips(content, keys, {{}, locale, false, isDark, {}}, tips);
            addTips(content, keys, {{}, locale, true, isDark, {}}, tips);
        }
    }
    return tips;
}
