#include "engine_fixtures.h"
#include "made_files.h"
#include "recording_devices.h"
#include "test_directory.h"

#include <xum/files/cache.h>
#include <xum/files/data_root.h>

#include <algorithm>
#include <filesystem>
#include <limits>
#include <stdexcept>

namespace {

using Calls = std::vector<std::string>;

/// A test with a cache over files in memory and with devices that only write down what they are asked for.
class CacheTest : public EngineFixture {
protected:
    void SetUp() override
    {
        EngineFixture::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        cache = engine->createCache(&host);
        ASSERT_NE(cache, nullptr);
        cache->setDataRoot("root/");
    }

    void TearDown() override
    {
        host.duringLoad = nullptr;
        if (engine != nullptr) engine->destroyCache(cache);
        EXPECT_EQ(livingObjectCount(), 0u) << "not given back to the devices";
        EngineFixture::TearDown();
    }

    /// Files of every kind: the pictures 1 to 3, the sounds 1 to 3, the music 1 to 3, and the programs 1 to 3, which
    /// have one vertex shader each.
    void putFiles()
    {
        for (const std::string name : {"1", "2", "3"}) {
            host.files["root/textures/picture " + name] = bitmapOf(1, {Pixel{1, 2, 3, 255}});
            host.files["root/samples/sound " + name] = "sound";
            host.files["root/streams/music " + name] = "music";
            host.files["root/programs/program " + name] = "<program><vertex-shaders v" + name + "/></program>";
            host.files["root/shaders/v" + name] = "source";
        }
    }

    /// The identifiers 0 to 3 for a program, a texture, a sample and a stream, all loaded.
    void loadOneOfEach(bool transient)
    {
        putFiles();
        EXPECT_NE(cache->getProgram(&gl, cache->getId("program 1"), transient), nullptr);
        EXPECT_NE(cache->getTexture(&gl, cache->getId("picture 1"), false, transient), nullptr);
        EXPECT_NE(cache->getSample(&mixer, cache->getId("sound 1"), transient), nullptr);
        EXPECT_NE(cache->getStream(&mixer, cache->getId("music 1"), transient), nullptr);
        record.take();
    }

    /// What happens while a program of that description is loaded.
    Calls callsToLoadProgram(const std::string& name, const std::string& description)
    {
        host.files["root/programs/" + name] = description;
        record.take();
        EXPECT_NE(cache->getProgram(&gl, cache->getId(name), false), nullptr);
        return record.take();
    }

    CallRecord record;
    HostResources host{record};
    RecordingRenderDevice gl{record, "gl"};
    RecordingRenderDevice otherGL{record, "other"};
    RecordingAudioDevice mixer{record, "mixer"};
    RecordingAudioDevice otherMixer{record, "other"};
    Cache* cache = nullptr;
};

} // namespace

// Names and directories.

TEST_F(CacheTest, numbersNamesInTheOrderInWhichItHearsThem)
{
    EXPECT_EQ(cache->getId("a"), 0);
    EXPECT_EQ(cache->getId("b"), 1);
    EXPECT_EQ(cache->getId("a"), 0);
    EXPECT_EQ(cache->getId("A"), 2);
    EXPECT_EQ(cache->getId(""), 3);
    EXPECT_EQ(cache->getId(std::string("a\0", 2)), 4);
    EXPECT_EQ(cache->getId(""), 3);
    EXPECT_EQ(record.take(), Calls()) << "a name alone loads nothing";
}

TEST_F(CacheTest, takesAnyNumberOfNames)
{
    const auto nameOf = [](int i) { return "name " + std::to_string(i); };
    for (int i = 0; i < 10000; ++i) ASSERT_EQ(cache->getId(nameOf(i)), i);
    for (int i = 0; i < 10000; ++i) ASSERT_EQ(cache->getId(nameOf(i)), i);
    host.files["root/samples/" + nameOf(9876)] = "sound";
    EXPECT_NE(cache->getSample(&mixer, 9876, false), nullptr);
}

TEST_F(CacheTest, hasNothingForAnIdentifierThatItNeverGaveOut)
{
    putFiles();
    cache->getId("picture 1");
    for (const int id : {-1, 1, 2, std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}) {
        EXPECT_EQ(cache->getProgram(&gl, id, false), nullptr) << id;
        EXPECT_EQ(cache->getTexture(&gl, id, false, false), nullptr) << id;
        EXPECT_EQ(cache->getSample(&mixer, id, false), nullptr) << id;
        EXPECT_EQ(cache->getStream(&mixer, id, false), nullptr) << id;
    }
    EXPECT_EQ(record.take(), Calls());
    EXPECT_NE(cache->getTexture(&gl, 0, false, false), nullptr);
}

