#include "VTTipContent_p.h"

#include "VTView.h"
#include "VTWidget.h"

namespace Vidtips {

namespace {

QString keyAttribute()
{
    return QStringLiteral("key");
}

} // namespace

VTXmlElement *contentOf(const VTWidget *window)
{
    return window && window->view() ? window->view()->content() : nullptr;
}

QObject *treeOf(VTXmlElement *content)
{
    auto *const root = content ? qobject_cast<VTXmlElement *>(content->parent()) : nullptr;
    return root ? root : content;
}

bool isInTree(const QObject *object, const QObject *tree)
{
    while (object && object != tree)
        object = object->parent();
    return object;
}

QString keyOf(const VTXmlElement &content)
{
    return content.attribute(keyAttribute());
}

bool hasKey(const VTXmlElement *content, const QString &key)
{
    return content && content->hasAttribute(keyAttribute()) && keyOf(*content) == key;
}

} // namespace Vidtips
