#pragma once

#include "jString.h"

#include <cstdint>

// One shader switch of a material: a toggle, a multiple-choice switch or an
// integer value, declared by the material template and mapped to
// preprocessor defines of the generated shader. The engine's Material and
// the editor's document hold the same record, read by MaterialStateReader,
// so both select the same defines (see docs/render-states.md).
struct MaterialState {
    enum Type : int32_t { Toggle = 0, Switch = 1, Int = 2, Unknown = -1 };
    // Where the current value comes from (the document classifies it; the
    // engine leaves it alone).
    enum Source : int32_t { FromTemplate = 0, FromParent = 1, FromDocument = 2 };

    jString name;
    int32_t type = Toggle;
    bool editable = true;
    uint8_t value = 0;
    jVector<jString> items;
    jVector<jString> defines;
    int32_t source = FromDocument;
    bool inherited = false;

    // "toggle" 0, "switch" 1, "int" 2; anything else -1.
    static int32_t typeFromText(const jString& text);
    // The file keyword of a type; empty for an unknown one.
    static const char* typeToText(int32_t type);

    // The define the current value selects: for a toggle or a switch the
    // entry at the value's index, for an int the single entry; empty when
    // there is none.
    const jString& selectedDefine() const;
    // The define as it goes into a program: an int state's carries its
    // value ("NAME=value"); empty when the state selects none.
    jString programDefine() const;
    // The program defines of states, in state order, empty ones left out:
    // what the renderer compiles and what the checker validates.
    static jVector<jString> programDefines(const jVector<MaterialState>& states);

    bool operator==(const MaterialState& other) const = default;
};
