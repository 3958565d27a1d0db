#include "XMatComplier.h"

#include "AppData.h"
#include "Block.h"
#include "BlockManager.h"
#include "DataJoint.h"
#include "DataNode.h"
#include "DataSampler.h"
#include "DataVariable.h"
#include "jLog.h"

#include <algorithm>
#include <utility>

namespace {

constexpr const char* kProcessFunction = "XMatComplier::process_function";
constexpr const char* kParameterMark = "&parameter";
constexpr const char* kSamplerId = "SAMPLER_ID";
constexpr const char* kConstantMark = "Constant";
constexpr const char* kTexture2D = "texture2D";
constexpr const char* kTexture3D = "texture3D";
constexpr const char* kTextureCube = "textureCube";
// First texture unit of the material's texture groups.
constexpr int kTextureSlotBase = 15;

bool isAsciiLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isPlaceholderStart(char c) { return isAsciiLetter(c) || c == '_'; }
bool isPlaceholderChar(char c) { return isPlaceholderStart(c) || (c >= '0' && c <= '9'); }

bool isTextureType(const DataVariable* variable)
{
    const BlockVariable* definition = variable->getDefinition();
    if (!definition)
        return false;
    const jString& type = definition->getType();
    return type == kTexture2D || type == kTexture3D || type == kTextureCube;
}

} // namespace

XMatComplier::XMatComplier()
    : XMatComplier(false)
{
}

XMatComplier::XMatComplier(bool noIndent, const AppData* document)
    : m_document(document ? document : AppData::get())
    , m_no_indent(noIndent)
{
}

XMatComplier::~XMatComplier() = default;

jVector<XMatComplier::Token> XMatComplier::scan_tokens(const jString& fragment)
{
    jVector<Token> tokens;
    size_t at = fragment.find('@');
    while (at != jString::npos) {
        size_t end = at + 1;
        if (end >= fragment.size() || !isPlaceholderStart(fragment[end]))
            break;
        while (end < fragment.size() && isPlaceholderChar(fragment[end]))
            ++end;
        tokens.push_back(Token{fragment.substr(at, end - at), fragment.substr(at + 1, end - at - 1),
                               static_cast<int32_t>(end)});
        at = fragment.find('@', end);
    }
    return tokens;
}

// In place: fragments are short and hold a placeholder a few times at most,
// so a short line is edited without allocating.
size_t XMatComplier::replace_token(jString& text, const jString& token, const jString& with,
    jVector<uint8_t>* written)
{
    if (token.empty())
        return 0;
    if (written)
        written->resize(text.size(), 0);
    size_t count = 0;
    size_t at = text.find(token);
    while (at != jString::npos) {
        const size_t after = at + token.size();
        if (after < text.size() && isPlaceholderChar(text[after]) && !(written && (*written)[after])) {
            at = text.find(token, at + 1);
            continue;
        }
        text.replace(at, token.size(), with);
        if (written) {
            const auto first = written->begin() + static_cast<std::ptrdiff_t>(at);
            written->erase(first, first + static_cast<std::ptrdiff_t>(token.size()));
            written->insert(written->begin() + static_cast<std::ptrdiff_t>(at), with.size(), 1);
        }
        ++count;
        at = text.find(token, at + with.size());
    }
    return count;
}

size_t XMatComplier::replace_all(jString& text, const jString& what, const jString& with)
{
    if (what.empty())
        return 0;
    size_t count = 0;
    size_t from = 0;
    size_t at = text.find(what);
    jString out;
    while (at != jString::npos) {
        out.append(text, from, at - from);
        out += with;
        from = at + what.size();
        ++count;
        at = text.find(what, from);
    }
    if (count > 0) {
        out.append(text, from, jString::npos);
        text = std::move(out);
    }
    return count;
}

void XMatComplier::add_line(jVector<jString>& lines, const jString& text)
{
    add_line(lines, jString(text));
}

