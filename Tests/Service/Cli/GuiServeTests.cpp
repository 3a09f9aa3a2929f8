#include "Service/Cli/GuiServe.h"
#include "Service/Files/Descriptor.h"
#include "Tests/Service/Support/FailingDisk.h"
#include "Tests/Service/Support/RawClient.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <array>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <optional>
#include <sys/wait.h>
#include <thread>

namespace veranox {

namespace {

using namespace std::chrono_literals;
using test::FailingDisk;
using test::RawClient;
using ::testing::HasSubstr;
using Clock = std::chrono::steady_clock;

/// A service in a process of its own, whose disk can be made to hang.
class HangingService : public ::testing::Test {
protected:
    /// Runs the service and tells once its disk hangs: at its first write, or at the first save that it is asked for.
    pid_t start(bool isAtTheStart)
    {
        const pid_t process = ::fork();
        if (process == 0) {
            ::dup2(::open((home / "log").c_str(), O_CREAT | O_WRONLY | O_APPEND, 0600), STDOUT_FILENO);
            std::optional<FailingDisk> disk;
            if (isAtTheStart)
                disk.emplace(FailingDisk::Step::waitForFlush);
            const std::thread hang([&] {
                if (!isAtTheStart)
                    askForSave(disk);
                while (disk->count() == 0)
                    std::this_thread::yield();
                tell();
            });
            runGuiServe({.listen = "127.0.0.1:0"}, [this](const std::string &name) {
                return name == "HOME" ? std::optional(home.path().string()) : std::nullopt;
            });
            std::_Exit(returned);
        }
        return process;
    }
    void awaitHang() const
    {
        char said = 0;
        ASSERT_EQ(::read(m_ends[0], &said, 1), 1);
    }
    static constexpr int returned = 3; // what it ends with that was not cut

    test::TemporaryFolder home;

private:
    void askForSave(std::optional<FailingDisk> &disk) const
    {
        RawClient client(awaitPort());
        const std::string config = client.exchange(client.request("GET", "/api/config")).body();
        disk.emplace(FailingDisk::Step::waitForFlush);
        client.send(client.request("POST", "/api/config?force=true",
                        "X-Veranox-Token: " + home.read(".local/share/Veranox/control.token").substr(0, 64)
                            + "\r\nContent-Length: " + std::to_string(config.size()) + "\r\n")
            + config);
    }
    std::uint16_t awaitPort() const
    {
        for (;;) {
            const std::string log = home.read("log");
            const std::size_t address = log.find(" address=127.0.0.1:");
            if (address != std::string::npos && log.ends_with('\n'))
                return static_cast<std::uint16_t>(std::stoi(log.substr(log.find(':', address) + 1)));
            std::this_thread::yield();
        }
    }
    void tell() const
    {
        if (::write(m_ends[1], "!", 1) != 1)
            std::_Exit(returned);
    }

    const std::array<int, 2> m_ends = [] {
        std::array<int, 2> made{};
        if (::pipe(made.data()) != 0)
            throw std::runtime_error("no pipe");
        return made;
    }();
    const Descriptor m_readingEnd{m_ends[0]};
    const Descriptor m_writingEnd{m_ends[1]};
};

TEST_F(HangingService, EndsWithinASecondAndSaysWhatItLeftBehind)
{
    for (const bool isAtTheStart : {true, false}) {
        const pid_t process = start(isAtTheStart);
        ASSERT_GT(process, 0);
        awaitHang();
        const Clock::time_point begin = Clock::now();
        ::kill(process, SIGTERM);
        int status = 0;
        ::waitpid(process, &status, 0);
        EXPECT_LT(Clock::now() - begin, 1s);
        ASSERT_TRUE(WIFEXITED(status));
        EXPECT_EQ(WEXITSTATUS(status), 0);
        EXPECT_THAT(home.read("log"), HasSubstr("event_code=service_cut"));
        std::filesystem::remove(home / "log");
    }
    EXPECT_THAT(home.read(".config/veranox/config.json"), HasSubstr("\"Version\": 1")) << "the old document stands";
}

} // namespace

} // namespace veranox
