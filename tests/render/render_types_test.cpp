#include <xum/render/render_types.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <initializer_list>

// The numbers are part of the interface: hosts and their data files hold them.

namespace {

template <class Enumeration>
void expectNumberedFromZero(std::initializer_list<Enumeration> values)
{
    static_assert(sizeof(Enumeration) == 4);
    int number = 0;
    for (const Enumeration value : values) EXPECT_EQ(static_cast<int>(value), number++);
}

} // namespace

TEST(RenderTypes, areNumberedInTheirOrder)
{
    expectNumberedFromZero({ShaderType::Vertex, ShaderType::Geometry, ShaderType::Fragment, ShaderType::Compute});
    expectNumberedFromZero({TextureFormat::UnsignedByte, TextureFormat::HalfFloat, TextureFormat::Float,
                            TextureFormat::Depth, TextureFormat::DepthStencil});
    expectNumberedFromZero({TextureFilter::Nearest, TextureFilter::Linear, TextureFilter::Anisotropic});
    expectNumberedFromZero({RenderFeature::ColorWrite, RenderFeature::DepthWrite, RenderFeature::DepthTest,
                            RenderFeature::StencilWrite, RenderFeature::StencilTest, RenderFeature::ScissorTest,
                            RenderFeature::ClipPlane});
    expectNumberedFromZero({DepthFunction::Less, DepthFunction::Equal});
    expectNumberedFromZero({CullMode::None, CullMode::Back, CullMode::Front});
    expectNumberedFromZero({BlendMode::None, BlendMode::Alpha, BlendMode::Additive});
    expectNumberedFromZero({CompareFunction::Never, CompareFunction::Always, CompareFunction::Equal,
                            CompareFunction::NotEqual, CompareFunction::Less, CompareFunction::LessEqual,
                            CompareFunction::Greater, CompareFunction::GreaterEqual});
    expectNumberedFromZero({StencilOperation::Keep, StencilOperation::Zero, StencilOperation::Replace,
                            StencilOperation::Increment, StencilOperation::IncrementWrap, StencilOperation::Decrement,
                            StencilOperation::DecrementWrap, StencilOperation::Invert});
    expectNumberedFromZero({TargetBinding::Draw, TargetBinding::Read, TargetBinding::Both});
}

TEST(VertexAttributes, haveTheLocationsThatProgramsBindInOrder)
{
    EXPECT_EQ(VertexAttribute::Position, 0);
    EXPECT_EQ(VertexAttribute::TextureCoordinate, 1);
    EXPECT_EQ(VertexAttribute::Normal, 2);
}

TEST(TextureFormat, liesInMemoryAsTypeThenChannels)
{
    const TextureFormat format(TextureFormat::Float, 3);
    const std::int32_t expected[] = {2, 3};
    static_assert(sizeof format == sizeof expected);
    EXPECT_EQ(std::memcmp(&format, expected, sizeof expected), 0);
}

TEST(TextureFormat, isEightBitRgbaByDefault)
{
    EXPECT_EQ(TextureFormat().type, TextureFormat::UnsignedByte);
    EXPECT_EQ(TextureFormat().channels, 4);
}

TEST(TextureFormat, isEqualInTypeAndChannels)
{
    const TextureFormat format(1, 2);
    EXPECT_TRUE(format == TextureFormat(1, 2));
    EXPECT_FALSE(format != TextureFormat(1, 2));
    EXPECT_TRUE(format != TextureFormat(2, 2));
    EXPECT_FALSE(format == TextureFormat(1, 1));
}
