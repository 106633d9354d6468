#include <xum/render/opengl/opengl_mappings.h>

#include <gtest/gtest.h>

#include <climits>

TEST(OpenGLMappings, depthFunctions)
{
    EXPECT_EQ(depthFunctionToGL(DepthFunction::Less), GLenum{GL_LESS});
    EXPECT_EQ(depthFunctionToGL(DepthFunction::Equal), GLenum{GL_EQUAL});
    for (const int value : {2, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(depthFunctionToGL(static_cast<DepthFunction>(value)), std::nullopt);
}

TEST(OpenGLMappings, compareFunctions)
{
    const GLenum functions[] = {GL_NEVER, GL_ALWAYS, GL_EQUAL, GL_NOTEQUAL, GL_LESS, GL_LEQUAL, GL_GREATER, GL_GEQUAL};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(compareFunctionToGL(static_cast<CompareFunction>(i)), functions[i]);
}

TEST(OpenGLMappings, unknownCompareFunctionIsNever)
{
    for (const int value : {8, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(compareFunctionToGL(static_cast<CompareFunction>(value)), GLenum{GL_NEVER});
}

TEST(OpenGLMappings, stencilOperations)
{
    const GLenum operations[] = {GL_KEEP, GL_ZERO, GL_REPLACE, GL_INCR, GL_INCR_WRAP, GL_DECR, GL_DECR_WRAP, GL_INVERT};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(stencilOperationToGL(static_cast<StencilOperation>(i)), operations[i]);
}

TEST(OpenGLMappings, unknownStencilOperationIsKeep)
{
    for (const int value : {8, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(stencilOperationToGL(static_cast<StencilOperation>(value)), GLenum{GL_KEEP});
}

TEST(OpenGLMappings, shaderTypes)
{
    EXPECT_EQ(shaderTypeToGL(ShaderType::Vertex), GLenum{GL_VERTEX_SHADER});
    EXPECT_EQ(shaderTypeToGL(ShaderType::Geometry), GLenum{GL_GEOMETRY_SHADER});
    EXPECT_EQ(shaderTypeToGL(ShaderType::Fragment), GLenum{GL_FRAGMENT_SHADER});
    EXPECT_EQ(shaderTypeToGL(ShaderType::Compute), GLenum{GL_COMPUTE_SHADER});
    for (const int value : {4, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(shaderTypeToGL(static_cast<ShaderType>(value)), std::nullopt);
}

TEST(OpenGLMappings, targetBindings)
{
    EXPECT_EQ(targetBindingToGL(TargetBinding::Draw), GLenum{GL_DRAW_FRAMEBUFFER});
    EXPECT_EQ(targetBindingToGL(TargetBinding::Read), GLenum{GL_READ_FRAMEBUFFER});
    EXPECT_EQ(targetBindingToGL(TargetBinding::Both), GLenum{GL_FRAMEBUFFER});
    for (const int value : {3, -1, INT_MAX, INT_MIN})
        EXPECT_EQ(targetBindingToGL(static_cast<TargetBinding>(value)), std::nullopt);
}

TEST(OpenGLMappings, colorFormats)
{
    const GLenum types[] = {GL_UNSIGNED_BYTE, GL_HALF_FLOAT, GL_FLOAT};
    const GLenum pixelFormats[] = {GL_RED, GL_RG, GL_RGB, GL_RGBA};
    const GLint internalFormats[][4] = {{GL_R8, GL_RG8, GL_RGB8, GL_RGBA8},
                                        {GL_R16F, GL_RG16F, GL_RGB16F, GL_RGBA16F},
                                        {GL_R32F, GL_RG32F, GL_RGB32F, GL_RGBA32F}};
    for (int type = 0; type < 3; ++type)
        for (int channels = 1; channels <= 4; ++channels) {
            const auto layout = textureFormatToGL({type, channels});
            ASSERT_TRUE(layout.has_value());
            EXPECT_EQ(layout->internalFormat, internalFormats[type][channels - 1]);
            EXPECT_EQ(layout->format, pixelFormats[channels - 1]);
            EXPECT_EQ(layout->type, types[type]);
        }
}

TEST(OpenGLMappings, depthFormatsWhateverTheChannels)
{
    for (const int channels : {0, 1, 4, 5, -1, INT_MAX, INT_MIN}) {
        const auto depth = textureFormatToGL({TextureFormat::Depth, channels});
        ASSERT_TRUE(depth.has_value());
        EXPECT_EQ(depth->internalFormat, GL_DEPTH_COMPONENT32F);
        EXPECT_EQ(depth->format, GLenum{GL_DEPTH_COMPONENT});
        EXPECT_EQ(depth->type, GLenum{GL_FLOAT});
        const auto both = textureFormatToGL({TextureFormat::DepthStencil, channels});
        ASSERT_TRUE(both.has_value());
        EXPECT_EQ(both->internalFormat, GL_DEPTH24_STENCIL8);
        EXPECT_EQ(both->format, GLenum{GL_DEPTH_STENCIL});
        EXPECT_EQ(both->type, GLenum{GL_UNSIGNED_INT_24_8});
    }
}

TEST(OpenGLMappings, invalidFormatsHaveNoLayout)
{
    for (const int type : {5, -1, INT_MAX, INT_MIN}) EXPECT_FALSE(textureFormatToGL({type, 4}).has_value());
    for (const int type : {0, 1, 2})
        for (const int channels : {0, 5, -1, INT_MAX, INT_MIN})
            EXPECT_FALSE(textureFormatToGL({type, channels}).has_value());
}
