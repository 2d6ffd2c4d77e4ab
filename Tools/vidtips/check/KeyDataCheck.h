#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

class Content;
class Findings;
class SchemaCheck;
class XmlDocument;

/** Checks files of key data against the keys that have entries. */
class KeyDataCheck
{
public:
    KeyDataCheck();
    ~KeyDataCheck();

    /** @p files are paths of key-data files. */
    void run(const Content &content, const QStringList &files, Findings &findings);

private:
    void checkFile(const QString &path, const QStringList &keys, Findings &findings);
    void checkNames(const QString &path, const XmlDocument &document, const QStringList &keys,
                    Findings &findings);

    std::unique_ptr<SchemaCheck> m_schema;
};
