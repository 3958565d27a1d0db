#include "DocumentChecker.h"

#include "AppData.h"
#include "Block.h"
#include "BlockAnchor.h"
#include "BlockManager.h"
#include "DataAnchor.h"
#include "DataNode.h"
#include "LineRecord.h"
#include "MaterialReader.h"
#include "ShaderSource.h"
#include "XMatComplier.h"
#include "jDir.h"
#include "mjl.h"

#include <algorithm>
#include <set>

namespace {

bool anchorIn(size_t count, BlockAnchor* (Block::*at)(size_t) const, const Block& block, const jString& name)
{
    for (size_t i = 0; i < count; ++i) {
        if ((block.*at)(i)->getName() == name)
            return true;
    }
    return false;
}

// The document reader looks an anchor name up in all four lists.
bool hasAnchor(const Block& block, const jString& name)
{
    return anchorIn(block.getInputLinkCount(), &Block::getInputLink, block, name)
        || anchorIn(block.getOutputLinkCount(), &Block::getOutputLink, block, name)
        || anchorIn(block.getInputPathCount(), &Block::getInputPath, block, name)
        || anchorIn(block.getOutputPathCount(), &Block::getOutputPath, block, name);
}

bool isInputPath(const Block& block, const jString& name)
{
    return anchorIn(block.getInputPathCount(), &Block::getInputPath, block, name);
}

// Strongly connected components of a graph given as adjacency lists, found
// without recursion (Tarjan). Only components that hold a cycle are kept:
// more than one node, or one node that reads itself.
jVector<jVector<uint32_t>> cyclicComponents(const jVector<jVector<uint32_t>>& edges)
{
    constexpr int64_t kUnvisited = -1;
    const size_t count = edges.size();
    jVector<int64_t> index(count, kUnvisited);
    jVector<int64_t> low(count, 0);
    jVector<uint8_t> onStack(count, 0);
    jVector<uint32_t> stack;
    jVector<std::pair<uint32_t, size_t>> calls; // node, next edge
    jVector<jVector<uint32_t>> cycles;
    int64_t counter = 0;
    auto visit = [&](uint32_t node) {
        index[node] = low[node] = counter++;
        stack.push_back(node);
        onStack[node] = 1;
        calls.emplace_back(node, 0);
    };
    for (uint32_t root = 0; root < count; ++root) {
        if (index[root] != kUnvisited)
            continue;
        visit(root);
        while (!calls.empty()) {
            const uint32_t node = calls.back().first;
            const size_t next = calls.back().second++;
            if (next < edges[node].size()) {
                const uint32_t target = edges[node][next];
                if (index[target] == kUnvisited)
                    visit(target);
                else if (onStack[target])
                    low[node] = std::min(low[node], index[target]);
                continue;
            }
            calls.pop_back();
            if (!calls.empty())
                low[calls.back().first] = std::min(low[calls.back().first], low[node]);
            if (low[node] != index[node])
                continue;
            jVector<uint32_t> component;
            uint32_t member = 0;
            do {
                member = stack.back();
                stack.pop_back();
                onStack[member] = 0;
                component.push_back(member);
            } while (member != node);
            const auto& own = edges[node];
            if (component.size() > 1 || std::find(own.begin(), own.end(), node) != own.end())
                cycles.push_back(std::move(component));
        }
    }
    for (auto& cycle : cycles)
        std::sort(cycle.begin(), cycle.end());
    std::sort(cycles.begin(), cycles.end());
    return cycles;
}

// A compiler error as reported: without "ERROR: " and trailing blanks.
jString trimmedError(jString text)
{
    if (text.rfind("ERROR: ", 0) == 0)
        text.erase(0, 7);
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.pop_back();
    return text;
}

} // namespace

void DocumentChecker::reset()
{
    m_problems.clear();
    m_nodes.clear();
    m_nodeOrder.clear();
    m_reads.clear();
    m_linkedInputs.clear();
    m_kind = Kind::File;
}

bool DocumentChecker::check(const jString& path)
{
    reset();
    AppData& document = *AppData::get();
    if (!document.init()) {
        add("can't load the block library");
        return false;
    }
    mjl file;
    mjl parentFile;
    if (!read_file_graph(path, *document.getBlockManager(), file, parentFile))
        return false;
    check_structure();
    if (!has_errors() && m_compileShaders)
        check_programs(path);
    return !has_errors();
}