TEST_F(CacheTest, startsWithTheUsualDirectories)
{
    EXPECT_EQ(cache->getShaderDirectory(), "shaders/");
    EXPECT_EQ(cache->getProgramDirectory(), "programs/");
    EXPECT_EQ(cache->getTextureDirectory(), "textures/");
    EXPECT_EQ(cache->getSampleDirectory(), "samples/");
    EXPECT_EQ(cache->getStreamDirectory(), "streams/");
}

TEST_F(CacheTest, keepsEveryDirectoryAsItIsGiven)
{
    cache->setDataRoot("");
    cache->setShaderDirectory("no slash");
    cache->setProgramDirectory("../up/");
    cache->setTextureDirectory("back\\slash\\");
    cache->setSampleDirectory("/absolute/");
    cache->setStreamDirectory("a//b//");
    EXPECT_EQ(cache->getDataRoot(), "");
    EXPECT_EQ(cache->getShaderDirectory(), "no slash");
    EXPECT_EQ(cache->getProgramDirectory(), "../up/");
    EXPECT_EQ(cache->getTextureDirectory(), "back\\slash\\");
    EXPECT_EQ(cache->getSampleDirectory(), "/absolute/");
    EXPECT_EQ(cache->getStreamDirectory(), "a//b//");
}

TEST_F(CacheTest, joinsDirectoriesAndNamesAsTheyAre)
{
    cache->setDataRoot("[root]");
    cache->setShaderDirectory("[shaders]");
    cache->setProgramDirectory("[programs]");
    cache->setTextureDirectory("[textures]");
    cache->setSampleDirectory("[samples]");
    cache->setStreamDirectory("");
    host.files = {{"[root][programs]p", "<program><vertex-shaders v/></program>"},
                  {"[root][shaders]v", "source"},
                  {"[root][textures]a/../t", bitmapOf(1, {Pixel{1, 2, 3, 255}})},
                  {"[root][samples]s", "sound"},
                  {std::string("[root]m\0n", 9), "music"}};
    EXPECT_NE(cache->getProgram(&gl, cache->getId("p"), false), nullptr);
    EXPECT_NE(cache->getTexture(&gl, cache->getId("a/../t"), false, false), nullptr);
    EXPECT_NE(cache->getSample(&mixer, cache->getId("s"), false), nullptr);
    EXPECT_NE(cache->getStream(&mixer, cache->getId(std::string("m\0n", 3)), false), nullptr);
    EXPECT_EQ(record.take(),
              (Calls{"load([root][programs]p)", "load([root][shaders]v)", "gl.createShader(0, v, source)",
                     "gl.createProgram([1], [], [])", "load([root][textures]a/../t)", "gl.createTexture(1, 1)",
                     "3.update(010203ff)", "load([root][samples]s)", "mixer.loadSample(sound)",
                     "load(" + std::string("[root]m\0n", 9) + ")", "mixer.loadStream(music)"}));
}

TEST_F(CacheTest, changeOfADirectoryConcernsOnlyWhatIsNotLoadedYet)
{
    host.files = {{"root/textures/a", bitmapOf(1, {Pixel{1, 1, 1, 255}})},
                  {"root/textures/b", bitmapOf(1, {Pixel{2, 2, 2, 255}})},
                  {"root/new/a", bitmapOf(1, {Pixel{3, 3, 3, 255}})},
                  {"root/new/b", bitmapOf(1, {Pixel{4, 4, 4, 255}})}};
    Texture* a = cache->getTexture(&gl, cache->getId("a"), false, false);
    cache->setTextureDirectory("new/");
    record.take();
    EXPECT_EQ(cache->getTexture(&gl, cache->getId("a"), false, false), a);
    EXPECT_NE(cache->getTexture(&gl, cache->getId("b"), false, false), nullptr);
    EXPECT_EQ(record.take(), (Calls{"load(root/new/b)", "gl.createTexture(1, 1)", "2.update(040404ff)"}));
}

