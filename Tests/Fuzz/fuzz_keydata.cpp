// Copying attributes from a key-data file. The first line is the key; the key-data file follows.

#include "FuzzInput.h"
#include "FuzzTarget.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTXmlElement.h>

using namespace Vidtips;

void fuzz(const QByteArray &input)
{
    FuzzInput rest(input);
    const QString key = QString::fromUtf8(rest.takeLine());

    VTContext settings;
    settings.set(KeyDataFile, writeFuzzFile("keys.xml", rest.rest()));
    VTIndex index(&settings, {});
    VTXmlElement element;
    element.setAttribute("name", "its own");
    element.setAttribute("title", "as it was");
    index.loadKeyData(key, QString(), &element);

    FUZZ_CHECK(element.attribute("name") == "its own");
    FUZZ_CHECK(element.hasAttribute("title"));
    FUZZ_CHECK(!key.isEmpty() || element.attributeNames().size() == 2);
    index.loadKeyData(key, QString(), nullptr);
}
