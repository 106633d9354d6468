#pragma once

#include <xum/render/render_device.h>

#include <memory>

/// A vertex buffer that goes back to its device in time.
struct DestroyVertexBuffer {
    RenderDevice* device;
    void operator()(VertexBuffer* buffer) const { device->destroyVertexBuffer(buffer); }
};

using OwnedVertexBuffer = std::unique_ptr<VertexBuffer, DestroyVertexBuffer>;

/// Null for no device and from a device that makes none.
inline OwnedVertexBuffer makeVertexBuffer(RenderDevice* device, bool dynamic)
{
    return {device == nullptr ? nullptr : device->createVertexBuffer(dynamic), {device}};
}