void XMatComplier::add_line(jVector<jString>& lines, jString&& text)
{
    if (!m_no_indent && m_indent > 0)
        text.insert(0, static_cast<size_t>(m_indent), '\t');
    lines.push_back(std::move(text));
    m_lineNodes.push_back(m_lineOwner);
}

void XMatComplier::add_lines(jVector<jString>& lines, const jVector<jString>& texts)
{
    for (const jString& text : texts)
        add_line(lines, text);
}

void XMatComplier::add_processed_lines(jVector<jString>& lines, DataNode* node, const jVector<jString>& fragments)
{
    const LineOwner owner(*this, node);
    for (const jString& fragment : fragments)
        add_line(lines, process_function(node, fragment));
}

jString XMatComplier::variable_identifier(const DataVariable* variable)
{
    return variable ? variable->getParameterName() : jString();
}

jString XMatComplier::output_identifier(const DataAnchor* anchor)
{
    if (!anchor)
        return {};
    const DataNode* node = anchor->getNode();
    return node ? anchor->getName() + std::to_string(node->getId()) : anchor->getName();
}

jString XMatComplier::parameter_name(const DataNode* node)
{
    jString name;
    if (!node)
        return name;
    for (size_t i = 0; i < node->getVariableCount(); ++i)
        name += variable_identifier(node->getVariable(i));
    return name;
}

jString XMatComplier::process_function(DataNode* node, const jString& fragment)
{
    if (fragment.empty())
        return {};
    jString copy = fragment;
    if (!node)
        return copy;
    if (copy.find(kParameterMark) != jString::npos) {
        replace_all(copy, kParameterMark, parameter_name(node));
        return copy;
    }
    RunScope scope(*this);
    // Which characters of the copy replacements wrote (sized by the first
    // replacement): "@b" in "@a@b@a" is still whole once "@a" has been
    // replaced on both sides of it.
    jVector<uint8_t> written;
    for (const Token& token : scan_tokens(fragment)) {
        if (token.name == kSamplerId) {
            if (!instantiate_sampler(node, token, copy, written))
                return copy;
            continue;
        }
        instantiate_token(node, token, copy, written);
    }
    return copy;
}

bool XMatComplier::instantiate_sampler(DataNode* node, const Token& token, jString& copy,
    jVector<uint8_t>& written) const
{
    const Block* block = node->getBlock();
    if (!block || !(block->isTexture2D() || block->isTexture3D() || block->isTextureCube())) {
        jLog::error("%s: \"%s\" is not a texutre node but use function TEXTURE_GROUP", kProcessFunction,
            node->getName().c_str());
        return false;
    }
    for (size_t i = 0; i < node->getVariableCount(); ++i) {
        const DataVariable* variable = node->getVariable(i);
        if (!variable || !isTextureType(variable))
            continue;
        const DataSampler* sampler = variable->getSampler();
        if (!sampler) {
            jLog::error("%s: \"%s\" sampler is null in texutre node", kProcessFunction, node->getName().c_str());
            return false;
        }
        // Every occurrence takes the first texture's sampler: later textures
        // find the token already replaced.
        replace_token(copy, token.text, std::to_string(sampler->getIndex()), &written);
    }
    return true;
}

void XMatComplier::instantiate_token(DataNode* node, const Token& token, jString& copy,
    jVector<uint8_t>& written) const
{
    if (const DataVariable* variable = node->findVariable(token.name)) {
        replace_token(copy, token.text, variable_identifier(variable), &written);
        return;
    }
    // The block's anchor definitions are the node's anchors' definitions, in
    // the same order; reading them leaves the node's anchors untouched.
    const Block* block = node->getBlock();
    const size_t count = block ? std::min(block->getInputPathCount(), node->getInputPathCount()) : 0;
    for (size_t i = 0; i < count; ++i) {
        const BlockAnchor* definition = block->getInputPath(i);
        if (!definition || definition->getName() != token.name)
            continue;
        replace_token(copy, token.text, input_expression(node, i, definition), &written);
        return;
    }
}

