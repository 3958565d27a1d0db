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
    m_subValues.reserve(count);
    for (size_t i = 0; i < count; ++i)
        m_subValues.push_back(std::make_unique<Value>(m_definition->getValue(i)));
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
    return index < m_subValues.size() ? m_subValues[index].get() : nullptr;
}

DataVariable::Value* DataVariable::findSubValue(const jString& name) const
{
    for (const auto& value : m_subValues)
        if (value->getName() == name)
            return value.get();
    return nullptr;
}

void DataVariable::release()
{
    m_subValues.clear();
}
