#pragma once

#include "file_contents.h"
#include "memory_serializers.h"

#include <xum/files/file_serializer.h>
#include <xum/geometry/bsp_mesh.h>

#include <memory>
#include <string>

// The ways to read a mesh. The library knows where a file ends, but not where a host's data do.

inline std::unique_ptr<BSPMesh> readFromFile(const std::string& bytes)
{
    writeFileContents("mesh.bsp", bytes);
    FileDeserializer in("mesh.bsp");
    return std::unique_ptr<BSPMesh>(BSPMesh::deserialize(in));
}

inline std::unique_ptr<BSPMesh>
readFromMemory(const std::string& bytes, MemoryDeserializer::AtEnd atEnd = MemoryDeserializer::AtEnd::givesTheRest)
{
    MemoryDeserializer in(bytes, atEnd);
    return std::unique_ptr<BSPMesh>(BSPMesh::deserialize(in));
}

inline std::string bytesOfMesh(const BSPMesh& mesh)
{
    MemorySerializer out;
    return mesh.serialize(out) ? out.bytes : "failed";
}
