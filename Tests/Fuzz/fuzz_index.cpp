// Admission and loading of a control file. The first line holds a key, a semicolon and a locale's name; the
// control file follows.

#include "FuzzInput.h"
#include "FuzzTarget.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTXmlElement.h>

#include <QtCore/QFileInfo>

#include <memory>

using namespace Vidtips;

namespace {

QString packageOf(const QString &file)
{
    return file.left(file.indexOf("/Control/"));
}

void checkElement(VTIndex *index, const QString &key, const QLocale &locale, const QString &file)
{
    QString directory;
    int depth = 0;
    VTXmlElement *root = nullptr;
    VTXmlElement *const element = index->retrieve(key, locale, directory, depth, root);
    FUZZ_CHECK(bool(element) == bool(root));
    if (!element)
        return;
    const std::unique_ptr<VTXmlElement> owner(root);
    FUZZ_CHECK(!key.isEmpty() && element->attribute("key") == key);
    FUZZ_CHECK(element->parent() == root && root->children().size() == 1);
    FUZZ_CHECK(element->getTagName() == "vidtip" && root->getTagName() == "vidtips");
    FUZZ_CHECK(element->attribute("VTLocation") == file);
    FUZZ_CHECK(element->attribute("VTPackagName") == "Fuzz");
    FUZZ_CHECK(depth == 2 && directory == QFileInfo(file).absolutePath());
    FUZZ_CHECK(index->componentPathsForElement(element, "ui/a.qml").contains(packageOf(file) + "/ui/a.qml"));
}

} // namespace

void fuzz(const QByteArray &input)
{
    FuzzInput rest(input);
    const QList<QByteArray> request = rest.takeLine().split(';');
    const QLocale locale(QString::fromUtf8(request.value(1)));
    const QString file = writeFuzzFile("Fuzz.vidtips/Control/tips.xml", rest.rest());

    VTContext settings;
    VTIndex index(&settings, {});
    index.indexControlFile(file, packageOf(file));
    const bool isAdmitted = !index.componentPathsForPackageNamed("Fuzz").isEmpty();
    FUZZ_CHECK(!isAdmitted || rest.rest().contains("<vidtips"));

    const QStringList keys = index.keys();
    FUZZ_CHECK(isAdmitted || keys.isEmpty());
    checkElement(&index, QString::fromUtf8(request.value(0)), locale, file);
    for (const QString &key : keys.mid(0, 4))
        checkElement(&index, key, locale, file);
}
