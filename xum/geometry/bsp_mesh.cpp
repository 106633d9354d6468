#include <xum/geometry/bsp_mesh.h>

#include <xum/files/serializer.h>
#include <xum/geometry/bsp_reader.h>
#include <xum/geometry/bsp_writer.h>

#include <new>

BSPMesh::BSPMesh(const Vector3<float>& origin, BSP* bsp) : origin(origin), bsp(bsp) {}

BSPMesh::~BSPMesh() = default;

BSPMesh* BSPMesh::clone() const
{
    try {
        auto copy = bsp ? std::make_unique<BSP>(*bsp) : nullptr;
        auto mesh = std::make_unique<BSPMesh>(origin, nullptr);
        mesh->bsp = std::move(copy);
        return mesh.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool BSPMesh::serialize(Serializer& out) const
{
    try {
        BSPWriter(out).write(origin, bsp ? bsp->getRoot() : nullptr);
        return !out.failed();
    } catch (const std::bad_alloc&) {
        return false;
    }
}

BSPMesh* BSPMesh::deserialize(Deserializer& in)
{
    try {
        Vector3<float> origin;
        std::unique_ptr<BSP> bsp = BSPReader(in).read(origin);
        if (!bsp || in.failed()) return nullptr;
        auto mesh = std::make_unique<BSPMesh>(origin, nullptr);
        mesh->bsp = std::move(bsp);
        return mesh.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
