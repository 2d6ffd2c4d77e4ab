// Interpolation, against a plain reading of what it has to do. Lines of a name, an equals sign and a value
// come first, then an empty line, then the text.
//
// A value that contains its own placeholder expands without end, which is the caller's fault; so does nearly
// every value that contains two placeholders of another such value. Inputs that grow past a bound are left
// out.

#include "FuzzInput.h"
#include "FuzzTarget.h"

#include <Vidtips/VTContext.h>
#include <Vidtips/VTIndex.h>
#include <Vidtips/VTInterface.h>
#include <Vidtips/VTManager.h>

#include <QtCore/QMap>
#include <QtCore/QVariant>

using namespace Vidtips;

namespace {

using Properties = QMap<QString, QVariant>;

constexpr int maximumSteps = 300;
constexpr int maximumLength = 10000;

bool isNameCharacter(QChar character)
{
    const ushort code = character.unicode();
    return code == '-' || code == '_' || (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z')
        || (code >= 'a' && code <= 'z');
}

/** Returns the length of the placeholder that begins at @p position, 0 where none does. */
int placeholderLength(const QString &text, int position)
{
    if (text.midRef(position, 2) != QLatin1String("%("))
        return 0;
    int end = position + 2;
    while (end < text.size() && isNameCharacter(text.at(end)))
        ++end;
    return end > position + 2 && text.midRef(end, 2) == QLatin1String(")s") ? end + 2 - position : 0;
}

/** Interpolates @p text; tells whether it came to an end. */
bool expand(QString *text, const Properties &properties)
{
    int steps = 0;
    for (int position = 0; position < text->size();) {
        const int length = placeholderLength(*text, position);
        const QString name = text->mid(position + 2, length - 4);
        const QString value = length ? properties.value(name).toString() : QString();
        if (value.isNull()) {
            position += qMax(length, 1);
            continue;
        }
        if (++steps > maximumSteps || text->size() > maximumLength)
            return false;
        text->replace(position, length, value);
    }
    return true;
}

Properties takeProperties(FuzzInput *input)
{
    Properties properties;
    while (!input->isEmpty()) {
        const QByteArray line = input->takeLine();
        if (line.isEmpty())
            break;
        const int sign = line.indexOf('=');
        // Without a sign the value has no text.
        properties.insert(QString::fromUtf8(line.left(sign)),
                          sign < 0 ? QVariant() : QVariant(QString::fromUtf8(line.mid(sign + 1))));
    }
    return properties;
}

} // namespace

void fuzz(const QByteArray &input)
{
    const QStringList noPaths;
    auto &settings = theOne<VTContext>();
    auto &index = theOne<VTIndex>(&settings, noPaths);
    const auto &host = theOne<VTInterface>(settings, noPaths, &index);
    FuzzInput rest(input);
    const Properties properties = takeProperties(&rest);
    const QString text = QString::fromUtf8(rest.rest());
    QString expected = text;
    if (expand(&expected, properties))
        FUZZ_CHECK(host.manager()->interpolate(text, properties) == expected);
}
