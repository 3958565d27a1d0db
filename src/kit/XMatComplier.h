#pragma once

#include "jString.h"

#include <cstdint>
#include <unordered_map>
#include <unordered_set>

class BlockAnchor;
class AppData;
class DataAnchor;
class DataNode;
class DataVariable;

// Turns the node graph of the current document (AppData) into shader source
// lines, one list per stage. One instance serves one generation run.
//
// Work is linear in the size of the graph: each run indexes the joints by
// their destination anchor once (LinkIndex), every output is written once
// (m_emitted) and every node's inputs are walked once (m_walked). Nothing
// recurses: the walk keeps its own stack, so a chain of any length cannot
// overflow the call stack. A graph with a cycle is refused before anything
// is written (wasRefused()); see docs/shader-generation.md.
class XMatComplier {
public:
    // One placeholder of a fragment.
    class Token {
    public:
        jString text;     // as written, "@" included
        jString name;     // without the "@"
        int32_t position; // scanner position after the token
    };

    // Generates from the given document, the process-wide one by default.
    XMatComplier();
    explicit XMatComplier(bool noIndent, const AppData* document = nullptr);
    ~XMatComplier();
    XMatComplier(const XMatComplier&) = delete;
    XMatComplier& operator=(const XMatComplier&) = delete;

    // The pixel program. False only when the graph has a cycle (nothing is
    // written then).
    bool generate_ps(jVector<jString>& lines);
    // The vertex program. False after writing only the code_include lines
    // when the vertex start or end node is missing; false with nothing
    // written when the graph has a cycle.
    bool generate_vs(jVector<jString>& lines);

    // Declarations, upstream code and the end node's own code.
    void generate_end_node(jVector<jString>& lines, DataNode* end);
    // Everything the linked inputs of node need, inputs before their readers.
    void walk_inputs(jVector<jString>& lines, DataNode* node);
    // The assignment of one output, once per run.
    void emit_output(jVector<jString>& lines, DataAnchor* out);
    // "<type> <identifier>;"
    void declare_output(jVector<jString>& lines, DataAnchor* out);
    // Appends one entry, indented by `indent` TABs unless no_indent is set.
    void add_line(jVector<jString>& lines, const jString& text);
    void add_line(jVector<jString>& lines, jString&& text);
    // Instantiates one code fragment for one node.
    jString process_function(DataNode* node, const jString& fragment);

    bool getNoIndent() const { return m_no_indent; }
    void setNoIndent(bool noIndent) { m_no_indent = noIndent; }
    int32_t getIndent() const { return m_indent; }
    void raise_indent() { ++m_indent; }
    void lower_indent() { --m_indent; }

    // True when the last generate_ps / generate_vs refused a cyclic graph.
    bool wasRefused() const { return m_refused; }
    // The refusal text that was logged, empty when there was none.
    const jString& getRefusal() const { return m_refusal; }

    // The line record: the id of the node whose code each entry added since
    // the last generate_ps / generate_vs began is (kNoNode for the frame
    // lines: global code, resource layout, the stage nodes' main frame), one
    // per entry in the order added. LineRecord maps it to physical lines.
    static constexpr int32_t kNoNode = -1;
    const jVector<int32_t>& getLineNodes() const { return m_lineNodes; }

    // Whether an output has been written in this run.
    bool isEmitted(const DataAnchor* out) const { return m_emitted.count(out) > 0; }

    // The placeholders of a fragment in order of appearance. The scan stops
    // for good at the first "@" not followed by a letter or "_".
    static jVector<Token> scan_tokens(const jString& fragment);
    // Replaces every whole occurrence of token in text (an occurrence
    // followed by a letter, digit or "_" of the fragment itself belongs to a
    // longer placeholder and is kept). written, when given, runs in step with
    // text and marks the characters that earlier replacements wrote (1): a
    // replacement's text right after an occurrence never makes it longer.
    // Returns the number of occurrences replaced.
    static size_t replace_token(jString& text, const jString& token, const jString& with,
        jVector<uint8_t>* written = nullptr);
    // Replaces every occurrence of what in text.
    static size_t replace_all(jString& text, const jString& what, const jString& with);

    // Identifier rules shared with the document and the material writer.
    static jString variable_identifier(const DataVariable* variable);
    static jString output_identifier(const DataAnchor* anchor);
    static jString parameter_name(const DataNode* node);

private:
    // What a stage program needs from the document besides the walk, read
    // in one pass over the nodes: the stage's start and end nodes (the first
    // of each usage), the three texture kinds and the constant nodes, each in
    // document order.
    struct Survey {
        DataNode* start = nullptr;
        DataNode* end = nullptr;
        jVector<DataVariable*> t2;
        jVector<DataVariable*> tc;
        jVector<DataVariable*> t3;
        jVector<DataNode*> constants;
    };

