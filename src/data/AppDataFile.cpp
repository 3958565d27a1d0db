// The editor document file: the "editor" and "blueprint" packages of a
// material file, and the loading of plain documents and instances.
#include "AppData.h"

#include "BlockManager.h"
#include "DataAnchor.h"
#include "DataNode.h"
#include "DataVariable.h"
#include "MaterialReader.h"
#include "jDir.h"
#include "jLog.h"
#include "mjl.h"

#include <array>
#include <unordered_map>

namespace {

const char* const kLoad = "AppData::load";

// Parents are followed only inside the data root; mjl refuses what is not a
// regular file.
bool openParent(mjl& file, const jString& document, const jString& path)
{
    return jDir::checkStoredPath(kLoad, document, "the parent", path) && file.open(path, false);
}

} // namespace

bool AppData::load(const jString& path)
{
    mjl file;
    if (!file.open(path, false))
        return false;
    return load_document(*file.getRoot(), path);
}

bool AppData::reload()
{
    const jString path = m_path;
    if (!reloadBlocks())
        return false;
    return load(path);
}

bool AppData::load_document(const Package& root, const jString& path)
{
    clear();
    // Reading is not an edit: the loaded document starts a fresh history.
    EditHistory::Pause pause(m_history);
    setInstance(false);
    m_parentPath.clear();

    const Package* material = MaterialReader::findMaterial(root);
    const Package* graph = root.findPackage("blueprint");
    mjl parentFile;
    const Package* parentMaterial = nullptr;
    if (graph) {
        read_editor(root.findPackage("editor"));
    } else {
        const PackageItem* parentPath = material ? material->findItem("parent_path") : nullptr;
        if (!parentPath || !openParent(parentFile, path, jString(parentPath->getValue())))
            return false;
        const Package& parentRoot = *parentFile.getRoot();
        read_editor(parentRoot.findPackage("editor"));
        m_parentPath = parentPath->getValue();
        graph = parentRoot.findPackage("blueprint");
        if (!graph)
            return false;
        setInstance(true);
        if (material->getBool("force_name"))
            setForceName(true);
        parentMaterial = MaterialReader::findMaterial(parentRoot);
        if (!parentMaterial)
            return false;
    }

    if (!read_graph(*graph))
        return false;

    if (!isInstance()) {
        load_operations(find_shader_pass(material));
    } else {
        load_options(parentMaterial);
        load_operations(find_shader_pass(parentMaterial));
        load_operations(find_shader_pass(material));
        read_overrides(*material);
    }
    load_options(material);
    m_path = path;
    return true;
}

void AppData::read_editor(const Package* editor)
{
    if (!editor)
        return;
    m_scale = editor->getFloat("scale", 1.0f);
    if (const PackageItem* item = editor->findItem("h_scroll"))
        m_hScroll = item->getFloat();
    if (const PackageItem* item = editor->findItem("v_scroll"))
        m_vScroll = item->getFloat();
    setUseFileNameAsMaterialName(editor->getBool("use_file_name_as_material_name"));
}

bool AppData::read_graph(const Package& graph)
{
    // Nodes take their stored ids as they read their records; ids for the
    // others are handed out only once every stored id is held, so that none
    // can take an id a later node asks for (a node without "id" before a
    // node with "id 0", a repeated id before the next one).
    const size_t records = graph.getPackageCount();
    m_nodeById.reserve(m_nodeById.size() + records);
    m_nodePositions.reserve(m_nodePositions.size() + records);
    m_jointPositions.reserve(m_jointPositions.size() + records);
    const bool read = read_graph_children(graph);
    give_pending_ids();
    return read;
}

// Nodes still without an id, in document (file) order.
void AppData::give_pending_ids()
{
    for (const auto& node : m_nodes) {
        if (node->getId() != DataNode::kPendingId)
            continue;
        node->m_id = next_free_id();
        m_nodeById.insert(node->m_id, node.get());
    }
}

namespace {

// Joints of a graph being read wait a few records before they are made: the
// anchors they link are fetched when their record is read, and are in the
// cache by the time the joint is added to their lists.
class JointQueue {
public:
    explicit JointQueue(AppData& document)
        : m_document(document)
    {
    }

    void push(DataAnchor* anchor0, DataAnchor* anchor1)
    {
        prefetch(anchor0);
        prefetch(anchor1);
        if (m_size == kDelay)
            makeFirst();
        m_links[(m_first + m_size++) % kDelay] = { anchor0, anchor1 };
    }

    // Makes every waiting joint, oldest first.
    void flush()
    {
        while (m_size > 0)
            makeFirst();
    }

private:
    static constexpr size_t kDelay = 8;

    static void prefetch(const DataAnchor* anchor)
    {
        const char* start = reinterpret_cast<const char*>(anchor);
        for (size_t offset = 0; offset < sizeof(DataAnchor); offset += 64)
            __builtin_prefetch(start + offset, 1);
    }

