#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

/// As long as it lives, the environment variable `name` has another value, or none where that is null.
class CVariable {
public:
    CVariable(std::string name, const char* value) : m_name(std::move(name))
    {
        if (const char* const old = std::getenv(m_name.c_str()))
            m_old = old;
        Set(value);
    }
    ~CVariable() { Set(m_old ? m_old->c_str() : nullptr); }
    CVariable(const CVariable&) = delete;
    CVariable& operator=(const CVariable&) = delete;

private:
    void Set(const char* value)
    {
        if (value != nullptr)
            setenv(m_name.c_str(), value, 1);
        else
            unsetenv(m_name.c_str());
    }

    std::string m_name;
    std::optional<std::string> m_old;
};
