#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QMap>
#include <QtCore/QString>
#include <QtCore/QStringList>

QT_BEGIN_NAMESPACE
class QFile;
QT_END_NAMESPACE

namespace Vidtips {

/** Why a file could not be read to its end. */
struct VTFileError
{
    VTFileError() = default;

    /** The error @p text in the open @p file, whose place in it is not kept; without a text there is none. */
    VTFileError(QFile &file, const QString &text);

    QString text; ///< Line, column and reason; empty where the file was read to its end.
    QByteArray checksum; ///< Of the bytes that have the error.
};

/** The files that cannot be read to their end, each of which is told of once until its bytes change. */
class VTBrokenFiles
{
public:
    /** Notes how the file at @p path was read. */
    void note(const QString &path, const VTFileError &error);

    /** Returns a message for each file that was noted with an error since, in the order of their paths. */
    QStringList takeMessages();

private:
    struct Entry
    {
        VTFileError error;
        bool isTold;
    };

    QMap<QString, Entry> m_entries;
};

} // namespace Vidtips
