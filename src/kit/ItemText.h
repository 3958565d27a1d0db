#pragma once

#include "PackageItem.h"
#include "jString.h"

// The string an item of the block configuration carries: all its values
// joined by single spaces. A text or a code line written without quotes
// (`code_begin { i void main() }`, `text Base Color`) thus reads whole; a
// quoted value is one value and reads exactly as written.
inline jString itemText(const PackageItem& item)
{
    if (item.getValueCount() <= 1)
        return jString(item.getValue());
    jString text(item.getValue(0));
    for (size_t i = 1; i < item.getValueCount(); ++i) {
        text += ' ';
        text += item.getValue(i);
    }
    return text;
}
