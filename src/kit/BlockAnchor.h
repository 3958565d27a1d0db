#pragma once

#include "jString.h"

class Package;
class PackageItem;

// One input or output connection point of a block: its label, its name
// within the block (the name code fragments and document links use), its
// data type and the code fragments that compute its value.
class BlockAnchor {
public:
    BlockAnchor() = default;

    // Virtual getters, in this order.
    virtual const jString& getText() const { return m_text; }
    virtual const jString& getName() const { return m_name; }
    virtual const jString& getType() const { return m_type; }
    virtual const jString& getFunction() const { return m_function; }
    virtual const jString& getFunctionEditor() const { return m_functionEditor; }
    virtual const jString& getDefault() const { return m_default; }
    virtual bool isEdit() const { return m_edit; }

    virtual ~BlockAnchor() = default;

    // Full form: the items of an anchor sub-package. False only for null.
    bool load(Package* p);
    // Short form: an item whose value is the anchor's text. False for null.
    bool load(PackageItem* item);

private:
    jString m_text;
    jString m_name;
    jString m_type;
    jString m_function;
    jString m_functionEditor;
    jString m_default;
    bool m_edit = false;
};
