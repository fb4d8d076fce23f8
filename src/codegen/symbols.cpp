#include "codegen/symbols.h"

#include "codegen/names.h"

#include <algorithm>

int FunctionSignature::requiredCount() const
{
    return static_cast<int>(
        std::count_if(parameters.begin(), parameters.end(),
                      [](const FunctionParameter &parameter) { return parameter.required(); }));
}

void ScopeStack::push(bool cppBlock)
{
    m_scopes.emplace_back();
    m_scopes.back().cppBlock = cppBlock;
}

void ScopeStack::pop()
{
    m_scopes.pop_back();
}

void ScopeStack::declare(const QString &name, const Variable &variable)
{
    Q_ASSERT(!m_scopes.empty());
    m_scopes.back().variables.insert(name, variable);
    const QString normal = Names::normalized(name);
    if (normal != name)
        m_scopes.back().variables.insert(normal, variable);
}

const Variable *ScopeStack::find(const QString &name) const
{
    for (auto scope = m_scopes.rbegin(); scope != m_scopes.rend(); ++scope) {
        const auto found = scope->variables.constFind(name);
        if (found != scope->variables.cend())
            return &*found;
    }
    return nullptr;
}

void ScopeStack::markDictionary(const QString &name)
{
    for (auto scope = m_scopes.rbegin(); scope != m_scopes.rend(); ++scope) {
        const auto found = scope->variables.find(name);
        if (found != scope->variables.end()) {
            found->dictionary = true;
            return;
        }
    }
}

bool ScopeStack::declaredInCppBlock(const QString &name) const
{
    for (auto scope = m_scopes.rbegin(); scope != m_scopes.rend(); ++scope) {
        if (scope->variables.contains(name))
            return true;
        if (scope->cppBlock)
            return false;
    }
    return false;
}

bool ScopeStack::takeSwitchValue()
{
    Scope &scope = cppScope();
    const bool taken = scope.switchValueTaken;
    scope.switchValueTaken = true;
    return taken;
}

ScopeStack::Scope &ScopeStack::cppScope()
{
    const auto found = std::find_if(m_scopes.rbegin(), m_scopes.rend(),
                                    [](const Scope &scope) { return scope.cppBlock; });
    return found == m_scopes.rend() ? m_scopes.front() : *found;
}
