#include "METexture2D.h"

#include "AppData.h"
#include "AttrWrap.h"
#include "BlockVariable.h"
#include "DataNode.h"
#include "DataVariable.h"
#include "GraphNode.h"
#include "UIBool.h"
#include "UIEnum.h"
#include "UIEnumRef.h"
#include "UIFloatField.h"
#include "UIIntBase.h"
#include "UISpriteDrop.h"
#include "UIString.h"
#include "jDir.h"
#include "tr.h"

#include <QGridLayout>
#include <QHBoxLayout>

#include <initializer_list>

namespace {

// The root as paths are compared with it: ending in one '/'.
jString withSlash(const jString& root)
{
    return root.empty() || root.back() == '/' ? root : root + "/";
}

bool startsWith(const jString& text, const jString& prefix)
{
    return !prefix.empty() && text.compare(0, prefix.size(), prefix) == 0;
}

} // namespace

struct METexture2D::Sampler {
    jString value;
    jString format;
    jString wrap;
    jString filter;
    uint32_t anisotropy = 1;
    bool asyn = false;
};

METexture2D::METexture2D(QWidget* parent, AppData* document, Graph* graph, GraphNode* node)
    : METexture2D(parent, document, graph, node, "texture2D")
{
}

METexture2D::METexture2D(QWidget* parent, AppData* document, Graph* graph, GraphNode* node, const char* textureType)
    : MaterialExpression(parent, document, graph, node), m_dataRoot(withSlash(jDir::getProjectRoot())),
      m_textureType(textureType)
{
}

bool METexture2D::create()
{
    release();
    m_thumbnail = nullptr;
    const DataNode* node = getDataNode();
    if (!node || node->getVariableCount() == 0)
        return create_base();
    AttrWrap* texture = add_section("Texture");
    QGridLayout* grid = add_grid(texture);
    for (size_t i = 0; i < node->getVariableCount(); ++i) {
        const BlockVariable* definition = node->getVariable(i)->getDefinition();
        if (definition && definition->getType() == m_textureType)
            add_texture_rows(grid, texture->getContent(), i);
    }
    return create_base();
}

void METexture2D::add_texture_rows(QGridLayout* grid, QWidget* content, size_t index)
{
    if (getDataNode()->getVariable(index)->getDefinition()->isEdit())
        add_thumbnail(grid, content, index);
    add_sampler_rows(grid, content, index);
    add_sub_value_rows(grid, content, index);
}

void METexture2D::add_thumbnail(QGridLayout* grid, QWidget* content, size_t index)
{
    DataVariable* variable = getDataNode()->getVariable(index);
    auto* row = new QWidget(content);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(kThumbnailMargin, kThumbnailMargin, kThumbnailMargin, kThumbnailMargin);
    auto* sprite = new UISpriteDrop(row, kThumbnailSize, kBlackTexture);
    sprite->setTexture(variable->getValue());
    sprite->setOnDrop([this, index](const jString& path) { dropTexture(index, path); });
    layout->addWidget(sprite, 0, Qt::AlignCenter);
    grid->addWidget(row, grid->rowCount(), 0, 1, 2);
    m_thumbnail = sprite;
    keep_refresh([sprite, variable] {
        if (sprite->getTexture() != variable->getValue())
            sprite->setTexture(variable->getValue());
    });
}

