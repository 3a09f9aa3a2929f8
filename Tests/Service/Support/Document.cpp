#include "Tests/Service/Support/Document.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>

namespace veranox::test {

namespace {

std::string trimmed(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(' ');
    return begin == std::string_view::npos ? ""
                                           : std::string(text.substr(begin, text.find_last_not_of(' ') - begin + 1));
}

std::vector<std::string> cells(std::string_view line)
{
    std::vector<std::string> result;
    line.remove_prefix(1);
    for (std::size_t end = line.find('|'); end != std::string_view::npos; end = line.find('|')) {
        result.push_back(trimmed(line.substr(0, end)));
        line.remove_prefix(end + 1);
    }
    return result;
}

} // namespace

Document::Document(const std::string &path) : m_path(path)
{
    std::ifstream file(std::string(VERANOX_SOURCE_DIR) + "/" + path);
    m_text.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    if (m_text.empty())
        throw std::runtime_error("there is no document " + path);
}

std::vector<std::vector<std::string>> Document::table(std::string_view heading) const
{
    std::istringstream lines(m_text);
    std::vector<std::vector<std::string>> rows;
    for (std::string line; std::getline(lines, line);) {
        const bool isInside = !rows.empty();
        if (isInside && !line.starts_with('|'))
            break;
        if (isInside || line.starts_with(heading))
            rows.push_back(cells(line));
    }
    if (rows.size() < 3)
        throw std::runtime_error(m_path + " has no table " + std::string(heading));
    return {rows.begin() + 2, rows.end()}; // without heading and rule
}

std::string Document::between(std::string_view begin, std::string_view end) const
{
    const std::size_t first = m_text.find(begin);
    const std::size_t last = first == std::string::npos ? first : m_text.find(end, first + begin.size());
    if (last == std::string::npos)
        throw std::runtime_error(m_path + " does not say \"" + std::string(begin) + "\"");
    return m_text.substr(first + begin.size(), last - first - begin.size());
}

std::size_t Document::number(std::string_view begin, std::string_view end) const
{
    return std::stoul(between(begin, end));
}

std::vector<std::string> codes(std::string_view text)
{
    std::vector<std::string> result;
    for (std::size_t begin = text.find('`'); begin != std::string_view::npos; begin = text.find('`')) {
        text.remove_prefix(begin + 1);
        const std::size_t end = std::min(text.find('`'), text.size());
        result.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return result;
}

} // namespace veranox::test
