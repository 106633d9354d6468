#include "gl_fixture.h"

#include "message_boxes.h"
#include "own_directory.h"

// Linking. A new program stays in use by OpenGL, so that its name can be asked for there.

namespace {

GLuint lastProgram()
{
    return static_cast<GLuint>(getInteger(GL_CURRENT_PROGRAM));
}

const std::string twoOutputsSource = "#version 150\n"
                                     "out vec4 color;\n"
                                     "out vec4 normal;\n"
                                     "void main()\n"
                                     "{\n"
                                     "    color = vec4(1.0, 0.0, 0.0, 1.0);\n"
                                     "    normal = vec4(0.0, 1.0, 0.0, 1.0);\n"
                                     "}\n";

const std::string colorSource = "#version 150\nout vec4 color;\nvoid main() { color = vec4(1.0, 0.0, 0.0, 1.0); }\n";

constexpr const char* mixtureMessage = "\\[\\[Error\\|If custom outputs for a program are used, all outputs must be "
                                       "custom!\\]\\]";

} // namespace

class OpenGLProgram : public GLTest {
protected:
    Program* link(const std::list<Shader*>& shaders, const std::list<std::string>& attributes = {"position"},
                  const std::list<std::string>& outputs = {"outputColor"})
    {
        Program* program = device->createProgram(shaders, attributes, outputs);
        atEnd([this, program] { device->destroyProgram(program); });
        return program;
    }

    std::list<Shader*> plainShaders()
    {
        return {makeShader(ShaderType::Vertex, plainVertexSource), makeShader(ShaderType::Fragment, colorSource)};
    }
};

using OpenGLProgramOutput = OpenGLProgram;

TEST_F(OpenGLProgram, attributesAreBoundToTheirPositionInTheList)
{
    const std::list<Shader*> shaders = {
        makeShader(ShaderType::Vertex, attributeVertexSource),
        makeShader(ShaderType::Fragment, "#version 150\nin vec4 passedTextureCoordinate;\nin vec4 passedNormal;\n"
                                         "in vec4 passedColor;\nout vec4 outputColor;\nvoid main() { outputColor = "
                                         "passedTextureCoordinate + passedNormal + passedColor; }\n")};
    link(shaders, {"position", "textureCoordinate", "normal", "color"});
    EXPECT_EQ(glGetAttribLocation(lastProgram(), "position"), 0);
    EXPECT_EQ(glGetAttribLocation(lastProgram(), "textureCoordinate"), 1);
    EXPECT_EQ(glGetAttribLocation(lastProgram(), "normal"), 2);
    EXPECT_EQ(glGetAttribLocation(lastProgram(), "color"), 3);
    link(shaders, {"color", "not in the shader", "textureCoordinate", "position", "normal"});
    EXPECT_EQ(glGetAttribLocation(lastProgram(), "color"), 0);
    EXPECT_EQ(glGetAttribLocation(lastProgram(), "textureCoordinate"), 2);
    EXPECT_EQ(glGetAttribLocation(lastProgram(), "position"), 3);
    EXPECT_EQ(glGetAttribLocation(lastProgram(), "normal"), 4);
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLProgram, returnsTheNamesAsGiven)
{
    const std::list<std::string> attributes = {"position", "unknown", "position"};
    const std::list<std::string> outputs = {"normal(1)", "color(0)"};
    Program* program = link(plainShaders(), attributes, outputs);
    EXPECT_EQ(program->getAttributes(), attributes);
    EXPECT_EQ(program->getOutputs(), outputs);
    Program* bare = link(plainShaders(), {}, {});
    EXPECT_TRUE(bare->getAttributes().empty());
    EXPECT_TRUE(bare->getOutputs().empty());
}

TEST_F(OpenGLProgram, newOneIsInUseByOpenGL)
{
    link(plainShaders());
    const GLuint first = lastProgram();
    EXPECT_NE(first, 0u);
    link(plainShaders());
    EXPECT_NE(lastProgram(), first);
    EXPECT_EQ(glIsProgram(lastProgram()), GL_TRUE);
}

TEST_F(OpenGLProgram, shadersAreDetachedAfterLinking)
{
    link(plainShaders());
    GLint count = -1;
    glGetProgramiv(lastProgram(), GL_ATTACHED_SHADERS, &count);
    EXPECT_EQ(count, 0);
    GLint isLinked = GL_FALSE;
    glGetProgramiv(lastProgram(), GL_LINK_STATUS, &isLinked);
    EXPECT_EQ(isLinked, GL_TRUE);
}

TEST_F(OpenGLProgram, nullShadersAreSkipped)
{
    std::list<Shader*> shaders = plainShaders();
    shaders.push_front(nullptr);
    shaders.push_back(nullptr);
    ASSERT_NE(link(shaders), nullptr);
    GLint isLinked = GL_FALSE;
    glGetProgramiv(lastProgram(), GL_LINK_STATUS, &isLinked);
    EXPECT_EQ(isLinked, GL_TRUE);
}

TEST_F(OpenGLProgram, linkProblemIsWarnedOfWithTheLogAlone)
{
    const std::string fragmentSource =
        "#version 150\nvec4 nowhere();\nout vec4 color;\nvoid main() { color = nowhere(); }\n";
    const std::list<Shader*> shaders = {makeShader(ShaderType::Vertex, plainVertexSource),
                                        makeShader(ShaderType::Fragment, fragmentSource)};
    ASSERT_TRUE(shownMessageBoxes().empty()) << "each compiles alone";
    Program* program = link(shaders);
    EXPECT_EQ(glGetError(), GLenum{GL_INVALID_OPERATION}) << "it cannot be used";
    ASSERT_NE(program, nullptr) << "it comes back all the same";
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].title, "Warning");
    const std::string& text = shownMessageBoxes()[0].text;
    EXPECT_NE(text.find("nowhere"), std::string::npos) << text;

    // OpenGL keeps the log: it belongs to the one program that has any.
    std::string log;
    for (GLuint name = 1; name < 100 && log.empty(); ++name) {
        GLint length = 0;
        if (glIsProgram(name) == GL_TRUE) glGetProgramiv(name, GL_INFO_LOG_LENGTH, &length);
        if (length <= 0) continue;
        log.resize(static_cast<std::size_t>(length));
        glGetProgramInfoLog(name, length, nullptr, log.data());
        log.pop_back(); // the NUL
    }
    EXPECT_EQ(text, log);
}

