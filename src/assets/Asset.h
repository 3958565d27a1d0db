#pragma once

#include "jString.h"

#include <QPixmap>

#include <memory>
#include <utility>

// One entry of the asset strip: a file or folder under the data root, known
// by its root-relative path. The kind follows from the extension (see
// kindOfFile); subclasses add what their kind shows or carries.
class Asset {
public:
    enum class Kind { Folder, Material, Image, Mesh, Prefab, Script, World, Unknown };

    Asset(jString path, Kind kind);
    virtual ~Asset();
    Asset(const Asset&) = delete;
    Asset& operator=(const Asset&) = delete;

    // Root-relative, '/'-separated, without a trailing '/'.
    const jString& getPath() const { return m_path; }
    // The last part of the path, as listed.
    const jString& getName() const { return m_name; }
    Kind getKind() const { return m_kind; }
    bool isFolder() const { return m_kind == Kind::Folder; }

    // What the strip draws for the item.
    virtual QPixmap getIcon() const;
    virtual jString getToolTip() const;

    // The item for a path: a folder, or a file of the kind its extension names.
    static std::unique_ptr<Asset> create(const jString& path, bool isFolder);
    // The kind of a file by its extension, ignoring case.
    static Kind kindOfFile(const jString& path);
    static const char* kindName(Kind kind);

private:
    jString m_path;
    jString m_name;
    Kind m_kind;
};
