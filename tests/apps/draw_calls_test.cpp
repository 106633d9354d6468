#include "gl_call_recorder.h"
#include "presentation_fixture.h"

// Whether the number of draws that is shown is the number that OpenGL gets.

namespace {

constexpr Vector2<int> size = {96, 64};

class DrawCalls : public PresentationTest {
protected:
    std::size_t countDuring(const std::function<void()>& act)
    {
        return GLCall::recordedDuring(act, "glDrawArrays").size() +
               GLCall::recordedDuring(act, "glDrawElements").size();
    }
};

} // namespace

TEST_F(DrawCalls, areCountedInAllLayersAndStyles)
{
    for (int number = 0; number < 64; ++number) {
        presentation.getLayers() = {(number & 1) != 0, (number & 2) != 0, (number & 4) != 0};
        renderer.setOcclusionView((number & 8) != 0);
        renderer.setLamp((number & 16) != 0);
        frame.style = (number & 32) != 0 ? DrawStyle::Edges : DrawStyle::Solids;
        const std::size_t count = countDuring([&] { presentation.draw(nullptr, size, frame); });
        EXPECT_EQ(presentation.countDraws(), count) << number;
        EXPECT_GT(count, 0u) << number;
    }
}
