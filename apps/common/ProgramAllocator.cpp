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
// Memory the heap maps from now on (the reserved area, new segments) asks for
// transparent huge pages (2 MiB): a document's tree and graph span thousands
// of 4 KiB pages, and walking them misses the TLB. The heap keeps the memory
// it was given before this runs, so that every allocation can still fall
// back to the kernel.
const bool kHeapConfigured = [] {
    mi_option_disable(mi_option_allow_decommit);
    mi_option_enable(mi_option_large_os_pages);
    mi_reserve_os_memory(kReservedHeap, true, true);
    return true;
}();

} // namespace
