// Reads arbitrary bytes as a package file. Whatever reads must write in the
// canonical form and read back as the same tree.
#include "jLog.h"
#include "mjl.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

void touchTypedReads(const Package& root)
{
    for (size_t i = 0; i < root.getItemCount(); ++i) {
        const PackageItem& item = *root.getItem(i);
        volatile unsigned sink = static_cast<unsigned>(item.getInt()) ^ item.getBool() ^ (item.getFloat() != 0.0f);
        (void)sink;
    }
}

[[noreturn]] void failRoundTrip(const char* what, const jString& written)
{
    std::fprintf(stderr, "round trip: %s\n--- written ---\n%s\n---\n", what, written.c_str());
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const bool quiet = (jLog::setStderrEnabled(false), true);
    (void)quiet;

    mjl first;
    if (!first.parse(std::string_view(reinterpret_cast<const char*>(data), size), "fuzz"))
        return 0;
    touchTypedReads(*first.getRoot());

    const jString written = mjl::toText(*first.getRoot());
    mjl second;
    if (!second.parse(written, "written"))
        failRoundTrip(second.getError().c_str(), written);
    if (!(*first.getRoot() == *second.getRoot()))
        failRoundTrip("the tree read back differs", written);
    return 0;
}
