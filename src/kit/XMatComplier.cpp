#include "XMatComplier.h"

#include "AppData.h"
#include "Block.h"
#include "BlockManager.h"
#include "DataJoint.h"
#include "DataNode.h"
#include "DataSampler.h"
#include "DataVariable.h"
#include "jLog.h"

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

XMatComplier::XMatComplier() = default;

XMatComplier::XMatComplier(bool noIndent)
    : m_no_indent(noIndent)
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

size_t XMatComplier::replace_token(jString& text, const jString& token, const jString& with)
{
    if (token.empty())
        return 0;
    size_t count = 0;
    size_t from = 0;
    size_t at = text.find(token);
    jString out;
    while (at != jString::npos) {
        const size_t after = at + token.size();
        const bool whole = after >= text.size() || !isPlaceholderChar(text[after]);
        if (whole) {
            if (count == 0)
                out.reserve(text.size() + with.size());
            out.append(text, from, at - from);
            out += with;
            from = after;
            ++count;
        }
        at = text.find(token, whole ? after : at + 1);
    }
    if (count > 0) {
        out.append(text, from, jString::npos);
        text = std::move(out);
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
    if (m_no_indent || m_indent < 1) {
        lines.push_back(text);
        return;
    }
    jString line(static_cast<size_t>(m_indent), '\t');
    line += text;
    lines.push_back(std::move(line));
}

void XMatComplier::add_lines(jVector<jString>& lines, const jVector<jString>& texts)
{
    for (const jString& text : texts)
        add_line(lines, text);
}

void XMatComplier::add_processed_lines(jVector<jString>& lines, DataNode* node, const jVector<jString>& fragments)
{
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
    for (const Token& token : scan_tokens(fragment)) {
        if (token.name == kSamplerId) {
            if (!instantiate_sampler(node, token, copy))
                return copy;
            continue;
        }
        instantiate_token(node, token, copy);
    }
    return copy;
}

bool XMatComplier::instantiate_sampler(DataNode* node, const Token& token, jString& copy) const
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
        replace_token(copy, token.text, std::to_string(sampler->getIndex()));
    }
    return true;
}

void XMatComplier::instantiate_token(DataNode* node, const Token& token, jString& copy) const
{
    if (const DataVariable* variable = node->findVariable(token.name)) {
        replace_token(copy, token.text, variable_identifier(variable));
        return;
    }
    for (size_t i = 0; i < node->getInputPathCount(); ++i) {
        const DataAnchor* input = node->getInputPath(i);
        if (!input || input->getName() != token.name)
            continue;
        replace_token(copy, token.text, input_expression(input));
        return;
    }
}

jString XMatComplier::input_expression(const DataAnchor* input)
{
    const DataJoint* joint = AppData::get()->findJointTo(input);
    if (joint && joint->anchor0)
        return output_identifier(joint->anchor0);
    const BlockAnchor* definition = input->getDefinition();
    if (!definition)
        return {};
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
    const BlockAnchor* definition = out->getDefinition();
    DataNode* node = out->getNode();
    const jString identifier = output_identifier(out);
    const jString expr = definition ? process_function(node, definition->getFunction()) : jString();
    jString entry;
    if (definition && !definition->getFunctionEditor().empty()) {
        const jString exprEditor = process_function(node, definition->getFunctionEditor());
        entry = "#ifdef __MATERAIL_EDITOR__\n" + identifier + " = " + exprEditor + "#else\n" + identifier + " = " +
            expr + "#endif\n";
    } else {
        entry = identifier + " = " + expr;
    }
    add_line(lines, entry);
    m_emitted.emplace(out, std::move(entry));
}

void XMatComplier::walk_inputs(jVector<jString>& lines, DataNode* node)
{
    if (!node || m_walked.count(node) > 0)
        return;
    walk_from(lines, node);
}

// The depth-first walk with an explicit stack. A frame stands for one
// pending walk_inputs(node): `next` is the input to look at, `pending` the
// source output to emit once the walk of its node has finished.
void XMatComplier::walk_from(jVector<jString>& lines, DataNode* root)
{
    struct Frame {
        DataNode* node;
        size_t next;
        DataAnchor* pending;
    };
    AppData* document = AppData::get();
    m_walked.insert(root);
    jVector<Frame> stack;
    stack.push_back({root, 0, nullptr});
    while (!stack.empty()) {
        Frame& top = stack.back();
        if (top.pending) {
            DataAnchor* out = top.pending;
            top.pending = nullptr;
            ++top.next;
            emit_output(lines, out);
            continue;
        }
        if (top.next >= top.node->getInputPathCount()) {
            stack.pop_back();
            continue;
        }
        const DataJoint* joint = document->findJointTo(top.node->getInputPath(top.next));
        if (!joint || !joint->anchor0) {
            ++top.next;
            continue;
        }
        top.pending = joint->anchor0;
        DataNode* source = joint->anchor0->getNode();
        if (source && m_walked.insert(source).second)
            stack.push_back({source, 0, nullptr});
    }
}

