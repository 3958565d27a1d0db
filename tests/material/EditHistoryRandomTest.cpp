#include "AppData.h"
#include "Block.h"
#include "BlockManager.h"
#include "DataNode.h"
#include "TempFolder.h"
#include "jDir.h"
#include "jLog.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <algorithm>
#include <random>
#include <string>
#include <vector>

// From every bundled sample, a few hundred random edits of every kind, made
// through the calls the canvas and the panels make; undoing them all gives
// the original file byte for byte, redoing them all the edited one.
namespace {

namespace fs = std::filesystem;

const char* const kWraps[] = {"clamp", "border", "repeat"};
const char* const kFilters[] = {"point", "linear", "bilinear", "trilinear"};
const uint32_t kAnisotropies[] = {1, 2, 4, 16};
const char* const kBufferMasks[] = {"BUFFER_ALL", "BUFFER_COLOR", "BUFFER_DEPTH"};
const char* const kDepthFuncs[] = {"DEPTH_LEQUAL", "DEPTH_ALWAYS", "DEPTH_LESS", "DEPTH_GREATER"};
const char* const kBlendOps[] = {"add", "sub", "min", "max"};
const char* const kFactors[] = {"none", "zero", "one", "src_alpha", "one_minus_src_alpha"};

class RandomEdits {
public:
    RandomEdits(AppData& document, unsigned seed)
        : m_doc(document)
        , m_random(seed)
    {
    }

    // One edit of a random kind, as one step; false when the kind had
    // nothing to work on.
    bool edit()
    {
        EditHistory::Group gesture(m_doc.getHistory());
        const bool structural = !m_doc.isInstance();
        switch (pick(13)) {
        case 0: return structural && createNode();
        case 1: return structural && pick(3) == 0 && removeNode();
        case 2: return structural && moveNode();
        case 3: return structural && link();
        case 4: return structural && unlink();
        case 5: return setValue();
        case 6: return setSampler();
        case 7: return setSubValue();
        case 8: return setOption();
        case 9: return setRenderSetting();
        case 10: return setState();
        case 11: return setThroughVariable();
        default: return pick(40) == 0 && makeInstance();
        }
    }

private:
    size_t pick(size_t count) { return std::uniform_int_distribution<size_t>(0, count - 1)(m_random); }
    int32_t number(int32_t low, int32_t high) { return std::uniform_int_distribution<int32_t>(low, high)(m_random); }
    template <typename T, size_t N>
    const T& oneOf(const T (&items)[N]) { return items[pick(N)]; }

    DataNode* anyNode()
    {
        if (m_doc.getNodeCount() == 0)
            return nullptr;
        return std::next(m_doc.getNodes().begin(), static_cast<long>(pick(m_doc.getNodeCount())))->get();
    }

    // The drop rules: stage nodes once, the number limit.
    bool createNode()
    {
        const BlockManager& blocks = *m_doc.getBlockManager();
        const Block* block = blocks.getBlockAt(pick(blocks.getBlockCount()));
        if ((block->getUsage() != BLOCK_USAGE_BLOCK && m_doc.findNodeByUsage(block->getUsage()))
            || (block->getNumLimit() > 0 && m_doc.getNodeCountByType(block->getType()) >= block->getNumLimit()))
            return false;
        DataNode* node = m_doc.createNode(block->getType());
        m_doc.createStates();
        node->setPosition(number(0, 4000), number(0, 4000));
        return true;
    }

    // As the canvas removes a node: its joints, the node, and the states
    // when the output node went.
    bool removeNode()
    {
        DataNode* node = anyNode();
        if (!node)
            return false;
        jVector<DataJoint*> joints;
        for (const auto& joint : m_doc.getJoints())
            if (joint->node0 == node || joint->node1 == node)
                joints.push_back(joint.get());
        for (auto joint = joints.rbegin(); joint != joints.rend(); ++joint)
            m_doc.destroyJoint(*joint);
        m_doc.destroyNode(node);
        if (!m_doc.findNodeByUsage(BLOCK_USAGE_PS_END))
            m_doc.clearStates();
        return true;
    }

