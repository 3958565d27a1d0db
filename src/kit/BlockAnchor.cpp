#include "BlockAnchor.h"

#include "ItemText.h"
#include "Package.h"
#include "jLog.h"

bool BlockAnchor::load(Package* p)
{
    if (!p)
        return false;
    for (size_t i = 0; i < p->getItemCount(); ++i) {
        const PackageItem* item = p->getItem(i);
        const std::string_view key = item->getName();
        if (key == "text")
            m_text = itemText(*item);
        else if (key == "edit")
            m_edit = item->getBool();
        else if (key == "name")
            m_name = itemText(*item);
        else if (key == "type")
            m_type = itemText(*item);
        else if (key == "function")
            m_function = itemText(*item);
        else if (key == "function_editor")
            m_functionEditor = itemText(*item);
        else if (key == "default")
            m_default = itemText(*item);
        else
            jLog::error("%s:unknown value \"%s\"", "BlockAnchor::load", jString(key).c_str());
    }
    return true;
}

bool BlockAnchor::load(PackageItem* item)
{
    if (!item)
        return false;
    m_text = itemText(*item);
    return true;
}
