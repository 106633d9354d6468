#include "gl_fixture.h"

#include "file_contents.h"
#include "message_boxes.h"

#include <filesystem>

using OpenGLShader = GLTest;

namespace {

const std::string brokenSource = "#version 150\nvoid main() { undeclared = 1.0; }\n";
const std::string redSource =
    "#version 150\nout vec4 outputColor;\nvoid main() { outputColor = vec4(1.0, 0.0, 0.0, 1.0); }\n";

std::vector<char> bytesOf(const std::string& text)
{
    return {text.begin(), text.end()};
}

std::vector<char> terminated(const std::string& text)
{
    std::vector<char> bytes = bytesOf(text);
    bytes.push_back('\0');
    return bytes;
}

/// What the compiler itself says about that source.
std::string compilerLog(GLenum type, const std::string& source)
{
    const GLuint name = glCreateShader(type);
    const char* text = source.c_str();
    glShaderSource(name, 1, &text, nullptr);
    glCompileShader(name);
    GLint size = 0;
    glGetShaderiv(name, GL_INFO_LOG_LENGTH, &size);
    std::string log(static_cast<std::size_t>(size), '?');
    glGetShaderInfoLog(name, size, nullptr, log.data());
    glDeleteShader(name);
    return log.c_str();
}

class ShaderInProgram : public GLTest {
protected:
    /// Whether the fragment shader makes a working program that draws red.
    bool drawsRed(Shader* fragmentShader)
    {
        makeTarget();
        VertexBuffer* square = makeSquare();
        Program* program = device->createProgram({makeShader(ShaderType::Vertex, plainVertexSource), fragmentShader},
                                                 {"position"}, {"outputColor"});
        atEnd([this, program] { device->destroyProgram(program); });
        device->useProgram(program);
        square->drawTriangleFan();
        return countPixels(red) == size * size;
    }

    Shader* kept(Shader* shader)
    {
        atEnd([this, shader] { device->destroyShader(shader); });
        return shader;
    }
};

} // namespace

using OpenGLShaderSource = ShaderInProgram;
using OpenGLShaderFile = ShaderInProgram;

TEST_F(OpenGLShader, fourKindsReportTheirType)
{
    for (const ShaderType type :
         {ShaderType::Vertex, ShaderType::Geometry, ShaderType::Fragment, ShaderType::Compute}) {
        Shader* created = device->createShader(type, "", terminated("#version 150\nvoid main() {}\n"));
        ASSERT_NE(created, nullptr);
        EXPECT_EQ(created->getType(), type);
        Shader* loaded = device->loadShader(type, "no such file");
        ASSERT_NE(loaded, nullptr);
        EXPECT_EQ(loaded->getType(), type);
        device->destroyShader(created);
        device->destroyShader(loaded);
    }
}

TEST_F(OpenGLShader, unknownTypeGivesNull)
{
    writeFileContents("shader.frag", redSource);
    for (const int type : {4, 100, -1}) {
        EXPECT_EQ(device->createShader(static_cast<ShaderType>(type), "name", terminated(redSource)), nullptr);
        EXPECT_EQ(device->loadShader(static_cast<ShaderType>(type), "shader.frag"), nullptr);
    }
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLShader, computeShaderCompilesWhereTheContextHasThem)
{
    GLint major = 0;
    GLint minor = 0;
    glGetIntegerv(GL_MAJOR_VERSION, &major);
    glGetIntegerv(GL_MINOR_VERSION, &minor);
    if (major * 10 + minor < 43) return; // a true 3.2 context: that creation does not crash is tested above
    Shader* shader = device->createShader(ShaderType::Compute, "compute",
                                          terminated("#version 430\nlayout(local_size_x = 1) in;\nvoid main() {}\n"));
    Program* program = device->createProgram({shader}, {}, {});
    EXPECT_TRUE(shownMessageBoxes().empty());
    device->destroyProgram(program);
    device->destroyShader(shader);
}

TEST_F(OpenGLShader, compileProblemIsWarnedOfWithNameAndLog)
{
    Shader* shader = device->createShader(ShaderType::Fragment, "some name.frag", terminated(brokenSource));
    ASSERT_NE(shader, nullptr) << "the shader comes back all the same";
    EXPECT_EQ(shader->getType(), ShaderType::Fragment);
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].title, "Warning");
    const std::string log = compilerLog(GL_FRAGMENT_SHADER, brokenSource);
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(shownMessageBoxes()[0].text, "some name.frag\n\n" + log);
    device->destroyShader(shader);
}

TEST_F(OpenGLShader, logOfTheCompilerIsReportedWithoutItsFinalNul)
{
    device->destroyShader(device->createShader(ShaderType::Fragment, "nul", terminated(brokenSource)));
    const std::string log = fileText("log.txt");
    const std::size_t start = log.rfind("WARNING: nul");
    ASSERT_NE(start, std::string::npos);
    EXPECT_EQ(log.find('\0', start), std::string::npos);
}

TEST_F(OpenGLShader, destructionDeletesItsName)
{
    const auto countNames = [] {
        int count = 0;
        for (GLuint name = 1; name < 100; ++name) count += glIsShader(name) == GL_TRUE ? 1 : 0;
        return count;
    };
    const int before = countNames();
    Shader* shader = device->createShader(ShaderType::Fragment, "good", terminated(redSource));
    EXPECT_EQ(countNames(), before + 1);
    device->destroyShader(shader);
    EXPECT_EQ(countNames(), before);
}

