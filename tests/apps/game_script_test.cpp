#include "game_script.h"

#include "engine_fixtures.h"
#include "failure.h"
#include "recording_stage.h"
#include "script_data.h"

#include <memory>

namespace {

/// The least that rules must have; a test adds what (begin-hunt) and (tick) do.
std::string rulesThat(const std::string& begin, const std::string& tick)
{
    return "(define game-state :playing) (define number 0)"
           "(define playing? (closure () -> :boolean (= game-state :playing)))"
           "(define begin-hunt (closure () -> :nil " +
           begin + "))(define tick (closure () -> :nil " + tick +
           "))"
           "(define game-snapshot (closure () -> (:list :any) (list number)))"
           "(define restore-game (closure ((kept (:list :any))) -> :nil (do (set! number (nth 0 kept)) :nil)))";
}

class Script : public EngineFixture {
protected:
    GameScript& load(const std::string& rules = "")
    {
        script.reset();
        data = std::make_unique<GameData>(*engine, DataSource{makeScriptData(rules), ""});
        script = std::make_unique<GameScript>(*engine, *data, stage);
        return *script;
    }

    void TearDown() override
    {
        script.reset();
        data.reset();
        EngineFixture::TearDown();
    }

    /// What rules do to the stage when the game begins.
    std::string notesOf(const std::string& expression)
    {
        GameScript& rules = load(rulesThat(expression, ":nil"));
        EXPECT_TRUE(rules.begin()) << expression << ": " << rules.getProblem();
        return stage.takeNotes();
    }

    /// The value of an expression, as a text.
    std::string valueOf(const std::string& expression)
    {
        return notesOf("(show-text :value (to-string " + expression + "))");
    }

    void expectFailure(const std::string& rules, const std::string& message)
    {
        try {
            load(rules);
            ADD_FAILURE() << rules;
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.what(), message);
            EXPECT_EQ(failure.getStatus(), ExitStatus::BrokenData);
        }
    }

    RecordingStage stage;
    std::unique_ptr<GameData> data;
    std::unique_ptr<GameScript> script;
};

} // namespace

TEST_F(Script, asksForPlaces)
{
    stage.places["item"] = {{1.5f, 2.5f, 3.5f}};
    stage.turns["item"] = 90;
    EXPECT_EQ(valueOf("(place-count :item)"), "value: 1\n");
    EXPECT_EQ(valueOf("(place-count :dragon)"), "value: 0\n");
    EXPECT_EQ(valueOf("(place-x :item 0)"), "value: 1.500000\n");
    EXPECT_EQ(valueOf("(place-y :item 0)"), "value: 2.500000\n");
    EXPECT_EQ(valueOf("(place-z :item 0)"), "value: 3.500000\n");
    EXPECT_EQ(valueOf("(place-turn :item 0)"), "value: 90.000000\n");
    for (const char* number : {"1", "-1", "9223372036854775807", "-9223372036854775808"})
        EXPECT_EQ(valueOf("(place-x :item " + std::string(number) + ")"), "value: 0.000000\n") << number;
}

TEST_F(Script, asksForThePlayerAndTheDistanceOfThings)
{
    stage.player = {1, 2, 3};
    stage.isSeen[1] = true;
    EXPECT_EQ(valueOf("(player-x)"), "value: 1.000000\n");
    EXPECT_EQ(valueOf("(player-y)"), "value: 2.000000\n");
    EXPECT_EQ(valueOf("(player-z)"), "value: 3.000000\n");
    EXPECT_EQ(valueOf("(lamp-sees-player? 0)"), "value: :false\n");
    EXPECT_EQ(valueOf("(lamp-sees-player? 1)"), "value: :true\n");
    EXPECT_EQ(valueOf("(lamp-sees-player? -1)"), "value: :false\n");
    EXPECT_EQ(valueOf("(thing-distance (add-thing :ember 1.0 2.0 7.0))"), "add ember 1 2 7\nvalue: 4.000000\n");
    for (const char* number : {"1", "-1", "4294967296"})
        EXPECT_EQ(valueOf("(< 1000000000.0 (thing-distance " + std::string(number) + "))"), "value: :true\n") << number;
}

TEST_F(Script, movesAndRemovesThings)
{
    EXPECT_EQ(notesOf("(do (add-thing :watcher 0.0 0.0 0.0) (move-thing 0 1.0 2.0 3.0) (remove-thing 0) :nil)"),
              "add watcher 0 0 0\nremove 0\n");
    EXPECT_EQ(stage.things.at(0), (Vector3<float>{1, 2, 3}));
    EXPECT_EQ(notesOf("(clear-things)"), "clear\n");
}

TEST_F(Script, putsThePlayerAimsLampsPlaysSoundsAndShowsTexts)
{
    EXPECT_EQ(notesOf("(put-player 1.0 2.0 3.0 45.0)"), "put 1 2 3 turned 45\n");
    EXPECT_EQ(notesOf("(play-sound \"ember.wav\" 1.0 2.0 3.0)"), "sound ember.wav 1 2 3\n");
    EXPECT_EQ(notesOf("(show-text :message \"words\")"), "message: words\n");
    notesOf("(aim-lamp 1 1.0 2.0 3.0 4.0 5.0 6.0)");
    EXPECT_EQ(stage.lastAim, "aim 1 1 2 3 to 4 5 6");
    notesOf("(set-dusk 0.25)");
    EXPECT_EQ(stage.dusk, 0.25f);
}

