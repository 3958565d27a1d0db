#pragma once

#include "MaterialState.h"

#include <string_view>

class Package;

// Reads the "state" packages of material files into MaterialState records,
// for the engine's material loader and the editor's document alike:
//
//   state { name Lights; type switch; text 1; items "Off,On"; defines ",LIGHTS" }
//
// The comma lists "items" and "defines" keep their empty entries: a
// position in the list is a value, so ",LIGHTS" selects no define for 0 and
// LIGHTS for 1 (docs/render-states.md).
class MaterialStateReader {
public:
    // routine names the reader in messages.
    explicit MaterialStateReader(const char* routine) : m_routine(routine) {}

    // Reads a declaration (a template's state, or a state a file adds).
    // False when the package is skipped: silently for an empty name; with
    // "<routine>: unknown state type "T" in "NAME" material" or
    // "<routine>: state no value in "NAME" material" logged otherwise. A
    // declaration without "type" is a toggle.
    bool readDeclaration(const Package& package, MaterialState& state) const;

    // Splits a "defines" or "items" list at commas, keeping empty entries:
    // ",A" gives {"", "A"}, "A," gives {"A", ""}; an empty text gives an
    // empty list.
    static jVector<jString> splitList(std::string_view text);

private:
    static void readItemsAndDefines(const Package& package, MaterialState& state);

    const char* m_routine;
};
