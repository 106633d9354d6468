#include <xum/render/debug_shapes.h>
#include <xum/render/font.h>
#include <xum/render/image.h>
#include <xum/render/image_font.h>
#include <xum/render/light.h>
#include <xum/render/program.h>
#include <xum/render/render_device.h>
#include <xum/render/render_target.h>
#include <xum/render/shader.h>
#include <xum/render/texture.h>
#include <xum/render/vertex_buffer.h>

#include "slots.h"

#include <gtest/gtest.h>

#include <type_traits>

// Hosts call these interfaces by the place of an operation in the table.

namespace {

template <class Value>
long uniformSlot()
{
    return slotOf<RenderDevice& (RenderDevice::*)(const std::string&, Value)>(&RenderDevice::setUniform);
}

template <class Values>
long attributeSlot()
{
    return slotOf<void (VertexBuffer::*)(int, const Values&)>(&VertexBuffer::setAttribute);
}

template <class Values>
long attributeFromSlot()
{
    return slotOf<void (VertexBuffer::*)(int, const Values&)>(&VertexBuffer::setAttributeFrom);
}

} // namespace

TEST(InterfaceSlots, ofRenderDeviceKeepTheirOrder)
{
    // The destructor is slot 0 and takes two places.
    EXPECT_EQ(slotOf(&RenderDevice::makeCurrent), 1 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::createRenderTarget), 2 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::destroyRenderTarget), 3 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::loadShader), 4 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::createShader), 5 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::destroyShader), 6 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::createProgram), 7 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::destroyProgram), 8 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::createTexture), 9 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::destroyTexture), 10 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::createVertexBuffer), 11 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::destroyVertexBuffer), 12 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::setViewport), 13 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::setScissor), 14 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::clear), 15 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::enable), 16 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::disable), 17 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::bindRenderTarget), 18 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::useProgram), 19 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::bindTexture), 20 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::setDepthFunction), 21 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::setCullMode), 22 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::setBlendMode), 23 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::setStencilFunction), 24 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::setStencilOperation), 25 + 1);
    EXPECT_EQ(uniformSlot<const Matrix4<float>&>(), 26 + 1);
    EXPECT_EQ(uniformSlot<const Matrix3<float>&>(), 27 + 1);
    EXPECT_EQ(uniformSlot<const Vector4<float>&>(), 28 + 1);
    EXPECT_EQ(uniformSlot<const Vector3<float>&>(), 29 + 1);
    EXPECT_EQ(uniformSlot<const Vector2<float>&>(), 30 + 1);
    EXPECT_EQ(uniformSlot<float>(), 31 + 1);
    EXPECT_EQ(uniformSlot<int>(), 32 + 1);
    EXPECT_EQ(slotOf(&RenderDevice::swap), 33 + 1);
    EXPECT_EQ(placesOf<RenderDevice>(), 34 + 1);
    static_assert(std::has_virtual_destructor_v<RenderDevice>);
}

TEST(InterfaceSlots, ofVertexBufferKeepTheirOrder)
{
    EXPECT_EQ(attributeSlot<std::vector<Vector4<float>>>(), 0);
    EXPECT_EQ(attributeSlot<std::vector<Vector3<float>>>(), 1);
    EXPECT_EQ(attributeSlot<std::vector<Vector2<float>>>(), 2);
    EXPECT_EQ(attributeFromSlot<std::list<Vector4<float>>>(), 3);
    EXPECT_EQ(attributeFromSlot<std::list<Vector3<float>>>(), 4);
    EXPECT_EQ(attributeFromSlot<std::list<Vector2<float>>>(), 5);
    EXPECT_EQ(slotOf(&VertexBuffer::setIndices), 6);
    EXPECT_EQ(slotOf(&VertexBuffer::drawLines), 7);
    EXPECT_EQ(slotOf(&VertexBuffer::drawTriangles), 8);
    EXPECT_EQ(slotOf(&VertexBuffer::drawTriangleFan), 9);
    EXPECT_EQ(placesOf<VertexBuffer>(), 10);
}

