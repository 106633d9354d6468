#include "scripting_fixture.h"

#include <xum/engine/log.h>
#include <xum/files/data_root.h>

using namespace std::string_literals;

namespace {

class ScriptingDeviceTest : public ScriptingFixture {};

const std::string allFour[] = {"base/base", "engine", "editor", "game"};

} // namespace

// ---- base scripts -------------------------------------------------------------------------------------------------

TEST_F(ScriptingDeviceTest, creationLoadsTheBaseScriptsInTheirOrder)
{
    for (const std::string& name : allFour) writeScript(name, "(display \"" + name + "\")");
    EXPECT_EQ(outputOfCreation(), "base/base\nengine\neditor\ngame\n");
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(ScriptingDeviceTest, laterBaseScriptsSeeTheDefinitionsOfEarlierOnes)
{
    writeScript("base/base", "(define x 1)");
    writeScript("engine", "(define y (+ x 1))");
    writeScript("editor", "(define z (+ y 1))");
    writeScript("game", "(print (+ x y z))");
    EXPECT_EQ(outputOfCreation(), ":integer (6)\n");
    EXPECT_EQ(outputOf("(print z)"), ":integer (3)\n");
}

TEST_F(ScriptingDeviceTest, missingBaseScriptIsWarnedOfAndLeavesUsableDevice)
{
    removeScript("base/base");
    writeScript("engine", "(display \"not to be seen\")");
    const std::size_t linesBefore = logLines().size();
    EXPECT_EQ(outputOfCreation(), "error: file 'base/base' not found!\n");
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].title, "Warning");
    EXPECT_EQ(shownMessageBoxes()[0].text, "Could not load base scripts!");
    ASSERT_EQ(logLines().size(), linesBefore + 1);
    EXPECT_EQ(logLines().back(), "WARNING: Could not load base scripts!");
    EXPECT_EQ(outputOf("(print (+ 1 2))"), ":integer (3)\n");
}

TEST_F(ScriptingDeviceTest, failingEngineScriptKeepsTheBaseAndSkipsEditorAndGame)
{
    writeScript("base/base", "(define from-base 1)");
    writeScript("engine", "(define from-engine 2) (define"); // an open list
    writeScript("editor", "(define from-editor 3)");
    writeScript("game", "(define from-game 4)");
    EXPECT_EQ(outputOfCreation(), "");
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].text, "Could not load base scripts!");
    EXPECT_EQ(outputOf("(print from-base)"), ":integer (1)\n");
    EXPECT_EQ(outputOf("(print from-engine)"), ":integer (2)\n");
    EXPECT_EQ(outputOf("(print from-editor)"), "error: symbol 'from-editor' has no binding!\n:nil\n");
    EXPECT_EQ(outputOf("(print from-game)"), "error: symbol 'from-game' has no binding!\n:nil\n");
}

TEST_F(ScriptingDeviceTest, emptyBaseScriptIsFailure)
{
    writeScript("game", "; nothing but a comment\n");
    EXPECT_EQ(outputOfCreation(), "");
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].text, "Could not load base scripts!");
}

TEST_F(ScriptingDeviceTest, evaluationErrorIsNoFailureOfBaseScript)
{
    writeScript("base/base", "(unknown)");
    writeScript("game", "(display \"game\")");
    EXPECT_EQ(outputOfCreation(),
              "error: symbol 'unknown' has no binding!\nerror: expected :closure (got :nil)!\ngame\n");
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(ScriptingDeviceTest, loadingTheBaseScriptsAgainWarnsWhenOneFails)
{
    makeDevice();
    device->loadBaseScripts();
    EXPECT_TRUE(shownMessageBoxes().empty());
    writeScript("editor", ")");
    ::testing::internal::CaptureStdout();
    device->loadBaseScripts();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "error: invalid keyword/symbol name!\n");
    ASSERT_EQ(shownMessageBoxes().size(), 1u);
    EXPECT_EQ(shownMessageBoxes()[0].text, "Could not load base scripts!");
}

TEST_F(ScriptingDeviceTest, baseScriptsAreFoundByTheExtensionVariable)
{
    writeScript("base/base", "(set! *load-extension* \".script\")");
    writeFileContents((ownDirectory() / "lisp" / "engine.script").string(), "(display \"other engine\")");
    EXPECT_EQ(outputOfCreation(), "other engine\nerror: file 'editor' not found!\n");
}

// ---- reloading from a script --------------------------------------------------------------------------------------

TEST_F(ScriptingDeviceTest, reloadingLoadsAllFourAgainAndYieldsNothing)
{
    makeDevice();
    for (const std::string& name : allFour) writeScript(name, "(display \"" + name + "\")");
    EXPECT_EQ(outputOf("(print (reload-scripts))"), "base/base\nengine\neditor\ngame\n:nil\n");
}

