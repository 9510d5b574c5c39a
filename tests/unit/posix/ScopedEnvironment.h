#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

// Sets environment variables for one test and puts the old values back afterwards.
class ScopedEnvironment {
public:
    ScopedEnvironment() = default;
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment() {
        for (const auto& [name, value] : m_saved) assign(name, value ? value->c_str() : nullptr);
    }

    // A null value removes the variable.
    void set(const std::string& name, const char* value) {
        const char* old = std::getenv(name.c_str());
        if (!m_saved.count(name)) m_saved[name] = old ? std::optional<std::string>(old) : std::nullopt;
        assign(name, value);
    }
    void set(const std::string& name, const std::string& value) { set(name, value.c_str()); }

private:
    static void assign(const std::string& name, const char* value) {
        if (value) setenv(name.c_str(), value, 1);
        else unsetenv(name.c_str());
    }

    std::map<std::string, std::optional<std::string>> m_saved;
};
