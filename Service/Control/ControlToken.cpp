#include "Service/Control/ControlToken.h"

#include "Service/Files/Folder.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Text/ShownPath.h"
#include <array>
#include <cstddef>
#include <random>
#include <system_error>

namespace veranox {

ControlToken::ControlToken(std::string text) : m_text(std::move(text)) { }

ControlToken ControlToken::random()
{
    constexpr std::size_t digits = 64;
    constexpr std::string_view alphabet = "0123456789abcdef";
    std::random_device source("/dev/urandom");
    std::uniform_int_distribution<std::size_t> digit(0, alphabet.size() - 1);
    std::string text;
    while (text.size() < digits)
        text += alphabet[digit(source)];
    return ControlToken(std::move(text));
}

void ControlToken::writeTo(const std::filesystem::path &folder) const
{
    const std::string name = "control.token";
    constexpr unsigned ownerReadsAndWrites = 0600;
    try {
        const Folder opened = Folder::openOrMake(folder, true);
        opened.removeAbandoned(name);
        opened.replace(name, m_text + "\n", ownerReadsAndWrites);
    } catch (const std::exception &failure) {
        throw ServiceProblem("The control token " + shownPath(folder / name) + " could not be written ("
            + failure.what()
            + "); make the place a folder of yours that you may write to, with nothing but a file of that "
            + "name in it, or set XDG_DATA_HOME to another place.");
    }
}

bool ControlToken::matches(std::string_view given) const
{
    unsigned difference = given.size() == m_text.size() ? 0U : 1U;
    for (std::size_t i = 0; i < m_text.size(); ++i) {
        const char other = i < given.size() ? given[i] : '\0';
        difference |= static_cast<unsigned char>(m_text[i]) ^ static_cast<unsigned char>(other);
    }
    return difference == 0;
}

} // namespace veranox
