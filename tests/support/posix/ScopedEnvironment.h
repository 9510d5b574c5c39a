#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

// Sets environment variables for one test and puts the old values back afterwards.
class ScopedEnvironment {
public:
    ScopedEnvironment() = default;
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment() {
        for (auto saved = m_saved.rbegin(); saved != m_saved.rend(); ++saved)
            assign(saved->first, saved->second ? saved->second->c_str() : nullptr);
    }

    // A null value removes the variable.
    void set(const std::string& name, const char* value) {
        const char* old = std::getenv(name.c_str());
        m_saved.emplace_back(name, old ? std::optional<std::string>(old) : std::nullopt);
        assign(name, value);
    }
    void set(const std::string& name, const std::string& value) { set(name, value.c_str()); }

private:
    static void assign(const std::string& name, const char* value) {
        if (value) setenv(name.c_str(), value, 1);
        else unsetenv(name.c_str());
    }

    std::vector<std::pair<std::string, std::optional<std::string>>> m_saved;  // in the order set
};
