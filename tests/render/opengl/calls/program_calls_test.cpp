#include "gl_fixture.h"

#include "gl_call_recorder.h"

using GLCall::describe;
using GLCall::recordedDuring;

using Calls = std::vector<std::string>;
using OpenGLProgramCalls = GLTest;

namespace {

GLint programInUse()
{
    return getInteger(GL_CURRENT_PROGRAM);
}

const std::string allKindsSource = "#version 150\n"
                                   "uniform mat4 four;\n"
                                   "uniform mat3 three;\n"
                                   "uniform vec4 quadruple;\n"
                                   "uniform vec3 triple;\n"
                                   "uniform vec2 pair;\n"
                                   "uniform float number;\n"
                                   "uniform int whole;\n"
                                   "out vec4 outputColor;\n"
                                   "void main()\n"
                                   "{\n"
                                   "    outputColor = four * quadruple + vec4(three * triple, number) + vec4(pair, "
                                   "float(whole), 0.0);\n"
                                   "}\n";

GLint locationOf(const char* name)
{
    return glGetUniformLocation(static_cast<GLuint>(programInUse()), name);
}

} // namespace

TEST_F(OpenGLProgramCalls, usingTheCurrentProgramAgainIssuesNothing)
{
    Program* first = makeColorProgram(red);
    const GLint firstName = programInUse();
    Program* second = makeColorProgram(green);
    const GLint secondName = programInUse();
    EXPECT_EQ(recordedDuring([&] { device->useProgram(first); }), (Calls{describe("glUseProgram", firstName)}));
    EXPECT_EQ(recordedDuring([&] { device->useProgram(first); }), Calls());
    EXPECT_EQ(recordedDuring([&] { device->useProgram(second); }), (Calls{describe("glUseProgram", secondName)}));
    EXPECT_EQ(recordedDuring([&] { device->useProgram(second); }), Calls());
    EXPECT_EQ(recordedDuring([&] { device->useProgram(nullptr); }), Calls());
    EXPECT_EQ(recordedDuring([&] { device->useProgram(second); }), Calls());
}

TEST_F(OpenGLProgramCalls, firstUseAfterACreationIsAlwaysIssued)
{
    Program* first = makeColorProgram(red);
    const GLint firstName = programInUse();
    device->useProgram(first);
    Program* created = makeColorProgram(green);
    const GLint createdName = programInUse();
    EXPECT_EQ(recordedDuring([&] { device->useProgram(first); }), (Calls{describe("glUseProgram", firstName)}));
    EXPECT_EQ(recordedDuring([&] { device->useProgram(first); }), Calls());
    EXPECT_EQ(recordedDuring([&] { device->useProgram(created); }), (Calls{describe("glUseProgram", createdName)}));
}

TEST_F(OpenGLProgramCalls, programAfterADestroyedCurrentOneIsUsed)
{
    Program* kept = makeColorProgram(red);
    const GLint keptName = programInUse();
    Program* destroyed = device->createProgram({makeShader(ShaderType::Vertex, plainVertexSource)}, {"position"}, {});
    device->useProgram(destroyed);
    device->destroyProgram(destroyed);
    EXPECT_EQ(recordedDuring([&] { device->useProgram(kept); }), (Calls{describe("glUseProgram", keptName)}));
}

TEST_F(OpenGLProgramCalls, creationAttachesBindsLinksDetachesAndUses)
{
    Shader* vertex = makeShader(ShaderType::Vertex, plainVertexSource);
    Shader* fragment = makeShader(ShaderType::Fragment, "#version 150\nout vec4 color;\nout vec4 normal;\n"
                                                        "void main() { color = normal = vec4(1.0); }\n");
    Program* program = nullptr;
    const Calls calls = recordedDuring([&] {
        program = device->createProgram({vertex, nullptr, fragment}, {"position", "unused"}, {"color(1)", "normal(0)"});
    });
    atEnd([this, program] { device->destroyProgram(program); });
    ASSERT_EQ(calls.size(), 10u);
    const GLint name = programInUse();
    const std::string attach = "glAttachShader(" + std::to_string(name) + ", ";
    EXPECT_TRUE(calls[0].starts_with(attach)) << calls[0];
    EXPECT_TRUE(calls[1].starts_with(attach)) << calls[1];
    EXPECT_LT(calls[0], calls[1]) << "in the order of the list: the vertex shader was made first";
    EXPECT_EQ(calls[2], describe("glBindAttribLocation", name, 0, "position"));
    EXPECT_EQ(calls[3], describe("glBindAttribLocation", name, 1, "unused"));
    EXPECT_EQ(calls[4], describe("glBindFragDataLocation", name, 1, "color"));
    EXPECT_EQ(calls[5], describe("glBindFragDataLocation", name, 0, "normal"));
    EXPECT_EQ(calls[6], describe("glLinkProgram", name));
    EXPECT_EQ(calls[7], "glDetachShader" + calls[0].substr(calls[0].find('(')));
    EXPECT_EQ(calls[8], "glDetachShader" + calls[1].substr(calls[1].find('(')));
    EXPECT_EQ(calls[9], describe("glUseProgram", name));
}

TEST_F(OpenGLProgramCalls, plainOutputsAreBoundToTheirPosition)
{
    Shader* vertex = makeShader(ShaderType::Vertex, plainVertexSource);
    Program* program = nullptr;
    const Calls calls = recordedDuring(
        [&] {
            program = device->createProgram({vertex}, {}, {"a", "b", "c(", ""});
        },
        "glBindFragDataLocation");
    atEnd([this, program] { device->destroyProgram(program); });
    const GLint name = programInUse();
    EXPECT_EQ(
        calls,
        (Calls{describe("glBindFragDataLocation", name, 0, "a"), describe("glBindFragDataLocation", name, 1, "b"),
               describe("glBindFragDataLocation", name, 2, "c("), describe("glBindFragDataLocation", name, 3, "")}));
}

