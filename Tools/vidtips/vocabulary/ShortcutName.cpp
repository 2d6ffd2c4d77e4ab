#include "ShortcutName.h"

#include "shared/Nearest.h"

#include <QtCore/QStringList>

namespace {

// Of the keys that are held, as keyboards have them; the last key of a shortcut may be anything.
const QStringList heldKeys{"Ctrl",     "Control", "Shift", "Alt",   "AltGr",      "Meta",   "Cmd",
                           "Command",  "Option",  "Super", "Win",   "Windows",    "Strg",   "Steuerung",
                           "Umschalt", "Skift",   "Maj",   "Majus", "May\u00FAs", "Maiusc", "Mai\u00FAsc"};

} // namespace

QString ShortcutName::problemWith(const QString &shortcut)
{
    QStringList keys = shortcut.split('+');
    keys.removeLast();
    for (const QString &key : qAsConst(keys)) {
        const QString written = key.trimmed();
        const QString meant = Nearest::to(written, heldKeys);
        if (!meant.isEmpty() && meant.compare(written, Qt::CaseInsensitive) != 0)
            return QString("there is no key \"%1\": did you mean \"%2\"?").arg(written, meant);
    }
    return {};
}
