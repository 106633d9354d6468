#include <xum/engine/log.h>
#include <xum/engine/log_hooks.h>
#include <xum/engine/message_box.h>

#include <cstdio>
#include <cstdlib>

std::ofstream& getLog()
{
    static std::ofstream log("log.txt");
    return log;
}

void warning(const std::string& message)
{
    getLog() << "WARNING: " << message << std::endl;
    showMessageBox("Warning", message.c_str());
}

void error(const std::string& message)
{
    getLog() << "ERROR: " << message << std::endl;
    showMessageBox("Error", message.c_str());
    std::exit(-1);
}

void printHook(const char* text)
{
    std::printf("%s\n", text);
}

void failureHook(const char* text)
{
    error(text);
}