TEST_F(ScriptingDeviceTest, reloadingReplacesDefinitionsAndKeepsConstants)
{
    writeScript("base/base", "(define ordinary 1) (define-constant lasting 1)");
    makeDevice();
    writeScript("base/base", "(define ordinary 2) (define-constant lasting 2)");
    EXPECT_EQ(outputOf("(reload-scripts)"),
              "warning: symbol 'ordinary' was already defined.\nerror: symbol 'lasting' is a constant!\n");
    EXPECT_EQ(outputOf("(print ordinary) (print lasting)"), ":integer (2)\n:integer (1)\n");
}

TEST_F(ScriptingDeviceTest, reloadingStopsAtTheFirstFailureWithoutWarning)
{
    makeDevice();
    removeScript("engine");
    writeScript("base/base", "(display \"base\")");
    writeScript("editor", "(display \"editor\")");
    EXPECT_EQ(outputOf("(reload-scripts)"), "base\nerror: file 'engine' not found!\n");
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(ScriptingDeviceTest, baseScriptsCannotReloadWhileTheyAreFirstLoaded)
{
    writeScript("base/base", "(reload-scripts)");
    EXPECT_EQ(outputOfCreation(),
              "error: symbol 'reload-scripts' has no binding!\nerror: expected :closure (got :nil)!\n");
}

TEST_F(ScriptingDeviceTest, reloadingIsConstantClosureWithoutParameters)
{
    makeDevice();
    EXPECT_EQ(outputOf("(print reload-scripts)"), ":closure (:nil)\n");
    EXPECT_EQ(outputOf("(define reload-scripts 1)"), "error: symbol 'reload-scripts' is a constant!\n");
    EXPECT_EQ(outputOf("(reload-scripts 1)"), "error: wrong number of parameters!\n");
}

TEST_F(ScriptingDeviceTest, scriptThatReloadsGoesOnAfterCollectionsInTheBaseScripts)
{
    makeDevice();
    ASSERT_EQ(outputOf("(define xs (list \"a\" \"b\" \"c\"))"), "");
    // Drops what the running script works on, collects, and fills the freed slots with other things.
    writeScript("base/base", "(set! xs :nil) (set! f :nil) (garbage-collection)"
                             "(define filling '(1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23 24 25 26))"
                             "(map (closure ((x)) (list x x)) filling)");
    ASSERT_EQ(outputOf("(define f (closure ((xs)) (do (reload-scripts) (for-each display xs) (+ 40 2))))"), "");
    const std::string output = outputOf("(do (print (f xs)) (display \"end\"))");
    EXPECT_EQ(output.find("full gc: "), 0u);
    EXPECT_EQ(output.substr(output.find('\n') + 1), "a\nb\nc\n:integer (42)\nend\n");
}

TEST_F(ScriptingDeviceTest, reloadingNestsOnlyUntilTheStackIsDeep)
{
    makeDevice();
    writeScript("base/base", "(reload-scripts)");
    EXPECT_EQ(outputOf("(reload-scripts)"), "error: recursion too deep!\n");
    writeScript("base/base", "(list)");
    EXPECT_EQ(outputOf("(reload-scripts)"), "");
}

// ---- one script ---------------------------------------------------------------------------------------------------

TEST_F(ScriptingDeviceTest, scriptIsLoadedByItsNameWithoutDirectoryAndExtension)
{
    makeDevice();
    writeScript("base/level", "(display \"one\") ; the first\n(display \"two\")\r\n\t\n");
    EXPECT_EQ(outputOfLoading("base/level"), "one\ntwo\n");
}

TEST_F(ScriptingDeviceTest, missingScriptIsReportedOnStandardOutput)
{
    makeDevice();
    EXPECT_EQ(outputOfLoading("nowhere"), "error: file 'nowhere' not found!\n(failed)");
    EXPECT_EQ(outputOfLoading(""), "error: file '' not found!\n(failed)");
    EXPECT_TRUE(shownMessageBoxes().empty());
}

TEST_F(ScriptingDeviceTest, pathOfMoreThanItsRoomIsNotFound)
{
    makeDevice();
    const std::string name(1100, 'x');
    EXPECT_EQ(outputOfLoading(name), "error: file '" + name + "' not found!\n(failed)");
}

TEST_F(ScriptingDeviceTest, formatCharactersInNamesAreText)
{
    makeDevice();
    EXPECT_EQ(outputOfLoading("%s%n%d"), "error: file '%s%n%d' not found!\n(failed)");
    EXPECT_EQ(outputOf("%s%n"), "error: symbol '%s%n' has no binding!\n");
}

TEST_F(ScriptingDeviceTest, whatStandsBeforeAnUnreadableExpressionStaysEvaluated)
{
    makeDevice();
    writeScript("broken", "(define kept 7) \"open");
    EXPECT_EQ(outputOfLoading("broken"), "(failed)");
    EXPECT_EQ(outputOf("(print kept)"), ":integer (7)\n");
}

TEST_F(ScriptingDeviceTest, emptyScriptIsFailureWithoutMessage)
{
    makeDevice();
    writeScript("empty", "");
    writeScript("blank", " \t\r\n");
    writeScript("comment", "; no line end");
    EXPECT_EQ(outputOfLoading("empty"), "(failed)");
    EXPECT_EQ(outputOfLoading("blank"), "(failed)");
    EXPECT_EQ(outputOfLoading("comment"), "(failed)");
}

TEST_F(ScriptingDeviceTest, semicolonInStringStartsCommentInFiles)
{
    makeDevice();
    writeScript("semicolon", "(display \"a;b\")\n(display \"c\")");
    EXPECT_EQ(outputOfLoading("semicolon"), "(failed)");
}

TEST_F(ScriptingDeviceTest, commentsJoinTheLinesThatTheyEnd)
{
    makeDevice();
    writeScript("joined", "(print 12;x\n34)");
    EXPECT_EQ(outputOfLoading("joined"), ":integer (1234)\n");
}

TEST_F(ScriptingDeviceTest, zeroByteEndsFile)
{
    makeDevice();
    writeScript("zero", "(display \"before\")\0(display \"behind\")"s);
    EXPECT_EQ(outputOfLoading("zero"), "before\n");
}

#ifndef _WIN32 // where directories cannot be opened
TEST_F(ScriptingDeviceTest, directoryCannotBeRead)
{
    makeDevice();
    std::filesystem::create_directory(ownDirectory() / "lisp" / "folder.lisp");
    EXPECT_EQ(outputOfLoading("folder"), "error: could not read from file!\n(failed)");
}
#endif

// ---- texts --------------------------------------------------------------------------------------------------------

TEST_F(ScriptingDeviceTest, textEvaluatesItsExpressionsOneAfterAnother)
{
    makeDevice();
    EXPECT_EQ(outputOf("(define x 1) (set! x (+ x 1)) (print x)"), ":integer (2)\n");
}

TEST_F(ScriptingDeviceTest, emptyTextIsFailureWithoutMessage)
{
    makeDevice();
    EXPECT_EQ(outputOf(""), "(unreadable)");
    EXPECT_EQ(outputOf(" \n\t\r"), "(unreadable)");
}

TEST_F(ScriptingDeviceTest, failedEvaluationIsNoFailureOfText)
{
    makeDevice();
    EXPECT_EQ(outputOf("(/ 1 0) (display \"on\")"), "error: division by zero!\non\n");
}

TEST_F(ScriptingDeviceTest, textsHaveNoComments)
{
    makeDevice();
    EXPECT_EQ(outputOf("(display \"a;b\")"), "a;b\n");
    EXPECT_EQ(outputOf("(display \"a\") ;"), "a\nerror: invalid keyword/symbol name!\n(unreadable)");
    EXPECT_EQ(outputOf("; two words"), "error: invalid input!\n(unreadable)");
}

TEST_F(ScriptingDeviceTest, zeroByteEndsText)
{
    makeDevice();
    EXPECT_EQ(outputOf("(display \"before\")\0(display \"behind\")"s), "before\n");
    EXPECT_EQ(outputOf("\0(display \"behind\")"s), "(unreadable)");
}

TEST_F(ScriptingDeviceTest, atomsDoNotEndAnExpression)
{
    makeDevice();
    EXPECT_EQ(outputOf("1"), "");
    EXPECT_EQ(outputOf("1 2"), "error: invalid input!\n(unreadable)");
    EXPECT_EQ(outputOf("(display \"a\") 5"), "a\n");
}

TEST_F(ScriptingDeviceTest, outputOfScriptsDoesNotGoToTheLog)
{
    makeDevice();
    warning("a line to find the end by");
    outputOf("(display \"printed\") (unknown)");
    EXPECT_EQ(logLines().back(), "WARNING: a line to find the end by");
}

TEST_F(ScriptingDeviceTest, eachTextMakesWhatEarlierOnesLeftCollectable)
{
    makeDevice();
    const std::string before = outputOf("(garbage-collection)");
    outputOf("(list 1 2 3 4 5 6 7 8 9 10)");
    EXPECT_EQ(outputOf("(garbage-collection)"), before);
    const std::string during = outputOf("(do (list 1 2 3 4 5 6 7 8 9 10) (garbage-collection))");
    EXPECT_NE(during.substr(during.find(" of ")), before.substr(before.find(" of ")));
}

// ---- the script directory -----------------------------------------------------------------------------------------

TEST_F(ScriptingDeviceTest, loadPathIsTheScriptDirectoryUnderTheDataRoot)
{
    makeDevice();
    const std::string directory = defaultDataRoot() + "lisp/";
    EXPECT_EQ(directory, (ownDirectory() / "lisp" / "").generic_string());
    EXPECT_EQ(outputOf("(display (head *load-path*)) (print *load-path*)"),
              directory + "\n(:list :string) (1 nodes)\n");
}

TEST_F(ScriptingDeviceTest, environmentChoosesTheDataRootOfTheNextDevice)
{
    makeDevice();
    const auto other = ownDirectory() / "other";
    std::filesystem::create_directories(other / "lisp" / "base");
    writeFileContents((other / "lisp" / "base" / "base.lisp").string(), "(display \"the other base\")");
    setEnvironment("XUM_DATA_ROOT", other.string().c_str());
    ::testing::internal::CaptureStdout();
    ScriptingDevice* second = engine->createScriptingDevice();
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "the other base\nerror: file 'engine' not found!\n");
    engine->destroyScriptingDevice(second);
    EXPECT_EQ(outputOfLoading("game"), ""); // the first device keeps its directory
}

