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

    /** Checks @p named, paths of key-data files, and what lies beside the packages and is meant as such. */
    void run(const Content &content, const QStringList &named, Findings &findings);

private:
    void collect(const Content &content);
    void checkFile(const QString &path, const XmlDocument &document, Findings &findings);
    void checkNames(const QString &path, const XmlDocument &document, Findings &findings);
    void checkSpelling(const QString &path, const XmlDocument &document, Findings &findings) const;

    QStringList m_keys;
    QStringList m_attributes; ///< That are read of a tip, and so of key data.
    std::unique_ptr<SchemaCheck> m_schema;
};
