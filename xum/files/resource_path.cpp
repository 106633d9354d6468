#include <xum/files/resource_path.h>

std::string normalizeResourceName(const std::string& name)
{
    if (name.find("../") == std::string::npos) return name;
    std::string key;
    for (std::size_t i = 0; i < name.size();) {
        if (name.compare(i, 3, "../") == 0) {
            if (!key.empty() && key.back() == '/') key.pop_back();
            while (!key.empty() && key.back() != '/') key.pop_back();
            i += 3;
        } else {
            key += name[i++];
        }
    }
    return key;
}
