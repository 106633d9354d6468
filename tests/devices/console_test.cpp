#include <xum/devices/console.h>

#include "engine_fixtures.h"
#include "file_contents.h"

namespace {

class ConsoleImplementation : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        console = engine->createConsole();
        ASSERT_NE(console, nullptr);
    }

    void TearDown() override
    {
        engine->destroyConsole(console);
        EngineFixture::TearDown();
    }

    Console* console = nullptr;
};

} // namespace

TEST_F(ConsoleImplementation, toggleOpensAndClosesInTurn)
{
    EXPECT_TRUE(console->toggle());
    EXPECT_FALSE(console->toggle());
    EXPECT_TRUE(console->toggle());
    EXPECT_FALSE(console->toggle());
}

TEST_F(ConsoleImplementation, everyConsoleBeginsClosed)
{
    EXPECT_TRUE(console->toggle());
    Console* second = engine->createConsole();
    ASSERT_NE(second, nullptr);
    EXPECT_TRUE(second->toggle());
    EXPECT_FALSE(console->toggle()) << "each has its own state";
    engine->destroyConsole(second);
}

TEST_F(ConsoleImplementation, theOtherOperationsDoNothing)
{
    const std::size_t linesBefore = logLines().size();
    console->print("a text");
    console->execute("quit");
    console->addCommand("quit");
    console->removeCommand("quit");
    console->setVariable("name", "value");
    console->execute("");
    EXPECT_EQ(logLines().size(), linesBefore);
    EXPECT_TRUE(console->toggle());
    console->execute("toggle");
    console->setVariable("open", "false");
    EXPECT_FALSE(console->toggle());
}
