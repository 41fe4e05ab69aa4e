#pragma once

#include <cstddef>
#include <memory_resource>

// Where the element tree of one client document lives while its batch is
// handled. The tree is made of hundreds of small blocks; in the heap, the
// records decoded while it lives land between them, so once it is freed its
// pages stay half used for the rest of the session. Here its blocks come from
// pages mapped for it alone, never freed one by one, and all unmapped when the
// arena goes. Outlives every tree parsed into it.
class XMLArena {
public:
    XMLArena() = default;
    XMLArena(const XMLArena&) = delete;
    XMLArena& operator=(const XMLArena&) = delete;

    std::pmr::memory_resource* Resource() noexcept { return &blocks_; }

private:
    // Whole pages from the system, whatever the heap's own threshold for
    // mapping blocks is.
    class MappedPages : public std::pmr::memory_resource {
        void* do_allocate(std::size_t bytes, std::size_t alignment) override;
        void do_deallocate(void* pointer, std::size_t bytes, std::size_t alignment) override;
        bool do_is_equal(const std::pmr::memory_resource& other) const noexcept override {
            return this == &other;
        }
    };

    MappedPages pages_;
    // 64 KiB first, growing from there: a document of 100 actions takes about
    // 200 KiB, one of a single message a few hundred bytes.
    std::pmr::monotonic_buffer_resource blocks_{64 * 1024, &pages_};
};
