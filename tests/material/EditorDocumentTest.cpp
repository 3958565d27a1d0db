#include "DataAnchor.h"
#include "DataSampler.h"
#include "DataVariable.h"
#include "DocumentFileFixture.h"

#include <iterator>

using EditorDocumentTest = DocumentFileTest;

namespace {

// Everything a round trip must keep, as text, in document order.
jString describe(const AppData& doc)
{
    jString out = jFormat("view %g %g %g %d\n", doc.getScale(), doc.getHScroll(), doc.getVScroll(),
        doc.isUseFileNameAsMaterialName());
    for (const auto& node : doc.getNodes()) {
        out += jFormat("node %d %s '%s' %d %d\n", node->getId(), node->getBlock()->getType().c_str(),
            node->getName().c_str(), node->getPosX(), node->getPosY());
        for (size_t i = 0; i < node->getVariableCount(); ++i) {
            const DataVariable& v = *node->getVariable(i);
            out += jFormat("  var %s='%s' %s %s/%s/%u sampler %u asyn %d\n", v.getName().c_str(),
                v.getValue().c_str(), v.getFormat().c_str(), v.getWrap().c_str(), v.getFilter().c_str(),
                v.getAnisotropy(), v.getSampler()->getIndex(), v.getAsyn());
            for (size_t s = 0; s < v.getSubValueCount(); ++s)
                out += jFormat("    sub %s='%s'\n", v.getSubValue(s)->getName().c_str(),
                    v.getSubValue(s)->getValue().c_str());
        }
        for (size_t i = 0; i < node->getInputLinkCount(); ++i)
            out += "  in " + node->getInputLink(i)->getLinkValue() + "\n";
        for (size_t i = 0; i < node->getOutputLinkCount(); ++i)
            out += "  out " + node->getOutputLink(i)->getLinkValue() + "\n";
    }
    for (const auto& joint : doc.getJoints())
        out += jFormat("joint %d.%s -> %d.%s\n", joint->node0->getId(), joint->anchor0->getName().c_str(),
            joint->node1->getId(), joint->anchor1->getName().c_str());
    out += jFormat("samplers %zu\n", doc.getSamplerCount());
    return out;
}

} // namespace

TEST_F(EditorDocumentTest, RoundTripKeepsTheGraphAndWritesIdenticalBytes)
{
    DataNode* input = create("PixelInput");
    DataNode* output = create("PixelOutput");
    DataNode* constant = create("Constant.Float");
    DataNode* texture = create("Texture.Sample2D");
    constant->setName("Gloss value");
    constant->setPosX(-120);
    texture->setPosY(48);
    texture->setName("albedo");
    ASSERT_TRUE(texture->setVariableValue(0, "data/textures/rock.dds", "srgb", "clamp", "trilinear", 4, true));
    texture->getVariable(0)->getSubValue(0)->setValue("");
    constant->setVariableValueOnly(0, "0.25");
    output->setInputLinkValue("tag", "x y \"z\"");
    doc->createJoint(input->getOutputPath(0), texture->getInputPath(0));
    doc->createJoint(texture->getOutputPath(0), output->getInputPath(0));
    doc->setScale(0.6f);
    doc->setHScroll(0.1f);
    doc->setVScroll(0.7f);
    doc->setUseFileNameAsMaterialName(true);
    const jString before = describe(*doc);

    writeDocument("rock.mat");
    ASSERT_TRUE(doc->load("rock.mat"));
    EXPECT_EQ(describe(*doc), before);
    EXPECT_EQ(doc->getPath(), "rock.mat");
    EXPECT_FALSE(doc->isInstance());

    writeDocument("again.mat");
    EXPECT_EQ(root.read("again.mat"), root.read("rock.mat"));
}

TEST_F(EditorDocumentTest, NodeRecordsWriteOnlyWhatDiffersFromTheDefaults)
{
    create("Constant.Float");
    create("Texture.Sample2D");
    Package root;
    doc->write_blueprint(root);
    EXPECT_EQ(mjl::toText(root), R"(blueprint {
	version 1
	node {
		id 0
		type Constant.Float
		variable {
			i {
				name value
				value 0.5
			}
		}
		output_link {
			i note ""
		}
	}
	node {
		id 1
		type Texture.Sample2D
		variable {
			i {
				name tex
				value data/core/textures/common/white.dds
				format rgb
				wrap repeat
				filter bilinear
				sub {
					name tag
					value hero
				}
				sub {
					name srgb
					value 1
				}
			}
		}
	}
}
)");
}

TEST_F(EditorDocumentTest, ToleratedProblemsAreLoggedOrSkipped)
{
    root.write("doc.mat", R"(editor { h_scroll 0.25 }
blueprint {
	version 1
	node { id 1; type PixelInput }
	node { id 2; type Gone.Block }
	node { id 3; type Texture.Sample2D; variable { i { name missing; value x } } }
	comment { text hi }
	joint { node_0 1; node_1 3; anchor_0 uv; anchor_1 uv }
	joint { node_0 2; node_1 3; anchor_0 out; anchor_1 uv }
	joint { node_0 1; node_1 3; anchor_0 uv; anchor_1 renamed }
})");
    doc->setVScroll(0.9f);
    jLog::Capture log;
    ASSERT_TRUE(doc->load("doc.mat"));
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: AppData::createNode:Unknown Block type \"Gone.Block\"",
                               "error: AppData::load: can't create node by type \"Gone.Block\"",
                               "error: DataNode::setVariableValue:id != -1",
                               "error: DataNode::setVariableValue:id < m_vars.size()",
                               "error: AppData::load: unknown node \"comment\"",
                           }));
    EXPECT_EQ(doc->getNodeCount(), 2u);
    EXPECT_EQ(doc->getJointCount(), 1u);
    EXPECT_FLOAT_EQ(doc->getScale(), 1.0f);
    EXPECT_FLOAT_EQ(doc->getHScroll(), 0.25f);
    EXPECT_FLOAT_EQ(doc->getVScroll(), 0.9f);
}