TEST_F(OpenGLProgram, withoutShadersDoesNotCrash)
{
    ASSERT_NE(link({}), nullptr);
    while (glGetError() != GL_NO_ERROR) {
    } // whether an empty program links is the driver's affair
}

TEST_F(OpenGLProgram, shaderOfAMissingFileIsWarnedOfWhenLinking)
{
    Shader* missing = device->loadShader(ShaderType::Fragment, "missing.frag");
    ASSERT_TRUE(shownMessageBoxes().empty());
    link({makeShader(ShaderType::Vertex, plainVertexSource), missing});
    while (glGetError() != GL_NO_ERROR) {
    }
    EXPECT_EQ(shownMessageBoxes().size(), 1u);
    device->destroyShader(missing);
}

TEST_F(OpenGLProgram, nullIsNotUsed)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    device->useProgram(makeColorProgram(red));
    device->useProgram(nullptr);
    square->drawTriangleFan();
    EXPECT_EQ(countPixels(red), size * size);
}

TEST_F(OpenGLProgram, destructionDeletesItOnceAnotherIsInUse)
{
    Program* program = device->createProgram(plainShaders(), {"position"}, {"color"});
    const GLuint name = lastProgram();
    device->useProgram(makeColorProgram(red));
    device->destroyProgram(program);
    EXPECT_EQ(glIsProgram(name), GL_FALSE);
}

TEST_F(OpenGLProgramOutput, plainOnesAreBoundToTheirPosition)
{
    makeProgramWithFragment(twoOutputsSource, {"color", "normal"});
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "color"), 0);
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "normal"), 1);
    makeProgramWithFragment(twoOutputsSource, {"normal", "color"});
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "color"), 1);
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "normal"), 0);
    makeProgramWithFragment(twoOutputsSource, {"normal", "unknown", "color"});
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "color"), 2) << "all before it count";
}

TEST_F(OpenGLProgramOutput, customOnesAreBoundToTheirNumber)
{
    makeProgramWithFragment(twoOutputsSource, {"color(1)", "normal(0)"});
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "color"), 1);
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "normal"), 0);
    makeProgramWithFragment(twoOutputsSource, {"normal(7)", "color(3)"});
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "color"), 3);
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "normal"), 7);
}

TEST_F(OpenGLProgramOutput, numbersChooseTheAttachment)
{
    RenderTarget* target = makeTarget({rgba8, rgba8});
    VertexBuffer* square = makeSquare();
    device->useProgram(makeProgramWithFragment(twoOutputsSource, {"color(1)", "normal(0)"}));
    square->drawTriangleFan();
    EXPECT_EQ(imageOf(target->getTexture(0), true)->getPixel(8, 8), green);
    EXPECT_EQ(imageOf(target->getTexture(1), true)->getPixel(8, 8), red);
    device->useProgram(makeProgramWithFragment(twoOutputsSource, {"color", "normal"}));
    square->drawTriangleFan();
    EXPECT_EQ(imageOf(target->getTexture(0), true)->getPixel(8, 8), red);
    EXPECT_EQ(imageOf(target->getTexture(1), true)->getPixel(8, 8), green);
}

TEST_F(OpenGLProgramOutput, mixtureIsFatal)
{
    const std::list<Shader*> shaders = plainShaders();
    for (const std::list<std::string>& outputs : {std::list<std::string>{"color(1)", "normal"},
                                                  {"color", "normal(1)"},
                                                  {"color(0)", "normal(1)", "depth"},
                                                  {"", "color(0)"}})
        EXPECT_EXIT(device->createProgram(shaders, {}, outputs), ::testing::ExitedWithCode(fatalExitCode),
                    mixtureMessage);
}

TEST_F(OpenGLProgramOutput, malformedOnesAreLeftToOpenGL)
{
    for (const char* output : {")", "1)", "(1)", "color(x)", "color()", "c)"}) {
        ASSERT_NE(makeProgramWithFragment(colorSource, {output}), nullptr);
        EXPECT_EQ(glGetFragDataLocation(lastProgram(), "color"), 0) << output;
        EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR}) << output;
    }
}

TEST_F(OpenGLProgramOutput, onlyOneDigitIsRead)
{
    makeProgramWithFragment(twoOutputsSource, {"color(13)", "normal(0)"});
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "color"), 1) << "the one that is left free, not 13 and not 3";
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "normal"), 0);
}

TEST_F(OpenGLProgramOutput, numberAboveTheLimitIsRefusedByOpenGLOnly)
{
    const GLint limit = getInteger(GL_MAX_DRAW_BUFFERS);
    if (limit > 9) return; // all digits are allowed there
    ASSERT_NE(makeProgramWithFragment(colorSource, {"color(9)"}), nullptr);
    EXPECT_EQ(glGetError(), GLenum{GL_INVALID_VALUE});
    EXPECT_EQ(glGetFragDataLocation(lastProgram(), "color"), 0);
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLProgramOutput, noneAreNeeded)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    device->useProgram(makeProgramWithFragment(colorSource, {}));
    square->drawTriangleFan();
    EXPECT_EQ(countPixels(red), size * size);
}