TEST_F(CacheTest, readsFromTheDataRootOfTheEnvironment)
{
    Cache* usual = engine->createCache(&host);
    EXPECT_EQ(usual->getDataRoot(), defaultDataRoot());
    EXPECT_EQ(usual->getDataRoot().back(), '/');
    const char* variable = std::getenv("XUM_DATA_ROOT");
    const std::string before = variable != nullptr ? variable : "";

    const std::string root = std::filesystem::current_path().generic_string() + "/chosen/";
    setEnvironment("XUM_DATA_ROOT", "chosen");
    Cache* chosen = engine->createCache(&host);
    EXPECT_EQ(chosen->getDataRoot(), root);
    setEnvironment("XUM_DATA_ROOT", before.c_str());
    EXPECT_EQ(chosen->getDataRoot(), root) << "asked once";

    host.files[root + "samples/s"] = "sound";
    EXPECT_NE(chosen->getSample(&mixer, chosen->getId("s"), false), nullptr);
    EXPECT_EQ(record.take(), (Calls{"load(" + root + "samples/s)", "mixer.loadSample(sound)"}));
    engine->destroyCache(usual);
    engine->destroyCache(chosen);
}

// Loading once.

TEST_F(CacheTest, loadsEachItemOnce)
{
    putFiles();
    Program* program = cache->getProgram(&gl, cache->getId("program 1"), false);
    Texture* texture = cache->getTexture(&gl, cache->getId("picture 1"), false, false);
    Sample* sample = cache->getSample(&mixer, cache->getId("sound 1"), false);
    Stream* stream = cache->getStream(&mixer, cache->getId("music 1"), false);
    EXPECT_TRUE(program != nullptr && texture != nullptr && sample != nullptr && stream != nullptr);
    record.take();
    EXPECT_EQ(cache->getProgram(&gl, 0, false), program);
    EXPECT_EQ(cache->getTexture(&gl, 1, false, false), texture);
    EXPECT_EQ(cache->getSample(&mixer, 2, false), sample);
    EXPECT_EQ(cache->getStream(&mixer, 3, false), stream);
    EXPECT_EQ(record.take(), Calls());
}

TEST_F(CacheTest, looksAtNoOtherArgumentOfWhatIsLoaded)
{
    loadOneOfEach(false);
    EXPECT_NE(cache->getProgram(nullptr, 0, true), nullptr);
    EXPECT_NE(cache->getTexture(&otherGL, 1, true, true), nullptr);
    EXPECT_NE(cache->getSample(nullptr, 2, true), nullptr);
    EXPECT_NE(cache->getStream(&otherMixer, 3, true), nullptr);
    cache->release(&gl, &mixer, false);
    EXPECT_EQ(record.take(), Calls()) << "nothing was loaded as transient";
}

TEST_F(CacheTest, firstRequestDecidesWhatIsTransient)
{
    loadOneOfEach(true);
    cache->getProgram(&gl, 0, false);
    cache->getTexture(&gl, 1, false, false);
    cache->getSample(&mixer, 2, false);
    cache->getStream(&mixer, 3, false);
    cache->release(&gl, &mixer, false);
    EXPECT_EQ(record.take(), (Calls{"gl.destroyProgram(2)", "gl.destroyTexture(3)", "mixer.destroySample(4)",
                                    "mixer.destroyStream(5)"}));
}

TEST_F(CacheTest, requestAfterTheReleaseDecidesAnew)
{
    loadOneOfEach(true);
    cache->release(nullptr, nullptr, false);
    cache->getTexture(&gl, 1, false, false);
    cache->getSample(&mixer, 2, true);
    record.take();
    cache->release(nullptr, nullptr, false);
    EXPECT_EQ(record.take(), Calls{"mixer.destroySample(7)"});
}

TEST_F(CacheTest, hostMayRegisterNamesWhileAFileIsLoaded)
{
    putFiles();
    const int id = cache->getId("picture 1");
    int registered = 0;
    host.duringLoad = [&] {
        for (int i = 0; i < 1000; ++i) cache->getId("another name " + std::to_string(registered++));
    };
    Texture* texture = cache->getTexture(&gl, id, false, false);
    Program* program = cache->getProgram(&gl, cache->getId("program 1"), false);
    EXPECT_TRUE(texture != nullptr && program != nullptr);
    host.duringLoad = nullptr;
    record.take();
    EXPECT_EQ(cache->getTexture(&gl, id, false, false), texture);
    EXPECT_EQ(cache->getProgram(&gl, cache->getId("program 1"), false), program);
    EXPECT_EQ(record.take(), Calls());
    EXPECT_EQ(cache->getId("another name 0"), 1);
}

