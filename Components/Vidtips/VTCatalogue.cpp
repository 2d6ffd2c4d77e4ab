#include "VTCatalogue_p.h"

#include <QtCore/QFileInfo>

namespace Vidtips {

void VTCatalogue::load(const QString &path)
{
    const bool isLoaded = QFileInfo(path).isFile() && m_translator.load(path);
    m_path = isLoaded ? path : QString();
}

QString VTCatalogue::translate(const QString &text, const QString &context) const
{
    return m_translator.translate(context.toUtf8().constData(), text.toUtf8().constData());
}

} // namespace Vidtips
