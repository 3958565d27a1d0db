#include "tr.h"

#include "Package.h"
#include "PackageItem.h"
#include "jLog.h"
#include "mjl.h"

#include <map>
#include <set>

namespace {

constexpr const char* kTextsFile = "data/core/editor/lang/en.cfg";

struct Texts {
    bool loaded = false;
    std::map<jString, jString, std::less<>> byKey;
    std::set<jString, std::less<>> unknown;
};

Texts& texts()
{
    static Texts t;
    return t;
}

void load(Texts& t)
{
    t.loaded = true;
    mjl file;
    if (!file.open(kTextsFile, false)) {
        jLog::error("tr: can't read \"%s\": %s", kTextsFile, file.getError().c_str());
        return;
    }
    const Package* list = file.getRoot()->findPackage("texts");
    if (!list) {
        jLog::error("tr: \"%s\" has no texts package", kTextsFile);
        return;
    }
    for (size_t i = 0; i < list->getItemCount(); ++i) {
        const PackageItem* item = list->getItem(i);
        t.byKey.emplace(jString(item->getName()), jString(item->getValue()));
    }
}

} // namespace

const jString& tr(std::string_view key)
{
    Texts& t = texts();
    if (!t.loaded)
        load(t);
    if (auto it = t.byKey.find(key); it != t.byKey.end())
        return it->second;
    auto [it, added] = t.unknown.emplace(key);
    if (added)
        jLog::warning("tr: no text for \"%s\" in \"%s\"", it->c_str(), kTextsFile);
    return *it;
}

void trReload()
{
    texts() = Texts{};
}