bool DocumentChecker::checkFileGraph(const jString& path, const BlockManager& blocks)
{
    reset();
    mjl file;
    mjl parentFile;
    return read_file_graph(path, blocks, file, parentFile);
}

void DocumentChecker::checkDocument(const AppData& document)
{
    reset();
    read_document(document);
    check_structure();
}

bool DocumentChecker::read_file_graph(const jString& path, const BlockManager& blocks, mjl& file, mjl& parentFile)
{
    m_kind = Kind::File;
    if (!file.open(path, false)) {
        add("can't read the file");
        return false;
    }
    const Package* graph = find_graph(*file.getRoot(), parentFile);
    if (!graph)
        return false;
    check_nodes(*graph, blocks);
    check_joints(*graph);
    return true;
}

// The loaded document holds only nodes of known blocks and joints between
// anchors that exist, so only the data flow needs reading.
void DocumentChecker::read_document(const AppData& document)
{
    for (const auto& node : document.getNodes()) {
        NodeRecord record;
        record.block = node->getBlock();
        record.type = record.block ? record.block->getType() : jString();
        record.position = static_cast<uint32_t>(m_nodeOrder.size());
        m_nodes.emplace(node->getId(), record);
        m_nodeOrder.push_back(node->getId());
    }
    m_reads.assign(m_nodeOrder.size(), {});
    for (const auto& joint : document.getJoints()) {
        if (!joint->node0 || !joint->node1 || !joint->anchor1)
            continue;
        const auto source = m_nodes.find(joint->node0->getId());
        const auto reader = m_nodes.find(joint->node1->getId());
        if (source == m_nodes.end() || reader == m_nodes.end() || !reader->second.block)
            continue;
        const jString& anchor = joint->anchor1->getName();
        if (!isInputPath(*reader->second.block, anchor))
            continue;
        m_reads[reader->second.position].push_back(source->second.position);
        m_linkedInputs.emplace(reader->second.position, anchor);
    }
}

void DocumentChecker::check_structure()
{
    m_kind = Kind::Structure;
    check_cycles();
    check_stage_nodes();
    check_unlinked_inputs();
}

jString DocumentChecker::describe(const Problem& problem)
{
    const jString text = problem.warning ? "warning: " + problem.text : problem.text;
    if (problem.nodeId < 0)
        return text;
    if (problem.nodeType.empty())
        return jFormat("node %d: %s", problem.nodeId, text.c_str());
    return jFormat("node %d (%s): %s", problem.nodeId, problem.nodeType.c_str(), text.c_str());
}

// The file's own "blueprint", or for an instance its parent's.
const Package* DocumentChecker::find_graph(const Package& root, mjl& parentFile)
{
    if (const Package* graph = root.findPackage("blueprint"))
        return graph;
    const Package* material = MaterialReader::findMaterial(root);
    const PackageItem* parent = material ? material->findItem("parent_path") : nullptr;
    if (!parent) {
        add("no \"blueprint\" package and no parent: not an editor document");
        return nullptr;
    }
    const jString parentPath(parent->getValue());
    if (!jDir::isInsideRoot(parentPath)) {
        add(jFormat("the parent \"%s\" is outside the data root", parentPath.c_str()));
        return nullptr;
    }
    if (!parentFile.open(parentPath, false)) {
        add(jFormat("can't read the parent \"%s\"", parentPath.c_str()));
        return nullptr;
    }
    const Package* graph = parentFile.getRoot()->findPackage("blueprint");
    if (!graph)
        add(jFormat("the parent \"%s\" has no \"blueprint\" package", parentPath.c_str()));
    return graph;
}

void DocumentChecker::check_nodes(const Package& graph, const BlockManager& blocks)
{
    for (size_t i = 0; i < graph.getPackageCount(); ++i) {
        const Package& node = *graph.getPackage(i);
        if (node.getName() != "node")
            continue;
        const int32_t id = static_cast<int32_t>(node.getInt("id"));
        const PackageItem* type = node.findItem("type");
        if (m_nodes.count(id)) {
            add(jFormat("node id %d is used by more than one node", id));
            continue;
        }
        NodeRecord record;
        record.type = type ? type->getValue() : std::string_view();
        record.block = blocks.getBlock(record.type);
        record.position = static_cast<uint32_t>(m_nodeOrder.size());
        m_nodes.emplace(id, record);
        m_nodeOrder.push_back(id);
        if (!type)
            add_for_node(id, "no block type");
        else if (!record.block)
            add_for_node(id, jFormat("unknown block type \"%s\"", record.type.c_str()));
    }
    m_reads.assign(m_nodeOrder.size(), {});
}

