#pragma once

#include "jString.h"

#include <string_view>

// The user-interface text of a key (lower-case, e.g. "help"), read from
// "data/core/editor/lang/en.cfg" through the data root on first use. A key
// without a text gives the key itself (and one warning per key).
const jString& tr(std::string_view key);

// Reads the texts again (after the data root changed).
void trReload();