    // A drag: many small moves of one node.
    bool moveNode()
    {
        DataNode* node = anyNode();
        for (int i = node ? number(1, 6) : 0; i > 0; --i) {
            node->setPosX(std::max(0, node->getPosX() + number(-30, 30)));
            node->setPosY(std::max(0, node->getPosY() + number(-30, 30)));
        }
        return node != nullptr;
    }

    DataAnchor* anyPath(DataNode* node, bool input)
    {
        const size_t count = input ? node->getInputPathCount() : node->getOutputPathCount();
        if (count == 0)
            return nullptr;
        return input ? node->getInputPath(pick(count)) : node->getOutputPath(pick(count));
    }

    // An output onto an input of the same type: the input's links go first.
    bool link()
    {
        DataNode* from = anyNode();
        DataNode* to = anyNode();
        DataAnchor* source = from && to && from != to ? anyPath(from, false) : nullptr;
        DataAnchor* target = source ? anyPath(to, true) : nullptr;
        if (!target || source->getDefinition()->getType() != target->getDefinition()->getType())
            return false;
        while (DataJoint* old = m_doc.findJointTo(target))
            m_doc.destroyJoint(old);
        m_doc.createJoint(source, target);
        return true;
    }

    bool unlink()
    {
        return m_doc.getJointCount() > 0
            && m_doc.destroyJoint(std::next(m_doc.getJoints().begin(), static_cast<long>(pick(m_doc.getJointCount())))->get());
    }

    // A node with variables and the index of one of them.
    DataNode* anyVariable(int& index)
    {
        DataNode* node = anyNode();
        if (!node || node->getVariableCount() == 0)
            return nullptr;
        index = static_cast<int>(pick(node->getVariableCount()));
        return node;
    }

    bool setValue()
    {
        int index = 0;
        DataNode* node = anyVariable(index);
        return node && node->setVariableValueOnly(index, std::to_string(number(-100, 100)) + ".5");
    }

    bool setSampler()
    {
        int index = 0;
        DataNode* node = anyVariable(index);
        if (!node)
            return false;
        const jString value = pick(2) ? node->getVariable(static_cast<size_t>(index))->getValue()
                                      : jString("data/core/textures/common/white.dds");
        return node->setVariableValue(index, value, pick(2) ? "srgb" : "rgb", oneOf(kWraps), oneOf(kFilters),
            oneOf(kAnisotropies), pick(2) == 0);
    }

    bool setSubValue()
    {
        int index = 0;
        DataNode* node = anyVariable(index);
        const size_t subs = node ? node->getVariable(static_cast<size_t>(index))->getSubValueCount() : 0;
        return subs > 0 && node->setSubValue(index, pick(subs), "sub" + std::to_string(number(0, 9)));
    }

    // As a panel bound to the variable itself does.
    bool setThroughVariable()
    {
        int index = 0;
        DataNode* node = anyVariable(index);
        if (!node)
            return false;
        DataVariable& variable = *node->getVariable(static_cast<size_t>(index));
        switch (pick(4)) {
        case 0: variable.setFormat(pick(2) ? "signed" : "rgb"); return true;
        case 1: variable.setAsyn(pick(2)); return true;
        case 2: variable.setValue("v" + std::to_string(number(0, 50))); return true;
        default:
            if (variable.getSubValueCount() == 0)
                return false;
            variable.getSubValue(pick(variable.getSubValueCount()))->setValue(std::to_string(number(0, 9)));
            return true;
        }
    }

    bool setOption()
    {
        switch (pick(9)) {
        case 0: m_doc.setRenderOrder(number(-5, 5)); break;
        case 1: m_doc.setDepthOffset(number(-2, 8)); break;
        case 2: m_doc.setMask(number(0, 0xFFFFFF)); break;
        case 3: m_doc.setTwoSided(pick(2)); break;
        case 4: m_doc.setPostScattering(pick(2)); break;
        case 5: m_doc.setPostFog(pick(2)); break;
        case 6: m_doc.setPostTaa(pick(2)); break;
        case 7: m_doc.setTessellate(pick(2)); break;
        default: m_doc.setUseFileNameAsMaterialName(pick(2)); break;
        }
        return true;
    }

