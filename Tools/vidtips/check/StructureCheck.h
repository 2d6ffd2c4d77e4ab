#pragma once

#include <QtCore/QString>

#include <memory>

class Content;
class Findings;
class SchemaCheck;
class XmlDocument;
struct ControlFile;
struct XmlNode;

/** Checks each control file by itself: that it is XML, and what stands where in it. */
class StructureCheck
{
public:
    StructureCheck();
    ~StructureCheck();

    void run(const Content &content, Findings &findings);

    /** Reports a file that cannot be read or is not well-formed; tells whether it is both. */
    static bool checkXml(const QString &path, const XmlDocument &document, Findings &findings);

private:
    void checkFile(const ControlFile &file, Findings &findings);
    void checkDocumentElement(const ControlFile &file, Findings &findings);
    void checkEntry(const ControlFile &file, const XmlNode &entry, Findings &findings);
    void checkNested(const ControlFile &file, const XmlNode &parent, Findings &findings);

    std::unique_ptr<SchemaCheck> m_schema;
};
