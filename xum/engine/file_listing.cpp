#include <xum/engine/file_listing.h>

#include <algorithm>

namespace {

struct Listing {
    DirectoryReader readDirectory;
    const std::string& filter;
    bool recursive;
    const FileListingCallback& callback;
};

/// A directory on the way from the first one to the one being listed.
struct Level {
    std::string directory;
    std::string identity;
    std::vector<DirectoryItem> items;
    std::size_t next = 0;
};

// All items are read and the handle is closed before the first callback, so that a callback may change the directory.
Level openLevel(const Listing& listing, const std::string& directory)
{
    Level level;
    level.directory = directory;
    level.items = listing.readDirectory(directory, level.identity);
    std::sort(level.items.begin(), level.items.end(),
              [](const DirectoryItem& a, const DirectoryItem& b) { return a.name < b.name; });
    return level;
}

bool isOnTheWay(const std::vector<Level>& way, const std::string& identity)
{
    return !identity.empty() &&
           std::any_of(way.begin(), way.end(), [&](const Level& level) { return level.identity == identity; });
}

// The way is kept by hand: directories may be nested deeper than the call stack allows.
void walk(const Listing& listing, const std::string& directory)
{
    std::vector<Level> way;
    way.push_back(openLevel(listing, directory));
    while (!way.empty()) {
        Level& level = way.back();
        if (level.next == level.items.size()) {
            way.pop_back();
            continue;
        }
        const DirectoryItem& item = level.items[level.next++];
        if (!item.isDirectory) {
            if (item.name.find(listing.filter) != std::string::npos) listing.callback(level.directory, item.name);
        } else if (listing.recursive) {
            Level inner = openLevel(listing, level.directory + item.name + "/");
            if (!isOnTheWay(way, inner.identity)) way.push_back(std::move(inner));
        }
    }
}

} // namespace

void listFilesWith(DirectoryReader readDirectory, const std::string& directory, const std::string& filter,
                   bool recursive, const FileListingCallback& callback)
{
    if (directory.find('\0') != std::string::npos) return; // the system would list a directory of another name
    const bool needsSlash = !directory.empty() && directory.back() != '/';
    walk({readDirectory, filter, recursive, callback}, needsSlash ? directory + "/" : directory);
}
