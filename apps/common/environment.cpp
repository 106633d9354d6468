#include "environment.h"

#include <stdlib.h> // setenv is not in namespace std

void setEnvironmentVariable(const char* name, const char* value)
{
#ifdef _WIN32
    _putenv_s(name, value);
#else
    setenv(name, value, 1);
#endif
}
