#include <xum/render/program.h>
#include <xum/render/render_device.h>
#include <xum/render/render_target.h>
#include <xum/render/shader.h>
#include <xum/render/texture.h>
#include <xum/render/vertex_buffer.h>

#include "slots.h"

#include <gtest/gtest.h>

// Hosts are compiled against the order of these operations.

namespace {

template <class Value>
using Setter = RenderDevice& (RenderDevice::*)(const std::string&, Value);

template <class Values>
using AttributeSetter = void (VertexBuffer::*)(int, const Values&);

} // namespace

TEST(RenderInterfaceSlots, renderDevice)
{
    // The destructor comes first; it takes places 0 and 1.
    int place = 2;
    EXPECT_EQ(slotOf(&RenderDevice::makeCurrent), place++);
    EXPECT_EQ(slotOf(&RenderDevice::createRenderTarget), place++);
    EXPECT_EQ(slotOf(&RenderDevice::destroyRenderTarget), place++);
    EXPECT_EQ(slotOf(&RenderDevice::loadShader), place++);
    EXPECT_EQ(slotOf(&RenderDevice::createShader), place++);
    EXPECT_EQ(slotOf(&RenderDevice::destroyShader), place++);
    EXPECT_EQ(slotOf(&RenderDevice::createProgram), place++);
    EXPECT_EQ(slotOf(&RenderDevice::destroyProgram), place++);
    EXPECT_EQ(slotOf(&RenderDevice::createTexture), place++);
    EXPECT_EQ(slotOf(&RenderDevice::destroyTexture), place++);
    EXPECT_EQ(slotOf(&RenderDevice::createVertexBuffer), place++);
    EXPECT_EQ(slotOf(&RenderDevice::destroyVertexBuffer), place++);
    EXPECT_EQ(slotOf(&RenderDevice::setViewport), place++);
    EXPECT_EQ(slotOf(&RenderDevice::setScissor), place++);
    EXPECT_EQ(slotOf(&RenderDevice::clear), place++);
    EXPECT_EQ(slotOf(&RenderDevice::enable), place++);
    EXPECT_EQ(slotOf(&RenderDevice::disable), place++);
    EXPECT_EQ(slotOf(&RenderDevice::bindRenderTarget), place++);
    EXPECT_EQ(slotOf(&RenderDevice::useProgram), place++);
    EXPECT_EQ(slotOf(&RenderDevice::bindTexture), place++);
    EXPECT_EQ(slotOf(&RenderDevice::setDepthFunction), place++);
    EXPECT_EQ(slotOf(&RenderDevice::setCullMode), place++);
    EXPECT_EQ(slotOf(&RenderDevice::setBlendMode), place++);
    EXPECT_EQ(slotOf(&RenderDevice::setStencilFunction), place++);
    EXPECT_EQ(slotOf(&RenderDevice::setStencilOperation), place++);
    EXPECT_EQ(slotOf<Setter<const Matrix4<float>&>>(&RenderDevice::setUniform), place++);
    EXPECT_EQ(slotOf<Setter<const Matrix3<float>&>>(&RenderDevice::setUniform), place++);
    EXPECT_EQ(slotOf<Setter<const Vector4<float>&>>(&RenderDevice::setUniform), place++);
    EXPECT_EQ(slotOf<Setter<const Vector3<float>&>>(&RenderDevice::setUniform), place++);
    EXPECT_EQ(slotOf<Setter<const Vector2<float>&>>(&RenderDevice::setUniform), place++);
    EXPECT_EQ(slotOf<Setter<float>>(&RenderDevice::setUniform), place++);
    EXPECT_EQ(slotOf<Setter<int>>(&RenderDevice::setUniform), place++);
    EXPECT_EQ(slotOf(&RenderDevice::swap), place++);
    EXPECT_EQ(place, 35);
}

TEST(RenderInterfaceSlots, vertexBuffer)
{
    int place = 0;
    EXPECT_EQ(slotOf<AttributeSetter<std::vector<Vector4<float>>>>(&VertexBuffer::setAttribute), place++);
    EXPECT_EQ(slotOf<AttributeSetter<std::vector<Vector3<float>>>>(&VertexBuffer::setAttribute), place++);
    EXPECT_EQ(slotOf<AttributeSetter<std::vector<Vector2<float>>>>(&VertexBuffer::setAttribute), place++);
    EXPECT_EQ(slotOf<AttributeSetter<std::list<Vector4<float>>>>(&VertexBuffer::setAttributeFrom), place++);
    EXPECT_EQ(slotOf<AttributeSetter<std::list<Vector3<float>>>>(&VertexBuffer::setAttributeFrom), place++);
    EXPECT_EQ(slotOf<AttributeSetter<std::list<Vector2<float>>>>(&VertexBuffer::setAttributeFrom), place++);
    EXPECT_EQ(slotOf(&VertexBuffer::setIndices), place++);
    EXPECT_EQ(slotOf(&VertexBuffer::drawLines), place++);
    EXPECT_EQ(slotOf(&VertexBuffer::drawTriangles), place++);
    EXPECT_EQ(slotOf(&VertexBuffer::drawTriangleFan), place++);
    EXPECT_FALSE(std::has_virtual_destructor_v<VertexBuffer>);
    EXPECT_FALSE(std::is_destructible_v<VertexBuffer>) << "only the device deletes one";
}