void XMatComplier::declare_linked_outputs(jVector<jString>& lines)
{
    const AppData* document = AppData::get();
    for (const auto& node : document->getNodes()) {
        for (size_t i = 0; i < node->getOutputPathCount(); ++i) {
            DataAnchor* out = node->getOutputPath(i);
            if (out && document->findJoint(out))
                declare_output(lines, out);
        }
    }
}

void XMatComplier::generate_end_node(jVector<jString>& lines, DataNode* end)
{
    declare_linked_outputs(lines);
    if (!end)
        return;
    walk_from(lines, end);
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
    m_walked.clear();
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
    if (refuse_cycles(routine))
        return false;
    AppData* document = AppData::get();
    const BlockManager* blocks = document->getBlockManager() ? document->getBlockManager() : BlockManager::get();
    if (blocks)
        add_lines(lines, blocks->getCodeInclude());
    DataNode* start = document->findNodeByUsage(startUsage);
    DataNode* end = document->findNodeByUsage(endUsage);
    if (vertex && (!start || !end))
        return false;

    const TextureLists textures = gather_textures();
    emit_texture_defines(lines, textures);
    const Block* startBlock = start ? start->getBlock() : nullptr;
    if (startBlock) {
        add_lines(lines, startBlock->getInclude());
        if (!vertex)
            emit_samplers(lines);
        emit_texture_groups(lines, textures);
    }
    emit_constant_buffer(lines, vertex ? "vs_shader_parameters" : "ps_shader_parameters");
    if (startBlock)
        add_processed_lines(lines, start, startBlock->getFunction());
    if (blocks)
        add_lines(lines, blocks->getCodeBegin());
    const Block* endBlock = end ? end->getBlock() : nullptr;
    if (endBlock)
        add_lines(lines, endBlock->getMainBegin());
    generate_end_node(lines, end);
    if (endBlock)
        add_lines(lines, endBlock->getMainEnd());
    if (blocks)
        add_lines(lines, blocks->getCodeEnd());
    return true;
}

XMatComplier::TextureLists XMatComplier::gather_textures()
{
    TextureLists textures;
    for (const auto& node : AppData::get()->getNodes()) {
        for (size_t i = 0; i < node->getVariableCount(); ++i) {
            DataVariable* variable = node->getVariable(i);
            const BlockVariable* definition = variable ? variable->getDefinition() : nullptr;
            if (!definition)
                continue;
            const jString& type = definition->getType();
            if (type == kTexture2D)
                textures.t2.push_back(variable);
            else if (type == kTextureCube)
                textures.tc.push_back(variable);
            else if (type == kTexture3D)
                textures.t3.push_back(variable);
        }
    }
    return textures;
}

void XMatComplier::emit_texture_defines(jVector<jString>& lines, const TextureLists& textures)
{
    for (const jVector<DataVariable*>* list : {&textures.t2, &textures.tc, &textures.t3}) {
        for (size_t i = 0; i < list->size(); ++i)
            add_line(lines, jFormat("#define %s %d", variable_identifier((*list)[i]).c_str(), static_cast<int>(i)));
    }
}

void XMatComplier::emit_samplers(jVector<jString>& lines)
{
    const AppData* document = AppData::get();
    for (size_t i = 0; i < document->getSamplerCount(); ++i) {
        if (const DataSampler* sampler = document->getSamplerAt(i))
            add_line(lines, jFormat("INIT_SAMPLER(%u);", sampler->getIndex()));
    }
}

