#pragma once

#include "shared/Vocabulary.h"

#include <QtCore/QStringList>

class Content;
class Findings;
struct ControlFile;
struct XmlNode;

/** Compares entries with what their user interface reads, as far as it has a schema that says so. */
class VocabularyCheck
{
public:
    void run(const Content &content, Findings &findings);

private:
    const Vocabulary *vocabularyFor(const Content &content, const ControlFile &file, const XmlNode *entry,
                                    Findings &findings);
    void reportMisnamed(const QString &path, Findings &findings);
    void checkFile(const Content &content, const ControlFile &file, Findings &findings);
    void checkNode(const XmlNode &node, const VocabularyElement &element, const QStringList &others);
    void checkAttributes(const XmlNode &node, const VocabularyElement &element, const QStringList &others);
    void checkRequired(const XmlNode &node, const VocabularyElement &element);
    void checkText(const XmlNode &node, const VocabularyElement &element);
    void checkMarkup(const XmlNode &node);
    void checkAlternatives(const XmlNode &node, const VocabularyElement &element);
    void checkChildren(const XmlNode &node, const VocabularyElement &element);
    void add(const QString &code, Position position, const QString &message);

    Vocabularies m_vocabularies;
    QStringList m_refused;
    Findings *m_findings = nullptr;
    QString m_file;
};
