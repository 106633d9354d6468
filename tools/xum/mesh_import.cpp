#include "mesh_import.h"

#include "mesh_model.h"
#include "printable_text.h"
#include "replacement_file.h"
#include "report.h"

#include <xum/files/file.h>
#include <xum/geometry/mesh.h>
#include <xum/geometry/mesh_file_format.h>

#include <cctype>
#include <cmath>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <limits>
#include <memory>
#include <new>
#include <system_error>

namespace fs = std::filesystem;

// ---- mesh files ---------------------------------------------------------------------------------------------------

namespace {

template <class Value>
bool writeValues(ReplacementFile& out, const std::vector<Value>& values)
{
    return values.empty() || out.write(values.data(), values.size() * sizeof(Value)); // fwrite takes no null
}

bool writeMesh(const Mesh& mesh, const std::string& place)
{
    ReplacementFile out(behindLinks(place));
    MeshFileHeader header;
    header.positions = static_cast<std::int32_t>(mesh.getPositions().size());
    header.textureCoordinates = static_cast<std::int32_t>(mesh.getTextureCoordinates().size());
    header.indexes = static_cast<std::int32_t>(mesh.getIndexes().size());
    if (out.write(&header, sizeof header) && writeValues(out, mesh.getPositions()) &&
        writeValues(out, mesh.getTextureCoordinates()) && writeValues(out, mesh.getIndexes()) && out.finish())
        return true;
    report(printable(place) + ": " + out.getProblem());
    return false;
}

} // namespace

bool writeSphere(int subdivisions, float radius, const std::string& mesh)
{
    const std::unique_ptr<Mesh> sphere(createSphereMesh(subdivisions, radius));
    if (sphere != nullptr) return writeMesh(*sphere, mesh);
    report(printable(mesh) + ": cannot be made: out of memory");
    return false;
}

// ---- models -------------------------------------------------------------------------------------------------------

namespace {

std::string readModelFile(const fs::path& path)
{
    std::error_code failure;
    const fs::file_status status = fs::status(path, failure);
    if (!fs::exists(status)) throw ModelProblem("cannot be opened: " + failure.message());
    if (!fs::is_regular_file(status)) throw ModelProblem("is no file");
    InputFile file(path.native());
    if (!file.isOpen()) throw ModelProblem("cannot be opened");
    const std::uint64_t size = file.getSize();
    if (size > std::numeric_limits<unsigned>::max()) throw ModelProblem("is too large (4 GiB or more)");
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (!file.read(bytes.data(), static_cast<unsigned>(size))) throw ModelProblem("cannot be read");
    return bytes;
}

std::string extensionOf(const fs::path& path)
{
    std::string extension = path.extension().string();
    for (char& character : extension)
        character = static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
    return extension;
}

void readModel(const fs::path& path, Model& out)
{
    const std::string extension = extensionOf(path);
    if (extension == ".obj")
        readObjModel(readModelFile(path), out);
    else if (extension == ".gltf" || extension == ".glb")
        readGltfModel(readModelFile(path), path.parent_path().string(), out);
    else
        throw ModelProblem("has none of the extensions .obj, .gltf and .glb");
}

bool isFinite(const Vector3<float>& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

void place(Model& model, const MeshImport& order)
{
    for (Vector3<float>& position : model.getPositions()) {
        if (order.isYUp) position = {position.x, 0.0f - position.z, position.y}; // a plain minus makes -0 of 0
        position *= order.scale;
        if (!isFinite(position)) throw ModelProblem("has a position that is not finite");
    }
}

Mesh makeMesh(const Model& model, bool hasTextureCoordinates)
{
    for (const Vector2<float>& coordinate : model.getTextureCoordinates())
        if (hasTextureCoordinates && !(std::isfinite(coordinate.x) && std::isfinite(coordinate.y)))
            throw ModelProblem("has a texture coordinate that is not finite");
    return {model.getPositions(), hasTextureCoordinates ? model.getTextureCoordinates() : std::vector<Vector2<float>>(),
            model.getIndexes()};
}

void noteMissingCoordinates(Model& model)
{
    const std::size_t missing = model.getPositions().size() - model.countTextureCoordinates();
    if (missing != 0 && model.countTextureCoordinates() != 0)
        model.note("vertices without a texture coordinate get 0 0: " + std::to_string(missing));
}

} // namespace

bool importMesh(const MeshImport& order)
{
    const std::string name = printable(order.model);
    try {
        Model model;
        readModel(order.model, model);
        if (order.hasTextureCoordinates) noteMissingCoordinates(model);
        for (const std::string& note : model.getNotes()) report(name + ": note: " + note);
        if (model.getIndexes().empty()) throw ModelProblem("has no triangles");
        place(model, order);
        const bool hasTextureCoordinates = order.hasTextureCoordinates && model.countTextureCoordinates() != 0;
        const Mesh mesh = makeMesh(model, hasTextureCoordinates);
        return writeMesh(mesh, order.mesh);
    } catch (const ModelProblem& problem) {
        report(name + ": " + problem.what());
    } catch (const std::bad_alloc&) {
        report(name + ": cannot be read: out of memory");
    } catch (const std::exception& failure) { // of a loader that did not expect such a file
        report(name + ": cannot be read: " + printable(failure.what()));
    }
    return false;
}
