#pragma once

#include "BlockVariable.h"
#include "FixedArray.h"
#include "jString.h"

#include <cstdint>
#include <memory>

class AppData;
class DataNode;
class DataSampler;

// The editable value of one variable of a node, made from the block
// variable that declares it. Texture variables also carry a colour format
// and a sampler shared through the document.
class DataVariable {
public:
    // The value of one sub variable.
    class Value {
    public:
        explicit Value(const BlockVariable::Value* definition, DataVariable* variable = nullptr);

        virtual const jString& getValue() const { return m_value; }
        // Recorded in the document's history as a change of its variable.
        virtual void setValue(const jString& value);

        virtual ~Value() = default;

        const BlockVariable::Value* getDefinition() const { return m_definition; }
        // The sub definition's name.
        const jString& getName() const;

    private:
        jString m_value;
        const BlockVariable::Value* m_definition;
        DataVariable* m_variable;
    };

    // Takes the default value from the definition and the default sampler of
    // the owner's document (the process-wide document when there is no owner).
    DataVariable(BlockVariable* definition, DataNode* owner);
    DataVariable(const DataVariable&) = delete;
    DataVariable& operator=(const DataVariable&) = delete;

    // Virtual operations, in this order. A setter that changes the variable
    // of a document node records the change in the document's history.
    virtual BlockVariable* getDefinition() const { return m_definition; }
    virtual DataNode* getOwner() const { return m_owner; }
    virtual bool getAsyn() const { return m_asyn; }
    virtual void setAsyn(bool asyn);
    virtual const jString& getValue() const { return m_value; }
    virtual void setValue(const jString& value);
    virtual const jString& getFormat() const { return m_format; }
    virtual void setFormat(const jString& format);
    virtual const jString& getWrap() const { return m_wrap; }
    virtual const jString& getFilter() const { return m_filter; }
    virtual uint32_t getAnisotropy() const { return m_anisotropy; }
    virtual DataSampler* getSampler() const { return m_sampler; }
    virtual void setSampler(DataSampler* sampler);

    virtual ~DataVariable();

    void setWrap(const jString& wrap);
    void setFilter(const jString& filter);
    void setAnisotropy(uint32_t anisotropy);

    // The definition's name followed by the owner's id, without separator:
    // "color" on node 12 gives "color12".
    jString getParameterName() const;
    // The definition's name.
    const jString& getName() const;
    // True for the texture types "texture", "texture2D", "texture3D" and
    // "textureCube": their sampler settings are saved with the document.
    bool isTexture() const;

    size_t getSubValueCount() const { return m_subValues.size(); }
    Value* getSubValue(size_t index) const;
    // The first sub value of that name, or null.
    Value* findSubValue(const jString& name) const;

    // Deletes the sub values.
    void release();

private:
    // Assigns a field and records the change when the document records.
    template <typename T>
    void change(T& field, const T& value);
    BlockVariable* m_definition;
    DataNode* m_owner;
    bool m_asyn = false;
    jString m_value;
    jString m_format = "rgb";
    jString m_wrap;
    jString m_filter;
    uint32_t m_anisotropy = 0;
    DataSampler* m_sampler = nullptr;
    FixedArray<Value> m_subValues;
};
