#pragma once

#include "jString.h"

#include <QComboBox>

#include <vector>

// A combo's entries, in their order.
inline std::vector<jString> comboEntries(const QComboBox* combo)
{
    std::vector<jString> result;
    for (int i = 0; combo && i < combo->count(); ++i)
        result.push_back(combo->itemText(i).toStdString());
    return result;
}
