#pragma once

#include "TestPackage.h"

#include <QtCore/QMap>

/** Contents by the path of their file. */
using Files = QMap<QString, QByteArray>;
Q_DECLARE_METATYPE(Files)

inline constexpr char fullInterface[] = "Tools.vidtips/ui/VidtipsUI.qml";
inline constexpr char simpleInterface[] = "Tools.vidtips/ui/SimpleTooltip.qml";
inline constexpr char control[] = "Tools.vidtips/Control/Tools.xml";
inline constexpr char emptyItem[] = "import QtQuick 1.1\nItem { width: 10; height: 10 }\n";

/** A control file with @p entries, whose document element has @p attributes. */
inline QByteArray document(const QByteArray &entries, const QByteArray &attributes = {})
{
    return "<vidtips" + (attributes.isEmpty() ? QByteArray() : ' ' + attributes) + ">\n" + entries
        + "\n</vidtips>\n";
}

/** A package in which nothing is wrong, with some of its files replaced; a null content removes one. */
inline Files packageWith(const Files &changes = {})
{
    Files files{
        {control, document("<vidtip key=\"a\"/>")}, {fullInterface, emptyItem}, {simpleInterface, emptyItem}};
    for (auto it = changes.cbegin(); it != changes.cend(); ++it) {
        if (it->isNull())
            files.remove(it.key());
        else
            files.insert(it.key(), *it);
    }
    return files;
}

/** The same package, with a control file of these entries. */
inline Files controlWith(const QByteArray &entries, const QByteArray &attributes = {})
{
    return packageWith({{control, document(entries, attributes)}});
}

/** A data folder with these files. */
class CheckPackages : public TestPackages
{
public:
    explicit CheckPackages(const Files &files)
    {
        for (auto it = files.cbegin(); it != files.cend(); ++it)
            write(it.key(), *it);
    }
};
