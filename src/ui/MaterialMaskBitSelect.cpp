#include "MaterialMaskBitSelect.h"

#include "DialogAnswerer.h"
#include "MaskBitContent.h"
#include "UIBool.h"
#include "jLog.h"
#include "tr.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

QString text_of(const char* key)
{
    return QString::fromUtf8(tr(key).c_str());
}

} // namespace

MaterialMaskBitSelect::MaterialMaskBitSelect(QWidget* parent, uint8_t* acceptedOut, uint32_t* valueInOut)
    : QDialog(parent), accepted(acceptedOut), value(valueInOut)
{
    if (!value)
        jLog::error("%s:%s", "MaterialMaskBitSelect::MaterialMaskBitSelect", "value");
    if (!accepted)
        jLog::error("%s:%s", "MaterialMaskBitSelect::MaterialMaskBitSelect", "accepted");
    setWindowTitle(QString());
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    const uint32_t incoming = value ? *value : 0;
    flag30 = (incoming & kFlag30) != 0;
    init_flag_row();
    init_button_row();
    content = new MaskBitContent(this);
    content->construct(incoming);
    layout->addWidget(content);
    init_dialog_buttons();
}

void MaterialMaskBitSelect::init_flag_row()
{
    auto* row = new QWidget(this);
    row->setFixedHeight(32);
    auto* rowLayout = new QHBoxLayout(row);
    rowLayout->setContentsMargins(0, 0, 0, 0);
    m_flag30Box = new UIBool(row, [this] { return flag30; }, [this](bool on) { flag30 = on; });
    m_flag30Box->setText(text_of("bit_30"));
    rowLayout->addWidget(m_flag30Box);
    rowLayout->addStretch();
    layout()->addWidget(row);
}

void MaterialMaskBitSelect::init_button_row()
{
    auto* rowLayout = new QHBoxLayout();
    m_setAll = new QPushButton(text_of("set_all"), this);
    m_clearAll = new QPushButton(text_of("clear_all"), this);
    // Enter in the dialog means OK, never "set all".
    m_setAll->setAutoDefault(false);
    m_clearAll->setAutoDefault(false);
    connect(m_setAll, &QPushButton::clicked, this, [this] { content->setAll(); });
    connect(m_clearAll, &QPushButton::clicked, this, [this] { content->clearAll(); });
    rowLayout->addWidget(m_setAll);
    rowLayout->addWidget(m_clearAll);
    rowLayout->addStretch();
    static_cast<QVBoxLayout*>(layout())->addLayout(rowLayout);
}

void MaterialMaskBitSelect::init_dialog_buttons()
{
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    m_cancel = buttons->button(QDialogButtonBox::Cancel);
    m_ok->setText(text_of("OK"));
    m_cancel->setText(text_of("Cancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &MaterialMaskBitSelect::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &MaterialMaskBitSelect::reject);
    layout()->addWidget(buttons);
}

int MaterialMaskBitSelect::select(QWidget* parent, uint8_t* accepted, uint32_t* value)
{
    MaterialMaskBitSelect dialog(parent, accepted, value);
    return DialogAnswerer::exec(dialog);
}

void MaterialMaskBitSelect::accept()
{
    if (value)
        *value = (content->getMask() & MaskBitContent::kCellBits) | (flag30 ? kFlag30 : 0u);
    if (accepted)
        *accepted = 1;
    QDialog::accept();
}

void MaterialMaskBitSelect::reject()
{
    if (accepted)
        *accepted = 0;
    QDialog::reject();
}
