#pragma once

#include "jString.h"

#include <map>
#include <memory>

class AppData;
class MaterialEditorWindow;
class Package;
class QWidget;
class UIEventKey;
class UIRoot;
class UiMsg;

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
    //
    // The window is MaterialEditorWindow (src/ui/), a Qt widget that this
    // class owns through a pointer so that the header needs no Qt. The host
    // places getWidget() in its window (which then owns the widget: it goes
    // with the host's window, and this object lets it go) and drives the
    // frame: update(dt) and render() once per frame, the message bus
    // drained between them.

    // Builds the whole window on the host's root (toolbar, canvas, block
    // browser, parameters column with the preview, asset strip), with an
    // empty document.
    explicit MaterialEditor(UIRoot* root);
    ~MaterialEditor();
    MaterialEditor(const MaterialEditor&) = delete;
    MaterialEditor& operator=(const MaterialEditor&) = delete;

    // The window's widget (null once the host destroyed it).
    QWidget* getWidget() const;
    MaterialEditorWindow* getWindow() const { return m_window; }

    // Restores / stores the host window's position and size in the
    // sub-package "material_editor" of pkg; readLayout remembers pkg, and
    // onUnload writes it back.
    void readLayout(Package* pkg);
    void saveLayout(Package* pkg);
    // Opens a document: an absolute path inside the data root, ending in
    // ".mat". False (with a warning) for any other path.
    bool load(const jString& path);
    void clear();
    void centerGraph();
    // The full type name of the block chosen in the block browser; empty
    // when none is.
    jString getCurrentBlockType() const;
    bool isModified() const;
    bool is_window_modified() const { return isModified(); }
    bool isNeedReloadTexture() const;

    // Frame and input entry points.
    void update(float dt);
    void render();
    bool checkShortcut(const UIEventKey& key);
    void processMsg(UiMsg* msg);
    // Stores the layout into the package given to readLayout; asks nothing.
    void onUnload();
    // Frees the panes and leaves the message bus.
    void release();

private:
    friend class MaterialEditorWindow;

    MaterialEditorWindow* m_window = nullptr;
};
