// MinGwToolchain: builds on Windows with a MinGW found there, through a batch script.
#pragma once

#include "driver/toolchain.h"

class MinGwToolchain : public Toolchain
{
public:
    ToolchainResult build(const ToolchainJob &job, BuildListener &listener) override;
};