void DocumentChecker::check_joints(const Package& graph)
{
    size_t number = 0;
    for (size_t i = 0; i < graph.getPackageCount(); ++i) {
        const Package& joint = *graph.getPackage(i);
        if (joint.getName() == "joint")
            check_joint(joint, ++number);
    }
}

// Joints are numbered from 1 in file order.
void DocumentChecker::check_joint(const Package& joint, size_t number)
{
    const PackageItem* ends[2] = {joint.findItem("node_0"), joint.findItem("node_1")};
    if (!ends[0] || !ends[1]) {
        add(jFormat("joint %zu: no \"node_0\" or \"node_1\" item", number));
        return;
    }
    const jString anchors[2] = {jString(joint.getString("anchor_0")), jString(joint.getString("anchor_1"))};
    const NodeRecord* records[2] = {nullptr, nullptr};
    bool resolved = true;
    for (int end = 0; end < 2; ++end) {
        const int32_t id = static_cast<int32_t>(ends[end]->getInt());
        const auto found = m_nodes.find(id);
        if (found == m_nodes.end()) {
            add(jFormat("joint %zu: node %d does not exist", number, id));
            // Shown on the end that exists, whose input or output it was.
            const int32_t other = static_cast<int32_t>(ends[1 - end]->getInt());
            if (m_nodes.count(other) > 0)
                m_problems.back().nodes.push_back(other);
            resolved = false;
            continue;
        }
        records[end] = &found->second;
        if (!records[end]->block) {
            resolved = false; // its unknown type has been reported
        } else if (!hasAnchor(*records[end]->block, anchors[end])) {
            add_for_node(id, jFormat("joint %zu: no anchor \"%s\"", number, anchors[end].c_str()));
            resolved = false;
        }
    }
    // Data flows from the first node into the second node's input path.
    if (resolved && isInputPath(*records[1]->block, anchors[1])) {
        m_reads[records[1]->position].push_back(records[0]->position);
        m_linkedInputs.emplace(records[1]->position, anchors[1]);
    }
}

void DocumentChecker::check_cycles()
{
    for (const jVector<uint32_t>& cycle : cyclicComponents(m_reads)) {
        jVector<jString> ids;
        jVector<int32_t> nodes;
        for (uint32_t position : cycle) {
            nodes.push_back(m_nodeOrder[position]);
            ids.push_back(std::to_string(m_nodeOrder[position]));
        }
        add(jFormat("cycle through nodes %s", jJoin(ids, ", ").c_str()));
        m_problems.back().nodes = std::move(nodes);
    }
}

void DocumentChecker::check_stage_nodes()
{
    bool start = false;
    bool end = false;
    for (const auto& [id, record] : m_nodes) {
        start = start || (record.block && record.block->isPixelStart());
        end = end || (record.block && record.block->isPixelEnd());
    }
    if (!start)
        add("no pixel start node (a block of usage ps_start)");
    if (!end)
        add("no pixel end node (a block of usage ps_end)");
}

// The generator reads the first end node of each stage in file order, and
// writes a vertex program only when the graph has both vertex stage nodes.
void DocumentChecker::check_unlinked_inputs()
{
    check_unlinked_inputs_of(first_node_of_usage(BLOCK_USAGE_PS_END));
    if (first_node_of_usage(BLOCK_USAGE_VS_START) >= 0)
        check_unlinked_inputs_of(first_node_of_usage(BLOCK_USAGE_VS_END));
}

void DocumentChecker::check_unlinked_inputs_of(int32_t id)
{
    if (id < 0)
        return;
    const NodeRecord& record = m_nodes.at(id);
    for (size_t i = 0; i < record.block->getInputPathCount(); ++i) {
        const BlockAnchor& input = *record.block->getInputPath(i);
        if (!input.getDefault().empty() || m_linkedInputs.count({record.position, input.getName()}))
            continue;
        add_for_node(id,
            jFormat("input \"%s\" is not linked and has no default; the program uses %s_zero",
                input.getName().c_str(), input.getType().c_str()),
            true);
    }
}

int32_t DocumentChecker::first_node_of_usage(int32_t usage) const
{
    for (const int32_t id : m_nodeOrder) {
        const Block* block = m_nodes.at(id).block;
        if (block && block->getUsage() == usage)
            return id;
    }
    return -1;
}

