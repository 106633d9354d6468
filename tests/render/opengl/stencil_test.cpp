#include "gl_fixture.h"

#include <string>

class OpenGLStencil : public GLTest {
protected:
    void SetUp() override
    {
        GLTest::SetUp();
        if (device == nullptr) return;
        makeTarget({rgba8, depthStencil});
        device->enable(RenderFeature::StencilTest);
    }

    void fillStencil(unsigned char value)
    {
        device->disable(RenderFeature::DepthTest);
        device->setStencilFunction(CompareFunction::Always, value, 255);
        device->setStencilOperation(StencilOperation::Replace, StencilOperation::Replace, StencilOperation::Replace);
        drawSquare(colorOf(blue));
        ASSERT_EQ(stencilAt(8, 8), value);
    }

    /// Whether a square appears where the stencil is 5.
    bool passes(CompareFunction function, unsigned char reference, unsigned char mask = 255)
    {
        fillStencil(5);
        device->setStencilOperation(StencilOperation::Keep, StencilOperation::Keep, StencilOperation::Keep);
        device->setStencilFunction(function, reference, mask);
        drawSquare(colorOf(red));
        return pixelAt(8, 8) == red;
    }
};

TEST_F(OpenGLStencil, functionsCompareTheReferenceWithTheStoredValue)
{
    const struct {
        int function;
        bool below, same, above; // passes with a reference of 4, 5, 6 where 5 is stored
    } rows[] = {
        {0, false, false, false}, // never
        {1, true, true, true},    // always
        {2, false, true, false},  // equal
        {3, true, false, true},   // not equal
        {4, true, false, false},  // less
        {5, true, true, false},   // less or equal
        {6, false, false, true},  // greater
        {7, false, true, true},   // greater or equal
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.function);
        const CompareFunction function = static_cast<CompareFunction>(row.function);
        EXPECT_EQ(passes(function, 4), row.below);
        EXPECT_EQ(passes(function, 5), row.same);
        EXPECT_EQ(passes(function, 6), row.above);
    }
}

TEST_F(OpenGLStencil, unknownFunctionActsAsNever)
{
    for (const int function : {8, 1000, -1}) {
        for (const unsigned char reference : std::initializer_list<unsigned char>{4, 5, 6})
            EXPECT_FALSE(passes(static_cast<CompareFunction>(function), reference)) << function;
        EXPECT_EQ(getInteger(GL_STENCIL_FUNC), GL_NEVER) << function;
    }
}

TEST_F(OpenGLStencil, maskIsAppliedToReferenceAndStoredValue)
{
    EXPECT_FALSE(passes(CompareFunction::Equal, 0x15, 0xff));
    EXPECT_TRUE(passes(CompareFunction::Equal, 0x15, 0x0f));
    EXPECT_TRUE(passes(CompareFunction::Equal, 0xf4, 0x04));
    EXPECT_TRUE(passes(CompareFunction::NotEqual, 0x01, 0x04));
    EXPECT_TRUE(passes(CompareFunction::Equal, 200, 0)) << "with an empty mask everything is equal";
}

TEST_F(OpenGLStencil, referenceMayUseAllEightBits)
{
    fillStencil(255);
    device->setStencilFunction(CompareFunction::Equal, 255, 255);
    drawSquare(colorOf(red));
    EXPECT_EQ(pixelAt(8, 8), red);
}

namespace {

constexpr unsigned char reference = 9;

int applied(StencilOperation operation, int value)
{
    switch (operation) {
    case StencilOperation::Zero: return 0;
    case StencilOperation::Replace: return reference;
    case StencilOperation::Increment: return value == 255 ? 255 : value + 1;
    case StencilOperation::IncrementWrap: return value == 255 ? 0 : value + 1;
    case StencilOperation::Decrement: return value == 0 ? 0 : value - 1;
    case StencilOperation::DecrementWrap: return value == 0 ? 255 : value - 1;
    case StencilOperation::Invert: return 255 - value;
    default: return value; // keep, and every unknown one
    }
}

enum class Outcome { StencilFails, DepthFails, BothPass };

} // namespace

class OpenGLStencilOperation : public OpenGLStencil {
protected:
    /// What is stored after a square met `value` with that outcome. The operations of the other outcomes differ.
    int resultOf(StencilOperation operation, Outcome outcome, unsigned char value)
    {
        device->clear(true, true, true);
        fillStencil(value);
        device->enable(RenderFeature::DepthTest);
        device->setStencilFunction(outcome == Outcome::StencilFails ? CompareFunction::Never : CompareFunction::Always,
                                   reference, 255);
        const StencilOperation other =
            operation == StencilOperation::Invert ? StencilOperation::Replace : StencilOperation::Invert;
        device->setStencilOperation(outcome == Outcome::StencilFails ? operation : other,
                                    outcome == Outcome::DepthFails ? operation : other,
                                    outcome == Outcome::BothPass ? operation : other);
        if (outcome == Outcome::DepthFails) device->setDepthFunction(DepthFunction::Equal); // the depth there is 1
        drawSquare(colorOf(red));
        device->setDepthFunction(DepthFunction::Less);
        return stencilAt(8, 8);
    }

    void expectEveryOperation(Outcome outcome)
    {
        for (const int number : {0, 1, 2, 3, 4, 5, 6, 7, 8, 1000, -1})
            for (const unsigned char value : std::initializer_list<unsigned char>{0, 1, 5, 254, 255}) {
                const StencilOperation operation = static_cast<StencilOperation>(number);
                EXPECT_EQ(resultOf(operation, outcome, value), applied(operation, value))
                    << "operation " << number << " on " << int{value};
            }
    }
};

TEST_F(OpenGLStencilOperation, firstIsAppliedWhereTheStencilTestFails)
{
    expectEveryOperation(Outcome::StencilFails);
}

TEST_F(OpenGLStencilOperation, secondIsAppliedWhereOnlyTheDepthTestFails)
{
    expectEveryOperation(Outcome::DepthFails);
}

TEST_F(OpenGLStencilOperation, thirdIsAppliedWhereBothTestsPass)
{
    expectEveryOperation(Outcome::BothPass);
}

TEST_F(OpenGLStencil, operationsOfANewDeviceReplaceOnlyWhereBothTestsPass)
{
    EXPECT_EQ(getInteger(GL_STENCIL_FAIL), GL_KEEP);
    EXPECT_EQ(getInteger(GL_STENCIL_PASS_DEPTH_FAIL), GL_KEEP);
    device->setStencilFunction(CompareFunction::Always, 7, 255);
    drawSquare(colorOf(red));
    EXPECT_EQ(stencilAt(8, 8), 7);
}
