#pragma once

/** The appearance of the desktop that tips are previewed on. */
namespace PreviewLook {

/** Gives the application light or dark colours, those of its tool tips included. */
void apply(bool isDark);

} // namespace PreviewLook
