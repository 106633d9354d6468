#pragma once

#include <string>
#include <vector>

/// Runs the game in a process of its own, one at a time.
class GameLauncher {
public:
    /// The program that lies beside this one, unless another is given.
    explicit GameLauncher(std::string program);

    /// False, with what is wrong, when it does not start or still runs.
    bool start(const std::vector<std::string>& arguments, std::string& outProblem);

    /// True once after the game has ended, with how.
    bool hasEnded(std::string& outMessage);

private:
    std::string program;
    long long process = 0; ///< 0: none
};