jString XMatComplier::input_expression(DataNode* node, size_t input, const BlockAnchor* definition) const
{
    const uint32_t position = m_links.find(node);
    if (position != LinkIndex::kNone) {
        const uint32_t slot = m_links.firstInput[position] + static_cast<uint32_t>(input);
        if (const DataAnchor* source = m_links.inputSource[slot])
            return m_links.identifier(source, m_links.inputSourceNode[slot], m_links.inputSourceSlot[slot]);
    }
    if (!definition->getDefault().empty())
        return definition->getDefault();
    return definition->getType() + "_zero";
}

void XMatComplier::declare_output(jVector<jString>& lines, DataAnchor* out)
{
    if (!out)
        return;
    const BlockAnchor* definition = out->getDefinition();
    const jString type = definition ? definition->getType() : jString();
    add_line(lines, type + " " + output_identifier(out) + ";");
}

void XMatComplier::emit_output(jVector<jString>& lines, DataAnchor* out)
{
    if (!out || m_emitted.count(out) > 0)
        return;
    RunScope scope(*this);
    const uint32_t node = m_links.find(out->getNode());
    emit_output_at(lines, out, node, node == LinkIndex::kNone ? LinkIndex::kNone : m_links.output_slot(node, out));
}

// node and slot locate out in the link index (kNone when it is not an output
// path anchor of a document node): a located output's definition and
// identifier come from its node's block instead of the anchor itself.
void XMatComplier::emit_output_at(jVector<jString>& lines, DataAnchor* out, uint32_t node, uint32_t slot)
{
    if (m_emitted.count(out) > 0)
        return;
    const bool located = node != LinkIndex::kNone && slot != LinkIndex::kNone;
    DataNode* owner = node == LinkIndex::kNone ? out->getNode() : m_links.nodes[node];
    const BlockAnchor* definition = located ? owner->getBlock()->getOutputPath(slot) : out->getDefinition();
    const jString identifier = m_links.identifier(out, node, slot);
    const jString expr = definition ? process_function(owner, definition->getFunction()) : jString();
    jString entry;
    if (definition && !definition->getFunctionEditor().empty()) {
        const jString exprEditor = process_function(owner, definition->getFunctionEditor());
        entry = "#ifdef __MATERAIL_EDITOR__\n" + identifier + " = " + exprEditor + "#else\n" + identifier + " = " +
            expr + "#endif\n";
    } else {
        entry = identifier + " = " + expr;
    }
    const LineOwner lineOwner(*this, owner);
    add_line(lines, std::move(entry));
    m_emitted.insert(out);
}

void XMatComplier::walk_inputs(jVector<jString>& lines, DataNode* node)
{
    RunScope scope(*this);
    const uint32_t position = m_links.find(node);
    if (position == LinkIndex::kNone || m_walked[position])
        return;
    walk_from(lines, position);
}

// The depth-first walk with an explicit stack. A frame stands for one
// pending walk_inputs(node): `next` is the input slot to look at; `waiting`
// tells that the walk of that input's source node has been started and its
// output is to be emitted when the frame is on top again.
void XMatComplier::walk_from(jVector<jString>& lines, uint32_t root)
{
    struct Frame {
        uint32_t node;
        uint32_t next;
        bool waiting;
    };
    m_walked[root] = 1;
    jVector<Frame> stack;
    stack.push_back({root, m_links.firstInput[root], false});
    while (!stack.empty()) {
        Frame& top = stack.back();
        const uint32_t input = top.next;
        if (top.waiting) {
            top.waiting = false;
            ++top.next;
            emit_output_at(lines, m_links.inputSource[input], m_links.inputSourceNode[input],
                m_links.inputSourceSlot[input]);
            continue;
        }
        if (input == m_links.firstInput[top.node + 1]) {
            stack.pop_back();
            continue;
        }
        if (!m_links.inputSource[input]) {
            ++top.next;
            continue;
        }
        top.waiting = true;
        const uint32_t source = m_links.inputSourceNode[input];
        if (source != LinkIndex::kNone && !m_walked[source]) {
            m_walked[source] = 1;
            stack.push_back({source, m_links.firstInput[source], false});
        }
    }
}