TEST(RenderInterfaceSlots, texture)
{
    int place = 0;
    EXPECT_EQ(slotOf(&Texture::getHandle), place++);
    EXPECT_EQ(slotOf(&Texture::getFormat), place++);
    EXPECT_EQ(slotOf(&Texture::getWidth), place++);
    EXPECT_EQ(slotOf(&Texture::getHeight), place++);
    EXPECT_EQ(slotOf(&Texture::setFilter), place++);
    EXPECT_EQ(slotOf(&Texture::setClamp), place++);
    EXPECT_EQ(slotOf(&Texture::update), place++);
    EXPECT_EQ(slotOf(&Texture::toImage), place++);
    EXPECT_TRUE(std::has_virtual_destructor_v<Texture>);
}

TEST(RenderInterfaceSlots, shader)
{
    EXPECT_EQ(slotOf(&Shader::getType), 0);
    EXPECT_TRUE(std::has_virtual_destructor_v<Shader>);
}

TEST(RenderInterfaceSlots, program)
{
    EXPECT_EQ(slotOf(&Program::getAttributes), 0);
    EXPECT_EQ(slotOf(&Program::getOutputs), 1);
    EXPECT_TRUE(std::has_virtual_destructor_v<Program>);
}

TEST(RenderInterfaceSlots, renderTarget)
{
    EXPECT_EQ(slotOf(&RenderTarget::setColorWrite), 0);
    EXPECT_EQ(slotOf(&RenderTarget::getTexture), 1);
    EXPECT_EQ(slotOf(&RenderTarget::getDepthTexture), 2);
    EXPECT_EQ(slotOf(&RenderTarget::blit), 3);
    EXPECT_FALSE(std::has_virtual_destructor_v<RenderTarget>);
    EXPECT_FALSE(std::is_destructible_v<RenderTarget>) << "only the device deletes one";
}

TEST(RenderEnumerations, haveTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(ShaderType::Vertex), 0);
    EXPECT_EQ(static_cast<int>(ShaderType::Geometry), 1);
    EXPECT_EQ(static_cast<int>(ShaderType::Fragment), 2);
    EXPECT_EQ(static_cast<int>(ShaderType::Compute), 3);
    EXPECT_EQ(int{TextureFormat::UnsignedByte}, 0);
    EXPECT_EQ(int{TextureFormat::HalfFloat}, 1);
    EXPECT_EQ(int{TextureFormat::Float}, 2);
    EXPECT_EQ(int{TextureFormat::Depth}, 3);
    EXPECT_EQ(int{TextureFormat::DepthStencil}, 4);
    EXPECT_EQ(int{TextureFilter::Nearest}, 0);
    EXPECT_EQ(int{TextureFilter::Linear}, 1);
    EXPECT_EQ(int{TextureFilter::Anisotropic}, 2);
    EXPECT_EQ(static_cast<int>(RenderFeature::ColorWrite), 0);
    EXPECT_EQ(static_cast<int>(RenderFeature::DepthWrite), 1);
    EXPECT_EQ(static_cast<int>(RenderFeature::DepthTest), 2);
    EXPECT_EQ(static_cast<int>(RenderFeature::StencilWrite), 3);
    EXPECT_EQ(static_cast<int>(RenderFeature::StencilTest), 4);
    EXPECT_EQ(static_cast<int>(RenderFeature::ScissorTest), 5);
    EXPECT_EQ(static_cast<int>(RenderFeature::ClipPlane), 6);
    EXPECT_EQ(static_cast<int>(DepthFunction::Less), 0);
    EXPECT_EQ(static_cast<int>(DepthFunction::Equal), 1);
    EXPECT_EQ(static_cast<int>(CullMode::None), 0);
    EXPECT_EQ(static_cast<int>(CullMode::Back), 1);
    EXPECT_EQ(static_cast<int>(CullMode::Front), 2);
    EXPECT_EQ(static_cast<int>(BlendMode::None), 0);
    EXPECT_EQ(static_cast<int>(BlendMode::Alpha), 1);
    EXPECT_EQ(static_cast<int>(BlendMode::Additive), 2);
    EXPECT_EQ(static_cast<int>(TargetBinding::Draw), 0);
    EXPECT_EQ(static_cast<int>(TargetBinding::Read), 1);
    EXPECT_EQ(static_cast<int>(TargetBinding::Both), 2);
    EXPECT_EQ(int{VertexAttribute::Position}, 0);
    EXPECT_EQ(int{VertexAttribute::TextureCoordinate}, 1);
    EXPECT_EQ(int{VertexAttribute::Normal}, 2);
}

TEST(RenderEnumerations, are32BitsWide)
{
    EXPECT_EQ(sizeof(ShaderType), 4u);
    EXPECT_EQ(sizeof(RenderFeature), 4u);
    EXPECT_EQ(sizeof(TextureFilter::Type), 4u);
    EXPECT_EQ(sizeof(TextureFormat), 8u);
    EXPECT_EQ(TextureFormat().type, int{TextureFormat::UnsignedByte});
    EXPECT_EQ(TextureFormat().channels, 4);
}

TEST(RenderEnumerations, stencilOnesHaveTheirNumbers)
{
    const CompareFunction functions[] = {
        CompareFunction::Never, CompareFunction::Always,    CompareFunction::Equal,   CompareFunction::NotEqual,
        CompareFunction::Less,  CompareFunction::LessEqual, CompareFunction::Greater, CompareFunction::GreaterEqual};
    const StencilOperation operations[] = {StencilOperation::Keep,          StencilOperation::Zero,
                                           StencilOperation::Replace,       StencilOperation::Increment,
                                           StencilOperation::IncrementWrap, StencilOperation::Decrement,
                                           StencilOperation::DecrementWrap, StencilOperation::Invert};
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(static_cast<int>(functions[i]), i);
        EXPECT_EQ(static_cast<int>(operations[i]), i);
    }
}
