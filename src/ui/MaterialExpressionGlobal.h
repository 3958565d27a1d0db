#pragma once

#include "MaterialExpression.h"

#include <cstdint>
#include <vector>

class QGridLayout;
class QLabel;
class QPushButton;
struct MaterialState;
template <typename T>
class UIIntBase;

// The property panel of the material as a whole, shown while no node is
// selected: buttons that locate the material file (and its parent), naming,
// render options, blending and render states. Every control is bound to a
// document accessor pair and reads the document when it is built; create()
// rebuilds the whole section from the document's current values.
//
// Widgets carry their text key (or "state:" and the state's name) as their
// object name, so the window and tests find them by name.
class MaterialExpressionGlobal : public MaterialExpression {
public:
    // Notification codes the panel posts.
    static constexpr int kMsgLocateInAssets = 2;
    static constexpr int kMsgOpenMaterial = 5;
    static constexpr int kMsgOptionsChanged = 30;

    MaterialExpressionGlobal(QWidget* parent, AppData* document, Graph* graph);
    ~MaterialExpressionGlobal() override;

    bool create() override;
    void release() override;
    int getKind() const override { return KIND_GLOBAL; }

    // Combo entry -> document keyword; an entry no table knows is logged and
    // gives "" (the property is then left as it is).
    static jString cvt_combo_to_blend_func(const jString& entry);
    static jString cvt_combo_to_blend_op(const jString& entry);
    static jString cvt_combo_to_buffer_mask(const jString& entry);
    static jString cvt_combo_to_depth_func(const jString& entry);

    // The entries of each combo, in the order shown.
    static const std::vector<const char*>& bufferMaskEntries();
    static const std::vector<const char*>& depthFuncEntries();
    static const std::vector<const char*>& blendOpEntries();
    static const std::vector<const char*>& blendFuncEntries();

    // The label of a render state's row: its name and where its value
    // comes from ("[D]" template, "[P]" parent, "[S]" this document).
    static jString state_label_text(const MaterialState& state);
    // The first state label made for the state of that name; null if none.
    QLabel* find_state_label(const jString& name) const;
    const std::vector<QLabel*>& getStateLabels() const { return m_stateLabels; }

    // Opens the mask bit selector on the document's mask; an accepted mask
    // that differs is stored and reported with message 30.
    void cb_mask_bit_select();
    void cb_locate_in_assets_browser();
    void cb_show_in_explorer();
    void cb_locate_parent_material_in_assets_browser();
    void cb_open_parent_material();

protected:
    void init_name(QWidget* parent);
    void init_options(QWidget* parent);
    void init_blend(QWidget* parent);
    void init_states(QWidget* parent);

private:
    void init_buttons(QWidget* parent);
    void align_label_column();
    QPushButton* add_button(QWidget* parent, const char* key, void (MaterialExpressionGlobal::*action)());
    QWidget* make_mask_row(QWidget* parent);
    QWidget* make_state_editor(QWidget* parent, size_t index);
    MaterialState* state_at(size_t index) const;
    // The window's host root (the asset browser answers only its own), or
    // null outside a window.
    void* host_root() const;
    void post_changed() const;

    UIIntBase<uint32_t>* m_maskField = nullptr;
    std::vector<QLabel*> m_stateLabels;
    // The row labels of the options and state groups.
    std::vector<QLabel*> m_rowLabels;
};