TEST_F(ScriptingDeviceTest, scriptsMayExtendTheLoadPath)
{
    makeDevice();
    std::filesystem::create_directory(ownDirectory() / "more");
    writeFileContents((ownDirectory() / "more" / "extra.lisp").string(), "(display \"extra\")");
    writeFileContents((ownDirectory() / "more" / "game.lisp").string(), "(display \"more game\")");
    const std::string directory = (ownDirectory() / "more" / "").generic_string();
    ASSERT_EQ(outputOf("(set! *load-path* (cons 5 (list (head *load-path*) \"" + directory + "\")))"), "");
    EXPECT_EQ(outputOfLoading("extra"), "extra\n");
    EXPECT_EQ(outputOfLoading("game"), ""); // the first directory that has it
}

TEST_F(ScriptingDeviceTest, loadPathThatIsNoListHasNoDirectories)
{
    makeDevice();
    for (const char* value : {"5", "\"text\"", "(list)", "(list 1 2)", ":nil"}) {
        outputOf("(define *load-path* "s + value + ")");
        EXPECT_EQ(outputOfLoading("game"), "error: file 'game' not found!\n(failed)") << value;
    }
}

// ---- several devices ----------------------------------------------------------------------------------------------

TEST_F(ScriptingDeviceTest, devicesSideBySideShareNothing)
{
    makeDevice();
    ScriptingDevice* second = engine->createScriptingDevice();
    ASSERT_NE(second, nullptr);
    outputOf(device, "(define x 1) (define-type :thing () ())");
    EXPECT_EQ(outputOf(second, "(print x)"), "error: symbol 'x' has no binding!\n:nil\n");
    EXPECT_EQ(outputOf(second, "(define x 2) (define-type :thing () ())"), "");
    outputOf(second, "(garbage-collection)");
    EXPECT_EQ(outputOf(device, "(print x)"), ":integer (1)\n");
    engine->destroyScriptingDevice(device);
    device = second;
    EXPECT_EQ(outputOf("(print x)"), ":integer (2)\n");
}