TEST_F(CacheTest, hostMayLoadAnotherItemWhileAFileIsLoaded)
{
    putFiles();
    const int outer = cache->getId("program 1");
    const int inner = cache->getId("program 2");
    host.duringLoad = [&] {
        host.duringLoad = nullptr;
        EXPECT_NE(cache->getProgram(&gl, inner, false), nullptr);
    };
    EXPECT_NE(cache->getProgram(&gl, outer, false), nullptr);
    record.take();
    EXPECT_NE(cache->getProgram(&gl, inner, false), cache->getProgram(&gl, outer, false));
    EXPECT_EQ(record.take(), Calls());
}

TEST_F(CacheTest, itemThatTheHostLoadsMeanwhileIsTheOneThatCounts)
{
    putFiles();
    const int id = cache->getId("picture 1");
    Texture* inner = nullptr;
    host.duringLoad = [&] {
        host.duringLoad = nullptr;
        inner = cache->getTexture(&gl, id, false, true);
    };
    EXPECT_EQ(cache->getTexture(&gl, id, true, false), inner);
    EXPECT_EQ(record.take(), (Calls{"load(root/textures/picture 1)", "load(root/textures/picture 1)",
                                    "gl.createTexture(1, 1)", "1.update(010203ff)", "gl.createTexture(1, 1, mipmaps)",
                                    "2.update(010203ff)", "gl.destroyTexture(2)"}));
    cache->release(nullptr, nullptr, false);
    EXPECT_EQ(record.take(), Calls{"gl.destroyTexture(1)"}) << "the one that was loaded as transient";
}

TEST_F(CacheTest, itemThatTheHostLoadsAsAnotherKindMeanwhileLeavesNothingOfThisKind)
{
    putFiles();
    host.files["root/samples/picture 1"] = "sound";
    const int id = cache->getId("picture 1");
    Sample* inner = nullptr;
    host.duringLoad = [&] {
        host.duringLoad = nullptr;
        inner = cache->getSample(&mixer, id, false);
    };
    EXPECT_EQ(cache->getTexture(&gl, id, false, false), nullptr);
    EXPECT_NE(inner, nullptr);
    EXPECT_EQ(record.take().back(), "gl.destroyTexture(2)");
    EXPECT_EQ(cache->getSample(&mixer, id, false), inner);
}

TEST_F(CacheTest, shaderThatTheHostLoadsMeanwhileIsNotMadeTwice)
{
    host.files = {{"root/programs/outer", "<program><vertex-shaders v/></program>"},
                  {"root/programs/inner", "<program><vertex-shaders v/></program>"},
                  {"root/shaders/v", "source"}};
    const int inner = cache->getId("inner");
    int loads = 0;
    host.duringLoad = [&] {
        if (++loads == 2) {
            EXPECT_NE(cache->getProgram(&gl, inner, false), nullptr);
        }
    };
    EXPECT_NE(cache->getProgram(&gl, cache->getId("outer"), false), nullptr);
    EXPECT_EQ(record.take(), (Calls{"load(root/programs/outer)", "load(root/shaders/v)", "load(root/programs/inner)",
                                    "load(root/shaders/v)", "gl.createShader(0, v, source)",
                                    "gl.createProgram([1], [], [])", "gl.createProgram([1], [], [])"}));
}

TEST_F(CacheTest, exceptionOfTheHostPassesThroughAndLoadsNothing)
{
    putFiles();
    host.duringLoad = [] { throw std::runtime_error("from the host"); };
    EXPECT_THROW(cache->getProgram(&gl, cache->getId("program 1"), false), std::runtime_error);
    EXPECT_THROW(cache->getTexture(&gl, cache->getId("picture 1"), false, false), std::runtime_error);
    EXPECT_THROW(cache->getSample(&mixer, cache->getId("sound 1"), false), std::runtime_error);
    EXPECT_THROW(cache->getStream(&mixer, cache->getId("music 1"), false), std::runtime_error);
    host.duringLoad = nullptr;
    loadOneOfEach(false);
}

TEST_F(CacheTest, exceptionOfTheHostWhileAShaderIsLoadedLeavesItToBeLoaded)
{
    putFiles();
    int loads = 0;
    host.duringLoad = [&] {
        if (++loads == 2) throw std::runtime_error("from the host");
    };
    EXPECT_THROW(cache->getProgram(&gl, cache->getId("program 1"), false), std::runtime_error);
    record.take();
    EXPECT_NE(cache->getProgram(&gl, cache->getId("program 1"), false), nullptr);
    EXPECT_EQ(record.take(), (Calls{"load(root/programs/program 1)", "load(root/shaders/v1)",
                                    "gl.createShader(0, v1, source)", "gl.createProgram([1], [], [])"}));
}

