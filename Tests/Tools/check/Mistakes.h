#pragma once

#include "CheckPackages.h"

#include <QtCore/QStringList>
#include <QtCore/QVector>

/** A mistake of an author, and what the tools say of it: the lines that they write. */
struct Mistake
{
    const char *name;
    Files files; ///< What is other than in a package that is right.
    QString check;
    QString preview;
    QString host = {}; ///< What reaches a host that hears everything and says where it is.
    QString run = {}; ///< What `check --run` says besides.
    QString locale = "en_US"; ///< That in which preview and host are to show the tip; empty for none.
};
Q_DECLARE_METATYPE(Mistake)

/** The package that authors make their mistakes in: a tip with the key "tree", shown by the shared user
 * interface. */
namespace Garden {

inline constexpr char control[] = "Garden.vidtips/Control/Garden.xml";

/** The control file, with @p attributes of the document element and @p entries from line 3 on. */
inline QByteArray file(const QByteArray &entries,
                       const QByteArray &attributes = R"(locale="en_US" search="Shared")")
{
    return R"(<?xml version="1.0" encoding="UTF-8"?>)"
           "\n<vidtips "
        + attributes + ">\n" + entries + "\n</vidtips>\n";
}

/** The same, with @p elements from line 4 on in an entry that is right. */
inline QByteArray tip(const QByteArray &elements)
{
    return file("<vidtip key=\"tree\" title=\"Tree\">\n" + elements + "\n</vidtip>");
}

/** The whole package, with the example's shared user interface, and @p changes; a null content removes a
 * file. */
Files with(const Files &changes);

/** What a host is told of a control file with @p error, which begins with its place. */
QString malformed(const QString &error);

} // namespace Garden

/** The table of mistakes. */
namespace Mistakes {

/** A mistake in the control file, and what is found behind the file's name. */
struct ControlFileMistake
{
    const char *name;
    QByteArray garden;
    QString finding;
    QString host = {};
    QString run = {};
};

/** Every mistake of the table. */
QVector<Mistake> all();

/** The codes of the findings that the table has. */
QStringList codes();

void add(const Mistake &mistake);
void addInControlFile(const QVector<ControlFileMistake> &mistakes);

void addInControlFiles();
void addInPackages();
void addInWhatIsShown();

} // namespace Mistakes
