#include "qdeclarativefonts_p.h"

#include <QtCore/QCoreApplication>

#include <algorithm>
#include <array>

namespace {

/** More than a scene commonly has; a search through them must stay cheaper than what it saves. */
constexpr std::size_t limit = 6;

struct Recent
{
    std::array<QFont, limit> fonts;
    std::size_t next = 0;
};

Recent *recent = nullptr;

void forget()
{
    delete recent;
    recent = nullptr;
}

} // namespace

QFont QDeclarativeFonts::shared(const QFont &font)
{
    if (!recent) {
        recent = new Recent;
        // No font may outlive the application.
        qAddPostRoutine(forget);
    }
    auto &fonts = recent->fonts;
    const auto same = std::find_if(fonts.cbegin(), fonts.cend(), [&font](const QFont &other) {
        return other.resolve() == font.resolve() && other == font;
    });
    if (same != fonts.cend())
        return *same;
    fonts[recent->next] = font;
    recent->next = (recent->next + 1) % limit;
    return font;
}
