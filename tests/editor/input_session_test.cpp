#include "engine_fixtures.h"
#include "file_contents.h"
#include "own_directory.h"

#include <input_session.h>

#include <xum/engine/window.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>

namespace {

/// A window, and an ear for the events that come.
class InputSession : public EngineFixture {
protected:
    void SetUp() override
    {
        enterOwnDirectory();
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        window = engine->createWindow("session", 320, 200, true, false);
        ASSERT_NE(window->getHandle(), nullptr);
        engine->update(); // what a new window tells
        SDL_AddEventWatch(hear, this);
    }

    void TearDown() override
    {
        SDL_DelEventWatch(hear, this);
        SDL_SetModState(KMOD_NONE);
        engine->destroyWindow(window);
        EngineFixture::TearDown();
    }

    static int hear(void* test, SDL_Event* event)
    {
        static_cast<InputSession*>(test)->events.push_back(*event);
        return 0;
    }

    static std::string problemOf(const std::string& text)
    {
        writeFileContents("s.txt", text);
        try {
            const SessionPlayer player("s.txt");
            return "";
        } catch (const std::runtime_error& problem) {
            return problem.what();
        }
    }

    /// The events of all frames up to that one, those of the window left out.
    std::vector<SDL_Event> play(const std::string& text, std::uint64_t lastFrame = 10)
    {
        writeFileContents("s.txt", text);
        SessionPlayer player("s.txt");
        events.clear();
        for (std::uint64_t frame = 0; frame <= lastFrame; ++frame) {
            player.pushEvents(frame, window->getHandle());
            engine->update();
        }
        std::vector<SDL_Event> heard;
        for (const SDL_Event& event : events)
            if (event.type != SDL_WINDOWEVENT && event.type != SDL_POLLSENTINEL) heard.push_back(event);
        return heard;
    }

    std::string textOf(const std::string& text)
    {
        std::string typed;
        for (const SDL_Event& event : play(text)) {
            EXPECT_EQ(event.type, SDL_TEXTINPUT);
            typed += event.text.text;
        }
        return typed;
    }

    Window* window = nullptr;
    std::vector<SDL_Event> events;
};

} // namespace

// ---- playing --------------------------------------------------------------------------------------------------------

TEST_F(InputSession, keysGoDownAndUp)
{
    const auto heard = play("1 key down A\n2 key up A\n");
    ASSERT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard[0].type, SDL_KEYDOWN);
    EXPECT_EQ(heard[0].key.keysym.sym, SDLK_a);
    EXPECT_EQ(heard[0].key.keysym.scancode, SDL_SCANCODE_A);
    EXPECT_EQ(heard[0].key.state, SDL_PRESSED);
    EXPECT_EQ(heard[0].key.windowID, SDL_GetWindowID(window->getHandle()));
    EXPECT_EQ(heard[1].type, SDL_KEYUP);
    EXPECT_EQ(heard[1].key.state, SDL_RELEASED);
}

TEST_F(InputSession, modifiersHoldForTheKeysBetween)
{
    const auto heard = play("1 key down Left Ctrl\n1 key down Right Shift\n2 key down S\n3 key up S\n"
                            "4 key up Left Ctrl\n5 key up Right Shift\n");
    ASSERT_EQ(heard.size(), 6u);
    EXPECT_EQ(heard[2].key.keysym.mod, KMOD_LCTRL | KMOD_RSHIFT);
    EXPECT_EQ(heard[5].key.keysym.mod, KMOD_NONE);
    EXPECT_EQ(SDL_GetModState(), KMOD_NONE);
    play("1 key down Left Alt\n");
    EXPECT_EQ(SDL_GetModState(), KMOD_LALT);
}

TEST_F(InputSession, keysHaveTheirNames)
{
    const auto heard = play("1 key down Return\n1 key down F12\n1 key down `\n1 key down #\n1 key down Keypad Enter\n");
    const SDL_Keycode keys[] = {SDLK_RETURN, SDLK_F12, SDLK_BACKQUOTE, SDLK_HASH, SDLK_KP_ENTER};
    ASSERT_EQ(heard.size(), 5u);
    for (std::size_t i = 0; i < 5; ++i) EXPECT_EQ(heard[i].key.keysym.sym, keys[i]);
}

TEST_F(InputSession, textIsWhatFollowsOneBlank)
{
    EXPECT_EQ(textOf("1 text hello world"), "hello world");
    EXPECT_EQ(textOf("1 text  "), " ") << "a blank itself";
    EXPECT_EQ(textOf("1 text   two before, one behind \r\n"), "  two before, one behind ");
    EXPECT_EQ(textOf("1 text # no comment"), "# no comment");
}

