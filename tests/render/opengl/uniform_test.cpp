#include "gl_fixture.h"

#include <array>

using OpenGLUniform = GLTest;
using OpenGLUniformMatrix = GLTest;

namespace {

/// Has one uniform of each kind, all of them used.
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

GLuint programInUse()
{
    return static_cast<GLuint>(getInteger(GL_CURRENT_PROGRAM));
}

/// The values of a uniform of the program in use, in OpenGL's order.
template <std::size_t count>
std::array<float, count> valuesOf(const char* name)
{
    std::array<float, count> values;
    values.fill(-12345.0f);
    glGetUniformfv(programInUse(), glGetUniformLocation(programInUse(), name), values.data());
    return values;
}

} // namespace

TEST_F(OpenGLUniform, eachKindIsSet)
{
    device->useProgram(makeProgramWithFragment(allKindsSource));
    device->setUniform("quadruple", Vector4<float>(1, 2, 3, 4));
    device->setUniform("triple", Vector3<float>(5, 6, 7));
    device->setUniform("pair", Vector2<float>(8, 9));
    device->setUniform("number", 10.5f);
    device->setUniform("whole", -11);
    device->setUniform("four", Matrix4<float>(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16));
    device->setUniform("three", Matrix3<float>(1, 2, 3, 4, 5, 6, 7, 8, 9));

    EXPECT_EQ(valuesOf<4>("quadruple"), (std::array<float, 4>{1, 2, 3, 4}));
    EXPECT_EQ(valuesOf<3>("triple"), (std::array<float, 3>{5, 6, 7}));
    EXPECT_EQ(valuesOf<2>("pair"), (std::array<float, 2>{8, 9}));
    EXPECT_EQ(valuesOf<1>("number"), (std::array<float, 1>{10.5f}));
    EXPECT_EQ(valuesOf<1>("whole"), (std::array<float, 1>{-11}));
    EXPECT_EQ(valuesOf<16>("four"), (std::array<float, 16>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16}));
    EXPECT_EQ(valuesOf<9>("three"), (std::array<float, 9>{1, 2, 3, 4, 5, 6, 7, 8, 9}));
}

TEST_F(OpenGLUniform, settersReturnTheDeviceSoThatTheyChain)
{
    device->useProgram(makeProgramWithFragment(allKindsSource));
    RenderDevice& result = device->setUniform("four", Matrix4<float>())
                               .setUniform("three", Matrix3<float>())
                               .setUniform("quadruple", Vector4<float>(1, 2, 3, 4))
                               .setUniform("triple", Vector3<float>())
                               .setUniform("pair", Vector2<float>())
                               .setUniform("number", 2.0f)
                               .setUniform("whole", 3);
    EXPECT_EQ(&result, device);
    EXPECT_EQ(&device->setUniform("four", Matrix4<float>()), device);
    EXPECT_EQ(&device->setUniform("three", Matrix3<float>()), device);
    EXPECT_EQ(&device->setUniform("quadruple", Vector4<float>(1, 2, 3, 4)), device);
    EXPECT_EQ(&device->setUniform("triple", Vector3<float>()), device);
    EXPECT_EQ(&device->setUniform("pair", Vector2<float>()), device);
    EXPECT_EQ(&device->setUniform("number", 2.0f), device);
    EXPECT_EQ(&device->setUniform("whole", 3), device);
    EXPECT_EQ(valuesOf<4>("quadruple"), (std::array<float, 4>{1, 2, 3, 4}));
    EXPECT_EQ(valuesOf<1>("whole"), (std::array<float, 1>{3}));
}

TEST_F(OpenGLUniform, unknownNamesAreIgnored)
{
    device->useProgram(makeProgramWithFragment(allKindsSource));
    for (const char* name : {"unknown", "", "gl_Position"}) {
        EXPECT_EQ(&device->setUniform(name, Matrix4<float>()), device);
        EXPECT_EQ(&device->setUniform(name, Matrix3<float>()), device);
        EXPECT_EQ(&device->setUniform(name, Vector4<float>()), device);
        EXPECT_EQ(&device->setUniform(name, Vector3<float>()), device);
        EXPECT_EQ(&device->setUniform(name, Vector2<float>()), device);
        EXPECT_EQ(&device->setUniform(name, 1.0f), device);
        EXPECT_EQ(&device->setUniform(name, 1), device);
    }
    EXPECT_EQ(glGetError(), GLenum{GL_NO_ERROR});
}

TEST_F(OpenGLUniform, nothingIsSetWithoutACurrentProgram)
{
    makeProgramWithFragment(allKindsSource); // left in use by OpenGL, but not current for the device
    ASSERT_NE(programInUse(), 0u);
    EXPECT_EQ(&device->setUniform("number", 5.0f), device);
    EXPECT_EQ(&device->setUniform("whole", 5), device);
    EXPECT_EQ(&device->setUniform("pair", Vector2<float>(5, 5)), device);
    EXPECT_EQ(&device->setUniform("triple", Vector3<float>(5, 5, 5)), device);
    EXPECT_EQ(&device->setUniform("quadruple", Vector4<float>(5, 5, 5, 5)), device);
    EXPECT_EQ(&device->setUniform("three", Matrix3<float>()), device);
    EXPECT_EQ(&device->setUniform("four", Matrix4<float>()), device);
    EXPECT_EQ(valuesOf<1>("number"), (std::array<float, 1>{0}));
    EXPECT_EQ(valuesOf<1>("whole"), (std::array<float, 1>{0}));
    EXPECT_EQ(valuesOf<2>("pair"), (std::array<float, 2>{}));
    EXPECT_EQ(valuesOf<3>("triple"), (std::array<float, 3>{}));
    EXPECT_EQ(valuesOf<4>("quadruple"), (std::array<float, 4>{}));
    EXPECT_EQ(valuesOf<9>("three"), (std::array<float, 9>{}));
    EXPECT_EQ(valuesOf<16>("four"), (std::array<float, 16>{}));
}