// Programs and shaders.

TEST_F(CacheTest, buildsAProgramOfItsShadersInTheOrderOfTheirKinds)
{
    for (const std::string name : {"v", "g", "f1", "f2", "c"}) host.files["root/shaders/" + name] = "source of " + name;
    EXPECT_EQ(
        callsToLoadProgram("all", "<program>"
                                  "<outputs \"color(1), depth(0)\"/>"
                                  "<compute-shaders c/>"
                                  "<fragment-shaders f2,f1/>"
                                  "<inputs position,normal/>"
                                  "<geometry-shaders g/>"
                                  "<vertex-shaders v/>"
                                  "</program>"),
        (Calls{"load(root/programs/all)", "load(root/shaders/v)", "gl.createShader(0, v, source of v)",
               "load(root/shaders/g)", "gl.createShader(1, g, source of g)", "load(root/shaders/f2)",
               "gl.createShader(2, f2, source of f2)", "load(root/shaders/f1)", "gl.createShader(2, f1, source of f1)",
               "load(root/shaders/c)", "gl.createShader(3, c, source of c)",
               "gl.createProgram([1 2 3 4 5], [position normal], [color(1) depth(0)])"}));
}

TEST_F(CacheTest, buildsAProgramOfNothingFromAnEmptyDescription)
{
    EXPECT_EQ(callsToLoadProgram("none", "<program></program>"),
              (Calls{"load(root/programs/none)", "gl.createProgram([], [], [])"}));
}

TEST_F(CacheTest, loadsAShaderThatIsListedTwiceOnce)
{
    host.files["root/shaders/v"] = "source";
    EXPECT_EQ(callsToLoadProgram("twice", "<program><vertex-shaders v,v/></program>"),
              (Calls{"load(root/programs/twice)", "load(root/shaders/v)", "gl.createShader(0, v, source)",
                     "gl.createProgram([1 1], [], [])"}));
}

TEST_F(CacheTest, sharesShadersBetweenPrograms)
{
    host.files["root/shaders/v"] = "source";
    callsToLoadProgram("first", "<program><vertex-shaders v/></program>");
    EXPECT_EQ(callsToLoadProgram("second", "<program><vertex-shaders v/></program>"),
              (Calls{"load(root/programs/second)", "gl.createProgram([1], [], [])"}));
}

TEST_F(CacheTest, tellsShadersOfOneNameApartByTheirKind)
{
    host.files["root/shaders/s"] = "source";
    EXPECT_EQ(callsToLoadProgram("kinds", "<program><vertex-shaders s/><compute-shaders s/></program>"),
              (Calls{"load(root/programs/kinds)", "load(root/shaders/s)", "gl.createShader(0, s, source)",
                     "load(root/shaders/s)", "gl.createShader(3, s, source)", "gl.createProgram([1 2], [], [])"}));
}

TEST_F(CacheTest, keepsTheSpaceInFrontOfACommaInAName)
{
    host.files["root/shaders/a.vert "] = "a";
    host.files["root/shaders/b.vert"] = "b";
    EXPECT_EQ(callsToLoadProgram("spaces", "<program><vertex-shaders \"a.vert ,b.vert\"/></program>"),
              (Calls{"load(root/programs/spaces)", "load(root/shaders/a.vert )", "gl.createShader(0, a.vert , a)",
                     "load(root/shaders/b.vert)", "gl.createShader(0, b.vert, b)", "gl.createProgram([1 2], [], [])"}));
}

TEST_F(CacheTest, endsTheSourceOfAShaderWithOneNul)
{
    host.files["root/shaders/empty"] = "";
    host.files["root/shaders/bytes"] = "\x80\xff";
    host.files["root/shaders/nul"] = std::string("a\0b\0", 4);
    EXPECT_EQ(
        callsToLoadProgram("sources", "<program><vertex-shaders empty,bytes,nul/></program>"),
        (Calls{"load(root/programs/sources)", "load(root/shaders/empty)", "gl.createShader(0, empty, )",
               "load(root/shaders/bytes)", "gl.createShader(0, bytes, \x80\xff)", "load(root/shaders/nul)",
               "gl.createShader(0, nul, " + std::string("a\0b\0", 4) + ")", "gl.createProgram([1 2 3], [], [])"}));
}

