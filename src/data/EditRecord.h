#pragma once

#include "MaterialState.h"
#include "jString.h"

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

class AppData;

// The state of one node variable that an edit can change. The sampler is
// kept as its position in the document's sampler list.
struct VariableState {
    jString value;
    jString format;
    jString wrap;
    jString filter;
    uint32_t anisotropy = 0;
    uint32_t sampler = 0;
    bool asyn = false;
    std::vector<jString> subValues;

    bool operator==(const VariableState& other) const = default;
};

// Everything a removed node held, enough to put it back as it was: at the
// same place in the node list (before the node `next`), with the same id.
struct NodeSnapshot {
    static constexpr int32_t kAtEnd = -1;

    int32_t id = 0;
    int32_t next = kAtEnd;
    jString type;
    int32_t x = 0;
    int32_t y = 0;
    jString name;
    std::vector<VariableState> variables;
    // Link values of every anchor, in the node's anchor order.
    std::vector<jString> linkValues;
};

// The records of the edit log. Each holds what one document change altered,
// by node id, anchor position and joint serial rather than by pointer, so
// that it still applies after the objects it names were removed and put
// back.
namespace EditRecord {

// A node made (created) or removed (!created). The snapshot is taken when
// the node goes away: on removal, or when its creation is undone.
struct NodeLife {
    bool created = true;
    NodeSnapshot node;
};

// A joint made or removed: its two ends (node id and anchor position within
// the node), its serial, and the joint after it in the list (its serial and
// its first end, where it is found).
struct JointLife {
    static constexpr uint64_t kAtEnd = UINT64_MAX;

    bool created = true;
    int32_t node0 = 0;
    int32_t node1 = 0;
    uint32_t anchor0 = 0;
    uint32_t anchor1 = 0;
    uint64_t serial = 0;
    uint64_t next = kAtEnd;
    int32_t nextNode = 0;
    uint32_t nextAnchor = 0;
};

// A node moved from (x0, y0) to (x1, y1); applied as the offset between
// them, so that moves of the whole view in between (zoom) are kept.
struct NodeMove {
    int32_t id = 0;
    int32_t x0 = 0;
    int32_t y0 = 0;
    int32_t x1 = 0;
    int32_t y1 = 0;
};

struct NodeName {
    int32_t id = 0;
    jString before;
    jString after;
};

struct Variable {
    int32_t id = 0;
    uint32_t index = 0;
    VariableState before;
    VariableState after;
};

// A sampler appended to the document's list (always the last one).
struct SamplerMade {
    jString wrap;
    jString filter;
    uint32_t anisotropy = 0;
};

struct TextSetting {
    jString AppData::*field = nullptr;
    jString before;
    jString after;
};

struct NumberSetting {
    int32_t AppData::*field = nullptr;
    int32_t before = 0;
    int32_t after = 0;
};

struct FlagSetting {
    bool AppData::*field = nullptr;
    bool before = false;
    bool after = false;
};

struct StateValue {
    uint32_t index = 0;
    uint8_t before = 0;
    uint8_t after = 0;
};

// The whole state list replaced (rebuilt from the template, cleared, reset).
struct States {
    jVector<MaterialState> before;
    jVector<MaterialState> after;
};

using Any = std::variant<NodeLife, JointLife, NodeMove, NodeName, Variable, SamplerMade, TextSetting,
    NumberSetting, FlagSetting, StateValue, States>;

// Bytes the record holds, its own size included.
size_t bytes(const Any& record);

} // namespace EditRecord
