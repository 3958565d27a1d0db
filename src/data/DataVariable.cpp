#include "DataVariable.h"

#include "AppData.h"
#include "DataNode.h"
#include "DataSampler.h"
#include "Package.h"

DataVariable::Value::Value(const BlockVariable::Value* definition)
    : m_value(definition ? definition->getDefault() : Package::kEmptyString)
    , m_definition(definition)
{
}

const jString& DataVariable::Value::getName() const
{
    return m_definition ? m_definition->getName() : Package::kEmptyString;
}

DataVariable::DataVariable(BlockVariable* definition, DataNode* owner)
    : m_definition(definition)
    , m_owner(owner)
{
    if (m_definition)
        m_value = m_definition->getDefault();
    AppData* document = owner ? owner->getDocument() : AppData::get();
    m_sampler = document->getDefaultSampler();
    m_wrap = m_sampler->getWrap();
    m_filter = m_sampler->getFilter();
    m_anisotropy = m_sampler->getAnisotropy();

    const size_t count = m_definition ? m_definition->getValueCount() : 0;
    m_subValues = FixedArray<Value>(count, [this](Value* where, size_t index) {
        std::construct_at(where, m_definition->getValue(index));
    });
}

DataVariable::~DataVariable() = default;

jString DataVariable::getParameterName() const
{
    return getName() + (m_owner ? std::to_string(m_owner->getId()) : jString());
}

const jString& DataVariable::getName() const
{
    return m_definition ? m_definition->getName() : Package::kEmptyString;
}

bool DataVariable::isTexture() const
{
    if (!m_definition)
        return false;
    const jString& type = m_definition->getType();
    return type == "texture" || type == "texture2D" || type == "texture3D" || type == "textureCube";
}

DataVariable::Value* DataVariable::getSubValue(size_t index) const
{
    return m_subValues.at(index);
}

DataVariable::Value* DataVariable::findSubValue(const jString& name) const
{
    for (Value& value : m_subValues)
        if (value.getName() == name)
            return &value;
    return nullptr;
}

void DataVariable::release()
{
    m_subValues.clear();
}