TEST_F(CacheTest, missingShaderStaysInTheListAsNull)
{
    host.files["root/shaders/v"] = "source";
    EXPECT_EQ(callsToLoadProgram("first", "<program><vertex-shaders lost,v,lost/></program>"),
              (Calls{"load(root/programs/first)", "load(root/shaders/lost)", "load(root/shaders/v)",
                     "gl.createShader(0, v, source)", "gl.createProgram([null 1 null], [], [])"}));
    host.files["root/shaders/lost"] = "found";
    EXPECT_EQ(callsToLoadProgram("second", "<program><vertex-shaders lost/></program>"),
              (Calls{"load(root/programs/second)", "gl.createProgram([null], [], [])"}))
        << "it is not looked for again";
    cache->release(nullptr, nullptr, true);
    EXPECT_EQ(callsToLoadProgram("third", "<program><vertex-shaders lost/></program>"),
              (Calls{"load(root/programs/third)", "load(root/shaders/lost)", "gl.createShader(0, lost, found)",
                     "gl.createProgram([4], [], [])"}));
}

TEST_F(CacheTest, missingShaderIsWrittenNowhere)
{
    const std::vector<std::string> linesBefore = logLines();
    callsToLoadProgram("program", "<program><vertex-shaders lost/></program>");
    EXPECT_EQ(logLines(), linesBefore);
}

TEST_F(CacheTest, programHasTheNamesOfItsDescription)
{
    host.files["root/programs/p"] = "<program><inputs \"a, b\"/><outputs c(0)/></program>";
    Program* program = cache->getProgram(&gl, cache->getId("p"), false);
    EXPECT_EQ(program->getAttributes(), (std::list<std::string>{"a", "b"}));
    EXPECT_EQ(program->getOutputs(), std::list<std::string>{"c(0)"});
}

// Textures and sounds.

TEST_F(CacheTest, handsThePixelsOfAPictureToItsTexture)
{
    const Pixel first{1, 2, 3, 255};
    const Pixel second{255, 128, 0, 255};
    const Pixel third{9, 8, 7, 255};
    host.files["root/textures/wide"] = bitmapOf(3, {first, second, third});
    host.files["root/textures/high"] = bitmapOf(1, {first, second});
    EXPECT_NE(cache->getTexture(&gl, cache->getId("wide"), false, false), nullptr);
    EXPECT_NE(cache->getTexture(&gl, cache->getId("high"), true, false), nullptr);
    EXPECT_EQ(record.take(),
              (Calls{"load(root/textures/wide)", "gl.createTexture(3, 1)", "1.update(010203ff ff8000ff 090807ff)",
                     "load(root/textures/high)", "gl.createTexture(1, 2, mipmaps)", "2.update(010203ff ff8000ff)"}));
}

TEST_F(CacheTest, handsTheBytesOfASoundToTheAudioDevice)
{
    const std::string bytes("\0\xff sound", 8);
    host.files["root/samples/sound"] = bytes;
    host.files["root/streams/music"] = bytes;
    EXPECT_NE(cache->getSample(&mixer, cache->getId("sound"), false), nullptr);
    EXPECT_NE(cache->getStream(&mixer, cache->getId("music"), false), nullptr);
    EXPECT_EQ(record.take(), (Calls{"load(root/samples/sound)", "mixer.loadSample(" + bytes + ")",
                                    "load(root/streams/music)", "mixer.loadStream(" + bytes + ")"}));
}

// Devices that make nothing.

TEST_F(CacheTest, whatADeviceDoesNotMakeStaysUnloaded)
{
    putFiles();
    const int program = cache->getId("program 1");
    const int texture = cache->getId("picture 1");
    gl.isInert = true;
    EXPECT_EQ(cache->getProgram(&gl, program, true), nullptr);
    EXPECT_EQ(cache->getTexture(&gl, texture, false, true), nullptr);
    EXPECT_EQ(record.take(),
              (Calls{"load(root/programs/program 1)", "load(root/shaders/v1)", "gl.createShader(0, v1, source)",
                     "gl.createProgram([null], [], [])", "load(root/textures/picture 1)", "gl.createTexture(1, 1)"}));
    cache->release(&gl, &mixer, true);
    EXPECT_EQ(record.take(), Calls());

    EXPECT_EQ(cache->getProgram(&gl, program, true), nullptr);
    record.take();
    EXPECT_NE(cache->getProgram(&otherGL, program, false), nullptr);
    EXPECT_NE(cache->getTexture(&otherGL, texture, false, false), nullptr);
    EXPECT_EQ(record.take(),
              (Calls{"load(root/programs/program 1)", "load(root/shaders/v1)", "other.createShader(0, v1, source)",
                     "other.createProgram([1], [], [])", "load(root/textures/picture 1)", "other.createTexture(1, 1)",
                     "3.update(010203ff)"}));
}

