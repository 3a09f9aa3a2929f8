#pragma once
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

namespace veranox::test {

/// A folder of its own for one test, gone with the test. In memory where the system offers that, as durable writes to a
/// disk take their time.
class TemporaryFolder {
public:
    TemporaryFolder()
    {
        const std::filesystem::path memory = "/dev/shm";
        const bool hasMemory = std::filesystem::is_directory(memory);
        std::string pattern = (hasMemory ? memory : std::filesystem::temp_directory_path()) / "veranox-test-XXXXXX";
        if (!::mkdtemp(pattern.data()))
            throw std::runtime_error("no temporary folder");
        m_path = pattern;
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path &path() const { return m_path; }
    std::filesystem::path operator/(const std::string &name) const { return m_path / name; }

    void write(const std::string &name, std::string_view content) const
    {
        std::ofstream file(m_path / name, std::ios::binary);
        file << content;
        ASSERT_TRUE(file.flush()) << name;
    }
    std::string read(const std::string &name) const
    {
        std::ifstream file(m_path / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    /// The names in it, sorted.
    std::vector<std::string> names() const
    {
        std::vector<std::string> result;
        for (const auto &entry : std::filesystem::directory_iterator(m_path))
            result.push_back(entry.path().filename());
        std::ranges::sort(result);
        return result;
    }

private:
    std::filesystem::path m_path;
};

} // namespace veranox::test
