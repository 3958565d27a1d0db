#pragma once

#include "jString.h"

#include <cstdint>

class Package;
class PackageItem;

// One editable variable of a block, with the optional choices of an
// enumerated variable.
class BlockVariable {
public:
    // One choice ("sub" package) of an enumerated variable.
    class Value {
    public:
        Value() = default;
        Value(const Value&) = default;
        Value& operator=(const Value&) = default;

        virtual bool isEdit() const { return m_edit; }
        virtual const jString& getName() const { return m_name; }
        virtual const jString& getType() const { return m_type; }
        virtual const jString& getText() const { return m_text; }
        virtual const jString& getDefault() const { return m_default; }

        virtual ~Value() = default;

        // Fills the value from a "sub" package; unknown items are logged
        // with the variable routine's name and skipped.
        void load(const Package& sub);

    private:
        bool m_edit = false;
        jString m_name;
        jString m_type;
        jString m_text;
        jString m_default;
    };

    BlockVariable() = default;

    // Virtual getters, in this order.
    virtual int32_t getMask() const { return m_mask; }
    virtual bool isEdit() const { return m_edit; }
    virtual const jString& getName() const { return m_name; }
    virtual const jString& getType() const { return m_type; }
    virtual const jString& getText() const { return m_text; }
    virtual const jString& getDefault() const { return m_default; }
    virtual size_t getValueCount() const { return m_values.size(); }
    virtual const Value* getValue(size_t index) const;

    virtual ~BlockVariable() = default;

    // Full form: items, then every "sub" package as one Value. True also
    // for null (nothing is read); there is no failing path.
    bool load(Package* p);
    // Short form: an item whose value is the variable's text.
    bool load(PackageItem* item);

private:
    int32_t m_mask = 1;
    bool m_edit = false;
    jString m_name;
    jString m_type;
    jString m_text;
    jString m_default;
    jVector<Value> m_values;
};