    void makeFirst()
    {
        m_document.createJoint(m_links[m_first].anchor0, m_links[m_first].anchor1);
        m_first = (m_first + 1) % kDelay;
        --m_size;
    }

    struct Link {
        DataAnchor* anchor0;
        DataAnchor* anchor1;
    };
    AppData& m_document;
    std::array<Link, kDelay> m_links {};
    size_t m_first = 0;
    size_t m_size = 0;
};

} // namespace

bool AppData::read_graph_children(const Package& graph)
{
    // Reading a record costs little once it is in the cache; the walk is
    // bound by fetching each record, so records are fetched two ahead.
    constexpr size_t kAhead = 2;
    const size_t count = graph.getPackageCount();
    JointQueue joints(*this);
    for (size_t i = 0; i < count; ++i) {
        if (i + kAhead < count)
            graph.getPackage(i + kAhead)->prefetch();
        const Package& child = *graph.getPackage(i);
        if (child.getName() == "node") {
            // Joints stay in file order with the nodes.
            joints.flush();
            const PackageItem* type = child.findItem("type");
            if (!type) {
                jLog::error("%s: can't find node type \"%s\"", kLoad, "");
                return false;
            }
            const jString typeName(type->getValue());
            Block* block = find_block(typeName);
            DataNode* node = block ? add_node(*block, DataNode::kPendingId) : nullptr;
            if (!node)
                jLog::error("%s: can't create node by type \"%s\"", kLoad, typeName.c_str());
            else
                node->read(child);
        } else if (child.getName() == "joint") {
            DataAnchor* anchors[2];
            if (!read_joint(child, anchors)) {
                joints.flush();
                return false;
            }
            if (anchors[0] && anchors[1])
                joints.push(anchors[0], anchors[1]);
        } else {
            jLog::error("%s: unknown node \"%s\"", kLoad, jString(child.getName()).c_str());
        }
    }
    joints.flush();
    return true;
}

// The anchors a joint record links; null when one cannot be found (the joint
// is left out). False when the record lacks a node id.
bool AppData::read_joint(const Package& joint, DataAnchor* anchors[2]) const
{
    static constexpr std::string_view kNames[4] = { "node_0", "node_1", "anchor_0", "anchor_1" };
    const PackageItem* found[4];
    joint.findItems(kNames, found);
    const auto [node0, node1, name0, name1] = found;
    if (!node0 || !node1) {
        jLog::error("%s: can't find node id item", kLoad);
        return false;
    }
    anchors[0] = findAnchor(node0->getInt(), jString(name0 ? name0->getValue() : std::string_view()));
    anchors[1] = findAnchor(node1->getInt(), jString(name1 ? name1->getValue() : std::string_view()));
    return true;
}

void AppData::read_overrides(const Package& material)
{
    std::unordered_map<jString, DataVariable*> byParameterName;
    for (const auto& node : m_nodes)
        for (size_t i = 0; i < node->getVariableCount(); ++i)
            byParameterName.emplace(node->getVariable(i)->getParameterName(), node->getVariable(i));

    for (size_t i = 0; i < material.getPackageCount(); ++i) {
        const Package& child = *material.getPackage(i);
        if (child.getName() != "parameter" && child.getName() != "texture")
            continue;
        const PackageItem* name = child.findItem("name");
        if (!name)
            continue;
        const jString parameterName(name->getValue());
        const auto found = byParameterName.find(parameterName);
        if (found == byParameterName.end()) {
            jLog::warning("%s:\"%s\" not found", kLoad, parameterName.c_str());
            continue;
        }
        DataNode* node = found->second->getOwner();
        const int first = node->getVariableIndex(found->second->getName());
        const PackageItem* text = child.findItem("text");
        for (size_t v = 0; text && v < text->getValueCount(); ++v)
            node->setVariableValueOnly(first + static_cast<int>(v), jString(text->getValue(v)));
    }
}

void AppData::write_editor(Package& root) const
{
    Package* editor = root.addPackage("editor");
    editor->reserve(4, 0, 0);
    editor->addItem("scale", Package::formatFloat(m_scale));
    editor->addItem("h_scroll", Package::formatFloat(m_hScroll));
    editor->addItem("v_scroll", Package::formatFloat(m_vScroll));
    editor->addItem("use_file_name_as_material_name", isUseFileNameAsMaterialName() ? "true" : "false");
}

void AppData::write_blueprint(Package& root) const
{
    Package* blueprint = root.addPackage("blueprint");
    blueprint->reserve(1, m_nodes.size() + m_joints.size(), 0);
    blueprint->addItem("version", "1");
    for (const auto& node : m_nodes)
        node->write(*blueprint);
    for (const auto& joint : m_joints) {
        Package* record = blueprint->addPackage("joint");
        record->reserve(4, 0, 0);
        record->addItem("node_0", std::to_string(joint->node0->getId()));
        record->addItem("node_1", std::to_string(joint->node1->getId()));
        record->addItem("anchor_0", joint->anchor0->getName());
        record->addItem("anchor_1", joint->anchor1->getName());
    }
}
