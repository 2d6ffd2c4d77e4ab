#pragma once

#include <QtCore/QString>

#include <memory>

class Findings;

/** Validates files against a schema that the tool ships. */
class SchemaCheck
{
public:
    /** Loads the schema at @p path, a resource of the program. */
    explicit SchemaCheck(const QString &path);
    ~SchemaCheck();

    /** Reports where the file at @p path first leaves the structure that the schema fixes. */
    void check(const QString &path, Findings &findings);

private:
    struct Private;
    std::unique_ptr<Private> const d;
};
