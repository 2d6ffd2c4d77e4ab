#pragma once

#include "TestPackage.h"

/** Packages with the tips that the tests of showing ask for, which show their title. */
class TipPackages : public TestPackages
{
public:
    TipPackages()
    {
        writeUserInterface("Basic", R"(property string title: vidtip.attribute("title"))");
        write("Basic.vidtips/ui/Other.qml",
              "import QtQuick 1.0\nItem { width: 50; height: 40; objectName: \"other\" }");
        writeControl("Basic", "tips.xml", R"(
        <vidtip key="cut" title="Cut" shortcut="Ctrl+X"/>
        <vidtip key="copy" title="Copy"/>
        <vidtip key="other" title="Other" ui="ui/Other.qml"/>)");
    }
};
