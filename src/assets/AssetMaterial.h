#pragma once

#include "Asset.h"

// A material file (.mat). Its surface id (the name the engine knows it by)
// and its instance flag come from the top of the file, read the first time
// either is asked for, so listing a folder of materials reads nothing.
// The icon of an instance carries the instance badge.
class AssetMaterial : public Asset {
public:
    explicit AssetMaterial(jString path);

    // The file's "name" item when it has one, else the path without ".mat".
    const jString& getSurfaceID() const;
    void setSurfaceID(const jString& id);
    // True for an instance: the file names a parent material.
    bool isEnableInstance() const;
    void setEnableInstance(bool instance);
    // The parent material of an instance; empty otherwise.
    const jString& getParentPath() const;

    QPixmap getIcon() const override;
    jString getToolTip() const override;

private:
    void read_header() const;

    mutable bool m_headerRead = false;
    mutable jString m_surfaceID;
    mutable jString m_parentPath;
    mutable bool m_instance = false;
};
