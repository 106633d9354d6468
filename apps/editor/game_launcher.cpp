#include "game_launcher.h"

#include "path_name.h"

#include <SDL.h>

#include <cerrno>
#include <cstring>

#ifdef _WIN32
#    include <process.h>
#    include <windows.h>
#else
#    include <spawn.h>
#    include <sys/wait.h>
#    include <unistd.h>
#endif

namespace {

std::string findGame()
{
    char* const directory = SDL_GetBasePath();
    const std::filesystem::path here = directory == nullptr ? "" : pathOfUtf8(directory);
    SDL_free(directory);
#ifdef _WIN32
    return nameOf(here / "xum-game.exe");
#else
    return nameOf(here / "xum-game");
#endif
}

/// 0, or the system's number for why the program does not start.
#ifdef _WIN32
int spawn(const std::string& program, const std::vector<std::string>& arguments, long long& outProcess)
{
    // Names hold no quotes there. Backslashes count twice where they stand before one.
    const auto quote = [](const std::string& argument) {
        const std::size_t end = argument.find_last_not_of('\\') + 1;
        return '"' + argument + argument.substr(end) + '"';
    };
    std::vector<std::string> copies = {quote(program)};
    for (const std::string& argument : arguments) copies.push_back(quote(argument));
    std::vector<const char*> pointers;
    for (const std::string& argument : copies) pointers.push_back(argument.c_str());
    pointers.push_back(nullptr);
    outProcess = _spawnv(_P_NOWAIT, program.c_str(), pointers.data());
    return outProcess == -1 ? errno : 0;
}
#else
int spawn(const std::string& program, const std::vector<std::string>& arguments, long long& outProcess)
{
    std::vector<std::string> copies = {program};
    copies.insert(copies.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    pointers.reserve(copies.size() + 1);
    for (std::string& argument : copies) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_t child = 0;
    const int failure = posix_spawn(&child, program.c_str(), nullptr, nullptr, pointers.data(), environ);
    outProcess = child;
    return failure;
}
#endif

} // namespace

GameLauncher::GameLauncher(std::string program) : program(program.empty() ? findGame() : std::move(program)) {}

bool GameLauncher::start(const std::vector<std::string>& arguments, std::string& outProblem)
{
    std::string ignored;
    hasEnded(ignored);
    if (process != 0) {
        outProblem = "The game is still running";
        return false;
    }
    long long started = 0;
    if (const int failure = spawn(program, arguments, started)) {
        outProblem = "The game " + program + " does not start: " + std::strerror(failure);
        return false;
    }
    process = started;
    return true;
}

#ifdef _WIN32

bool GameLauncher::hasEnded(std::string& outMessage)
{
    const auto handle = reinterpret_cast<HANDLE>(static_cast<intptr_t>(process));
    DWORD status = 0;
    if (process == 0 || !GetExitCodeProcess(handle, &status) || status == STILL_ACTIVE) return false;
    CloseHandle(handle);
    process = 0;
    outMessage = status == 0 ? "The game has ended" : "The game has ended with status " + std::to_string(status);
    return true;
}

#else

bool GameLauncher::hasEnded(std::string& outMessage)
{
    int status = 0;
    if (process == 0 || waitpid(static_cast<pid_t>(process), &status, WNOHANG) <= 0) return false;
    process = 0;
    if (WIFEXITED(status) && WEXITSTATUS(status) == 0)
        outMessage = "The game has ended";
    else if (WIFEXITED(status))
        outMessage = "The game has ended with status " + std::to_string(WEXITSTATUS(status));
    else
        outMessage = "The game has crashed";
    return true;
}

#endif
