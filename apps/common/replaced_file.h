#pragma once

#include <functional>
#include <string>

/// Has a file written under another name beside its place and puts it there when it is whole: an older file stays as it
/// was until then, and after any failure. `write` gets the other name and returns whether it is whole. False, with what
/// is wrong, when it is not in its place.
bool replaceFile(const std::string& fileName, const std::function<bool(const std::string& otherName)>& write,
                 std::string& outProblem);
