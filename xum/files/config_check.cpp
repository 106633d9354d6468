#include <xum/files/config_check.h>

#include <xum/files/config_place.h>
#include <xum/files/config_reader.h>

bool checkConfigText(const std::string& text, std::string& outProblem)
{
    if (text.empty()) {
        outProblem = "1:1: the text is empty";
        return false;
    }
    try {
        if (ConfigReader(text).read()) return true;
        outProblem = "1:1: there is no root section";
    } catch (const ConfigSyntaxError& problem) {
        outProblem = describePlace(text, problem.position) + ": " + problem.message;
    }
    return false;
}
