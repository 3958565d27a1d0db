#pragma once

#include <QDialog>

#include <cstdint>

class MaskBitContent;
class QPushButton;
class UIBool;

// The modal editor of a 32-bit material mask: the 24 low bits as a grid of
// cells and bit 30 as a check box. OK writes the mask (bits 24 to 29 and 31
// are dropped) and 1 into *accepted; Cancel, Escape or closing the window
// write 0 into *accepted and leave the mask alone.
//
// The caller runs it with select() (through DialogAnswerer), so a test can
// build one, work its cells and buttons and press OK or Cancel itself.
class MaterialMaskBitSelect : public QDialog {
public:
    static constexpr uint32_t kFlag30 = 0x40000000;

    MaterialMaskBitSelect(QWidget* parent, uint8_t* accepted, uint32_t* value);

    // Builds the dialog and runs it modally; returns the dialog's result.
    static int select(QWidget* parent, uint8_t* accepted, uint32_t* value);

    bool getFlag30() const { return flag30; }
    void setFlag30(bool on) { flag30 = on; }

    MaskBitContent* getContent() const { return content; }
    UIBool* getFlag30Box() const { return m_flag30Box; }
    QPushButton* getSetAllButton() const { return m_setAll; }
    QPushButton* getClearAllButton() const { return m_clearAll; }
    QPushButton* getOkButton() const { return m_ok; }
    QPushButton* getCancelButton() const { return m_cancel; }

    void accept() override;
    void reject() override;

private:
    void init_flag_row();
    void init_button_row();
    void init_dialog_buttons();

    uint8_t* accepted;
    uint32_t* value;
    MaskBitContent* content = nullptr;
    bool flag30 = false;
    UIBool* m_flag30Box = nullptr;
    QPushButton* m_setAll = nullptr;
    QPushButton* m_clearAll = nullptr;
    QPushButton* m_ok = nullptr;
    QPushButton* m_cancel = nullptr;
};
