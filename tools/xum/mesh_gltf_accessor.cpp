#include "mesh_gltf_accessor.h"

#include "mesh_model.h"

#include <tiny_gltf.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

constexpr std::size_t mostMissingElements = 1 << 24; // all zero, so that a small file says what it likes

template <class Number>
double readAs(const unsigned char* bytes)
{
    Number value;
    std::memcpy(&value, bytes, sizeof value);
    return static_cast<double>(value);
}

/// Integers that are said to be normalized stand for 0 to 1 or -1 to 1.
double readComponent(const unsigned char* bytes, int type, bool isNormalized)
{
    const auto signedOne = [isNormalized](double value, double one) {
        return isNormalized ? std::max(value / one, -1.0) : value;
    };
    switch (type) {
    case TINYGLTF_COMPONENT_TYPE_BYTE: return signedOne(readAs<std::int8_t>(bytes), 127);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE: return signedOne(readAs<std::uint8_t>(bytes), 255);
    case TINYGLTF_COMPONENT_TYPE_SHORT: return signedOne(readAs<std::int16_t>(bytes), 32767);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT: return signedOne(readAs<std::uint16_t>(bytes), 65535);
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT: return signedOne(readAs<std::uint32_t>(bytes), 4294967295);
    default: return readAs<float>(bytes);
    }
}

/// 0 for a type that glTF does not have.
std::size_t sizeOfComponent(int type)
{
    switch (type) {
    case TINYGLTF_COMPONENT_TYPE_BYTE:
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_BYTE: return 1;
    case TINYGLTF_COMPONENT_TYPE_SHORT:
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT: return 2;
    case TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT:
    case TINYGLTF_COMPONENT_TYPE_FLOAT: return 4;
    default: return 0;
    }
}

class AccessorReader {
public:
    explicit AccessorReader(const tinygltf::Model& source) : source(source) {}

    std::vector<double> read(int number, int type, const std::string& user) const
    {
        const std::string name = user + ": accessor " + std::to_string(number);
        if (static_cast<std::size_t>(number) >= source.accessors.size()) throw ModelProblem(name, "is not there");
        const tinygltf::Accessor& accessor = source.accessors[static_cast<std::size_t>(number)];
        const std::size_t componentSize = sizeOfComponent(accessor.componentType);
        const bool isIndex = type == TINYGLTF_TYPE_SCALAR;
        if (accessor.type != type || componentSize == 0 ||
            (isIndex && accessor.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT))
            throw ModelProblem(name, "has a type that does not fit");
        const std::size_t components = isIndex ? 1 : static_cast<std::size_t>(type);

        std::vector<double> values;
        if (accessor.bufferView >= 0) {
            const Elements elements = findElements(accessor.bufferView, accessor.byteOffset, componentSize * components,
                                                   accessor.count, name);
            values.resize(accessor.count * components);
            for (std::size_t i = 0; i < accessor.count; ++i)
                readElement(elements, i, accessor, components, &values[i * components]);
        } else if (accessor.count <= mostMissingElements) {
            values.resize(accessor.count * components);
        } else {
            throw ModelProblem(name, "has no data");
        }
        if (accessor.sparse.isSparse) overlay(accessor, components, name, values);
        return values;
    }

private:
    /// The place of elements in a buffer.
    struct Elements {
        const unsigned char* first;
        std::size_t stride;
    };

    static void readElement(const Elements& elements, std::size_t i, const tinygltf::Accessor& accessor,
                            std::size_t components, double* out)
    {
        const std::size_t size = sizeOfComponent(accessor.componentType);
        for (std::size_t k = 0; k < components; ++k)
            out[k] = readComponent(elements.first + i * elements.stride + k * size, accessor.componentType,
                                   accessor.normalized);
    }

    /// A sparse accessor replaces some of its elements.
    void overlay(const tinygltf::Accessor& accessor, std::size_t components, const std::string& name,
                 std::vector<double>& values) const
    {
        const auto& sparse = accessor.sparse;
        const std::size_t indexSize = sizeOfComponent(sparse.indices.componentType);
        if (sparse.count < 0 || sparse.indices.byteOffset < 0 || sparse.values.byteOffset < 0 || indexSize == 0 ||
            sparse.indices.componentType == TINYGLTF_COMPONENT_TYPE_FLOAT)
            throw ModelProblem(name, "is sparse in a way that cannot be");
        const auto count = static_cast<std::size_t>(sparse.count);
        const Elements indexes = findElements(
            sparse.indices.bufferView, static_cast<std::size_t>(sparse.indices.byteOffset), indexSize, count, name);
        const Elements elements =
            findElements(sparse.values.bufferView, static_cast<std::size_t>(sparse.values.byteOffset),
                         sizeOfComponent(accessor.componentType) * components, count, name);
        for (std::size_t i = 0; i < count; ++i) {
            const double index = readComponent(indexes.first + i * indexes.stride, sparse.indices.componentType, false);
            if (!(index >= 0 && index < static_cast<double>(accessor.count)))
                throw ModelProblem(name, "replaces an element that is not there");
            readElement(elements, i, accessor, components, &values[static_cast<std::size_t>(index) * components]);
        }
    }

    /// All of them lie in the buffer.
    Elements findElements(int viewNumber, std::size_t offset, std::size_t size, std::size_t count,
                          const std::string& name) const
    {
        if (static_cast<std::size_t>(viewNumber) >= source.bufferViews.size())
            throw ModelProblem(name, "has buffer view " + std::to_string(viewNumber) + ", which is not there");
        const tinygltf::BufferView& view = source.bufferViews[static_cast<std::size_t>(viewNumber)];
        if (static_cast<std::size_t>(view.buffer) >= source.buffers.size())
            throw ModelProblem(name, "has buffer " + std::to_string(view.buffer) + ", which is not there");
        const std::vector<unsigned char>& bytes = source.buffers[static_cast<std::size_t>(view.buffer)].data;
        const std::size_t stride = view.byteStride == 0 ? size : view.byteStride;
        const bool isViewInside = view.byteOffset <= bytes.size() && view.byteLength <= bytes.size() - view.byteOffset;
        const bool isInside =
            isViewInside && (count == 0 || (offset <= view.byteLength && size <= view.byteLength - offset &&
                                            count - 1 <= (view.byteLength - offset - size) / stride));
        if (!isInside) throw ModelProblem(name, "reaches beyond its buffer");
        return {bytes.data() + view.byteOffset + (count == 0 ? 0 : offset), stride};
    }

    const tinygltf::Model& source;
};

} // namespace

std::vector<double> readAccessor(const tinygltf::Model& model, int number, int type, const std::string& user)
{
    return AccessorReader(model).read(number, type, user);
}
