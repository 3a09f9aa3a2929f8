#pragma once
#include "Tests/Service/Support/TemporaryFolder.h"
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace veranox::test {

/// The real executable as a child process, in a home folder of its own. Whatever still runs at the end is killed.
class ServiceProcess {
public:
    /// `home` becomes HOME; nothing else of the test's environment is passed on but `variables`. With `descriptors` it
    /// may have no more open files than that.
    ServiceProcess(const std::filesystem::path &home, std::vector<std::string> arguments,
        std::map<std::string, std::string> variables = {}, unsigned descriptors = 0);
    ServiceProcess(const ServiceProcess &) = delete;
    ServiceProcess &operator=(const ServiceProcess &) = delete;
    ~ServiceProcess();

    /// The port that it listens at, from its log; 0 when it ends without listening.
    std::uint16_t awaitPort();
    void signal(int number) const;
    /// Its exit status, after its end; -1 when a signal killed it.
    int awaitEnd();
    /// What it wrote, whole once it has ended.
    const std::string &output();
    const std::string &errorOutput();
    pid_t process() const { return m_process; }

private:
    /// One stream of the child, read as it comes.
    struct Stream {
        int descriptor = -1;
        std::string text;
    };
    /// Reads more; false at the end of the stream. Throws when nothing comes for 20 seconds.
    static bool readMore(Stream &stream);

    pid_t m_process = -1;
    std::optional<int> m_status;
    Stream m_output;
    Stream m_error;
};

} // namespace veranox::test
