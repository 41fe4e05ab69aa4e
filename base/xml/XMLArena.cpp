#include "base/xml/XMLArena.h"

#include <sys/mman.h>

#include <new>

void* XMLArena::MappedPages::do_allocate(std::size_t bytes, std::size_t alignment) {
    // mmap hands out whole pages, aligned for anything the tree holds.
    if (alignment > 4096) throw std::bad_alloc();
    void* pages = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) throw std::bad_alloc();
    return pages;
}

void XMLArena::MappedPages::do_deallocate(void* pointer, std::size_t bytes, std::size_t) {
    munmap(pointer, bytes);
}
