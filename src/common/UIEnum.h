#pragma once

#include "UIEnumBox.h"

// A combo bound to a value that the getter returns by value, e.g. the index
// of a render state's choice:
//
//   auto* combo = new UIEnum<int>(row, [s] { return s->getValue(); }, [s](int v) { s->setValue(v); });
//   combo->addEntry("Low", 0);
//   combo->refresh();
template <typename T>
class UIEnum : public UIEnumBox<T, T> {
public:
    using UIEnumBox<T, T>::UIEnumBox;
};
