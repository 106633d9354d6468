#pragma once

#include <string>

/// Writes a configuration as the engine writes it, to standard output or into its file. False, with a report and with
/// nothing written, when a part would not read back as it is.
bool formatConfig(const std::string& fileName, bool inPlace);
