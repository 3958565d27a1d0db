#include "UiMsg.h"

UiMsg::UiMsg(int code, jString text, void* ptr)
    : m_code(code)
    , m_text(std::move(text))
    , m_ptr(ptr)
{
}

UiMsg::~UiMsg() = default;

UiMsgStr::UiMsgStr(int code, jString text)
    : UiMsg(code, std::move(text))
{
}

UiMsgPTR::UiMsgPTR(int code, void* ptr)
    : UiMsg(code, {}, ptr)
{
}
