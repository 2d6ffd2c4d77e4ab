#pragma once

#include <QtCore/QString>
#include <QtCore/QVector>

/**
 * An XML file that somebody writes by hand, and to which lines are added. Everything that is there stays as
 * it is, to the byte.
 */
class EditedFile
{
public:
    /** A file that is to be made gets the document element @p root, a whole start tag. */
    EditedFile(const QString &path, const QString &root);

    /**
     * Reads the file where there is one; returns what is wrong, or nothing. Lines are added only to files in
     * UTF-8.
     */
    QString read();

    /** Adds @p lines before the end of the document element. */
    void append(const QString &lines);

    /**
     * Adds the comment @p text above @p line, which counts from 1 in the file as it was read, unless it is
     * there; only above a line that begins with a tag.
     */
    void comment(int line, const QString &text);

    /** Takes the comment @p text away again where it stands above @p line. */
    void uncomment(int line, const QString &text);

    /** Writes the file where anything was added; returns what is wrong, or nothing. */
    QString write();

private:
    struct Change
    {
        int line;
        QString text; ///< Empty: the line is removed.
    };
    int lineOfComment(int line, const QString &text) const;
    QString changed() const;

    QString m_path;
    QString m_root;
    QString m_text;
    QString m_lineEnd = "\n";
    QString m_added;
    QVector<Change> m_changes;
};