    // A view of the document's graph made once per run, in one pass over
    // the nodes and one over the joints: nodes get dense positions, every
    // input path anchor the source of the first joint (document order) that
    // ends at it, every output path anchor a flag telling whether a joint
    // touches it, and every joint into an input path anchor is an edge from
    // its reader to its source (for the cycle search).
    struct LinkIndex {
        static constexpr uint32_t kNone = UINT32_MAX;

        // Node id -> position; ids are dense in practice. Documents with
        // very sparse ids use the map instead.
        jVector<uint32_t> byId;
        std::unordered_map<const DataNode*, uint32_t> byPointer;
        jVector<DataNode*> nodes;
        jVector<uint32_t> firstInput;  // node -> first slot in inputSource (n + 1 entries)
        jVector<DataAnchor*> inputSource;
        // Where the source is: its node (kNone when not in the document) and
        // its position among the node's output path anchors (kNone when it is
        // not one).
        jVector<uint32_t> inputSourceNode;
        jVector<uint32_t> inputSourceSlot;
        jVector<uint32_t> firstOutput; // node -> first slot in outputLinked (n + 1 entries)
        jVector<uint8_t> outputLinked;
        jVector<uint32_t> firstRead;   // node -> first edge in reads (n + 1 entries)
        jVector<uint32_t> reads;       // source node of each edge, grouped by reader

        void build(const AppData& document);
        void index_positions(int64_t largestId);
        uint32_t find(const DataNode* node) const;
        // Position of anchor among the node's input (output) path anchors,
        // or kNone.
        uint32_t input_slot(uint32_t node, const DataAnchor* anchor) const;
        uint32_t output_slot(uint32_t node, const DataAnchor* anchor) const;
        uint32_t mark_linked_output(uint32_t node, const DataAnchor* anchor);
        // The output identifier, from the block's definition when the
        // output is located, else from the anchor.
        jString identifier(const DataAnchor* anchor, uint32_t node, uint32_t slot) const;
    };

    // Makes the link index at the outermost public call, so that direct calls
    // see the document as it is and calls inside a run share one index.
    class RunScope {
    public:
        explicit RunScope(XMatComplier& generator);
        ~RunScope();

    private:
        XMatComplier& m_generator;
    };

    // Makes the entries added during its life belong to one node.
    class LineOwner {
    public:
        LineOwner(XMatComplier& generator, const DataNode* node);
        ~LineOwner();
        LineOwner(const LineOwner&) = delete;
        LineOwner& operator=(const LineOwner&) = delete;

    private:
        XMatComplier& m_generator;
        int32_t m_previous;
    };

    bool generate_stage(jVector<jString>& lines, const char* routine, int32_t startUsage, int32_t endUsage,
        bool vertex);
    bool refuse_cycles(const char* routine);
    void begin_run();
    void walk_from(jVector<jString>& lines, uint32_t root);
    bool instantiate_sampler(DataNode* node, const Token& token, jString& copy, jVector<uint8_t>& written) const;
    void instantiate_token(DataNode* node, const Token& token, jString& copy, jVector<uint8_t>& written) const;
    jString input_expression(DataNode* node, size_t input, const BlockAnchor* definition) const;
    void emit_output_at(jVector<jString>& lines, DataAnchor* out, uint32_t node, uint32_t slot);
    void declare_output_at(jVector<jString>& lines, uint32_t node, uint32_t slot);
    void add_lines(jVector<jString>& lines, const jVector<jString>& texts);
    void add_processed_lines(jVector<jString>& lines, DataNode* node, const jVector<jString>& fragments);
    void declare_linked_outputs(jVector<jString>& lines);
    void emit_texture_defines(jVector<jString>& lines, const Survey& survey);
    void emit_texture_groups(jVector<jString>& lines, const Survey& survey);
    void emit_samplers(jVector<jString>& lines);
    void emit_constant_buffer(jVector<jString>& lines, const Survey& survey, const char* bufferName);
    Survey survey(int32_t startUsage, int32_t endUsage) const;

    const AppData* m_document;
    bool m_no_indent = false;
    int32_t m_indent = 0;
    bool m_refused = false;
    jString m_refusal;
    // Outputs written in this run.
    std::unordered_set<const DataAnchor*> m_emitted;
    LinkIndex m_links;
    // Nodes (by link index position) whose inputs have been walked.
    jVector<uint8_t> m_walked;
    int m_run_depth = 0;
    jVector<int32_t> m_lineNodes;
    int32_t m_lineOwner = kNoNode;
};
