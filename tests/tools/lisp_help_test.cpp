#include <lisp_help.h>

#include <xum/lisp/lisp_builtins.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

TEST(LispHelp, everyBuiltInHasOneLineInTheOrderOfTheLibrary)
{
    std::size_t builtInCount = 0;
    std::size_t textCount = 0;
    const lisp_native_descriptor* builtIns = lisp_builtins(&builtInCount);
    const HelpText* texts = helpTexts(textCount);
    ASSERT_EQ(builtInCount, 66u);
    ASSERT_EQ(textCount, builtInCount + 5);
    for (std::size_t i = 0; i < builtInCount; ++i) EXPECT_STREQ(texts[i].name, builtIns[i].name);
    for (std::size_t i = 0; i < textCount; ++i) {
        EXPECT_NE(std::strlen(texts[i].text), 0u) << texts[i].name;
        EXPECT_EQ(std::strchr(texts[i].text, '\n'), nullptr) << texts[i].name;
        EXPECT_LT(std::strlen(texts[i].text), 96u) << texts[i].name << " is too long for a line of the list";
    }
}

TEST(LispHelp, variablesOfTheLibraryFollow)
{
    std::size_t count = 0;
    const HelpText* texts = helpTexts(count);
    const char* const names[] = {"+lisp+", "+lisp-version+", "*load-path*", "*load-extension*", "+pi+"};
    for (std::size_t i = 0; i < 5; ++i) EXPECT_STREQ(texts[count - 5 + i].name, names[i]);
}
