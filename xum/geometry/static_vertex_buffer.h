#pragma once

#include <xum/render/owned_vertex_buffer.h>
#include <xum/render/vertex_buffer.h>

#include <new>
#include <vector>

/// A new static buffer of what `fill` puts into it. Null for no device, from a device that makes none, and when memory
/// runs out.
template <class Fill>
VertexBuffer* makeStaticVertexBuffer(RenderDevice* device, Fill fill)
{
    try {
        OwnedVertexBuffer buffer = makeVertexBuffer(device, false);
        if (buffer) fill(*buffer);
        return buffer.release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// An attribute without values would be read where there are none.
template <class Value>
void setAttributeIfAny(VertexBuffer& buffer, int location, const std::vector<Value>& values)
{
    if (!values.empty()) buffer.setAttribute(location, values);
}
