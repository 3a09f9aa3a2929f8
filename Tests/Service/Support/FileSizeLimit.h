#pragma once
#include <csignal>
#include <stdexcept>
#include <sys/resource.h>

namespace veranox::test {

/// Lets this process write files of that many bytes only, as if the disk were full behind them.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes)
    {
        m_formerHandler = ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_former);
        const rlimit limit{bytes, m_former.rlim_max};
        if (::setrlimit(RLIMIT_FSIZE, &limit) != 0)
            throw std::runtime_error("no file size limit");
    }
    FileSizeLimit(const FileSizeLimit &) = delete;
    FileSizeLimit &operator=(const FileSizeLimit &) = delete;
    ~FileSizeLimit()
    {
        ::setrlimit(RLIMIT_FSIZE, &m_former);
        ::signal(SIGXFSZ, m_formerHandler);
    }

private:
    rlimit m_former{};
    void (*m_formerHandler)(int) = SIG_DFL;
};

} // namespace veranox::test