TEST_F(InputSession, longTextComesInPiecesOfWholeCharacters)
{
    std::string text;
    for (int i = 0; i < 25; ++i) text += "\xE2\x82\xAC";
    const auto heard = play("1 text x" + text);
    ASSERT_EQ(heard.size(), 3u);
    EXPECT_EQ(std::string(heard[0].text.text), "x" + text.substr(0, 30));
    EXPECT_EQ(std::string(heard[1].text.text), text.substr(30, 30));
    EXPECT_EQ(std::string(heard[2].text.text), text.substr(60));
}

TEST_F(InputSession, bytesThatAreNoCharactersArePlayedToo)
{
    EXPECT_EQ(textOf("1 text " + std::string(100, '\x80')), std::string(100, '\x80'));
}

TEST_F(InputSession, mouseMovesPressesAndTurns)
{
    const auto heard = play("1 motion 30 40 3 -4\n2 button down 1\n2 button down 3\n3 motion 31 41 1 1\n"
                            "4 button up 1\n5 wheel -2\n");
    ASSERT_EQ(heard.size(), 6u);
    EXPECT_EQ(heard[0].type, SDL_MOUSEMOTION);
    EXPECT_EQ(heard[0].motion.x, 30);
    EXPECT_EQ(heard[0].motion.y, 40);
    EXPECT_EQ(heard[0].motion.xrel, 3);
    EXPECT_EQ(heard[0].motion.yrel, -4);
    EXPECT_EQ(heard[0].motion.state, 0u);
    EXPECT_EQ(heard[1].type, SDL_MOUSEBUTTONDOWN);
    EXPECT_EQ(heard[1].button.button, SDL_BUTTON_LEFT);
    EXPECT_EQ(heard[1].button.x, 30) << "where the mouse is";
    EXPECT_EQ(heard[2].button.button, SDL_BUTTON_RIGHT);
    EXPECT_EQ(heard[3].motion.state, static_cast<Uint32>(SDL_BUTTON_LMASK | SDL_BUTTON_RMASK));
    EXPECT_EQ(heard[4].type, SDL_MOUSEBUTTONUP);
    EXPECT_EQ(heard[4].button.y, 41);
    EXPECT_EQ(heard[5].type, SDL_MOUSEWHEEL);
    EXPECT_EQ(heard[5].wheel.y, -2);
}

TEST_F(InputSession, motionIsAddedUpUntilItIsTaken)
{
    writeFileContents("s.txt", "0 motion 1 1 5 -2\n0 motion 2 2 3 4\n1 motion 3 3 1 1\n");
    SessionPlayer player("s.txt");
    int x = -1;
    int y = -1;
    player.pushEvents(0, window->getHandle());
    player.takeMotion(x, y);
    EXPECT_EQ(x, 8);
    EXPECT_EQ(y, 2);
    player.takeMotion(x, y);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
}

TEST_F(InputSession, windowGetsItsSize)
{
    play("1 window 123 45\n");
    EXPECT_EQ(window->getSize(), Vector2<int>(123, 45));
}

TEST_F(InputSession, quitEndsTheEnginesUpdate)
{
    writeFileContents("s.txt", "1 quit\n");
    SessionPlayer player("s.txt");
    player.pushEvents(0, window->getHandle());
    EXPECT_TRUE(engine->update());
    player.pushEvents(1, window->getHandle());
    EXPECT_FALSE(engine->update());
}

TEST_F(InputSession, eventsComeInTheirFramesAndThenItIsOver)
{
    writeFileContents("s.txt", "# comment\n\n  2 wheel 1\n\t# another\n2 wheel 2\n5 wheel 3");
    SessionPlayer player("s.txt");
    std::string counts;
    for (std::uint64_t frame = 0; frame < 6; ++frame) {
        events.clear();
        player.pushEvents(frame, window->getHandle());
        counts += std::to_string(events.size()) + (player.isOver() ? "! " : " ");
    }
    EXPECT_EQ(counts, "0 0 2 0 0 1! ");
}

TEST_F(InputSession, emptySessionIsOverAtOnce)
{
    writeFileContents("s.txt", "# nothing\n");
    EXPECT_TRUE(SessionPlayer("s.txt").isOver());
}

// ---- what is no session ---------------------------------------------------------------------------------------------