TEST_F(OpenGLShader, nameMayBeEmpty)
{
    device->destroyShader(device->createShader(ShaderType::Fragment, "", terminated(brokenSource)));
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].text, "\n\n" + compilerLog(GL_FRAGMENT_SHADER, brokenSource));
}

TEST_F(OpenGLShader, goodShaderIsNotWarnedOf)
{
    device->destroyShader(device->createShader(ShaderType::Fragment, "good", terminated(redSource)));
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLShader, mayBeDestroyedOnceItsProgramIsMade)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    Shader* vertex = device->createShader(ShaderType::Vertex, "vertex", terminated(plainVertexSource));
    Shader* fragment = device->createShader(ShaderType::Fragment, "fragment", terminated(redSource));
    Program* program = device->createProgram({vertex, fragment}, {"position"}, {"outputColor"});
    device->destroyShader(vertex);
    device->destroyShader(fragment);
    device->useProgram(program);
    square->drawTriangleFan();
    EXPECT_EQ(countPixels(red), size * size);
    device->destroyProgram(program);
}

TEST_F(OpenGLShader, geometryShaderDraws)
{
    makeTarget();
    VertexBuffer* line = makeBuffer();
    line->setAttribute(0, std::vector<Vector3<float>>{{-1, 0, 0}, {1, 0, 0}});
    Shader* geometry = makeShader(ShaderType::Geometry, "#version 150\n"
                                                        "layout(lines) in;\n"
                                                        "layout(triangle_strip, max_vertices = 4) out;\n"
                                                        "void main()\n"
                                                        "{\n"
                                                        "    for (int end = 0; end < 2; ++end)\n"
                                                        "        for (float y = -1.0; y < 2.0; y += 2.0) {\n"
                                                        "            gl_Position = gl_in[end].gl_Position;\n"
                                                        "            gl_Position.y = y;\n"
                                                        "            EmitVertex();\n"
                                                        "        }\n"
                                                        "}\n");
    Program* program = device->createProgram(
        {makeShader(ShaderType::Vertex, plainVertexSource), geometry, makeShader(ShaderType::Fragment, redSource)},
        {"position"}, {"outputColor"});
    device->useProgram(program);
    line->drawLines();
    EXPECT_EQ(countPixels(red), size * size) << "the line became a square";
    device->destroyProgram(program);
}

TEST_F(OpenGLShaderSource, endsAtItsFirstNul)
{
    const std::string source = redSource + '\0' + "this is no shader text";
    EXPECT_TRUE(drawsRed(kept(device->createShader(ShaderType::Fragment, "nul", terminated(source)))));
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLShaderSource, needNotBeTerminated)
{
    EXPECT_TRUE(drawsRed(kept(device->createShader(ShaderType::Fragment, "open", bytesOf(redSource)))));
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLShaderSource, mayBeEmpty)
{
    for (const std::vector<char>& source : {std::vector<char>(), std::vector<char>(1, '\0')}) {
        Shader* shader = kept(device->createShader(ShaderType::Fragment, "empty", source));
        ASSERT_NE(shader, nullptr);
        EXPECT_EQ(shader->getType(), ShaderType::Fragment);
    }
    const std::string log = compilerLog(GL_FRAGMENT_SHADER, "");
    ASSERT_EQ(shownMessageBoxes().size(), log.empty() ? 0u : 2u);
    for (const ShownMessageBox& box : shownMessageBoxes()) EXPECT_EQ(box.text, "empty\n\n" + log);
}

TEST_F(OpenGLShaderFile, isCompiledWhole)
{
    const std::string padding(10000, ' ');
    writeFileContents("whole.frag", redSource + padding + "// the end, without a line end");
    EXPECT_TRUE(drawsRed(kept(device->loadShader(ShaderType::Fragment, "whole.frag"))));
    EXPECT_TRUE(shownMessageBoxes().empty());

    writeFileContents("broken at the end.frag", redSource + padding + "?");
    kept(device->loadShader(ShaderType::Fragment, "broken at the end.frag"));
    EXPECT_EQ(shownMessageBoxes().size(), 1u);
}

TEST_F(OpenGLShaderFile, problemIsWarnedOfWithItsName)
{
    writeFileContents("broken.frag", brokenSource);
    ASSERT_NE(kept(device->loadShader(ShaderType::Fragment, "broken.frag")), nullptr);
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].text, "broken.frag\n\n" + compilerLog(GL_FRAGMENT_SHADER, brokenSource));
}

TEST_F(OpenGLShaderFile, missingGivesAnEmptyShaderWithoutAWarning)
{
    Shader* shader = kept(device->loadShader(ShaderType::Fragment, "missing.frag"));
    ASSERT_NE(shader, nullptr);
    EXPECT_EQ(shader->getType(), ShaderType::Fragment);
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLShaderFile, directoryGivesAnEmptyShaderWithoutAWarning)
{
    std::filesystem::create_directory("directory.frag");
    Shader* shader = kept(device->loadShader(ShaderType::Fragment, "directory.frag"));
    ASSERT_NE(shader, nullptr);
    EXPECT_EQ(shader->getType(), ShaderType::Fragment);
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(OpenGLShaderFile, endsAtItsFirstNul)
{
    writeFileContents("zero.frag", redSource + '\0' + "this is no shader text");
    EXPECT_TRUE(drawsRed(kept(device->loadShader(ShaderType::Fragment, "zero.frag"))));
    EXPECT_TRUE(shownMessageBoxes().empty());
}
