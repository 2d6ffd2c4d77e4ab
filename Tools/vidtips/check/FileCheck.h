#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

class Content;
class Findings;
struct ControlFile;
struct XmlAttribute;
struct XmlNode;

/**
 * Checks the files that entries name: packages to search, user interfaces, pictures, clips; and gathers every
 * picture, clip and QML file there is, for the checks that open them.
 */
class FileCheck
{
public:
    void run(const Content &content, Findings &findings);

    QStringList clips() const { return sorted(m_clips); }
    QStringList qmlFiles() const { return sorted(m_qmlFiles); }

private:
    void checkSearch(const Content &content, const ControlFile &file, Findings &findings);
    void checkUserInterfaces(const Content &content, const ControlFile &file, Findings &findings);
    void checkFolders(const Content &content, const ControlFile &file, const XmlNode &node,
                      Findings &findings);
    void checkNode(const Content &content, const ControlFile &file, const XmlNode &entry, const XmlNode &node,
                   Findings &findings);
    static void checkKind(const Content &content, const ControlFile &file, const XmlNode &entry,
                          const XmlNode &node, Findings &findings);
    void checkNamed(const Content &content, const ControlFile &file, const XmlNode &entry,
                    const XmlAttribute &attribute, Findings &findings);
    static void reportElsewhere(const ControlFile &file, const XmlNode &entry, const XmlAttribute &attribute,
                                Findings &findings);
    static void reportMissing(const Content &content, const ControlFile &file, const XmlNode &entry,
                              const XmlAttribute &attribute, Findings &findings);
    void checkEntrances(const Content &content, const QString &package, Findings &findings);
    void gather(const QString &path, Findings &findings);
    void reportUnreadable(const QString &path, const QString &problem, Findings &findings);
    void checkPictures(Findings &findings) const;
    static QStringList sorted(QStringList list);

    QStringList m_clips;
    QStringList m_pictures;
    QStringList m_unreadable;
    QStringList m_qmlFiles;
};
