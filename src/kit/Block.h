#pragma once

#include "BlockAnchor.h"
#include "BlockVariable.h"
#include "jString.h"

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>

class Package;

// Role of a block in the graph. The first four are the stage end-points, of
// which a document holds at most one node each.
enum BlockUsage : int32_t {
    BLOCK_USAGE_VS_START = 0,
    BLOCK_USAGE_VS_END = 1,
    BLOCK_USAGE_PS_START = 2,
    BLOCK_USAGE_PS_END = 3,
    BLOCK_USAGE_BLOCK = 4,
};

// One node type of the material graph, read from a "block" package of the
// block configuration: its anchors, variables, code fragments and flags.
class Block {
public:
    Block();
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    // Virtual operations, in this order.
    virtual const jString& getBind() const { return m_bind; }
    virtual void setBind(const jString& bind) { m_bind = bind; }
    virtual const jString& getMat() const { return m_mat; }
    virtual void setMat(const jString& mat) { m_mat = mat; }
    virtual const jString& getDataType() const { return m_dataType; }
    virtual int32_t getUsage() const { return m_usage; }
    virtual const jString& getVertex() const { return m_vertex; }
    virtual const jString& getControl() const { return m_control; }
    virtual const jString& getEvaluate() const { return m_evaluate; }
    virtual const jString& getGeometry() const { return m_geometry; }
    virtual int32_t getNumLimit() const { return m_numLimit; }
    virtual bool isConstant() const { return m_constant; }
    virtual bool isTexture2D() const { return m_texture2D; }
    virtual bool isTexture3D() const { return m_texture3D; }
    virtual bool isTextureCube() const { return m_textureCube; }

    // Declared after the interface so that the slots above keep their order.
    virtual ~Block();

    const jString& getType() const { return m_type; }

    bool isVertexStart() const { return getUsage() == BLOCK_USAGE_VS_START; }
    bool isVertexEnd() const { return getUsage() == BLOCK_USAGE_VS_END; }
    bool isPixelStart() const { return getUsage() == BLOCK_USAGE_PS_START; }
    bool isPixelEnd() const { return getUsage() == BLOCK_USAGE_PS_END; }

    // Anchor lists, indexed by position in file order.
    size_t getInputPathCount() const { return m_inputPath.size(); }
    BlockAnchor* getInputPath(size_t index) const { return at(m_inputPath, index); }
    size_t getOutputPathCount() const { return m_outputPath.size(); }
    BlockAnchor* getOutputPath(size_t index) const { return at(m_outputPath, index); }
    size_t getInputLinkCount() const { return m_inputLink.size(); }
    BlockAnchor* getInputLink(size_t index) const { return at(m_inputLink, index); }
    size_t getOutputLinkCount() const { return m_outputLink.size(); }
    BlockAnchor* getOutputLink(size_t index) const { return at(m_outputLink, index); }

    size_t getVariableCount() const { return m_variables.size(); }
    BlockVariable* getVariable(size_t index) const { return at(m_variables, index); }

    // Where the first anchor of a name sits, searched in the order input
    // links, output links, input paths, output paths. Indexed once per block,
    // so every node of the block finds its anchors without a search.
    enum AnchorListKind : uint8_t { InputLinks, OutputLinks, InputPaths, OutputPaths };
    struct AnchorSlot {
        AnchorListKind list;
        uint32_t index;
    };
    bool findAnchorSlot(const jString& name, AnchorSlot& slot) const;

    // Code line lists.
    const jVector<jString>& getInclude() const { return m_include; }
    const jVector<jString>& getMainBegin() const { return m_mainBegin; }
    const jVector<jString>& getMainEnd() const { return m_mainEnd; }
    const jVector<jString>& getFunctionBegin() const { return m_functionBegin; }
    const jVector<jString>& getFunctionEnd() const { return m_functionEnd; }
    const jVector<jString>& getFunction() const { return m_function; }

    // Fills the block from its "block" package: items first, then
    // sub-packages, each in file order. False when "type" is missing or an
    // anchor or variable fails to load; the block may then be partly filled.
    bool load(Package* block);

private:
    using AnchorList = jVector<std::unique_ptr<BlockAnchor>>;
    using LineList = jVector<jString>;

    template <typename T>
    static T* at(const jVector<std::unique_ptr<T>>& list, size_t index)
    {
        return index < list.size() ? list[index].get() : nullptr;
    }

    void index_anchors() const;
    void load_item(PackageItem* item);
    bool load_package(Package* sub);
    AnchorList* anchor_list(std::string_view key);
    LineList* line_list(std::string_view key);

    jString m_type;
    jString m_bind;
    jString m_mat;
    jString m_dataType;
    AnchorList m_inputPath;
    AnchorList m_outputPath;
    AnchorList m_inputLink;
    AnchorList m_outputLink;
    jVector<std::unique_ptr<BlockVariable>> m_variables;
    LineList m_include;
    LineList m_mainBegin;
    LineList m_mainEnd;
    LineList m_functionBegin;
    LineList m_functionEnd;
    LineList m_function;
    int32_t m_usage = BLOCK_USAGE_BLOCK;
    jString m_vertex;
    jString m_control;
    jString m_evaluate;
    jString m_geometry;
    int32_t m_numLimit = -1;
    bool m_constant = false;
    bool m_texture2D = false;
    bool m_texture3D = false;
    bool m_textureCube = false;
    // Built on first use and again when anchors were added since.
    mutable std::unordered_map<jString, AnchorSlot> m_anchorSlots;
    mutable size_t m_indexedAnchorCount = 0;
};
