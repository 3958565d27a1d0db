#pragma once

#include "UIEnumBox.h"

// A combo bound to a value the owner keeps and the getter returns by
// reference, e.g. a document keyword (UIEnumRef<jString>).
template <typename T>
class UIEnumRef : public UIEnumBox<T, const T&> {
public:
    using UIEnumBox<T, const T&>::UIEnumBox;
};
