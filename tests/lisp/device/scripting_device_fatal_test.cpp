#include "own_directory.h"
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
    void SetUp() override
    {
        if (::testing::internal::InDeathTestChild()) enterOwnDirectory(); // before the engine opens the log
        ScriptingFixture::SetUp();
    }

    static std::string loggedError()
    {
        const std::string log = fileText(ownLogFile());
        const std::size_t begin = log.find("ERROR: ");
        return begin == std::string::npos ? log : log.substr(begin);
    }

    /// Runs in the process of a death test.
    void evaluate(const std::string& text)
    {
        device = engine->createScriptingDevice();
        device->evaluateScript(text);
    }
};

} // namespace

TEST_F(ScriptingDeviceDeathTest, emptyTokenIsFatal)
{
    EXPECT_EXIT(evaluate("(display \"a\") '"), ::testing::ExitedWithCode(fatalExitCode),
                "\\[\\[Error\\|tokenize\\(\\) -> empty token!\n\\]\\]");
    EXPECT_EQ(loggedError(), "ERROR: tokenize() -> empty token!\n\n"); // the message ends its line itself
}

TEST_F(ScriptingDeviceDeathTest, closureParameterWithTypeAndMarkIsFatal)
{
    EXPECT_EXIT(evaluate("(closure ((x :integer :rest)) x)"), ::testing::ExitedWithCode(fatalExitCode),
                "\\[\\[Error\\|named_parameter for closure! TODO!\\]\\]");
    EXPECT_EQ(loggedError(), "ERROR: named_parameter for closure! TODO!\n");
}

TEST_F(ScriptingDeviceDeathTest, requestOfMoreThan32BitsIsFatal)
{
    EXPECT_EXIT(evaluate("(array 0x7fffffffffffffff \":integer\")"), ::testing::ExitedWithCode(fatalExitCode),
                "\\[\\[Error\\|fatal: invalid allocate size!\\]\\]");
    EXPECT_EQ(loggedError(), "ERROR: fatal: invalid allocate size!\n");
}

TEST_F(ScriptingDeviceDeathTest, fatalMessageInBaseScriptEndsTheProcess)
{
    writeScript("engine", "'");
    EXPECT_EXIT(evaluate("1"), ::testing::ExitedWithCode(fatalExitCode), "tokenize");
}

#if defined(__linux__) && !defined(XUM_TEST_ADDRESS_SANITIZER) // the sanitizer itself needs terabytes of addresses
namespace {

void createDeviceWithoutMemory(Engine* engine)
{
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
    EXPECT_EXIT(createDeviceWithoutMemory(engine), ::testing::ExitedWithCode(fatalExitCode),
                "\\[\\[Error\\|Could not init Lisp!\\]\\]");
    EXPECT_EQ(loggedError(), "ERROR: Could not init Lisp!\n");
}
#endif
