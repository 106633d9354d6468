#pragma once

/// Sets a variable of this process's environment, which the libraries below read when they start.
void setEnvironmentVariable(const char* name, const char* value);
