#pragma once

#include "program.h"

#include <gtest/gtest.h>

#include <filesystem>

/// The bytes of the mesh that a model becomes; what is noted meanwhile must be that.
inline std::string importedBytes(const std::string& model, const std::string& options = "",
                                 const std::string& notes = "")
{
    const ProgramRun run = runXum("mesh import " + options + " " + model + " imported.mesh");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, notes);
    std::string bytes = fileContents("imported.mesh");
    std::filesystem::remove("imported.mesh");
    return bytes;
}

inline void expectRefusal(const std::string& model, const std::string& errors)
{
    const ProgramRun run = runXum("mesh import " + model + " refused.mesh");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, errors);
    EXPECT_FALSE(std::filesystem::exists("refused.mesh"));
}
