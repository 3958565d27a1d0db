// The headless half of MaterialEditor: the static operations on material
// files. The window half lives with the editor (src/ui/); this file keeps
// the operations in the material layer so that material-tool needs no Qt.
#include "MaterialEditor.h"

#include "AppData.h"
#include "BlockManager.h"
#include "DataNode.h"
#include "DataVariable.h"
#include "MaterialReader.h"
#include "mjl.h"

#include <cstdint>
#include <memory>

namespace {

// A private document publishes its own block manager while it initialises;
// this puts the previously published one back once the document is gone.
class PublishedBlocksGuard {
public:
    PublishedBlocksGuard() : m_previous(BlockManager::get()) {}
    ~PublishedBlocksGuard() { BlockManager::setCurrent(m_previous); }
    PublishedBlocksGuard(const PublishedBlocksGuard&) = delete;
    PublishedBlocksGuard& operator=(const PublishedBlocksGuard&) = delete;

private:
    BlockManager* m_previous;
};

bool resetAndLoad(AppData& document, const jString& path)
{
    return document.init() && document.load(path);
}

// Reset, load and the render states: what every editing operation starts with.
bool openForEditing(AppData& document, const jString& path)
{
    return resetAndLoad(document, path) && document.createStates();
}

// The document becomes an unsaved instance of the file it just loaded.
void turnIntoInstance(AppData& document)
{
    document.setParentPath(document.getPath());
    document.setPath(jString());
    document.setInstance(true);
}

bool instantiate(const jString& parentPath, const jString& destinationPath,
    const std::map<jString, jString>* textures)
{
    if (parentPath.empty() || destinationPath.empty())
        return false;
    // Declared first so that it restores the publication after the
    // private document (and its block manager) is destroyed.
    PublishedBlocksGuard published;
    auto document = std::make_unique<AppData>();
    // The reset's result is not looked at: a block library that fails to
    // load shows in the load of the parent, as it does for Duplicate.
    document->init();
    if (!document->load(parentPath))
        return false;
    turnIntoInstance(*document);
    if (textures) {
        for (const auto& [tag, texture] : *textures)
            MaterialEditor::SetTexturePathByTag(document.get(), tag, texture);
    }
    const bool saved = document->save(destinationPath);
    document->clear();
    return saved;
}

bool setFirstTextureOfKind(AppData& document, const char* kind, const jString& tag, const jString& path)
{
    for (const auto& node : document.getNodes()) {
        if (node->getName() != tag)
            continue;
        for (size_t i = 0; i < node->getVariableCount(); ++i) {
            DataVariable* variable = node->getVariable(i);
            const BlockVariable* definition = variable ? variable->getDefinition() : nullptr;
            if (definition && definition->getType() == kind) {
                node->setVariableValueOnly(static_cast<int>(i), path);
                return true;
            }
        }
    }
    return false;
}

} // namespace

bool MaterialEditor::Compile(const jString& path)
{
    AppData& document = *AppData::get();
    return openForEditing(document, path) && document.save(path);
}

bool MaterialEditor::Save(const jString& path)
{
    return AppData::get()->save(path);
}

bool MaterialEditor::Duplicate(const jString& sourcePath, const jString& destinationPath, bool useFileName)
{
    if (sourcePath.empty() || destinationPath.empty())
        return false;
    AppData& document = *AppData::get();
    document.init(); // a failure shows in the load below
    if (!document.load(sourcePath))
        return false;
    document.setUseFileNameAsMaterialName(useFileName);
    return document.save(destinationPath);
}

bool MaterialEditor::Instantiate(const jString& parentPath, const jString& destinationPath)
{
    return instantiate(parentPath, destinationPath, nullptr);
}

bool MaterialEditor::Instantiate(const jString& parentPath, const jString& destinationPath,
    const std::map<jString, jString>& textures)
{
    return instantiate(parentPath, destinationPath, &textures);
}

bool MaterialEditor::MakeInstance(const jString& path)
{
    AppData& document = *AppData::get();
    if (!resetAndLoad(document, path))
        return false;
    turnIntoInstance(document);
    return true;
}

bool MaterialEditor::SetTessellate(const jString& path, bool tessellate)
{
    AppData& document = *AppData::get();
    if (!openForEditing(document, path))
        return false;
    document.setTessellate(tessellate);
    return document.save(path);
}

bool MaterialEditor::SetStateValueByName(const jString& path, const jString& name, int value)
{
    AppData& document = *AppData::get();
    if (!openForEditing(document, path))
        return false;
    const auto& states = document.getStates();
    for (size_t i = 0; i < states.size(); ++i) {
        if (states[i].editable && states[i].name == name)
            document.setStateValue(i, static_cast<uint8_t>(value));
    }
    return document.save(path);
}

// Kinds are tried in turn, so a 2D node carrying the tag wins over a cube
// node carrying it even when the cube node comes first in the document.
bool MaterialEditor::SetTexturePathByTag(AppData* document, const jString& tag, const jString& path)
{
    if (!document)
        return false;
    for (const char* kind : {"texture2D", "textureCube", "texture3D"}) {
        if (setFirstTextureOfKind(*document, kind, tag, path))
            return true;
    }
    return false;
}

bool MaterialEditor::IsMaterialCanBeEdit(const jString& path)
{
    mjl file;
    if (!file.open(path, false))
        return false;
    const Package& root = *file.getRoot();
    if (root.findPackage("blueprint"))
        return true;
    const Package* material = MaterialReader::findMaterial(root);
    // "parent", not the "parent_path" that loading reads: instances written
    // by this module carry both.
    return material && material->hasItem("parent");
}
