#pragma once

#include <xum/engine/export.h>
#include <xum/geometry/base_list.h>
#include <xum/geometry/bsp.h>

#include <memory>

class Deserializer;
class Serializer;

/// A BSP tree at a place in the world.
class XUM_API BSPMesh : public BaseListNode<BSPMesh> {
public:
    /// In no list. Takes ownership of the tree.
    BSPMesh(const Vector3<float>& origin, BSP* bsp);
    ~BSPMesh() override;

    BSPMesh(const BSPMesh&) = delete;
    BSPMesh& operator=(const BSPMesh&) = delete;

    /// Where the tree's own origin lies in the world: its planes count from there.
    /// @{
    const Vector3<float>& getOrigin() const { return origin; }
    void setOrigin(const Vector3<float>& newOrigin) { origin = newOrigin; }
    /// @}

    /// Null if it was made without.
    BSP* getBSP() const { return bsp.get(); }

    /// A new mesh in no list, owned by the caller, with a copy of everything. Null when memory runs out.
    BSPMesh* clone() const;

    /// Writes origin, brushes and tree; docs/file_formats.md has the bytes. A brush that several leaves share is
    /// written once. False when the serializer has failed.
    bool serialize(Serializer& out) const;

    /// A new mesh in no list, owned by the caller; its brushes and polygons belong to its tree. Null when the
    /// deserializer has failed, when the data cannot be a mesh, and when memory runs out. Where a file ends inside the
    /// tree, or is not there at all, the missing nodes are empty leaves: its end is no failure, see Deserializer. A
    /// host's own deserializer must be compiled with run-time type information.
    static BSPMesh* deserialize(Deserializer& in);

private:
    Vector3<float> origin;
    std::unique_ptr<BSP> bsp;
};
