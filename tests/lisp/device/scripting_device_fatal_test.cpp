#include "scripting_fixture.h"

#ifdef __linux__
#    include <sys/resource.h>
#    include <unistd.h>
#endif

#ifdef __has_feature
#    if __has_feature(address_sanitizer)
#        define XUM_TEST_ADDRESS_SANITIZER
#    endif
#endif
#ifdef __SANITIZE_ADDRESS__
#    define XUM_TEST_ADDRESS_SANITIZER
#endif

// What ends the process: it is the engine's error(), with its log line, its box and the exit status -1.

namespace {

class ScriptingDeviceDeathTest : public ScriptingFixture {
protected:
    /// Runs in the process of a death test.
    void evaluateInOwnDirectory(const std::string& text)
    {
        enterOwnDirectory();
        device = engine->createScriptingDevice();
        device->evaluateScript(text);
    }
};

} // namespace

TEST_F(ScriptingDeviceDeathTest, emptyTokenIsFatal)
{
    EXPECT_EXIT(evaluateInOwnDirectory("(display \"a\") '"), ::testing::ExitedWithCode(255),
                "\\[\\[Error\\|tokenize\\(\\) -> empty token!\n\\]\\]");
    EXPECT_EQ(fileContents(ownLogFile()), "ERROR: tokenize() -> empty token!\n\n"); // the message ends its line itself
}

TEST_F(ScriptingDeviceDeathTest, closureParameterWithTypeAndMarkIsFatal)
{
    EXPECT_EXIT(evaluateInOwnDirectory("(closure ((x :integer :rest)) x)"), ::testing::ExitedWithCode(255),
                "\\[\\[Error\\|named_parameter for closure! TODO!\\]\\]");
    EXPECT_EQ(fileContents(ownLogFile()), "ERROR: named_parameter for closure! TODO!\n");
}

TEST_F(ScriptingDeviceDeathTest, requestOfMoreThan32BitsIsFatal)
{
    EXPECT_EXIT(evaluateInOwnDirectory("(array 0x7fffffffffffffff \":integer\")"), ::testing::ExitedWithCode(255),
                "\\[\\[Error\\|fatal: invalid allocate size!\\]\\]");
    EXPECT_EQ(fileContents(ownLogFile()), "ERROR: fatal: invalid allocate size!\n");
}

TEST_F(ScriptingDeviceDeathTest, fatalMessageInBaseScriptEndsTheProcess)
{
    writeScript("engine", "'");
    EXPECT_EXIT(evaluateInOwnDirectory("1"), ::testing::ExitedWithCode(255), "tokenize");
}

#if defined(__linux__) && !defined(XUM_TEST_ADDRESS_SANITIZER) // the sanitizer itself needs terabytes of addresses
namespace {

void createDeviceWithoutMemory(Engine* engine)
{
    enterOwnDirectory();
    rlim_t pages = 0; // that the process has mapped already
    std::ifstream("/proc/self/statm") >> pages;
    const rlim_t most = pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + (128u << 20);
    const rlimit limit = {most, most};
    setrlimit(RLIMIT_AS, &limit);
    engine->createScriptingDevice();
}

} // namespace

TEST_F(ScriptingDeviceDeathTest, missingMemoryForTheRegionIsFatal)
{
    EXPECT_EXIT(createDeviceWithoutMemory(engine), ::testing::ExitedWithCode(255),
                "\\[\\[Error\\|Could not init Lisp!\\]\\]");
    EXPECT_EQ(fileContents(ownLogFile()), "ERROR: Could not init Lisp!\n");
}
#endif
