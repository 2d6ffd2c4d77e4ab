#pragma once

#include <QtCore/QSet>
#include <QtCore/QString>

class Content;
class Findings;
struct ControlFile;
struct XmlNode;

/** Shows a tip in every user interface, without a display, and says what its QML complains about. */
class UserInterfaceCheck
{
public:
    void run(const Content &content, Findings &findings);

private:
    void show(const Content &content, const ControlFile &file, const XmlNode &entry, bool isSimple,
              Findings &findings);

    QSet<QString> m_shown;
};