void XMatComplier::declare_linked_outputs(jVector<jString>& lines)
{
    for (uint32_t node = 0; node < m_links.nodes.size(); ++node) {
        const uint32_t first = m_links.firstOutput[node];
        for (uint32_t slot = first; slot < m_links.firstOutput[node + 1]; ++slot) {
            if (m_links.outputLinked[slot])
                declare_output_at(lines, node, slot - first);
        }
    }
}

void XMatComplier::declare_output_at(jVector<jString>& lines, uint32_t node, uint32_t slot)
{
    const BlockAnchor* definition = m_links.nodes[node]->getBlock()->getOutputPath(slot);
    const LineOwner owner(*this, m_links.nodes[node]);
    add_line(lines, definition->getType() + " " + m_links.identifier(nullptr, node, slot) + ";");
}

void XMatComplier::generate_end_node(jVector<jString>& lines, DataNode* end)
{
    RunScope scope(*this);
    declare_linked_outputs(lines);
    if (!end)
        return;
    const uint32_t position = m_links.find(end);
    if (position != LinkIndex::kNone)
        walk_from(lines, position);
    const Block* block = end->getBlock();
    if (!block)
        return;
    add_processed_lines(lines, end, block->getFunctionBegin());
    add_processed_lines(lines, end, block->getFunction());
    // function_begin once more, and never function_end: the end node's code
    // is framed this way on purpose.
    add_processed_lines(lines, end, block->getFunctionBegin());
}

bool XMatComplier::generate_ps(jVector<jString>& lines)
{
    return generate_stage(lines, "XMatComplier::generate_ps", BLOCK_USAGE_PS_START, BLOCK_USAGE_PS_END, false);
}

bool XMatComplier::generate_vs(jVector<jString>& lines)
{
    return generate_stage(lines, "XMatComplier::generate_vs", BLOCK_USAGE_VS_START, BLOCK_USAGE_VS_END, true);
}

void XMatComplier::begin_run()
{
    m_emitted.clear();
    m_lineNodes.clear();
    m_lineOwner = kNoNode;
    m_refused = false;
    m_refusal.clear();
}

// The program in the order the shader library expects: global includes,
// texture indexes, resources, parameters, the start node's code, then the
// walk back from the end node inside the end node's main frame.
bool XMatComplier::generate_stage(jVector<jString>& lines, const char* routine, int32_t startUsage,
    int32_t endUsage, bool vertex)
{
    begin_run();
    RunScope scope(*this);
    if (refuse_cycles(routine))
        return false;
    m_emitted.reserve(m_links.outputLinked.size());
    // Every linked output is usually declared once and assigned once.
    lines.reserve(lines.size() + 2 * m_links.outputLinked.size() + 64);
    m_lineNodes.reserve(2 * m_links.outputLinked.size() + 64);
    const AppData* document = m_document;
    const BlockManager* blocks = document->getBlockManager() ? document->getBlockManager() : BlockManager::get();
    if (blocks)
        add_lines(lines, blocks->getCodeInclude());
    const Survey found = survey(startUsage, endUsage);
    if (vertex && (!found.start || !found.end))
        return false;

    emit_texture_defines(lines, found);
    const Block* startBlock = found.start ? found.start->getBlock() : nullptr;
    if (startBlock) {
        add_lines(lines, startBlock->getInclude());
        if (!vertex)
            emit_samplers(lines);
        emit_texture_groups(lines, found);
    }
    emit_constant_buffer(lines, found, vertex ? "vs_shader_parameters" : "ps_shader_parameters");
    if (startBlock)
        add_processed_lines(lines, found.start, startBlock->getFunction());
    if (blocks)
        add_lines(lines, blocks->getCodeBegin());
    const Block* endBlock = found.end ? found.end->getBlock() : nullptr;
    if (endBlock)
        add_lines(lines, endBlock->getMainBegin());
    generate_end_node(lines, found.end);
    if (endBlock)
        add_lines(lines, endBlock->getMainEnd());
    if (blocks)
        add_lines(lines, blocks->getCodeEnd());
    return true;
}

