// CrossToolchain: builds Windows programs with the cross compilers of a host without Windows.
#pragma once

#include "driver/runtime_cache.h"
#include "driver/toolchain.h"

class CrossToolchain : public Toolchain
{
public:
    // `fallsBack`: another compiler was asked for, which the build then says in one line.
    explicit CrossToolchain(bool fallsBack, const RuntimeCache &cache = RuntimeCache());

    // Uses these tools, the first that serve, instead of those found on PATH, on every platform.
    void setTools(const QList<CppTools> &tools) { m_tools = tools; }

    ToolchainResult build(const ToolchainJob &job, BuildListener &listener) override;

private:
    RuntimeCache m_cache;
    QList<CppTools> m_tools;
    bool m_fallsBack;
};
