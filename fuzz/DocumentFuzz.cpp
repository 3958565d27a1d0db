// libFuzzer target of the editor document reader: any package text loads or
// is refused without a crash, a hang or a leak. A loaded document, written
// and loaded again, must write the same text.
#include "AppData.h"
#include "DocumentLibrary.h"
#include "jDir.h"
#include "jLog.h"
#include "mjl.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

std::string g_root;

void removeRoot()
{
    std::error_code ec;
    std::filesystem::remove_all(g_root, ec);
}

jString writeDocument(const AppData& doc)
{
    Package root;
    doc.write_editor(root);
    doc.write_blueprint(root);
    return mjl::toText(root);
}

[[noreturn]] void failRoundTrip(const jString& first, const jString& second)
{
    std::fprintf(stderr, "round trip differs\n--- first ---\n%s\n--- second ---\n%s\n", first.c_str(),
        second.c_str());
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    std::string pattern = (std::filesystem::temp_directory_path() / "document-fuzz-XXXXXX").string();
    if (!mkdtemp(pattern.data()))
        std::abort();
    g_root = pattern;
    std::atexit(removeRoot);
    DocumentLibrary::install(g_root);
    jDir::setProjectRoot(g_root);
    jLog::setStderrEnabled(false);
    if (!AppData::get()->reloadBlocks())
        std::abort();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    mjl file;
    if (!file.parse(std::string_view(reinterpret_cast<const char*>(data), size), "fuzz.mat"))
        return 0;
    AppData& doc = *AppData::get();
    if (!doc.load_document(*file.getRoot(), "fuzz.mat"))
        return 0;
    doc.createStates();

    const jString first = writeDocument(doc);
    mjl written;
    if (!written.parse(first, "written.mat") || !doc.load_document(*written.getRoot(), "written.mat"))
        failRoundTrip(first, "(does not load)");
    const jString second = writeDocument(doc);
    if (second != first)
        failRoundTrip(first, second);
    return 0;
}
