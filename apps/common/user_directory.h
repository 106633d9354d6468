#pragma once

#include <string>

/// Where programs keep what a user chose: "xum-engine/" below the user's directory for such things, made when it is
/// missing. Ends with '/'. Empty when there is none or none can be made.
std::string findUserDirectory();
