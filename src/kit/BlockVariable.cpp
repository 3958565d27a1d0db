#include "BlockVariable.h"

#include "ItemText.h"
#include "Package.h"
#include "jLog.h"

namespace {
const char* const kRoutine = "BlockVariable::load";
}

void BlockVariable::Value::load(const Package& sub)
{
    for (size_t i = 0; i < sub.getItemCount(); ++i) {
        const PackageItem* item = sub.getItem(i);
        const std::string_view key = item->getName();
        if (key == "text")
            m_text = itemText(*item);
        else if (key == "edit")
            m_edit = item->getBool();
        else if (key == "name")
            m_name = itemText(*item);
        else if (key == "type")
            m_type = itemText(*item);
        else if (key == "default")
            m_default = itemText(*item);
        else
            // The argument order (value name, then the unknown key) is the
            // log's established form.
            jLog::error("%s:unknown value \"%s\" in sub, in variable \"%s\"", kRoutine, m_name.c_str(),
                jString(key).c_str());
    }
}

const BlockVariable::Value* BlockVariable::getValue(size_t index) const
{
    return index < m_values.size() ? &m_values[index] : nullptr;
}

bool BlockVariable::load(Package* p)
{
    if (!p)
        return true;
    for (size_t i = 0; i < p->getItemCount(); ++i) {
        const PackageItem* item = p->getItem(i);
        const std::string_view key = item->getName();
        if (key == "text")
            m_text = itemText(*item);
        else if (key == "mask")
            m_mask = item->getInt();
        else if (key == "edit")
            m_edit = item->getBool();
        else if (key == "name")
            m_name = itemText(*item);
        else if (key == "type")
            m_type = itemText(*item);
        else if (key == "default")
            m_default = itemText(*item);
        else
            jLog::error("%s:unknown value \"%s\"", kRoutine, jString(key).c_str());
    }
    for (size_t i = 0; i < p->getPackageCount(); ++i) {
        const Package* sub = p->getPackage(i);
        if (sub->getName() != "sub")
            continue;
        Value value;
        value.load(*sub);
        m_values.push_back(std::move(value));
    }
    return true;
}

bool BlockVariable::load(PackageItem* item)
{
    if (item)
        m_text = itemText(*item);
    return true;
}