TEST_F(CacheTest, whatIsAskedForWithoutADeviceStaysUnloaded)
{
    putFiles();
    const int program = cache->getId("program 1");
    const int texture = cache->getId("picture 1");
    const int sample = cache->getId("sound 1");
    const int stream = cache->getId("music 1");
    EXPECT_EQ(cache->getProgram(nullptr, program, true), nullptr);
    EXPECT_EQ(cache->getTexture(nullptr, texture, true, true), nullptr);
    EXPECT_EQ(cache->getSample(nullptr, sample, true), nullptr);
    EXPECT_EQ(cache->getStream(nullptr, stream, true), nullptr);
    cache->release(&gl, &mixer, true);
    EXPECT_EQ(record.take(), (Calls{"load(root/programs/program 1)", "load(root/textures/picture 1)",
                                    "load(root/samples/sound 1)", "load(root/streams/music 1)"}));
    EXPECT_NE(cache->getProgram(&gl, program, false), nullptr);
    EXPECT_NE(cache->getTexture(&gl, texture, false, false), nullptr);
    EXPECT_NE(cache->getSample(&mixer, sample, false), nullptr);
    EXPECT_NE(cache->getStream(&mixer, stream, false), nullptr);
}

TEST_F(CacheTest, unloadedItemMayBeLoadedAsAnotherKind)
{
    putFiles();
    host.files["root/samples/picture 1"] = "sound";
    const int id = cache->getId("picture 1");
    EXPECT_EQ(cache->getTexture(nullptr, id, false, false), nullptr);
    EXPECT_NE(cache->getSample(&mixer, id, true), nullptr);
    cache->release(nullptr, nullptr, false);
    EXPECT_NE(cache->getTexture(&gl, id, false, false), nullptr);
}

// Releasing.

TEST_F(CacheTest, releasesOnlyWhatIsTransient)
{
    putFiles();
    cache->getTexture(&gl, cache->getId("picture 1"), false, true);
    cache->getTexture(&gl, cache->getId("picture 2"), false, false);
    cache->getSample(&mixer, cache->getId("sound 1"), false);
    cache->getSample(&mixer, cache->getId("sound 2"), true);
    cache->getProgram(&gl, cache->getId("program 1"), true);
    record.take();
    cache->release(&gl, &mixer, false);
    EXPECT_EQ(record.take(), (Calls{"gl.destroyTexture(1)", "mixer.destroySample(4)", "gl.destroyProgram(6)"}));
    cache->release(&gl, &mixer, false);
    EXPECT_EQ(record.take(), Calls());
    EXPECT_NE(cache->getTexture(&gl, cache->getId("picture 2"), false, false), nullptr);
    EXPECT_EQ(record.take(), Calls()) << "what stayed is still loaded";
}

TEST_F(CacheTest, keepsShadersWhenOnlyWhatIsTransientIsReleased)
{
    putFiles();
    const int id = cache->getId("program 1");
    cache->getProgram(&gl, id, true);
    cache->release(&gl, &mixer, false);
    record.take();
    EXPECT_NE(cache->getProgram(&gl, id, true), nullptr);
    EXPECT_EQ(record.take(), (Calls{"load(root/programs/program 1)", "gl.createProgram([1], [], [])"}));
}

TEST_F(CacheTest, releasesEverythingInTheOrderOfTheIdentifiersAndThenTheShaders)
{
    putFiles();
    const int stream = cache->getId("music 1");
    const int texture = cache->getId("picture 1");
    cache->getId("never loaded");
    const int program = cache->getId("program 1");
    const int sample = cache->getId("sound 1");
    cache->getSample(&mixer, sample, true);
    cache->getProgram(&gl, program, false);
    cache->getTexture(&gl, texture, false, false);
    cache->getStream(&mixer, stream, true);
    record.take();
    cache->release(&gl, &mixer, true);
    EXPECT_EQ(record.take(), (Calls{"mixer.destroyStream(5)", "gl.destroyTexture(4)", "gl.destroyProgram(3)",
                                    "mixer.destroySample(1)", "gl.destroyShader(2)"}));
    cache->release(&gl, &mixer, true);
    EXPECT_EQ(record.take(), Calls());
}

