#include "VTFoundContent_p.h"

#include <QtCore/QDir>

namespace Vidtips {

VTFoundContent::~VTFoundContent()
{
    if (!taken)
        delete root;
}

void VTFoundContent::setElement(VTXmlElement *newElement, VTXmlElement *newRoot)
{
    element = newElement;
    // Without an element the root that the index handed out may be gone already.
    root = newElement ? newRoot : nullptr;
}

QString VTFoundContent::packageFolder() const
{
    QDir folder(directory);
    for (int level = 1; level < depth && folder.cdUp(); ++level) { }
    return folder.canonicalPath();
}

} // namespace Vidtips
