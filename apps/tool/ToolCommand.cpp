#include "ToolCommand.h"

#include "jDir.h"
#include "jLog.h"

#include <algorithm>
#include <cstring>

namespace tool {
namespace {

// A function-local list, so registrations in other files' static
// initialisers never see it unconstructed.
std::vector<ToolCommandFactory>& registeredFactories()
{
    static std::vector<ToolCommandFactory> factories;
    return factories;
}

} // namespace

bool ToolContext::toRootRelative(const char* command, const std::vector<jString>& shellPaths,
                                 std::vector<jString>& rootRelative) const
{
    bool allInside = true;
    rootRelative.clear();
    for (const jString& path : shellPaths) {
        jString relative;
        if (path.empty()) {
            // An empty argument names no file; it is not "outside" anything.
            jLog::error("%s: a path is empty", command);
            allInside = false;
        } else if (!jDir::toRootRelative(path, relative)) {
            jLog::error("%s: \"%s\" is outside the data root \"%s\"", command, path.c_str(), m_root.c_str());
            allInside = false;
        }
        rootRelative.push_back(relative);
    }
    return allInside;
}

jString ToolContext::projectFile(const jString& rootRelative) const
{
    return jDir::resolveWrite(rootRelative);
}

ToolCommandRegistration::ToolCommandRegistration(ToolCommandFactory factory)
{
    registeredFactories().push_back(factory);
}

std::vector<std::unique_ptr<ToolCommand>> createToolCommands()
{
    std::vector<std::unique_ptr<ToolCommand>> commands;
    for (ToolCommandFactory factory : registeredFactories())
        commands.push_back(factory());
    std::sort(commands.begin(), commands.end(), [](const auto& a, const auto& b) {
        return std::strcmp(a->name(), b->name()) < 0;
    });
    return commands;
}

} // namespace tool
