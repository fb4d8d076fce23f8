// CrossToolchain: builds Windows programs with the mingw-w64 cross compiler of a host without
// Windows.
#pragma once

#include "driver/runtime_cache.h"
#include "driver/toolchain.h"

class CrossToolchain : public Toolchain
{
public:
    // `fallsBack`: another compiler was asked for, which the build then says in one line.
    explicit CrossToolchain(bool fallsBack, const RuntimeCache &cache = RuntimeCache());

    // Uses these tools instead of those found on PATH, on every platform.
    void setTools(const GccTools &tools) { m_tools = tools; }

    ToolchainResult build(const ToolchainJob &job, BuildListener &listener) override;

    // The tools for "x86" or "x64"; the compiler's path is empty when it is not installed.
    static GccTools findTools(const QString &platform);

private:
    RuntimeCache m_cache;
    GccTools m_tools;
    bool m_fallsBack;
};
