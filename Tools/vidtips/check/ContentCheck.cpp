#include "ContentCheck.h"

#include "AdmissionCheck.h"
#include "FileCheck.h"
#include "FolderCheck.h"
#include "KeyCheck.h"
#include "StructureCheck.h"
#include "shared/Content.h"
#include "shared/Vocabulary.h"
#include "vocabulary/TextCheck.h"
#include "vocabulary/VocabularyCheck.h"

#include <algorithm>

namespace {

// The entry that the place is in: the last one that begins before it; null for what is before them all.
const XmlNode *entryAt(const std::vector<const XmlNode *> &entries, Position position)
{
    const XmlNode *found = nullptr;
    for (const XmlNode *entry : entries) {
        if (!(position < entry->position))
            found = entry;
    }
    return found;
}

bool concerns(const Finding &finding, const ControlFile &file, const QString &key)
{
    // What keeps a file from being read as it is meant concerns all that is in it.
    static const QStringList ofFile{"VT101", "VT117"};
    if (finding.file != file.path)
        return false;
    const XmlNode *const entry = entryAt(file.entries(), finding.position);
    return !entry || entry->attribute("key") == key || ofFile.contains(finding.code);
}

// Where one is wrong, the tip is not judged.
QStringList schemasOf(const Content &content, const ControlFile &file, const QString &key)
{
    QStringList paths;
    for (const XmlNode *entry : file.entries()) {
        if (entry->attribute("key") == key)
            paths << Vocabulary::pathFor(content, file, entry)
                  << Vocabulary::misnamedFor(content, file, entry);
    }
    return paths;
}

} // namespace

void ContentCheck::run(const Content &content, FileCheck &files, Findings &findings)
{
    FolderCheck().run(content, findings);
    AdmissionCheck().run(content, findings);
    KeyCheck().run(content, findings);
    StructureCheck().run(content, findings);
    VocabularyCheck().run(content, findings);
    TextCheck().run(content, findings);
    files.run(content, findings);
}

QVector<Finding> ContentCheck::ofTip(const Content &content, const Findings &findings, const QString &key,
                                     const QString &locale)
{
    QVector<Finding> found;
    const QVector<Finding> all = findings.sorted();
    for (const ControlFile &file : content.controlFiles()) {
        if (!file.serves(locale) || !file.hasKey(key))
            continue;
        const QStringList schemas = schemasOf(content, file, key);
        std::copy_if(all.cbegin(), all.cend(), std::back_inserter(found), [&](const Finding &finding) {
            return concerns(finding, file, key) || schemas.contains(finding.file);
        });
    }
    return found;
}
