#include <xum/files/program_description.h>

#include <xum/files/config_file.h>

#include "file_contents.h"

#include <gtest/gtest.h>

#include <list>
#include <random>
#include <regex>
#include <string>
#include <vector>

namespace {

using Names = std::vector<std::string>;

Names splitByExpression(const std::string& list)
{
    static const std::regex expression("([^,^$]+)(,|$|\\s)+");
    Names names;
    for (std::sregex_iterator match(list.begin(), list.end(), expression), end; match != end; ++match)
        names.push_back(match->str(1));
    return names;
}

ProgramDescription describe(const std::string& text)
{
    writeFileContents("program", text);
    return ProgramDescription(ConfigFile("program"));
}

} // namespace

TEST(SplitNames, ofAListYieldsWhatStandsBetweenTheCommas)
{
    const struct {
        const char* list;
        Names names;
    } cases[] = {
        {"basic.vert", {"basic.vert"}},
        {"basic.frag,fog.frag", {"basic.frag", "fog.frag"}},
        {"a.vert ,b.vert", {"a.vert ", "b.vert"}},
        {"a.vert, b.vert", {"a.vert", "b.vert"}},
        {"a.vert,  b.vert  ,c.vert ", {"a.vert", "b.vert  ", "c.vert "}},
        {" a,b", {" a", "b"}},
        {"a b c,d e", {"a b c", "d e"}},
        {"a,,b", {"a", "b"}},
        {",a", {"a"}},
        {"a,", {"a"}},
        {"a, ,b", {"a", "b"}},
        {"", {}},
        {",", {}},
        {" ", {" "}},
        {"color(1),normal(0)", {"color(1)", "normal(0)"}},
        {"a^b", {"b"}},
        {"a$b,c", {"b", "c"}},
        {"a$", {}},
        {"a b^c", {"a", "c"}},
        {"a b ^c", {"a b", "c"}},
        {"a,\t\n\v\f\rb", {"a", "b"}},
    };
    for (const auto& [list, names] : cases) {
        EXPECT_EQ(splitNames(list), names) << list;
        EXPECT_EQ(splitByExpression(list), names) << list;
    }
}

TEST(SplitNames, findsWhatTheExpressionFinds)
{
    std::mt19937 random(3);
    const std::string alphabet = "ab,^$ \t";
    for (int i = 0; i < 20000; ++i) {
        std::string list(random() % 13, '\0');
        for (char& c : list) c = alphabet[random() % alphabet.size()];
        ASSERT_EQ(splitNames(list), splitByExpression(list)) << '"' << list << '"';
    }
}

TEST(SplitNames, keepsEveryOtherByte)
{
    std::string name;
    for (int value = 0; value < 256; ++value)
        if (value != ',' && value != '^' && value != '$') name += static_cast<char>(value);
    EXPECT_EQ(splitNames(name), Names{name});
}

TEST(SplitNames, takesListsOfAnyLength)
{
    constexpr std::size_t length = 1'000'000;
    const std::string name(length, 'n');
    EXPECT_TRUE(splitNames(name) == Names{name});
    EXPECT_TRUE(splitNames(std::string(length, ',')).empty());
    EXPECT_TRUE(splitNames(std::string(length, '$')).empty());
    EXPECT_TRUE(splitNames(std::string(length, ' ')) == Names{std::string(length, ' ')});
    EXPECT_TRUE(splitNames(name + "^").empty());
    std::string many;
    while (many.size() < length) many += "a,";
    EXPECT_TRUE(splitNames(many) == Names(length / 2, "a"));
}

TEST(ProgramDescription, hasTheListsOfTheRootSection)
{
    const ProgramDescription description = describe("<program>"
                                                    "<outputs \"color, depth\"/>"
                                                    "<compute-shaders k.comp/>"
                                                    "<fragment-shaders basic.frag,fog.frag/>"
                                                    "<vertex-shaders basic.vert/>"
                                                    "<geometry-shaders g.geom,g.geom/>"
                                                    "<inputs position,normal/>"
                                                    "<window><outputs elsewhere/></window>"
                                                    "<other ignored/>"
                                                    "</program>");
    EXPECT_EQ(description.shaders[0], Names{"basic.vert"});
    EXPECT_EQ(description.shaders[1], (Names{"g.geom", "g.geom"}));
    EXPECT_EQ(description.shaders[2], (Names{"basic.frag", "fog.frag"}));
    EXPECT_EQ(description.shaders[3], Names{"k.comp"});
    EXPECT_EQ(description.inputs, (std::list<std::string>{"position", "normal"}));
    EXPECT_EQ(description.outputs, (std::list<std::string>{"color", "depth"}));
}

TEST(ProgramDescription, hasAnEmptyListWhereNoneIsGiven)
{
    const ProgramDescription description =
        describe("<program><inputs \",\"/><window><outputs color/></window></program>");
    for (const Names& shaders : description.shaders) EXPECT_EQ(shaders, Names());
    EXPECT_TRUE(description.inputs.empty());
    EXPECT_TRUE(description.outputs.empty());
}