    bool setRenderSetting()
    {
        switch (pick(5)) {
        case 0: m_doc.setBufferMask(oneOf(kBufferMasks)); break;
        case 1: m_doc.setDepthFunc(oneOf(kDepthFuncs)); break;
        case 2: m_doc.setBlendOp(oneOf(kBlendOps)); break;
        case 3: m_doc.setBlendSrc(oneOf(kFactors)); break;
        default: m_doc.setBlendDst(oneOf(kFactors)); break;
        }
        return true;
    }

    bool setState()
    {
        if (m_doc.getStates().empty())
            return false;
        m_doc.setStateValue(pick(m_doc.getStates().size()), static_cast<uint8_t>(number(0, 3)));
        return true;
    }

    // The window's instance command on a saved plain document.
    bool makeInstance()
    {
        if (m_doc.isInstance() || m_doc.getPath().empty())
            return false;
        m_doc.setParentPath(m_doc.getPath());
        m_doc.setPath(jString());
        m_doc.setInstance(true);
        return true;
    }

    AppData& m_doc;
    std::mt19937 m_random;
};

class EditHistoryRandomTest : public ::testing::TestWithParam<std::string> {
protected:
    void SetUp() override
    {
        m_previousRoot = jDir::getProjectRoot();
        jDir::setProjectRoot(m_root.path());
        ASSERT_TRUE(m_doc.init());
    }

    void TearDown() override
    {
        m_doc.clear();
        jDir::setProjectRoot(m_previousRoot);
    }

    // The document as it is written; "" when it cannot be written.
    std::string saved()
    {
        const std::string relative = "out/" + fs::path(GetParam()).filename().string();
        fs::remove(m_root / relative);
        return m_doc.save(relative) ? m_root.read(relative) : std::string();
    }

    AppData& m_doc = *AppData::get();

private:
    jLog::Capture m_log;
    TempFolder m_root;
    jString m_previousRoot;
};

TEST_P(EditHistoryRandomTest, UndoAllGivesTheOriginalRedoAllTheEdited)
{
    ASSERT_TRUE(m_doc.load(GetParam()));
    m_doc.createStates();
    m_doc.getHistory().clear();
    const std::string original = saved();
    ASSERT_FALSE(original.empty());
    // The file just read is the document's path again, as after loading.
    m_doc.setPath(GetParam());
    m_doc.getHistory().clear();

    RandomEdits edits(m_doc, static_cast<unsigned>(std::hash<std::string>{}(GetParam())));
    size_t made = 0;
    for (int tries = 0; made < 300 && tries < 5000; ++tries)
        made += edits.edit();
    ASSERT_EQ(made, 300u);
    const size_t steps = m_doc.getHistory().getStepCount();
    EXPECT_GE(steps, made / 2);
    const std::string edited = saved();

    size_t undone = 0;
    while (m_doc.undo())
        ++undone;
    EXPECT_EQ(undone, steps);
    EXPECT_EQ(saved(), original);

    size_t redone = 0;
    while (m_doc.redo())
        ++redone;
    EXPECT_EQ(redone, steps);
    EXPECT_EQ(saved(), edited);
}

// Every bundled sample.
std::vector<std::string> bundledSamples()
{
    std::vector<std::string> paths;
    for (const auto& entry : fs::directory_iterator(MATERIAL_SOURCE_ROOT "/data/materials"))
        paths.push_back("data/materials/" + entry.path().filename().string());
    std::sort(paths.begin(), paths.end());
    return paths;
}

INSTANTIATE_TEST_SUITE_P(Samples, EditHistoryRandomTest, ::testing::ValuesIn(bundledSamples()),
    [](const auto& info) { return fs::path(info.param).stem().string(); });

} // namespace
