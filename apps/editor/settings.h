#pragma once

#include <xum/geometry/vector.h>

#include <string>
#include <vector>

/// What the editor remembers from one time to the next.
struct Settings {
    Vector2<int> windowSize = {1280, 800};
    double grid = 0.5;
    double cameraSpeed = 8;               ///< units a second
    int autosaveSeconds = 60;             ///< 0: no autosave
    double mouseSpeed = 0.2;              ///< degrees a pixel
    std::vector<std::string> recentFiles; ///< the last one first
};

/// Where they are kept: under the user's own directory, which is made when it is missing. Empty when there is none.
std::string findSettingsFile();

/// What is missing or makes no sense keeps its default. Problems are for the user; empty when there are none.
Settings readSettings(const std::string& fileName, std::string& outProblem);

bool writeSettings(const Settings& settings, const std::string& fileName, std::string& outProblem);

/// Puts a file in front of the recent ones.
void addRecentFile(Settings& settings, const std::string& fileName);
