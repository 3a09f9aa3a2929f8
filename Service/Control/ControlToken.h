#pragma once
#include <filesystem>
#include <string>
#include <string_view>

namespace veranox {

/// The secret that whoever may change something has read from a file that only this user can read.
class ControlToken {
public:
    /// 256 random bits from the system.
    static ControlToken random();

    /// Writes it, readable by this user alone, as `control.token` into the folder, which the caller has for itself.
    /// Throws ServiceProblem.
    void writeTo(const std::filesystem::path &folder) const;

    /// Compares in a time that tells nothing about the token.
    bool matches(std::string_view given) const;

private:
    explicit ControlToken(std::string text);

    std::string m_text; // 64 hexadecimal digits
};

} // namespace veranox
