#pragma once

#include "jString.h"

#include <map>

class AppData;

// The material editor module's exported class.
//
// The static operations below work on material files by path without a
// window: other tools and material-tool call them. They are defined in the
// material layer (src/data/MaterialEditorOperations.cpp), so a program that
// uses only them links without Qt. The window half of the class (frame,
// input and message entry points) is added with the editor in a section of
// its own below; it must keep this header free of Qt includes (forward
// declarations and a pointer to its implementation), so that the material
// layer can keep compiling the static half from the same declaration.
//
// Paths are root-relative (see docs/data-root.md). Every operation returns
// false on failure; the document operations log why. Nothing throws.
class MaterialEditor {
public:
    // ---- Headless operations (material layer) ----
    //
    // All but the two Instantiate overloads reset the process-wide document
    // (AppData::get(), AppData::init) and leave it loaded with the file.

    // Reset, load, create the render states, save to the same path.
    static bool Compile(const jString& path);
    // Saves the process-wide document as it stands; no reset, no load.
    static bool Save(const jString& path);
    // Loads source and saves it as destination, with the "use file name as
    // material name" flag set to useFileName. False without touching the
    // document when either path is empty.
    static bool Duplicate(const jString& sourcePath, const jString& destinationPath, bool useFileName);
    // Writes destination as an instance of parent. Works on a private
    // document that is destroyed on every way out, so the process-wide one
    // (an open editor's) stays as it was.
    static bool Instantiate(const jString& parentPath, const jString& destinationPath);
    // The same, applying SetTexturePathByTag to the instance before it is
    // saved for every entry of textures, in map order:
    //   KEY   = the tag: the name a texture node was given in the editor,
    //   VALUE = the root-relative texture path to store.
    // A tag that no texture node carries changes nothing.
    static bool Instantiate(const jString& parentPath, const jString& destinationPath,
        const std::map<jString, jString>& textures);
    // Loads path and turns the process-wide document into an unsaved
    // instance of it (parent path = path, no path of its own). Writes nothing.
    static bool MakeInstance(const jString& path);
    // Reset, load, create states, set tessellation, save to the same path.
    static bool SetTessellate(const jString& path, bool tessellate);
    // Reset, load, create states; every editable state named name gets value
    // (kept to 8 bits: 300 stores 44); save to the same path. A name no state
    // has still saves and returns save's result.
    static bool SetStateValueByName(const jString& path, const jString& name, int value);
    // Sets the path of the first texture variable whose node is named tag
    // exactly, looking at 2D textures first, then cube, then 3D ones (nodes
    // in document order). Only one variable changes. Saves nothing. False
    // when no variable matched (or document is null).
    static bool SetTexturePathByTag(AppData* document, const jString& tag, const jString& path);
    // True for an editor document (a "blueprint" package) and for a material
    // whose "materials"/"material" holds a "parent" item; false otherwise and
    // when the file cannot be read.
    static bool IsMaterialCanBeEdit(const jString& path);

    // ---- Editor window (Editor-Material layer) ----
    // Comes with the editor.
};
