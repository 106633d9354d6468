#include <xum/files/resource_path.h>

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

/// Segment by segment. Only for names in which ".." is always a whole segment, as it is in every real name.
std::string normalizedBySegments(const std::string& name)
{
    std::vector<std::string> segments(1);
    for (const char c : name) {
        if (c != '/') {
            segments.back() += c;
        } else if (segments.back() == "..") {
            segments.pop_back();
            if (segments.empty())
                segments.emplace_back();
            else
                segments.back().clear();
        } else {
            segments.emplace_back();
        }
    }
    std::string key;
    for (std::size_t i = 0; i < segments.size(); ++i) key += (i > 0 ? "/" : "") + segments[i];
    return key;
}

} // namespace

TEST(ResourcePath, losesEachDetour)
{
    const struct {
        const char* name;
        const char* key;
    } cases[] = {
        {"a/b/../c", "a/c"},
        {"maps/../textures/a.png", "textures/a.png"},
        {"/x/y/../z", "/x/z"},
        {"a/../b/../c", "c"},
        {"a/b/c/../../d", "a/d"},
        {"a/b/../../c", "c"},
        {"a//../b", "a/b"},
        {"a/b/../", "a/"},
        {"a/../", ""},
    };
    for (const auto& [name, key] : cases) EXPECT_EQ(normalizeResourceName(name), key) << name;
}

TEST(ResourcePath, losesADetourThatHasNothingToRemove)
{
    const struct {
        const char* name;
        const char* key;
    } cases[] = {
        {"../a", "a"}, {"../../a", "a"}, {"a/../../b", "b"}, {"../", ""}, {"/../a", "a"}, {"a/b/../../../../c", "c"},
    };
    for (const auto& [name, key] : cases) EXPECT_EQ(normalizeResourceName(name), key) << name;
}

TEST(ResourcePath, isOtherwiseKeptAsItIs)
{
    for (const char* name :
         {"", "a", "a/b", "/a/b/", "a/..", "..", ".", "./a", "a/./b", "a//b", "//", "a\\..\\b", ". ./a", "a/.. /b"})
        EXPECT_EQ(normalizeResourceName(name), name);
    const std::string withNul("a/\0/../b", 8);
    EXPECT_EQ(normalizeResourceName(withNul), "a/b");
}

TEST(ResourcePath, takesNamesOfAnyLength)
{
    std::string down;
    std::string up;
    for (int i = 0; i < 20000; ++i) {
        down += "directory/";
        up += "../";
    }
    EXPECT_EQ(normalizeResourceName(down + up + "file"), "file");
    EXPECT_EQ(normalizeResourceName("first/" + down + up + "file"), "first/file");
}

TEST(ResourcePath, isWhatIsLeftOfTheSegments)
{
    std::mt19937 random(12);
    const std::string segments[] = {"a", "bc", "", ".", "..", ".."};
    for (int i = 0; i < 20000; ++i) {
        std::string name = segments[random() % 6];
        for (unsigned rest = random() % 8; rest > 0; --rest) name += "/" + segments[random() % 6];
        ASSERT_EQ(normalizeResourceName(name), normalizedBySegments(name)) << name;
    }
}
