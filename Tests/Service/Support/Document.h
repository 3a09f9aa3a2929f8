#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace veranox::test {

/// A document of the project, for tests that hold it against the program.
class Document {
public:
    /// `path` from the project's root. Throws std::runtime_error when there is no such file.
    explicit Document(const std::string &path);

    const std::string &text() const { return m_text; }
    /// The cells of each row of the table whose heading begins like this. Throws when there is none.
    std::vector<std::vector<std::string>> table(std::string_view heading) const;
    /// What stands between the two texts. Throws when one of them is missing.
    std::string between(std::string_view begin, std::string_view end) const;
    /// The same as a number.
    std::size_t number(std::string_view begin, std::string_view end) const;

private:
    std::string m_path;
    std::string m_text; // its paragraphs as it breaks them
};

/// The texts in backticks, in their order.
std::vector<std::string> codes(std::string_view text);

} // namespace veranox::test
