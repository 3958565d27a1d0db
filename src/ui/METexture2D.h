#pragma once

#include "MaterialExpression.h"

class UISpriteDrop;

// The panel of a texture node: per variable of the panel's texture type a
// thumbnail that takes a dropped texture (for variables marked edit), the
// sampler rows, the rows of the variable's shown sub values, then the
// "Base" section. METexture3D and METextureCube are this panel for another
// texture type keyword.
class METexture2D : public MaterialExpression {
public:
    static constexpr int kThumbnailSize = 128;
    static constexpr int kThumbnailMargin = 16;
    static constexpr const char* kBlackTexture = "data/core/textures/common/black.dds";

    METexture2D(QWidget* parent, AppData* document, Graph* graph, GraphNode* node);

    bool create() override;
    int getKind() const override { return KIND_TEXTURE_2D; }

    const jString& getTextureType() const { return m_textureType; }
    // The thumbnail of the last variable that has one; null when none.
    UISpriteDrop* getThumbnail() const { return m_thumbnail; }
    // What a path dropped on a variable's thumbnail becomes: the
    // root-relative path of an image inside the data root (given relative,
    // as the asset strip does, or absolute), else the black texture.
    jString droppedTexture(const jString& dropped) const;
    // Sets variable index's texture to what droppedTexture makes of the
    // path; the same texture as now changes nothing.
    void dropTexture(size_t index, const jString& dropped);

protected:
    METexture2D(QWidget* parent, AppData* document, Graph* graph, GraphNode* node, const char* textureType);

private:
    void add_texture_rows(QGridLayout* grid, QWidget* content, size_t index);
    void add_thumbnail(QGridLayout* grid, QWidget* content, size_t index);
    void add_sampler_rows(QGridLayout* grid, QWidget* content, size_t index);
    void add_sub_value_rows(QGridLayout* grid, QWidget* content, size_t index);
    // Writes a texture variable through the node with one sampler setting
    // changed (the others as they are).
    struct Sampler;
    void write_sampler(size_t index, const Sampler& sampler);
    Sampler sampler_of(size_t index) const;

    // The data root with a trailing '/', taken at construction.
    jString m_dataRoot;
    jString m_textureType;
    UISpriteDrop* m_thumbnail = nullptr;
};