TEST_F(ScriptingDeviceTest, devicesOneAfterTheOtherStartAnew)
{
    for (int i = 0; i < 3; ++i) {
        makeDevice();
        EXPECT_EQ(outputOf("(print x)"), "error: symbol 'x' has no binding!\n:nil\n");
        EXPECT_EQ(outputOf("(define x 1) (define-constant y 1)"), "");
        engine->destroyScriptingDevice(device);
        device = nullptr;
    }
}

// ---- hostile scripts ----------------------------------------------------------------------------------------------

TEST_F(ScriptingDeviceTest, scriptThatFillsTheMemoryLeavesUsableDevice)
{
    makeDevice();
    outputOf("(define s \"0123456789\") (define double (closure () (do (set! s (+ s s)) (double))))");
    EXPECT_EQ(outputOf("(double)"), "error: out of memory!\n");
    EXPECT_EQ(outputOf("(print (< 100000000 (string-size s)))"), ":boolean (:true)\n");
    EXPECT_EQ(outputOf("(double)"), "error: out of memory!\n");
    EXPECT_EQ(outputOfLoading("game"), "");
}

TEST_F(ScriptingDeviceTest, scriptThatCallsItselfWithoutEndLeavesUsableDevice)
{
    makeDevice();
    writeScript("endless", "(load \"endless\")");
    EXPECT_EQ(outputOfLoading("endless"), "error: recursion too deep!\n");
    outputOf("(define f (closure ((n)) (+ (f n) (f n))))");
    EXPECT_EQ(outputOf("(f 1) (display \"next\")"), "error: recursion too deep!\nnext\n");
    EXPECT_EQ(outputOf(std::string(1000000, '(')), "(unreadable)");
    EXPECT_EQ(outputOf("(print (+ 1 2))"), ":integer (3)\n");
}