TEST_F(OpenGLProgramCalls, customOutputsKeepTheirNameWithoutTheLastThreeCharacters)
{
    Shader* vertex = makeShader(ShaderType::Vertex, plainVertexSource);
    Program* program = nullptr;
    const Calls calls = recordedDuring(
        [&] {
            program = device->createProgram({vertex}, {}, {"a(2)", "b(12)", ")", "1)", "(1)", "c(x)", "d()", "e(7)"});
        },
        "glBindFragDataLocation");
    atEnd([this, program] { device->destroyProgram(program); });
    const GLint name = programInUse();
    EXPECT_EQ(calls, (Calls{describe("glBindFragDataLocation", name, 2, "a"),
                            describe("glBindFragDataLocation", name, 2, "b("),
                            describe("glBindFragDataLocation", name, 7, "e")}))
        << "what is not a name and one digit is left out";
}

TEST_F(OpenGLProgramCalls, eachUniformIsLookedUpOnceAndSet)
{
    device->useProgram(makeProgramWithFragment(allKindsSource));
    const GLint name = programInUse();
    const auto expectLookUpAnd = [&](const char* uniform, const std::string& set, const std::function<void()>& act) {
        const Calls expected = {describe("glGetUniformLocation", name, uniform), set};
        EXPECT_EQ(recordedDuring(act), expected);
        EXPECT_EQ(recordedDuring(act), expected) << "no location is remembered";
    };
    expectLookUpAnd("four", describe("glUniformMatrix4fv", locationOf("four"), 1, GL_FALSE, GLCall::pointer),
                    [&] { device->setUniform("four", Matrix4<float>()); });
    expectLookUpAnd("three", describe("glUniformMatrix3fv", locationOf("three"), 1, GL_FALSE, GLCall::pointer),
                    [&] { device->setUniform("three", Matrix3<float>()); });
    expectLookUpAnd("quadruple", describe("glUniform4f", locationOf("quadruple"), 1.0f, 2.0f, 3.0f, 4.0f),
                    [&] { device->setUniform("quadruple", Vector4<float>(1, 2, 3, 4)); });
    expectLookUpAnd("triple", describe("glUniform3f", locationOf("triple"), 1.0f, 2.0f, 3.0f),
                    [&] { device->setUniform("triple", Vector3<float>(1, 2, 3)); });
    expectLookUpAnd("pair", describe("glUniform2f", locationOf("pair"), 1.0f, 2.0f),
                    [&] { device->setUniform("pair", Vector2<float>(1, 2)); });
    expectLookUpAnd("number", describe("glUniform1f", locationOf("number"), 5.0f),
                    [&] { device->setUniform("number", 5.0f); });
    expectLookUpAnd("whole", describe("glUniform1i", locationOf("whole"), 6), [&] { device->setUniform("whole", 6); });
    expectLookUpAnd("unknown", describe("glUniform1f", -1, 5.0f), [&] { device->setUniform("unknown", 5.0f); });
}

TEST_F(OpenGLProgramCalls, uniformsWithoutACurrentProgramIssueNothing)
{
    makeProgramWithFragment(allKindsSource); // in use by OpenGL only
    EXPECT_EQ(recordedDuring([&] {
                  device->setUniform("four", Matrix4<float>())
                      .setUniform("three", Matrix3<float>())
                      .setUniform("quadruple", Vector4<float>())
                      .setUniform("triple", Vector3<float>())
                      .setUniform("pair", Vector2<float>())
                      .setUniform("number", 1.0f)
                      .setUniform("whole", 1);
              }),
              Calls());
}

TEST_F(OpenGLProgramCalls, uniformAfterACreationTakesTheCurrentProgramBackIntoUseOnce)
{
    Program* current = makeProgramWithFragment(allKindsSource);
    const GLint name = programInUse();
    device->useProgram(current);
    const GLint location = locationOf("number");
    makeColorProgram(red);
    EXPECT_EQ(recordedDuring([&] { device->setUniform("number", 1.0f); }),
              (Calls{describe("glUseProgram", name), describe("glGetUniformLocation", name, "number"),
                     describe("glUniform1f", location, 1.0f)}));
    EXPECT_EQ(recordedDuring([&] { device->setUniform("number", 1.0f); }),
              (Calls{describe("glGetUniformLocation", name, "number"), describe("glUniform1f", location, 1.0f)}));
    EXPECT_EQ(recordedDuring([&] { device->useProgram(current); }), Calls());
}

TEST_F(OpenGLProgramCalls, shaderSourceIsSentUpToItsFirstNul)
{
    const struct {
        std::string source;
        int sent;
    } rows[] = {{"// ab", 5}, {std::string("// ab\0", 6), 5}, {std::string("// a\0b\0", 7), 4},
                {"", 0},      {std::string("\0", 1), 0},      {std::string("\0// a", 5), 0}};
    for (const auto& row : rows) {
        const std::vector<char> source(row.source.begin(), row.source.end());
        Shader* shader = nullptr;
        const Calls calls = recordedDuring([&] { shader = device->createShader(ShaderType::Vertex, "name", source); },
                                           "glShaderSource");
        ASSERT_EQ(calls.size(), 1u);
        const std::string arguments = calls[0].substr(calls[0].find(','));
        EXPECT_EQ(arguments, ", 1, pointer, *" + std::to_string(row.sent) + ")");
        device->destroyShader(shader);
    }
}