// A constant node is one whose block type contains "Constant" (so
// MyConstantColor counts too).
XMatComplier::Survey XMatComplier::survey(int32_t startUsage, int32_t endUsage) const
{
    Survey found;
    for (DataNode* node : m_links.nodes) {
        const Block* block = node->getBlock();
        if (!block)
            continue;
        const int32_t usage = block->getUsage();
        if (usage == startUsage && !found.start)
            found.start = node;
        if (usage == endUsage && !found.end)
            found.end = node;
        if (block->getType().find(kConstantMark) != jString::npos)
            found.constants.push_back(node);
        for (size_t i = 0; i < node->getVariableCount(); ++i) {
            DataVariable* variable = node->getVariable(i);
            const BlockVariable* definition = variable ? variable->getDefinition() : nullptr;
            if (!definition)
                continue;
            const jString& type = definition->getType();
            if (type == kTexture2D)
                found.t2.push_back(variable);
            else if (type == kTextureCube)
                found.tc.push_back(variable);
            else if (type == kTexture3D)
                found.t3.push_back(variable);
        }
    }
    return found;
}

void XMatComplier::emit_texture_defines(jVector<jString>& lines, const Survey& survey)
{
    for (const jVector<DataVariable*>* list : {&survey.t2, &survey.tc, &survey.t3}) {
        for (size_t i = 0; i < list->size(); ++i) {
            const LineOwner owner(*this, (*list)[i]->getOwner());
            add_line(lines, jFormat("#define %s %d", variable_identifier((*list)[i]).c_str(), static_cast<int>(i)));
        }
    }
}

void XMatComplier::emit_samplers(jVector<jString>& lines)
{
    const AppData* document = m_document;
    for (size_t i = 0; i < document->getSamplerCount(); ++i) {
        if (const DataSampler* sampler = document->getSamplerAt(i))
            add_line(lines, jFormat("INIT_SAMPLER(%u);", sampler->getIndex()));
    }
}

// Cube textures take the slots from the base on, 3D textures follow them and
// 2D textures follow the 3D ones.
void XMatComplier::emit_texture_groups(jVector<jString>& lines, const Survey& survey)
{
    const int cubeCount = static_cast<int>(survey.tc.size());
    const int volumeCount = static_cast<int>(survey.t3.size());
    const int flatCount = static_cast<int>(survey.t2.size());
    if (flatCount > 0)
        add_line(lines, jFormat("INIT_TEXTURE_2D_GROUP(%d, %s, %d);", kTextureSlotBase + cubeCount + volumeCount,
            "BASE_2D", flatCount));
    if (cubeCount > 0)
        add_line(lines, jFormat("INIT_TEXTURE_CUBE_GROUP(%d, %s, %d);", kTextureSlotBase, "BASE_CUBE", cubeCount));
    if (volumeCount > 0)
        add_line(lines, jFormat("INIT_TEXTURE_3D_GROUP(%d, %s, %d);", kTextureSlotBase + cubeCount, "BASE_3D",
            volumeCount));
}

void XMatComplier::emit_constant_buffer(jVector<jString>& lines, const Survey& survey, const char* bufferName)
{
    if (survey.constants.empty())
        return;
    add_line(lines, jFormat("CBUFFER_BEGIN(%s)", bufferName));
    for (const DataNode* node : survey.constants) {
        const LineOwner owner(*this, node);
        add_line(lines, jFormat("\tUNIFORM %s %s;", node->getBlock()->getDataType().c_str(), parameter_name(node).c_str()));
    }
    add_line(lines, "CBUFFER_END");
}

