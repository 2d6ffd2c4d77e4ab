#include "TextSource.h"

#include "shared/Content.h"

namespace {

void addText(QVector<TranslatableText> &texts, const ControlFile &file, const QString &context,
             const QString &text, Position position)
{
    const QString source = text.simplified();
    if (!source.isEmpty())
        texts.append({context, source, file.path, position, {}, false});
}

void addChildren(QVector<TranslatableText> &texts, const ControlFile &file, const QString &context,
                 const XmlNode &node)
{
    for (const auto &child : node.children) {
        addText(texts, file, context, child->text, child->position);
        addChildren(texts, file, context, *child);
    }
}

} // namespace

QVector<TranslatableText> TextSource::textsOf(const ControlFile &file)
{
    QVector<TranslatableText> texts;
    if (!file.isAdmitted || !file.locale().isEmpty())
        return texts;
    for (const XmlNode *entry : file.entries()) {
        const QString context = entry->attribute("context");
        if (context.isEmpty())
            continue;
        addText(texts, file, context, entry->attribute("title"), entry->positionOf("title"));
        addChildren(texts, file, context, *entry);
    }
    return texts;
}