TEST_F(OpenGLUniform, valuesBelongToTheProgram)
{
    Program* first = makeProgramWithFragment(allKindsSource);
    Program* second = makeProgramWithFragment(allKindsSource);
    device->useProgram(first);
    device->setUniform("number", 1.0f);
    device->useProgram(second);
    device->setUniform("number", 2.0f);
    EXPECT_EQ(valuesOf<1>("number"), (std::array<float, 1>{2}));
    device->useProgram(first);
    EXPECT_EQ(valuesOf<1>("number"), (std::array<float, 1>{1}));
}

TEST_F(OpenGLUniform, elementsOfArraysHaveNames)
{
    device->useProgram(makeProgramWithFragment("#version 150\nuniform float numbers[3];\nout vec4 outputColor;\n"
                                               "void main() { outputColor = vec4(numbers[0], numbers[1], numbers[2], "
                                               "1.0); }\n"));
    device->setUniform("numbers[1]", 7.0f);
    EXPECT_EQ(valuesOf<1>("numbers[1]"), (std::array<float, 1>{7}));
    EXPECT_EQ(valuesOf<1>("numbers[2]"), (std::array<float, 1>{0}));
}

namespace {

std::string transformingSource(const std::string& expression)
{
    return "#version 150\nin vec3 position;\nuniform mat4 model;\nuniform mat4 view;\nuniform mat3 rotation;\n"
           "void main() { gl_Position = " +
           expression + "; }\n";
}

const std::string redSource =
    "#version 150\nout vec4 outputColor;\nvoid main() { outputColor = vec4(1.0, 0.0, 0.0, 1.0); }\n";

} // namespace

TEST_F(OpenGLUniformMatrix, vectorOnTheLeftIsTranslated)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    device->useProgram(makeProgram(transformingSource("vec4(position, 1.0) * model"), redSource));
    device->setUniform("model", Matrix4<float>::translation({1, 0, 0}));
    square->drawTriangleFan();
    for (const int y : {0, 8, 15}) EXPECT_EQ(litPixelsOfRow(y), "........########");
}

TEST_F(OpenGLUniformMatrix, translationIsUpForAPositiveSecondComponent)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    device->useProgram(makeProgram(transformingSource("vec4(position, 1.0) * model"), redSource));
    device->setUniform("model", Matrix4<float>::translation({0, 1, 0}));
    square->drawTriangleFan();
    EXPECT_EQ(litPixelsOfRow(7), "################");
    EXPECT_EQ(litPixelsOfRow(8), "................");
}

TEST_F(OpenGLUniformMatrix, chainReadsFromLeftToRightInTheOrderOfApplication)
{
    makeTarget();
    VertexBuffer* square = makeSquare();
    const Matrix4<float> model = Matrix4<float>::translation({1, 0, 0});
    const Matrix4<float> view = Matrix4<float>::scaling({0.5f, 1, 1});

    device->useProgram(makeProgram(transformingSource("vec4(position, 1.0) * model * view"), redSource));
    device->setUniform("model", model).setUniform("view", view);
    square->drawTriangleFan();
    EXPECT_EQ(litPixelsOfRow(8), "........########") << "-1..1, moved to 0..2, halved to 0..1";

    device->clear(true, false, false);
    device->useProgram(makeProgram(transformingSource("vec4(position, 1.0) * model"), redSource));
    device->setUniform("model", view * model);
    square->drawTriangleFan();
    EXPECT_EQ(litPixelsOfRow(8), "........########") << "the product on this side stands the other way round";
}

TEST_F(OpenGLUniformMatrix, threeByThreeWithTheVectorOnTheLeftActsAsOnThisSide)
{
    makeTarget();
    VertexBuffer* triangle = makeBuffer();
    const std::vector<Vector3<float>> corners = {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}};
    triangle->setAttribute(0, corners);
    const Matrix3<float> quarterTurn(0, -1, 0, 1, 0, 0, 0, 0, 1); // x becomes y
    ASSERT_EQ(quarterTurn * corners[1], (Vector3<float>(1, 1, 0)));

    device->useProgram(makeProgram(transformingSource("vec4(position * rotation, 1.0)"), redSource));
    device->setUniform("rotation", quarterTurn);
    triangle->drawTriangles();
    EXPECT_EQ(pixelAt(14, 14), red) << "(1, -1), from (-1, -1)";
    EXPECT_EQ(pixelAt(14, 1), red) << "(1, 1), from (1, -1)";
    EXPECT_EQ(pixelAt(1, 1), red) << "(-1, 1), from (1, 1)";
    EXPECT_EQ(pixelAt(1, 14), black);
}
