#include "EditRecord.h"

namespace {

size_t heap(const VariableState& state);
size_t heap(const MaterialState& state);

size_t heap(const jString& text)
{
    // Short texts live inside the string object.
    return text.capacity() > jString().capacity() ? text.capacity() + 1 : 0;
}

template <typename T>
size_t heap(const std::vector<T>& items)
{
    size_t total = items.capacity() * sizeof(T);
    for (const T& item : items)
        total += heap(item);
    return total;
}

size_t heap(const VariableState& state)
{
    return heap(state.value) + heap(state.format) + heap(state.wrap) + heap(state.filter) + heap(state.subValues);
}

size_t heap(const MaterialState& state)
{
    return heap(state.name) + heap(state.items) + heap(state.defines);
}

struct HeapBytes {
    size_t operator()(const EditRecord::NodeLife& r) const
    {
        return heap(r.node.type) + heap(r.node.name) + heap(r.node.variables) + heap(r.node.linkValues);
    }
    size_t operator()(const EditRecord::NodeName& r) const { return heap(r.before) + heap(r.after); }
    size_t operator()(const EditRecord::Variable& r) const { return heap(r.before) + heap(r.after); }
    size_t operator()(const EditRecord::SamplerMade& r) const { return heap(r.wrap) + heap(r.filter); }
    size_t operator()(const EditRecord::TextSetting& r) const { return heap(r.before) + heap(r.after); }
    size_t operator()(const EditRecord::States& r) const { return heap(r.before) + heap(r.after); }
    template <typename Plain>
    size_t operator()(const Plain&) const
    {
        return 0;
    }
};

} // namespace

size_t EditRecord::bytes(const Any& record)
{
    return sizeof(Any) + std::visit(HeapBytes{}, record);
}