TEST_F(InputSession, everyProblemIsToldWithItsLine)
{
    EXPECT_EQ(problemOf("# a\n1 wheel 1\nquit"), "s.txt:3: a step is a frame and what happens");
    for (const char* step : {"1", "-1 quit", "x quit", "1quit", "1.5 quit", "99999999999999999999999 quit"})
        EXPECT_EQ(problemOf(step), "s.txt:1: a step is a frame and what happens") << step;
    EXPECT_EQ(problemOf("5 quit\n4 quit"), "s.txt:2: frames do not go back");
    EXPECT_EQ(problemOf("1 jump"), "s.txt:1: 'jump' is not known");
    EXPECT_EQ(problemOf("1 key press A"), "s.txt:1: 'key press A' is not known");
    EXPECT_EQ(problemOf("1 quitter"), "s.txt:1: 'quitter' is not known");
    EXPECT_EQ(problemOf("1 key down Foo"), "s.txt:1: there is no key 'Foo'");
    EXPECT_EQ(problemOf("1 key up"), "s.txt:1: there is no key ''");
    EXPECT_EQ(problemOf("1 text"), "s.txt:1: 'text' needs a text");
    EXPECT_EQ(problemOf("1 text "), "s.txt:1: 'text' needs a text");
    EXPECT_EQ(problemOf("1 motion 1 2 3"), "s.txt:1: 'motion' needs whole numbers, 4");
    EXPECT_EQ(problemOf("1 wheel x"), "s.txt:1: 'wheel' needs whole numbers, 1");
    EXPECT_EQ(problemOf("1 wheel 99999999999"), "s.txt:1: 'wheel' needs whole numbers, 1");
    EXPECT_EQ(problemOf("1 wheel 1 2"), "s.txt:1: 'wheel' has too much behind it");
    EXPECT_EQ(problemOf("1 wheel 1.5"), "s.txt:1: 'wheel' has too much behind it");
    EXPECT_EQ(problemOf("1 quit now"), "s.txt:1: 'quit' has too much behind it");
    EXPECT_EQ(problemOf("1 button down 0"), "s.txt:1: 'button down' needs numbers from 1 to 5");
    EXPECT_EQ(problemOf("1 button up 6"), "s.txt:1: 'button up' needs numbers from 1 to 5");
    EXPECT_EQ(problemOf("1 window 0 5"), "s.txt:1: 'window' needs numbers from 1 to 16384");
    EXPECT_EQ(problemOf("1 motion 1000001 0 0 0"), "s.txt:1: 'motion' needs numbers from -1000000 to 1000000");
}

TEST_F(InputSession, fileThatCannotBeReadIsTold)
{
    std::filesystem::create_directory("d");
    for (const char* name : {"none.txt", "d"}) {
        try {
            const SessionPlayer player(name);
            FAIL() << name;
        } catch (const std::runtime_error& problem) {
            EXPECT_EQ(std::string(problem.what()), std::string(name) + ": cannot be read");
        }
    }
}

// ---- recording ------------------------------------------------------------------------------------------------------

TEST_F(InputSession, whatIsPlayedIsRecordedAsItWas)
{
    const std::string session = "0 key down Left Ctrl\n0 key down S\n1 key up S\n1 key up Left Ctrl\n"
                                "2 text  a b \n3 text \xC3\xA4#\n4 motion 30 40 3 -4\n4 button down 1\n"
                                "5 motion 31 41 1 1\n6 button up 1\n7 wheel -2\n9 button down 5\n9 key down Space\n";
    writeFileContents("s.txt", session);
    {
        SessionPlayer player("s.txt");
        SessionRecorder recorder("r.txt");
        for (std::uint64_t frame = 0; frame < 10; ++frame) {
            recorder.setFrame(frame);
            player.pushEvents(frame, window->getHandle());
            engine->update();
        }
    }
    EXPECT_EQ(fileContents("r.txt"), session);
    EXPECT_EQ(problemOf(fileContents("r.txt")), "");
}

TEST_F(InputSession, windowSizesAreRecorded)
{
    {
        SessionRecorder recorder("r.txt");
        recorder.writeWindowSize(320, 200);
        recorder.setFrame(3);
        SDL_SetWindowSize(window->getHandle(), 100, 90);
        engine->update();
    }
    EXPECT_EQ(fileContents("r.txt"), "0 window 320 200\n3 window 100 90\n");
}

TEST_F(InputSession, whatNoSessionCanHoldIsNotRecorded)
{
    {
        SessionRecorder recorder("r.txt");
        pushKey(SDL_KEYDOWN, SDLK_a, true); // a repetition
        pushKeyDown(SDLK_UNKNOWN);
        pushText("");
        pushMouseButton(SDL_MOUSEBUTTONDOWN, 9);
        pushEvent(SDL_USEREVENT);
    }
    EXPECT_EQ(fileContents("r.txt"), "");
}

TEST_F(InputSession, recorderThatIsGoneRecordsNothing)
{
    {
        SessionRecorder recorder("r.txt");
    }
    pushKeyDown(SDLK_a);
    EXPECT_EQ(fileContents("r.txt"), "");
}

TEST_F(InputSession, recordThatCannotBeWrittenIsTold)
{
    try {
        const SessionRecorder recorder("none/r.txt");
        FAIL();
    } catch (const std::runtime_error& problem) {
        EXPECT_STREQ(problem.what(), "none/r.txt: cannot be written");
    }
}