TEST(InterfaceSlots, ofTextureKeepTheirOrder)
{
    EXPECT_EQ(slotOf(&Texture::getHandle), 0);
    EXPECT_EQ(slotOf(&Texture::getFormat), 1);
    EXPECT_EQ(slotOf(&Texture::getWidth), 2);
    EXPECT_EQ(slotOf(&Texture::getHeight), 3);
    EXPECT_EQ(slotOf(&Texture::setFilter), 4);
    EXPECT_EQ(slotOf(&Texture::setClamp), 5);
    EXPECT_EQ(slotOf(&Texture::update), 6);
    EXPECT_EQ(slotOf(&Texture::toImage), 7);
    static_assert(std::has_virtual_destructor_v<Texture>); // behind the others
    EXPECT_EQ(placesOf<Texture>(), 8 + 2);
}

TEST(InterfaceSlots, ofShaderAndProgramKeepTheirOrder)
{
    EXPECT_EQ(slotOf(&Shader::getType), 0);
    EXPECT_EQ(slotOf(&Program::getAttributes), 0);
    EXPECT_EQ(slotOf(&Program::getOutputs), 1);
    static_assert(std::has_virtual_destructor_v<Shader> && std::has_virtual_destructor_v<Program>);
    EXPECT_EQ(placesOf<Shader>(), 1 + 2);
    EXPECT_EQ(placesOf<Program>(), 2 + 2);
}

TEST(InterfaceSlots, ofRenderTargetKeepTheirOrder)
{
    EXPECT_EQ(slotOf(&RenderTarget::setColorWrite), 0);
    EXPECT_EQ(slotOf(&RenderTarget::getTexture), 1);
    EXPECT_EQ(slotOf(&RenderTarget::getDepthTexture), 2);
    EXPECT_EQ(slotOf(&RenderTarget::blit), 3);
    EXPECT_EQ(placesOf<RenderTarget>(), 4);
}

TEST(InterfaceSlots, ofFontKeepTheirOrder)
{
    EXPECT_EQ(slotOf(&Font::measure), 0);
    EXPECT_EQ(slotOf(&Font::render), 1);
    EXPECT_EQ(placesOf<Font>(), 2);
    static_assert(!std::is_destructible_v<Font> && !std::has_virtual_destructor_v<Font>);
}

TEST(InterfaceSlots, ofImageFontHaveOnlyTheDestructor)
{
    static_assert(std::has_virtual_destructor_v<ImageFont> && !std::is_abstract_v<ImageFont>);
    EXPECT_EQ(placesOf<ImageFont>(), 1 + 1);
}

TEST(InterfaceSlots, ofImageHaveOnlyTheDestructor)
{
    static_assert(std::has_virtual_destructor_v<Image> && !std::is_abstract_v<Image>);
    EXPECT_EQ(placesOf<Image>(), 1 + 1);
}

TEST(InterfaceSlots, ofLightsKeepTheirOrder)
{
    static_assert(std::has_virtual_destructor_v<Light>);
    EXPECT_EQ(slotOf(&Light::draw), 1 + 1);
    EXPECT_EQ(placesOf<Light>(), 2 + 1);
    EXPECT_EQ(slotOf(&SpotLight::calculateMatrix), 2 + 1);
    EXPECT_EQ(slotOf(&SpotLight::calculateShadowMatrix), 3 + 1);
    EXPECT_EQ(slotOf(&SpotLight::generateShadowMap), 4 + 1);
    EXPECT_EQ(placesOf<SpotLight>(), 5 + 1);
}

TEST(InterfaceSlots, ofDebugShapesKeepTheirOrder)
{
    static_assert(std::has_virtual_destructor_v<DebugObject>);
    EXPECT_EQ(slotOf(&DebugObject::draw), 1 + 1);
    EXPECT_EQ(placesOf<DebugObject>(), 2 + 1);
    EXPECT_EQ(placesOf<DebugLine>(), 2 + 1);
    EXPECT_EQ(placesOf<DebugBox>(), 2 + 1);
    EXPECT_EQ(placesOf<DebugSphere>(), 2 + 1);
}

TEST(Interfaces, thatOnlyTheDeviceDeletesHaveNoPublicDestructor)
{
    static_assert(!std::is_destructible_v<VertexBuffer> && !std::has_virtual_destructor_v<VertexBuffer>);
    static_assert(!std::is_destructible_v<RenderTarget> && !std::has_virtual_destructor_v<RenderTarget>);
}