TEST_F(Script, whatIsNoPlaceInTheWorldIsItsMiddle)
{
    EXPECT_EQ(notesOf("(put-player 1000001.0 -1000000.0 (from-string :float \"nan\") (from-string :float \"inf\"))"),
              "put 0 -1e+06 0 turned 0\n");
}

TEST_F(Script, calculatesAngles)
{
    EXPECT_EQ(valueOf("(sine 0.5)"), "value: 0.479426\n");
    EXPECT_EQ(valueOf("(cosine 0.5)"), "value: 0.877583\n");
}

TEST_F(Script, frameTellsItsLength)
{
    GameScript& rules =
        load(rulesThat(":nil", "(show-text :length (text (frame-milliseconds) \" \" (frame-seconds)))"));
    EXPECT_TRUE(rules.tick(17));
    EXPECT_EQ(stage.takeNotes(), "length: 17 0.017000\n");
}

TEST_F(Script, rulesThatAreMissingOrWrongAreNamed)
{
    expectFailure("(define playing? nowhere)", "the script lisp/game.lisp is wrong: error: expected :closure (got "
                                               ":nil)!");
    load();
    script.reset();
    data.reset();
    makeScriptData();
    std::filesystem::remove("scripts/lisp/game.lisp");
    GameData partly(*engine, {"scripts/", ""});
    try {
        GameScript rules(*engine, partly, stage);
        ADD_FAILURE();
    } catch (const Failure& failure) {
        EXPECT_STREQ(failure.what(), "cannot read the file scripts/lisp/game.lisp");
    }
}

TEST_F(Script, errorWhilePlayingIsToldAndWhatComesAfterItIsDone)
{
    GameScript& rules = load(rulesThat(":nil", "(do (print (/ 1 0)) (show-text :message \"goes on\"))"));
    EXPECT_FALSE(rules.tick(16));
    EXPECT_EQ(rules.getProblem(), "error: division by zero!");
    EXPECT_TRUE(rules.begin());
    EXPECT_EQ(rules.getProblem(), "");
}

TEST_F(Script, newRulesAreInForceAtOnceAndTheStateStays)
{
    GameScript& rules = load(rulesThat("(do (set! number 41) :nil)", ":nil"));
    EXPECT_TRUE(rules.begin());
    writeFileContents("scripts/lisp/game.lisp",
                      rulesThat(":nil", "(do (set! number (+ number 1)) (show-text :number (to-string number)))"));
    EXPECT_TRUE(rules.reload()) << rules.getProblem();
    EXPECT_TRUE(rules.tick(16));
    EXPECT_EQ(stage.takeNotes(), "number: 42\n");
}

TEST_F(Script, brokenNewRulesLeaveTheOldOnes)
{
    const std::string good = rulesThat("(do (set! number 41) :nil)", "(show-text :number (to-string number))");
    GameScript& rules = load(good);
    EXPECT_TRUE(rules.begin());
    for (const char* broken :
         {"(define tick (closure (", "(define tick nowhere)", "(", "(define tick (closure (x :y) 1))"}) {
        writeFileContents("scripts/lisp/game.lisp", broken);
        EXPECT_FALSE(rules.reload()) << broken;
        EXPECT_NE(rules.getProblem(), "") << broken;
        EXPECT_TRUE(rules.tick(16)) << broken;
        EXPECT_EQ(stage.takeNotes(), "number: 41\n") << broken;
    }
    std::filesystem::remove("scripts/lisp/game.lisp");
    EXPECT_FALSE(rules.reload());
    EXPECT_EQ(rules.getProblem(), "it cannot be read");
    writeFileContents("scripts/lisp/game.lisp", good);
    EXPECT_TRUE(rules.reload()) << rules.getProblem();
    EXPECT_EQ(rules.getProblem(), "");
}

TEST_F(Script, rulesMayAskForNewOnesWhichDoesNotHappenAtOnce)
{
    GameScript& rules = load(rulesThat(":nil", "(reload-rules)"));
    EXPECT_FALSE(rules.takeReloadWish());
    EXPECT_TRUE(rules.tick(16));
    EXPECT_TRUE(rules.takeReloadWish());
    EXPECT_FALSE(rules.takeReloadWish());
}

TEST_F(Script, ownRulesOfTheGameAreReloadedWithTheirWholeState)
{
    stage.places["item"] = {{10, 0, 0}, {20, 0, 0}};
    GameScript& rules = load();
    EXPECT_TRUE(rules.begin());
    stage.player = {10, 1, 0.9f};
    for (int i = 0; i < 50; ++i) EXPECT_TRUE(rules.tick(100));
    stage.takeNotes();
    EXPECT_TRUE(rules.reload()) << rules.getProblem();
    EXPECT_TRUE(rules.isPlaying());
    stage.player = {20, 1, 0.9f};
    EXPECT_TRUE(rules.tick(100)); // 5.1 seconds are over
    EXPECT_EQ(stage.takeNotes(), "sound ember.wav 20 0 0\n"
                                 "remove 1\n"
                                 "score: score 000200  best 000200  lives 3  embers 2/2\n"
                                 "score: score 003140  best 003140  lives 3  embers 2/2\n"
                                 "message: \n"
                                 "end: All embers are safe!  Score 3140, best 3140.\n"
                                 "clock: 4:54\n");
}

TEST_F(Script, bytesAreCounted)
{
    GameScript& rules = load(rulesThat(":nil", "(do (list 1 2 3) :nil)"));
    const std::int64_t before = rules.countBytes();
    EXPECT_GT(before, 0);
    EXPECT_TRUE(rules.tick(16));
    EXPECT_GT(rules.countBytes(), before);
}
