// Compiled into every program that links mimalloc in place of malloc.
#include <mimalloc.h>

#include <cstddef>

namespace {

// Address space set aside up front for the heap. Large blocks (the text of a
// big package, its tree) then come from memory the program already holds and
// go back to it when freed, instead of being mapped from the kernel and
// unmapped again each time. Only the pages used count against memory.
constexpr size_t kReservedHeap = size_t(1) << 30;

// Freed memory stays with the program for its next allocations instead of
// going back to the kernel: reading or writing a large package again would
// otherwise fault in and zero every page of the new tree or text, which on a
// virtual machine costs as much as the reading itself. The program keeps its
// peak heap until it exits.
//
// The heap asks for transparent huge pages (2 MiB): a document's tree and
// graph span thousands of 4 KiB pages, and walking them missed the TLB on
// most records. The main thread's heap moves into the reserved memory, as the
// memory it started with was mapped (with small pages) before this runs;
// other threads' heaps take huge pages once the option is on.
const bool kHeapConfigured = [] {
    mi_option_disable(mi_option_allow_decommit);
    mi_option_enable(mi_option_large_os_pages);
    mi_arena_id_t arena = 0;
    if (mi_reserve_os_memory_ex(kReservedHeap, true, true, false, &arena) == 0)
        mi_heap_set_default(mi_heap_new_in_arena(arena));
    return true;
}();

} // namespace