// A node that keeps a fresh id (no "id", or an id already taken) must not
// take the stored id of a node further down, nor send its joints astray.
TEST_F(EditorDocumentTest, StoredIdsAreKeptWhateverNodesComeBefore)
{
    struct Case {
        const char* graph;
        const char* ids;
        const char* log;
    };
    const Case cases[] = {
        {"node { type PixelInput } node { id 0; type PixelInput }", "1 0", ""},
        {"node { id 5; type Constant.Float } node { id 5; type Constant.Float } node { id 6; type Constant.Float }"
         " joint { node_0 6; node_1 5; anchor_0 out; anchor_1 note }",
            "5 7 6", "error: AppData::setNodeId: node id 5 is already in use\n"},
    };
    for (const Case& c : cases) {
        root.write("ids.mat", jFormat("blueprint { %s }", c.graph));
        jLog::Capture log;
        ASSERT_TRUE(doc->load("ids.mat")) << c.graph;
        EXPECT_EQ(log.text(), c.log) << c.graph;
        jVector<jString> ids;
        for (const auto& node : doc->getNodes())
            ids.push_back(std::to_string(node->getId()));
        EXPECT_EQ(jJoin(ids, " "), c.ids) << c.graph;
    }
    // The joint of the last case runs from the node stored as 6 to the first
    // node stored as 5.
    ASSERT_EQ(doc->getJointCount(), 1u);
    EXPECT_EQ(doc->getJoints().front()->node0, doc->getNodes().back().get());
    EXPECT_EQ(doc->getJoints().front()->node1, doc->getNodes().front().get());
    // Fresh ids go on just above the largest id held.
    EXPECT_EQ(doc->createNode("PixelInput")->getId(), 8);
}

TEST_F(EditorDocumentTest, FatalProblemsFailTheLoad)
{
    struct Case {
        const char* text;
        const char* log;
    };
    const Case cases[] = {
        {"blueprint { node { id 1 } }", "error: AppData::load: can't find node type \"\""},
        {"blueprint { node { id 1; type PixelInput } joint { node_0 1; anchor_0 uv } }",
            "error: AppData::load: can't find node id item"},
        {"materials { material { name x } }", nullptr},
        {"materials { material { parent_path nowhere.mat } }", nullptr},
        {"editor { scale 2 }", nullptr},
    };
    for (const Case& c : cases) {
        root.write("bad.mat", c.text);
        jLog::Capture log;
        EXPECT_FALSE(doc->load("bad.mat")) << c.text;
        EXPECT_EQ(log.text(), c.log ? jString(c.log) + "\n" : "") << c.text;
    }

    root.write("empty.mat", "blueprint { version 1 }");
    EXPECT_TRUE(doc->load("empty.mat"));
    EXPECT_EQ(doc->getNodeCount(), 0u);
}

TEST_F(EditorDocumentTest, InstanceTakesTheParentsGraphAndAppliesItsOverrides)
{
    root.write("parent.mat", R"(materials {
	material {
		options { render_order 4; two_sided true }
		shader { pass ambient; depth_func DEPTH_LESS; blend_func one,one; blend_op max }
	}
}
editor { scale 0.5 }
blueprint {
	node { id 7; type Constant.Float; variable { i { name value; value 0.1 } } }
	node { id 9; type Texture.Sample2D }
})");
    root.write("child.mat", R"(materials {
	material {
		parent parent.mat
		parent_path parent.mat
		options { two_sided false; post_fog true }
		shader { pass ambient; blend_func src_alpha,one_minus_src_alpha }
		parameter { name value7; text 0.9 extra }
		texture { name tex9; text data/textures/moss.dds }
		parameter { name gone3; text 1 }
		parameter { text 2 }
	}
})");
    jLog::Capture log;
    ASSERT_TRUE(doc->load("child.mat"));
    EXPECT_EQ(log.lines(), (std::vector<jString>{
                               "error: DataNode::setVariableValueOnly:id < m_vars.size()",
                               "warning: AppData::load:\"gone3\" not found",
                           }));
    EXPECT_TRUE(doc->isInstance());
    EXPECT_FALSE(doc->isForceName());
    EXPECT_EQ(doc->getParentPath(), "parent.mat");
    EXPECT_EQ(doc->getPath(), "child.mat");
    EXPECT_FLOAT_EQ(doc->getScale(), 0.5f);
    EXPECT_EQ(doc->findNode(7)->getVariableValue("value"), "0.9");
    EXPECT_EQ(doc->findNode(9)->getVariableValue("tex"), "data/textures/moss.dds");
    EXPECT_EQ(doc->getDepthFunc(), "DEPTH_LESS");
    EXPECT_EQ(doc->getBlendOp(), "max");
    EXPECT_EQ(doc->getBlendSrc(), "src_alpha");
    EXPECT_EQ(doc->getBlendDst(), "one_minus_src_alpha");
    EXPECT_EQ(doc->getRenderOrder(), 4);
    EXPECT_FALSE(doc->isTwoSided());
    EXPECT_TRUE(doc->isPostFog());

    root.write("forced.mat", "materials { material { parent_path parent.mat; force_name true } }");
    ASSERT_TRUE(doc->load("forced.mat"));
    EXPECT_TRUE(doc->isForceName());

    root.write("orphan.mat", "materials { material { parent_path child.mat } }");
    EXPECT_FALSE(doc->load("orphan.mat"));
}