XMatComplier::RunScope::RunScope(XMatComplier& generator)
    : m_generator(generator)
{
    if (m_generator.m_run_depth++ == 0) {
        m_generator.m_links.build(*m_generator.m_document);
        m_generator.m_walked.assign(m_generator.m_links.nodes.size(), 0);
    }
}

XMatComplier::RunScope::~RunScope() { --m_generator.m_run_depth; }

XMatComplier::LineOwner::LineOwner(XMatComplier& generator, const DataNode* node)
    : m_generator(generator)
    , m_previous(generator.m_lineOwner)
{
    m_generator.m_lineOwner = node ? node->getId() : kNoNode;
}

XMatComplier::LineOwner::~LineOwner() { m_generator.m_lineOwner = m_previous; }

uint32_t XMatComplier::LinkIndex::find(const DataNode* node) const
{
    if (!node)
        return kNone;
    if (byPointer.empty()) {
        const auto id = static_cast<size_t>(node->getId());
        const uint32_t at = id < byId.size() ? byId[id] : kNone;
        return at != kNone && nodes[at] == node ? at : kNone;
    }
    const auto found = byPointer.find(node);
    return found == byPointer.end() ? kNone : found->second;
}

uint32_t XMatComplier::LinkIndex::input_slot(uint32_t node, const DataAnchor* anchor) const
{
    const DataNode* owner = nodes[node];
    for (size_t i = 0; i < owner->getInputPathCount(); ++i) {
        if (owner->getInputPath(i) == anchor)
            return static_cast<uint32_t>(i);
    }
    return kNone;
}

uint32_t XMatComplier::LinkIndex::output_slot(uint32_t node, const DataAnchor* anchor) const
{
    const DataNode* owner = nodes[node];
    for (size_t i = 0; i < owner->getOutputPathCount(); ++i) {
        if (owner->getOutputPath(i) == anchor)
            return static_cast<uint32_t>(i);
    }
    return kNone;
}

uint32_t XMatComplier::LinkIndex::mark_linked_output(uint32_t node, const DataAnchor* anchor)
{
    const uint32_t slot = output_slot(node, anchor);
    if (slot != kNone)
        outputLinked[firstOutput[node] + slot] = 1;
    return slot;
}

jString XMatComplier::LinkIndex::identifier(const DataAnchor* anchor, uint32_t node, uint32_t slot) const
{
    if (node == kNone || slot == kNone)
        return output_identifier(anchor);
    const DataNode* owner = nodes[node];
    return owner->getBlock()->getOutputPath(slot)->getName() + std::to_string(owner->getId());
}

void XMatComplier::LinkIndex::build(const AppData& source)
{
    const AppData* document = &source;
    const size_t count = document->getNodeCount();
    nodes.clear();
    nodes.reserve(count);
    firstInput.assign(1, 0);
    firstOutput.assign(1, 0);
    int64_t largestId = -1;
    for (const auto& node : document->getNodes()) {
        largestId = std::max<int64_t>(largestId, node->getId());
        nodes.push_back(node.get());
        firstInput.push_back(firstInput.back() + static_cast<uint32_t>(node->getInputPathCount()));
        firstOutput.push_back(firstOutput.back() + static_cast<uint32_t>(node->getOutputPathCount()));
    }
    index_positions(largestId);
    inputSource.assign(firstInput.back(), nullptr);
    inputSourceNode.assign(firstInput.back(), kNone);
    inputSourceSlot.assign(firstInput.back(), kNone);
    outputLinked.assign(firstOutput.back(), 0);

    jVector<std::pair<uint32_t, uint32_t>> edges; // reader, source
    edges.reserve(document->getJointCount());
    firstRead.assign(count + 1, 0);
    // A joint keeps the nodes of its anchors, so the anchors themselves are
    // only compared, never read.
    for (const auto& joint : document->getJoints()) {
        if (!joint->anchor0 || !joint->anchor1)
            continue;
        const uint32_t source = find(joint->node0);
        const uint32_t reader = find(joint->node1);
        const uint32_t sourceSlot = source == kNone ? kNone : mark_linked_output(source, joint->anchor0);
        const uint32_t slot = reader == kNone ? kNone : input_slot(reader, joint->anchor1);
        if (slot == kNone) {
            if (reader != kNone)
                mark_linked_output(reader, joint->anchor1);
            continue;
        }
        const uint32_t input = firstInput[reader] + slot;
        if (!inputSource[input]) {
            inputSource[input] = joint->anchor0;
            inputSourceNode[input] = source;
            inputSourceSlot[input] = sourceSlot;
        }
        if (source != kNone) {
            edges.emplace_back(reader, source);
            ++firstRead[reader + 1];
        }
    }
    for (size_t n = 0; n < count; ++n)
        firstRead[n + 1] += firstRead[n];
    reads.resize(edges.size());
    jVector<uint32_t> fill(firstRead.begin(), firstRead.end() - 1);
    for (const auto& [reader, source] : edges)
        reads[fill[reader]++] = source;
}