void METexture2D::add_sampler_rows(QGridLayout* grid, QWidget* content, size_t index)
{
    DataVariable* variable = getDataNode()->getVariable(index);
    const bool instance = getDocument() && getDocument()->isInstance();
    auto change = [this, index](auto edit) {
        Sampler sampler = sampler_of(index);
        edit(sampler);
        write_sampler(index, sampler);
    };

    auto* asyn = new UIBool(content, [variable] { return variable->getAsyn(); },
                            [change](bool on) { change([on](Sampler& s) { s.asyn = on; }); });
    asyn->setEnabled(!instance);
    add_row(grid, ::tr("asyn"), asyn);
    keep_refresh([asyn] { asyn->refresh(); });

    auto* path = new UIString(content, [variable] { return variable->getValue(); }, {});
    path->setReadOnly(true);
    add_row(grid, ::tr("path"), path);
    keep_refresh([path] {
        path->refresh();
        show_path_end(path);
    });
    show_path_end(path);

    auto keywordCombo = [&](const char* key, const jString& (DataVariable::*get)() const, jString Sampler::*field,
                            std::initializer_list<const char*> entries) {
        auto* combo = new UIEnumRef<jString>(content, [variable, get]() -> const jString& { return (variable->*get)(); },
                                             [change, field](const jString& value) {
                                                 change([&value, field](Sampler& s) { s.*field = value; });
                                             });
        for (const char* entry : entries)
            combo->addEntry(entry, entry);
        combo->refresh();
        combo->setEnabled(!instance);
        add_row(grid, ::tr(key), combo);
        keep_refresh([combo] { combo->refresh(); });
    };
    keywordCombo("usage", &DataVariable::getFormat, &Sampler::format, {"rgb", "srgb", "signed"});
    keywordCombo("uv_wrap", &DataVariable::getWrap, &Sampler::wrap, {"clamp", "border", "repeat"});
    keywordCombo("filter", &DataVariable::getFilter, &Sampler::filter, {"point", "linear", "bilinear", "trilinear"});

    auto* anisotropy = new UIEnum<int>(content, [variable] { return static_cast<int>(variable->getAnisotropy()); },
                                       [change](const int& value) {
                                           change([value](Sampler& s) { s.anisotropy = static_cast<uint32_t>(value); });
                                       });
    for (int entry : {1, 2, 4, 16})
        anisotropy->addEntry(std::to_string(entry), entry);
    anisotropy->refresh();
    anisotropy->setEnabled(!instance);
    add_row(grid, ::tr("anisotropy"), anisotropy);
    keep_refresh([anisotropy] { anisotropy->refresh(); });
}

void METexture2D::add_sub_value_rows(QGridLayout* grid, QWidget* content, size_t index)
{
    DataVariable* variable = getDataNode()->getVariable(index);
    for (size_t i = 0; i < variable->getSubValueCount(); ++i) {
        DataVariable::Value* value = variable->getSubValue(i);
        const BlockVariable::Value* definition = value->getDefinition();
        if (!definition || !definition->isEdit())
            continue;
        const jString label = definition->getText().empty() ? value->getName() : definition->getText();
        auto get = [value] { return value->getValue(); };
        auto set = [this, value](const jString& text) {
            value->setValue(text);
            value_edited();
        };
        QWidget* field = nullptr;
        if (definition->getType() == "float") {
            auto* number = new UIFloatField(content, get, set);
            keep_refresh([number] { number->refresh(); });
            field = number;
        } else if (definition->getType() == "int") {
            auto* number = new UIIntBase<int>(content,
                                              [value] {
                                                  int parsed = 0;
                                                  UIIntBase<int>::parse(value->getValue(), parsed);
                                                  return parsed;
                                              },
                                              [set](int parsed) { set(std::to_string(parsed)); });
            keep_refresh([number] { number->refresh(); });
            field = number;
        } else {
            auto* text = new UIString(content, get, set);
            keep_refresh([text] { text->refresh(); });
            field = text;
        }
        add_row(grid, label, field);
    }
}

METexture2D::Sampler METexture2D::sampler_of(size_t index) const
{
    const DataVariable* variable = getDataNode()->getVariable(index);
    return {variable->getValue(), variable->getFormat(), variable->getWrap(), variable->getFilter(),
            variable->getAnisotropy(), variable->getAsyn()};
}

void METexture2D::write_sampler(size_t index, const Sampler& sampler)
{
    DataNode* node = getDataNode();
    if (!node->setVariableValue(static_cast<int>(index), sampler.value, sampler.format, sampler.wrap, sampler.filter,
                                sampler.anisotropy, sampler.asyn))
        return;
    value_edited();
}

jString METexture2D::droppedTexture(const jString& dropped) const
{
    jString relative;
    if (startsWith(dropped, m_dataRoot))
        relative = dropped.substr(m_dataRoot.size());
    else if (const jString bundled = withSlash(jDir::getBundledRoot()); startsWith(dropped, bundled))
        relative = dropped.substr(bundled.size());
    else if (!dropped.empty() && dropped.front() != '/')
        relative = dropped;
    if (relative.empty() || !jDir::isInsideRoot(relative))
        return kBlackTexture;
    return relative;
}

void METexture2D::dropTexture(size_t index, const jString& dropped)
{
    DataNode* node = getDataNode();
    if (!node || index >= node->getVariableCount())
        return;
    DataVariable* variable = node->getVariable(index);
    const jString path = droppedTexture(dropped);
    if (path == variable->getValue())
        return;
    node->setVariableValueOnly(static_cast<int>(index), path);
    // The node's thumbnail on the canvas shows the new texture at once.
    GraphNode* shown = getNode();
    for (size_t i = 0; i < shown->getVarCount(); ++i)
        if (shown->getVarAt(i)->getVariable() == variable)
            shown->getVarAt(i)->setTexture(path);
    value_edited(kMsgTextureEdited);
}
