#include "DataVariable.h"

#include "AppData.h"
#include "DataNode.h"
#include "DataSampler.h"
#include "Package.h"

DataVariable::Value::Value(const BlockVariable::Value* definition, DataVariable* variable)
    : m_value(definition ? definition->getDefault() : Package::kEmptyString)
    , m_definition(definition)
    , m_variable(variable)
{
}

void DataVariable::Value::setValue(const jString& value)
{
    if (m_variable)
        m_variable->change(m_value, value);
    else
        m_value = value;
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
        std::construct_at(where, m_definition->getValue(index), this);
    });
}

DataVariable::~DataVariable() = default;

template <typename T>
void DataVariable::change(T& field, const T& value)
{
    if (field == value)
        return;
    AppData* document = m_owner ? m_owner->getDocument() : nullptr;
    if (!document || !document->getHistory().isRecording()) {
        field = value;
        return;
    }
    VariableState before = document->getVariableState(*this);
    field = value;
    document->record_variable(*m_owner, static_cast<size_t>(this - m_owner->getVariable(0)), std::move(before));
}

void DataVariable::setAsyn(bool asyn)
{
    change(m_asyn, asyn);
}

void DataVariable::setValue(const jString& value)
{
    change(m_value, value);
}

void DataVariable::setFormat(const jString& format)
{
    change(m_format, format);
}

void DataVariable::setSampler(DataSampler* sampler)
{
    change(m_sampler, sampler);
}

void DataVariable::setWrap(const jString& wrap)
{
    change(m_wrap, wrap);
}

void DataVariable::setFilter(const jString& filter)
{
    change(m_filter, filter);
}

void DataVariable::setAnisotropy(uint32_t anisotropy)
{
    change(m_anisotropy, anisotropy);
}

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
