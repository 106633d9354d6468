#include <xum/devices/console_implementation.h>

bool ConsoleImplementation::toggle()
{
    open = !open;
    return open;
}

void ConsoleImplementation::print(const std::string& /*text*/) {}

void ConsoleImplementation::execute(const std::string& /*command*/) {}

void ConsoleImplementation::addCommand(const std::string& /*name*/) {}

void ConsoleImplementation::removeCommand(const std::string& /*name*/) {}

void ConsoleImplementation::setVariable(const std::string& /*name*/, const std::string& /*value*/) {}
