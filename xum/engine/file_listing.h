#pragma once

#include <xum/engine/system_device.h>

#include <string>
#include <vector>

/// What the system devices of all platforms share: the walk over directories and the clipboard. A platform adds how one
/// directory is read.

/// One item of a directory.
struct DirectoryItem {
    std::string name;
    bool isDirectory = false;
};

/// Reads one directory, named with its trailing '/' or empty for the working directory: its regular files and its
/// directories without "." and "..", in any order. Empty when it cannot be searched.
///
/// `identity` becomes a value that is equal for two names of the same directory; it stays empty where the platform has
/// no links that could lead a walk into a circle.
using DirectoryReader = std::vector<DirectoryItem> (*)(const std::string& directory, std::string& identity);

/// See SystemDevice::listFiles.
void listFilesWith(DirectoryReader readDirectory, const std::string& directory, const std::string& filter,
                   bool recursive, const FileListingCallback& callback);
