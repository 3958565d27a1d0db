#pragma once

#include "ShaderValidator.h"
#include "jString.h"

#include <cstdint>
#include <set>
#include <utility>
#include <unordered_map>

class AppData;
class Block;
class BlockManager;
class LineRecord;
class Package;
class ShaderSource;
class mjl;

// Finds the problems of one material file that keep it from compiling into
// a working material, and names the node each is about:
//   - nodes without a type or of a block type the library does not have,
//     and node ids used twice;
//   - joints that cannot be resolved (a missing node id item, a node that
//     does not exist, an anchor the node's block does not have);
//   - cycles (the ids of the nodes of each cycle);
//   - a missing pixel start or pixel end node;
//   - warnings: input path anchors of the end nodes that are neither linked
//     nor given a default by their block (the generator writes <type>_zero);
//   - compiler errors of the generated vertex and pixel programs (engine and
//     editor variants), when the graph has none of the problems above.
//
// The file's package is read here, not through the document loader, which
// skips what it cannot use. The shader step loads the file into the
// process-wide document (the generator works on that one) and leaves it
// loaded. See docs/command-line.md for the report format.
//
// The same detection serves the editor (docs/problems.md): checkFileGraph
// reads only what the document loader leaves out, checkDocument finds the
// structure problems of a loaded document, checkPrograms compiles what the
// generator makes of it. Each problem also names the nodes it is shown on,
// shader errors through the generator's line record.
class DocumentChecker {
public:
    // Where a problem was found: in the file as stored (what a loaded
    // document no longer holds), in the graph's structure, or by the compiler.
    enum class Kind { File, Structure, Shader };

    struct Problem {
        int32_t nodeId = -1; // -1 when the problem is not about one node
        jString nodeType;
        jString text;
        bool warning = false; // reported, but the file still counts as clean
        Kind kind = Kind::File;
        // The nodes it is shown on: nodeId, the nodes of a cycle, or the
        // node whose code a compiler error is in.
        jVector<int32_t> nodes;
        // Physical line of the generated program a compiler error is on.
        int32_t line = -1;
        // The text without the generated line reference; text when empty.
        jString message;
    };

    // One problem as shown on one node (nodeId -1: on the material).
    struct NodeProblem {
        int32_t nodeId = -1;
        jString nodeType;
        int32_t line = -1;
        jString message;
        bool warning = false;
    };

    // Checks a root-relative path. True when no problem other than warnings
    // was found.
    bool check(const jString& path);
    const jVector<Problem>& getProblems() const { return m_problems; }

    // The unknown block types, repeated node ids and unresolvable joints of
    // a file's graph, against the given library; the process-wide document
    // is left alone. False when the file cannot be read as an editor document
    // (the reason is the one problem).
    bool checkFileGraph(const jString& path, const BlockManager& blocks);
    // Cycles, missing stage nodes and unlinked end node inputs of a loaded
    // document.
    void checkDocument(const AppData& document);
    // Compiles the document's generated programs; appends their errors.
    void checkPrograms(const AppData& document);

    // The problems, one entry per node each is shown on, in problem order.
    jVector<NodeProblem> nodeProblems() const;

    // Whether generated programs are compiled (default on). The command
    // turns it off when the compiler is not installed.
    void setCompileShaders(bool compile) { m_compileShaders = compile; }
    void setValidator(const ShaderValidator& validator) { m_validator = validator; }

    // "node 3 (Math.Add): TEXT" ("node 3: TEXT" for a node without a type),
    // or TEXT for a problem of no one node; TEXT starts with "warning: " for
    // a warning.
    static jString describe(const Problem& problem);

private:
    struct NodeRecord {
        jString type;
        const Block* block = nullptr;
        uint32_t position = 0; // in file order, for the cycle search
    };

    void reset();
    bool read_file_graph(const jString& path, const BlockManager& blocks, mjl& file, mjl& parentFile);
    void read_document(const AppData& document);
    void check_structure();
    const Package* find_graph(const Package& root, mjl& parentFile);
    void check_nodes(const Package& graph, const BlockManager& blocks);
    void check_joints(const Package& graph);
    void check_joint(const Package& joint, size_t number);
    void check_cycles();
    void check_stage_nodes();
    void check_unlinked_inputs();
    void check_unlinked_inputs_of(int32_t id);
    int32_t first_node_of_usage(int32_t usage) const;
    bool has_errors() const;
    void check_programs(const jString& path);
    void check_program(const jVector<jString>& lines, const LineRecord& record, const jVector<jString>& defines,
        const char* stage, const char* name);
    void add_compiler_error(const jString& prefix, const jString& error, const ShaderSource& source,
        const LineRecord& record);
    void add(const jString& text);
    void add_for_node(int32_t id, const jString& text, bool warning = false);
    const jString& type_of(int32_t id) const;

    jVector<Problem> m_problems;
    std::unordered_map<int32_t, NodeRecord> m_nodes;
    jVector<int32_t> m_nodeOrder;
    // Data flow edges: reader position -> source positions.
    jVector<jVector<uint32_t>> m_reads;
    // Input path anchors some joint feeds: reader position, anchor name.
    std::set<std::pair<uint32_t, jString>> m_linkedInputs;
    Kind m_kind = Kind::File;
    bool m_compileShaders = true;
    ShaderValidator m_validator;
};
