#pragma once

#include "DocumentChecker.h"
#include "jString.h"

#include <cstdint>
#include <unordered_map>

class AppData;
class BlockManager;

// The problem list of the open document, each problem on the node it is
// about (docs/problems.md). Three sources, found by DocumentChecker:
//   - the file as loaded: what the loader left out (unknown block types,
//     joints naming missing nodes or anchors); kept until the document is
//     saved or another one is loaded;
//   - the structure of the graph as it is now (cycles, missing stage nodes,
//     unlinked end node inputs); found again after every edit;
//   - the compiler errors of the last compile (glslang at apply, the GL
//     driver in the live preview), mapped to nodes through the line record.
// No Qt: the canvas and the problem list observe it through getSerial().
class DocumentProblems {
public:
    using Entry = DocumentChecker::NodeProblem;

    // After loading path into document: the file's own problems and the
    // document's structure; compiler errors of the previous document go.
    void afterLoad(const jString& path, const AppData& document);
    // After an edit: the structure again.
    void afterEdit(const AppData& document);
    // After a save: the file holds the document as it is now.
    void afterSave(const AppData& document);
    // The compiler errors of the last compile (replacing the previous ones).
    void setShaderProblems(jVector<Entry> problems);
    // Compiles the document's programs with validator and keeps the errors.
    void compile(const AppData& document, const ShaderValidator& validator);
    void clear();

    // File, structure, then compiler problems, one entry per node.
    const jVector<Entry>& getEntries() const { return m_entries; }
    bool isEmpty() const { return m_entries.empty(); }
    bool hasNode(int32_t id) const { return m_byNode.count(id) > 0; }
    // Whether the graph as it is cannot be generated: a cycle or a missing
    // stage node (warnings aside).
    bool hasStructureErrors() const;
    // The messages shown on a node, one per line; empty when it has none.
    jString messagesOf(int32_t id) const;
    // Changes whenever the entries change.
    uint64_t getSerial() const { return m_serial; }

private:
    void check_structure(const AppData& document);
    void rebuild();

    jVector<Entry> m_file;
    jVector<Entry> m_structure;
    jVector<Entry> m_shader;
    jVector<Entry> m_entries;
    // Node id -> positions in m_entries.
    std::unordered_map<int32_t, jVector<size_t>> m_byNode;
    uint64_t m_serial = 0;
};
