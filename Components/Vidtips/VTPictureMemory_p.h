#pragma once

#include <cstddef>

namespace Vidtips {

/**
 * Memory for the pixels of one picture, which goes back to the system when the picture does.
 *
 * The allocator keeps what lies below memory that is still in use, and a clip is hundreds of pictures between
 * which anything may have come to lie.
 */
namespace VTPictureMemory {

/** Bytes from which on pictures lie in pages of their own. What is smaller comes from the allocator. */
constexpr std::size_t leastPages = 64 * 1024;

// A sanitizer, which would not see writes past the end of pages, looks after what comes from the allocator.
#if defined(__unix__) && !defined(__SANITIZE_ADDRESS__)
#define VIDTIPS_PICTURES_HAVE_PAGES
constexpr bool hasPages = true;
#else
constexpr bool hasPages = false;
#endif

/** Returns @p bytes bytes that are not initialised, null where there is no memory. Any thread. */
void *allocate(std::size_t bytes);

/** Frees @p memory, which was allocated with as many @p bytes and may be null. Any thread. */
void release(void *memory, std::size_t bytes);

} // namespace VTPictureMemory

} // namespace Vidtips
