#pragma once

#include "jString.h"

// One message of the bus: a numbered code with an optional text and/or
// pointer payload. The bus never owns what the pointer points to.
class UiMsg {
public:
    explicit UiMsg(int code, jString text = {}, void* ptr = nullptr);
    virtual ~UiMsg();

    int getCode() const { return m_code; }
    // The text payload; empty when the message carries none.
    const jString& getText() const { return m_text; }
    // The pointer payload; null when the message carries none.
    void* getPtr() const { return m_ptr; }
    template <typename T>
    T* getPtrAs() const { return static_cast<T*>(m_ptr); }

private:
    int m_code;
    jString m_text;
    void* m_ptr;
};

// A message whose payload is a text.
class UiMsgStr : public UiMsg {
public:
    UiMsgStr(int code, jString text);
};

// A message whose payload is a pointer.
class UiMsgPTR : public UiMsg {
public:
    UiMsgPTR(int code, void* ptr);
};