void XMatComplier::LinkIndex::index_positions(int64_t largestId)
{
    byId.clear();
    byPointer.clear();
    const bool dense = largestId < 0 || static_cast<uint64_t>(largestId) < 4 * nodes.size() + 64;
    if (dense) {
        byId.assign(static_cast<size_t>(largestId + 1), kNone);
        for (uint32_t at = 0; at < nodes.size(); ++at) {
            const int32_t id = nodes[at]->getId();
            if (id < 0 || byId[static_cast<size_t>(id)] != kNone) {
                byId.clear();
                break; // ids not usable as a key: fall back on the map
            }
            byId[static_cast<size_t>(id)] = at;
        }
        if (!byId.empty() || nodes.empty())
            return;
    }
    byPointer.reserve(nodes.size());
    for (uint32_t at = 0; at < nodes.size(); ++at)
        byPointer.emplace(nodes[at], at);
}

// Looks for a cycle over the joints that end at an input path anchor, with
// an iterative depth-first search (unseen / on the stack / done). Edges run
// from a node to the nodes it reads from, so the nodes of a reported cycle
// are listed in reading order: each reads an output of the next and the last
// reads the first. Refuses (logs, sets wasRefused) and returns true on the
// first cycle found, searching from the nodes in document order.
bool XMatComplier::refuse_cycles(const char* routine)
{
    const size_t count = m_links.nodes.size();
    enum : uint8_t { kUnseen, kOnStack, kDone };
    jVector<uint8_t> state(count, kUnseen);
    jVector<uint32_t> stackIndex(count, 0);
    jVector<std::pair<uint32_t, uint32_t>> stack; // node, next edge
    for (uint32_t root = 0; root < count; ++root) {
        if (state[root] != kUnseen)
            continue;
        state[root] = kOnStack;
        stackIndex[root] = 0;
        stack.emplace_back(root, m_links.firstRead[root]);
        while (!stack.empty()) {
            auto& [node, next] = stack.back();
            if (next == m_links.firstRead[node + 1]) {
                state[node] = kDone;
                stack.pop_back();
                continue;
            }
            const uint32_t source = m_links.reads[next++];
            if (state[source] == kOnStack) {
                jString ids;
                for (size_t k = stackIndex[source]; k < stack.size(); ++k)
                    ids += (ids.empty() ? "" : ", ") + std::to_string(m_links.nodes[stack[k].first]->getId());
                m_refused = true;
                m_refusal = jFormat("%s: the graph has a cycle through nodes %s", routine, ids.c_str());
                jLog::error("%s", m_refusal.c_str());
                return true;
            }
            if (state[source] == kUnseen) {
                state[source] = kOnStack;
                stackIndex[source] = static_cast<uint32_t>(stack.size());
                stack.emplace_back(source, m_links.firstRead[source]);
            }
        }
    }
    return false;
}