// Cube textures take the slots from the base on, 3D textures follow them and
// 2D textures follow the 3D ones.
void XMatComplier::emit_texture_groups(jVector<jString>& lines, const TextureLists& textures)
{
    const int cubeCount = static_cast<int>(textures.tc.size());
    const int volumeCount = static_cast<int>(textures.t3.size());
    const int flatCount = static_cast<int>(textures.t2.size());
    if (flatCount > 0)
        add_line(lines, jFormat("INIT_TEXTURE_2D_GROUP(%d, %s, %d);", kTextureSlotBase + cubeCount + volumeCount,
            "BASE_2D", flatCount));
    if (cubeCount > 0)
        add_line(lines, jFormat("INIT_TEXTURE_CUBE_GROUP(%d, %s, %d);", kTextureSlotBase, "BASE_CUBE", cubeCount));
    if (volumeCount > 0)
        add_line(lines, jFormat("INIT_TEXTURE_3D_GROUP(%d, %s, %d);", kTextureSlotBase + cubeCount, "BASE_3D",
            volumeCount));
}

void XMatComplier::emit_constant_buffer(jVector<jString>& lines, const char* bufferName)
{
    bool open = false;
    for (const auto& node : AppData::get()->getNodes()) {
        const Block* block = node->getBlock();
        if (!block || block->getType().find(kConstantMark) == jString::npos)
            continue;
        if (!open) {
            add_line(lines, jFormat("CBUFFER_BEGIN(%s)", bufferName));
            open = true;
        }
        add_line(lines, jFormat("\tUNIFORM %s %s;", block->getDataType().c_str(), parameter_name(node.get()).c_str()));
    }
    if (open)
        add_line(lines, "CBUFFER_END");
}

// Looks for a cycle over the joints that end at an input path anchor, with
// an iterative depth-first search (white / on the stack / done). Edges run
// from a node to the nodes it reads from, so the nodes of a reported cycle
// are listed in reading order: each reads an output of the next and the last
// reads the first. Refuses (logs, sets wasRefused) and returns true on the
// first cycle found, searching from the nodes in document order.
bool XMatComplier::refuse_cycles(const char* routine)
{
    const AppData* document = AppData::get();
    jVector<const DataNode*> nodes;
    nodes.reserve(document->getNodeCount());
    std::unordered_map<const DataNode*, size_t> position;
    position.reserve(document->getNodeCount());
    std::unordered_set<const DataAnchor*> inputPaths;
    for (const auto& node : document->getNodes()) {
        position.emplace(node.get(), nodes.size());
        nodes.push_back(node.get());
        for (size_t i = 0; i < node->getInputPathCount(); ++i)
            inputPaths.insert(node->getInputPath(i));
    }

    // Edges in compressed rows: reads of node n are read[first[n] .. first[n + 1]).
    jVector<size_t> first(nodes.size() + 1, 0);
    jVector<std::pair<size_t, size_t>> edges;
    for (const auto& joint : document->getJoints()) {
        if (!joint->anchor0 || !joint->anchor1 || inputPaths.count(joint->anchor1) == 0)
            continue;
        const auto reader = position.find(joint->anchor1->getNode());
        const auto source = position.find(joint->anchor0->getNode());
        if (reader == position.end() || source == position.end())
            continue;
        edges.emplace_back(reader->second, source->second);
        ++first[reader->second + 1];
    }
    for (size_t n = 0; n < nodes.size(); ++n)
        first[n + 1] += first[n];
    jVector<size_t> read(edges.size());
    jVector<size_t> fill(first.begin(), first.end() - 1);
    for (const auto& [reader, source] : edges)
        read[fill[reader]++] = source;

    enum : uint8_t { kUnseen, kOnStack, kDone };
    jVector<uint8_t> state(nodes.size(), kUnseen);
    jVector<size_t> stackIndex(nodes.size(), 0);
    jVector<std::pair<size_t, size_t>> stack; // node, next edge
    for (size_t root = 0; root < nodes.size(); ++root) {
        if (state[root] != kUnseen)
            continue;
        state[root] = kOnStack;
        stack.emplace_back(root, first[root]);
        while (!stack.empty()) {
            auto& [node, next] = stack.back();
            if (next == first[node + 1]) {
                state[node] = kDone;
                stack.pop_back();
                continue;
            }
            const size_t source = read[next++];
            if (state[source] == kOnStack) {
                jString ids;
                for (size_t k = stackIndex[source]; k < stack.size(); ++k)
                    ids += (ids.empty() ? "" : ", ") + std::to_string(nodes[stack[k].first]->getId());
                m_refused = true;
                m_refusal = jFormat("%s: the graph has a cycle through nodes %s", routine, ids.c_str());
                jLog::error("%s", m_refusal.c_str());
                return true;
            }
            if (state[source] == kUnseen) {
                state[source] = kOnStack;
                stackIndex[source] = stack.size();
                stack.emplace_back(source, first[source]);
            }
        }
    }
    return false;
}
