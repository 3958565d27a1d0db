#pragma once

#include "PackageItem.h"

// An item's values as owned strings, for comparing with expected lists.
inline jVector<jString> valuesOf(const PackageItem& item)
{
    return { item.getValues().begin(), item.getValues().end() };
}
