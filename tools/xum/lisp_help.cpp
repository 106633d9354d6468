#include "lisp_help.h"

#include "lisp_session.h"

#include <cstdio>
#include <cstring>

// In the order of the library.
// clang-format off
static const HelpText texts[] = {
    {"read", "one expression from a text, not evaluated"},
    {"eval", "evaluates a value once more"},
    {"load", "runs the script of that name from *load-path*; whether all of it could be read"},
    {"define", "binds a name to a value"},
    {"define-constant", "binds a name to a value for good"},
    {"get", "the value that a name is bound to"},
    {"set!", "binds a name that has a binding to another value"},
    {"do", "evaluates expressions in order; the value of the last one"},
    {"print", "prints the type of a value and, unless it holds others, its text"},
    {"display", "prints the text of a string as a line"},
    {"macro", "a macro from its parameters and its body, in which , ,@ and ,,@ mark what is replaced"},
    {"macro-expand", "prints what a macro call becomes, without evaluating it"},
    {"define-type", "a new type: its name, its parameters, its converters from text, to text and to a hash"},
    {"type-list", "the names of all types, the newest first"},
    {"type-parameters", "the parameters of a type"},
    {"type-of", "the name of a value's type"},
    {"from-string", "the value of a type that a text stands for"},
    {"to-string", "a value as text"},
    {"to-hash", "a value as the number that hash tables sort it by"},
    {"list", "a list of the arguments"},
    {"byte", "a number from 0 to 255 as a byte"},
    {"array", "an array of so many elements of the named type, all zero"},
    {"hash-table", "an empty hash table for keys and values of the named types"},
    {"closure", "a function: ((name type) ...) -> return-type expressions"},
    {"cons", "a list with a value in front of another list"},
    {"head", "the first element of a list"},
    {"tail", "a list without its first element"},
    {"list-size", "the number of elements of a list"},
    {"list-reverse", "a list in reverse order"},
    {"string-size", "the number of bytes of a string"},
    {"string-take", "the first bytes of a string, at most so many"},
    {"string-drop", "a string without so many of its first bytes"},
    {"string-reverse", "a string in reverse order"},
    {"array-size", "the number of elements of an array"},
    {"array-get", "the element at an index, counted from 0"},
    {"array-set!", "stores an element at an index, counted from 0"},
    {"hash-table-size", "the number of keys in a hash table"},
    {"hash-table-for-each", "calls a closure with each key and its value"},
    {"hash-table-map", "reserved: does nothing in this version"},
    {"hash-table-contains?", "whether a hash table has a key"},
    {"hash-table-get", "the value of a key, :nil for a key that is not there"},
    {"hash-table-put!", "stores a value under a key; whether the key is new"},
    {"hash-table-remove!", "removes a key; whether it was there"},
    {"if", "evaluates the first expression when the condition is :true, else the second"},
    {"=", "whether two values of one type are the same"},
    {"<", "whether the first number is less than the second"},
    {"map", "a list of what a closure makes of each element"},
    {"map-with-index", "a list of what a closure makes of each index and element"},
    {"for-each", "calls a closure with each element"},
    {"for-each-with-index", "calls a closure with each index and element"},
    {"filter", "reserved: does nothing in this version"},
    {"loop", "reserved: does nothing in this version"},
    {"bit-get", "whether the bit of that number is set in a value"},
    {"bit-set", "a value with the bit of that number set"},
    {"bit-or", "the bits that are set in either value"},
    {"bit-and", "the bits that are set in both values"},
    {"bit-not", "all bits of a value reversed"},
    {"bit-xor", "the bits that are set in one of the values alone"},
    {"bit-shift", "a value shifted left by a count, or right by a negative one; the count comes first"},
    {"+", "the sum of numbers, or strings put together"},
    {"-", "the first number less the others; of one number its negative"},
    {"*", "the product of numbers"},
    {"/", "the first number divided by the others"},
    {"garbage-collection", "frees the objects that nothing reaches any more, and prints a line about it"},
    {"full-garbage-collection", "the same as garbage-collection in this version"},
    {"system-info", "prints the version, the number of objects and the bytes that were ever used"},
    {"+lisp+", "the name of the language"},
    {"+lisp-version+", "the version of the language"},
    {"*load-path*", "the directories in which load looks, each with a slash at its end"},
    {"*load-extension*", "what load adds to a name"},
    {"+pi+", "the ratio of a circle's circumference to its diameter"},
};
// clang-format on

const HelpText* helpTexts(std::size_t& count)
{
    count = std::size(texts);
    return texts;
}

void printHelp()
{
    for (const HelpText& help : texts) std::printf("%-24s %s\n", help.name, help.text);
    std::printf("%-24s %s\n", ":help", "prints this");
    std::printf("%-24s %s\n", ":help NAME", "prints the signature of a function and what it does");
    std::printf("%-24s %s\n", ":quit", "ends the shell");
    std::fflush(stdout);
}

void printHelp(LispSession& session, const std::string& name)
{
    const std::string signature = session.findSignature(name);
    const HelpText* found = nullptr;
    for (const HelpText& help : texts)
        if (name == help.name) found = &help;
    if (!signature.empty()) std::printf("%s %s\n", name.c_str(), signature.c_str());
    if (found != nullptr)
        std::printf("%s%s\n", signature.empty() ? (name + "\n    ").c_str() : "    ", found->text);
    else if (signature.empty())
        std::printf("There is no function of the name %s\n", name.c_str());
    std::fflush(stdout);
}
