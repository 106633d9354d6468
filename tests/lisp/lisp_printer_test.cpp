#include "interpreter_fixture.h"

#include <xum/lisp/lisp_printer.h>

namespace {

class LispPrinter : public InterpreterTest {
protected:
    std::string print(const std::string& text, const char* prefix)
    {
        const lisp_object value = evaluate(text);
        lines.clear();
        lisp_print(get(), &get()->root, &value, prefix);
        EXPECT_EQ(lines.size(), 1u);
        return lines.empty() ? "" : lines.front();
    }
};

} // namespace

TEST_F(LispPrinter, everyLineBeginsWithThePrefix)
{
    EXPECT_EQ(print(":nil", "> "), "> :nil");
    EXPECT_EQ(print("(list 1 2)", "> "), "> (:list :integer) (2 nodes)");
    EXPECT_EQ(print("(array 2 \":float\")", "> "), "> (:array :float) (2 elements)");
    EXPECT_EQ(print("type-of", "> "), "> :closure (:any -> :keyword)");
    EXPECT_EQ(print("42", "> "), "> :integer (42)");
    EXPECT_EQ(print("\"text\"", ""), ":string (text)");
}

TEST_F(LispPrinter, theListWithoutARecordHasNoNodes)
{
    lisp_print(get(), &get()->root, &get()->root_list, "");
    EXPECT_EQ(lines, Lines{"(:list :any) (0 nodes)"});
}
