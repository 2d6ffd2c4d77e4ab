#include "KeyCheck.h"

#include "findings/Finding.h"
#include "shared/Content.h"
#include "shared/Places.h"
#include "vocabulary/KeyName.h"

#include <QtCore/QLocale>

#include <algorithm>

namespace {

QString spelledByQt(const QString &locale)
{
    return locale.isEmpty() ? QString() : QLocale(locale).name();
}

} // namespace

void KeyCheck::run(const Content &content, Findings &findings)
{
    for (const ControlFile &file : content.controlFiles()) {
        if (file.isAdmitted)
            collect(file, findings);
    }
    for (auto it = m_keys.cbegin(); it != m_keys.cend(); ++it) {
        checkDoubles(it.key(), *it, findings);
        checkLocales(it.key(), *it, findings);
    }
}

void KeyCheck::collect(const ControlFile &file, Findings &findings)
{
    QMap<QString, Position> inThisFile;
    const QString locale = spelledByQt(file.locale());
    const bool isForNobody = locale == "C" && file.locale() != "C";
    for (const XmlNode *entry : file.entries()) {
        const QString key = entry->attribute("key");
        const QString problem = KeyName::problemWith(key);
        if (!problem.isEmpty())
            findings.add("VT305", file.path, entry->positionOf("key"), problem);
        const auto first = inThisFile.constFind(key);
        if (first != inThisFile.cend()) {
            findings.add("VT303", file.path, entry->positionOf("key"),
                         QString("the key \"%1\" vanishes: it has an entry in line %2 already")
                             .arg(key)
                             .arg(first->line));
            continue;
        }
        inThisFile.insert(key, entry->positionOf("key"));
        if (!isForNobody)
            m_keys[key].append({file.path, entry->positionOf("key"), locale});
    }
    if (!locale.isEmpty() && !isForNobody && !m_locales.contains(locale))
        m_locales << locale;
}

void KeyCheck::checkDoubles(const QString &key, const QVector<Entry> &entries, Findings &findings)
{
    QMap<QString, const Entry *> byLocale;
    for (const Entry &entry : entries) {
        const Entry *const first = byLocale.value(entry.locale);
        if (!first) {
            byLocale.insert(entry.locale, &entry);
            continue;
        }
        const QString locale = entry.locale.isEmpty() ? "every locale" : entry.locale;
        findings.add("VT301", entry.file, entry.position,
                     QString("the key \"%1\" has an entry for %2 in %3 already")
                         .arg(key, locale, Places::shown(first->file, first->position)));
    }
    const Entry *const forAll = byLocale.value(QString());
    if (!forAll || byLocale.size() < 2)
        return;
    const QStringList others = byLocale.keys().mid(1);
    findings.add("VT302", forAll->file, forAll->position,
                 QString("the key \"%1\" has an entry for every locale here and others for %2")
                     .arg(key, others.join(", ")));
}

void KeyCheck::checkLocales(const QString &key, const QVector<Entry> &entries, Findings &findings)
{
    QStringList missing = m_locales;
    for (const Entry &entry : entries) {
        if (entry.locale.isEmpty())
            return;
        missing.removeAll(entry.locale);
    }
    if (missing.isEmpty())
        return;
    std::sort(missing.begin(), missing.end());
    findings.add("VT304", entries.constFirst().file, entries.constFirst().position,
                 QString("the key \"%1\" has no entry for %2").arg(key, missing.join(", ")));
}
