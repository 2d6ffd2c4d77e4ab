#include "VTPictureMemory_p.h"

#include <cstdlib>

#ifdef VIDTIPS_PICTURES_HAVE_PAGES
#include <sys/mman.h>
#endif

namespace Vidtips {

#ifdef VIDTIPS_PICTURES_HAVE_PAGES

void *VTPictureMemory::allocate(std::size_t bytes)
{
    if (bytes < leastPages)
        return std::malloc(bytes);
    void *const pages = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return pages == MAP_FAILED ? nullptr : pages;
}

void VTPictureMemory::release(void *memory, std::size_t bytes)
{
    if (bytes < leastPages)
        std::free(memory);
    else if (memory)
        munmap(memory, bytes);
}

#else

void *VTPictureMemory::allocate(std::size_t bytes)
{
    return std::malloc(bytes);
}

void VTPictureMemory::release(void *memory, std::size_t)
{
    std::free(memory);
}

#endif

} // namespace Vidtips
