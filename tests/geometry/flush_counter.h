#pragma once

#include <sstream>

/// A stream buffer that collects what is written and notes how much of it had been written at the latest flush.
class FlushCounter : public std::stringbuf {
public:
    int flushCount = 0;
    std::string textAtFlush;

protected:
    int sync() override
    {
        ++flushCount;
        textAtFlush = str();
        return 0;
    }
};
