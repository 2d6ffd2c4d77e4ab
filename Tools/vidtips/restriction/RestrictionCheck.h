#pragma once

#include "Mention.h"

#include <QtCore/QSet>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

class Content;
class Findings;
class RestrictedReach;
struct ControlFile;
struct XmlAttribute;
struct XmlNode;

/** Finds what packages ask for and hosts that restrict content refuse them, as far as it is written out. */
class RestrictionCheck
{
public:
    explicit RestrictionCheck(const Content &content);
    ~RestrictionCheck();

    /** Tells whether the library that is used has the means to restrict content. */
    static bool isSupported();

    /** Checks every file of the packages, and @p keyData, paths of key-data files. */
    void run(const QStringList &keyData, Findings &findings);

private:
    void checkPackages(Findings &findings);
    void checkFile(const QString &path, Findings &findings);
    void checkMentions(const QString &path, const Mentions &mentions, Findings &findings) const;
    void checkClip(const QString &path, Findings &findings);
    void checkEntry(const ControlFile &file, const XmlNode &entry, Findings &findings);
    void checkNode(const ControlFile &file, const XmlNode &entry, const XmlNode &node, Findings &findings);
    void checkNamed(const ControlFile &file, const XmlNode &entry, const QString &path,
                    const XmlAttribute &attribute, Findings &findings);
    void checkCatalogues(const ControlFile &file, Findings &findings) const;
    void checkKeyData(const QString &path, Findings &findings);
    void checkKey(const QString &path, const XmlNode &key, Findings &findings);

    const Content &m_content;
    const std::unique_ptr<RestrictedReach> m_reach;
    QStringList m_addressProperties;
    QSet<QString> m_clips; ///< that were checked
};