bool DocumentChecker::has_errors() const
{
    return std::any_of(
        m_problems.begin(), m_problems.end(), [](const Problem& problem) { return !problem.warning; });
}

void DocumentChecker::check_programs(const jString& path)
{
    AppData& document = *AppData::get();
    if (!document.load(path)) {
        add("the document loader refused the file");
        return;
    }
    document.createStates();
    checkPrograms(document);
}

void DocumentChecker::checkPrograms(const AppData& document)
{
    if (m_nodes.empty())
        read_document(document); // for the node types
    m_kind = Kind::Shader;
    const jVector<jString> defines = MaterialState::programDefines(document.getStates());
    jVector<jString> lines;
    LineRecord record;
    XMatComplier vertex(false, &document);
    if (vertex.generate_vs(lines)) {
        record.assign(lines, vertex.getLineNodes());
        check_program(lines, record, defines, "vert", "vertex program");
    }
    lines.clear();
    XMatComplier pixel(false, &document);
    if (pixel.generate_ps(lines)) {
        record.assign(lines, pixel.getLineNodes());
        check_program(lines, record, defines, "frag", "pixel program");
    }
}

// Compiles the engine variant and then the editor variant; an error the
// editor variant shares with the engine one is reported once.
void DocumentChecker::check_program(const jVector<jString>& lines, const LineRecord& record,
    const jVector<jString>& defines, const char* stage, const char* name)
{
    std::set<jString> reported;
    for (const bool editor : {false, true}) {
        ShaderSource source;
        const jString prefix = jString(name) + (editor ? " (editor)" : "");
        if (!source.assemble(lines, defines, editor)) {
            add(prefix + ": " + source.getError());
            return;
        }
        jVector<jString> errors;
        if (m_validator.validate(source.getText(), stage, errors))
            continue;
        for (const jString& error : errors) {
            if (reported.insert(trimmedError(source.translateLog(error))).second)
                add_compiler_error(prefix, error, source, record);
        }
    }
}

// The text keeps the located form ("generated:12: ..."); the problem is
// shown on the node that wrote that line, with the compiler's message.
void DocumentChecker::add_compiler_error(const jString& prefix, const jString& error, const ShaderSource& source,
    const LineRecord& record)
{
    add(prefix + ": " + trimmedError(source.translateLog(error)));
    size_t number = 0;
    jString message;
    if (!ShaderSource::parseLogLine(error, number, message))
        return;
    Problem& problem = m_problems.back();
    problem.message = prefix + ": " + trimmedError(message);
    const ShaderSource::Origin* origin = source.origin(number);
    if (!origin || origin->file != ShaderSource::kGenerated)
        return;
    problem.line = static_cast<int32_t>(origin->line);
    const int32_t node = record.nodeAt(origin->line);
    if (node == LineRecord::kNoNode)
        return;
    problem.nodes.push_back(node);
    problem.nodeType = type_of(node);
}

jVector<DocumentChecker::NodeProblem> DocumentChecker::nodeProblems() const
{
    jVector<NodeProblem> shown;
    shown.reserve(m_problems.size());
    for (const Problem& problem : m_problems) {
        const jString& message = problem.message.empty() ? problem.text : problem.message;
        if (problem.nodes.empty()) {
            shown.push_back({-1, jString(), problem.line, message, problem.warning});
            continue;
        }
        for (const int32_t id : problem.nodes) {
            const jString& type = problem.nodeType.empty() || problem.nodes.size() > 1 ? type_of(id) : problem.nodeType;
            shown.push_back({id, type, problem.line, message, problem.warning});
        }
    }
    return shown;
}

const jString& DocumentChecker::type_of(int32_t id) const
{
    static const jString none;
    const auto found = m_nodes.find(id);
    return found == m_nodes.end() ? none : found->second.type;
}

void DocumentChecker::add(const jString& text)
{
    Problem problem;
    problem.text = text;
    problem.kind = m_kind;
    m_problems.push_back(std::move(problem));
}

void DocumentChecker::add_for_node(int32_t id, const jString& text, bool warning)
{
    Problem problem;
    problem.nodeId = id;
    problem.nodeType = type_of(id);
    problem.text = text;
    problem.warning = warning;
    problem.kind = m_kind;
    problem.nodes.push_back(id);
    m_problems.push_back(std::move(problem));
}
