#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>

class Content;
class Findings;
struct ControlFile;
struct Finding;
struct XmlNode;

/** Shows a tip in every user interface, without a display, and says what its QML complains about. */
class UserInterfaceCheck
{
public:
    /** Restricts the content if @p isRestricted, and says what that was refused. */
    void run(const Content &content, bool isRestricted, Findings &findings);

private:
    void show(const Content &content, const ControlFile &file, const XmlNode &entry, bool isSimple,
              Findings &findings);

    static bool isKnown(const Finding &problem, const QString &path, const Findings &findings);

    QSet<QString> m_shown;
    bool m_isRestricted = false;
};
