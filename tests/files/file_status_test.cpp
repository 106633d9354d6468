#include "resource_fixture.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <string>
#include <vector>

namespace {

std::vector<std::string>& statusCalls()
{
    static std::vector<std::string> calls;
    return calls;
}

class FileStatus : public ResourceFixture {
protected:
    /// The names whose status a load asks for.
    std::vector<std::string> askedBy(const std::string& name)
    {
        std::vector<unsigned char> data;
        statusCalls().clear();
        resources->load(data, name);
        return statusCalls();
    }
};

} // namespace

extern "C" {
__attribute__((visibility("default"))) int stat(const char* name, struct stat* status)
{
    statusCalls().emplace_back(name);
    return reinterpret_cast<decltype(&stat)>(dlsym(RTLD_NEXT, "stat"))(name, status);
}
}

TEST_F(FileStatus, isAskedForOnceByALoad)
{
    writeFiles({{"plain", "contents"}});
    addArchive(archive::pack({{"packed", "contents"}}));
    EXPECT_EQ(askedBy("plain"), std::vector<std::string>{"plain"});
    EXPECT_EQ(askedBy("packed"), std::vector<std::string>{"packed"});
    EXPECT_EQ(askedBy("missing"), std::vector<std::string>{"missing"});
}