TEST_F(CacheTest, releasesThroughTheDevicesThatItIsGiven)
{
    loadOneOfEach(false);
    cache->release(&otherGL, &otherMixer, true);
    EXPECT_EQ(record.take(), (Calls{"other.destroyProgram(2)", "other.destroyTexture(3)", "other.destroySample(4)",
                                    "other.destroyStream(5)", "other.destroyShader(1)"}));
}

TEST_F(CacheTest, releasesThroughTheDevicesThatLoadedWhenItIsGivenNone)
{
    loadOneOfEach(false);
    cache->getTexture(&otherGL, cache->getId("picture 2"), false, false);
    cache->getProgram(&otherGL, cache->getId("program 2"), false);
    cache->getSample(&otherMixer, cache->getId("sound 2"), false);
    cache->getStream(&otherMixer, cache->getId("music 2"), false);
    record.take();
    cache->release(nullptr, nullptr, true);
    Calls calls = record.take();
    ASSERT_EQ(calls.size(), 10u);
    const bool isFirstShaderFirst = calls[8] == "gl.destroyShader(1)"; // in either order
    EXPECT_EQ(calls,
              (Calls{"gl.destroyProgram(2)", "gl.destroyTexture(3)", "mixer.destroySample(4)", "mixer.destroyStream(5)",
                     "other.destroyTexture(6)", "other.destroyProgram(8)", "other.destroySample(9)",
                     "other.destroyStream(10)", isFirstShaderFirst ? "gl.destroyShader(1)" : "other.destroyShader(7)",
                     isFirstShaderFirst ? "other.destroyShader(7)" : "gl.destroyShader(1)"}));
}

TEST_F(CacheTest, deviceOfTheHostMayUseTheCacheWhileItDestroys)
{
    loadOneOfEach(true);
    int registered = 0;
    gl.duringDestroy = [&] {
        for (int i = 0; i < 100; ++i) cache->getId("another name " + std::to_string(registered++));
        cache->release(nullptr, nullptr, true);
    };
    cache->release(&gl, &mixer, true);
    gl.duringDestroy = nullptr;
    Calls calls = record.take();
    std::sort(calls.begin(), calls.end());
    EXPECT_EQ(calls, (Calls{"gl.destroyProgram(2)", "gl.destroyShader(1)", "gl.destroyTexture(3)",
                            "mixer.destroySample(4)", "mixer.destroyStream(5)"}))
        << "each once";
}

TEST_F(CacheTest, destroysEverythingWithItselfThroughTheDevicesThatLoaded)
{
    loadOneOfEach(false);
    engine->destroyCache(cache);
    cache = nullptr;
    EXPECT_EQ(record.take(), (Calls{"gl.destroyProgram(2)", "gl.destroyTexture(3)", "mixer.destroySample(4)",
                                    "mixer.destroyStream(5)", "gl.destroyShader(1)"}));
}

TEST_F(CacheTest, touchesNoDeviceOnceEverythingIsReleased)
{
    loadOneOfEach(false);
    cache->release(&gl, &mixer, true);
    record.take();
    engine->destroyCache(cache);
    cache = nullptr;
    EXPECT_EQ(record.take(), Calls());
}

TEST_F(CacheTest, loadsAReleasedItemAgainUnderItsOldIdentifier)
{
    loadOneOfEach(false);
    cache->release(&gl, &mixer, true);
    EXPECT_EQ(cache->getId("program 1"), 0);
    EXPECT_EQ(cache->getId("picture 1"), 1);
    EXPECT_EQ(cache->getId("sound 1"), 2);
    EXPECT_EQ(cache->getId("music 1"), 3);
    record.take();
    EXPECT_NE(cache->getProgram(&gl, 0, false), nullptr);
    EXPECT_NE(cache->getTexture(&gl, 1, false, false), nullptr);
    EXPECT_NE(cache->getSample(&mixer, 2, false), nullptr);
    EXPECT_NE(cache->getStream(&mixer, 3, false), nullptr);
    EXPECT_EQ(record.take(),
              (Calls{"load(root/programs/program 1)", "load(root/shaders/v1)", "gl.createShader(0, v1, source)",
                     "gl.createProgram([6], [], [])", "load(root/textures/picture 1)", "gl.createTexture(1, 1)",
                     "8.update(010203ff)", "load(root/samples/sound 1)", "mixer.loadSample(sound)",
                     "load(root/streams/music 1)", "mixer.loadStream(music)"}));
}
