// Compiled into every program that links mimalloc in place of malloc.
#include <mimalloc.h>

namespace {

// Freed memory stays with the program for its next allocations instead of
// going back to the kernel: reading or writing a large package again would
// otherwise fault in and zero every page of the new tree or text, which on
// this kind of machine costs as much as the reading itself. The program keeps
// its peak heap until it exits.
const bool kKeepFreedMemory = [] {
    mi_option_disable(mi_option_allow_decommit);
    return true;
}();

} // namespace
