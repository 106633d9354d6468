#include "pseudo_terminal.h"

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

PseudoTerminal::PseudoTerminal(const std::string& program, const std::vector<std::string>& arguments)
{
    std::vector<std::string> words = {program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<char*> pointers;
    for (std::string& word : words) pointers.push_back(word.data());
    pointers.push_back(nullptr);
    struct winsize size = {30, 100, 0, 0};
    process = forkpty(&terminal, nullptr, nullptr, &size);
    if (process != 0) return;
    execv(pointers[0], pointers.data());
    _exit(127);
}

PseudoTerminal::~PseudoTerminal()
{
    if (process > 0) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
    if (terminal >= 0) close(terminal);
}

void PseudoTerminal::type(const std::string& keys)
{
    for (std::size_t done = 0; done < keys.size();) {
        const ssize_t written = write(terminal, keys.data() + done, keys.size() - done);
        if (written <= 0) return;
        done += static_cast<std::size_t>(written);
    }
}

bool PseudoTerminal::readMore(int milliseconds)
{
    struct pollfd wait = {terminal, POLLIN, 0};
    char block[4096];
    if (poll(&wait, 1, milliseconds) <= 0) return false;
    const ssize_t size = read(terminal, block, sizeof block);
    if (size <= 0) return false;
    shown.append(block, static_cast<std::size_t>(size));
    return true;
}

bool PseudoTerminal::waitFor(const std::string& text, int milliseconds)
{
    for (;;) {
        const std::size_t found = shown.find(text, searched);
        if (found != std::string::npos) {
            searched = found + text.size();
            return true;
        }
        if (!readMore(milliseconds)) return false;
    }
}

int PseudoTerminal::waitForEnd()
{
    while (readMore(30000)) {
    }
    kill(process, SIGKILL); // where it has not ended; a program that has closed its terminal keeps its status
    int status = 0;
    waitpid(process, &status, 0);
    process = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
