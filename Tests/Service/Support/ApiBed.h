#pragma once
#include "Service/Control/ControlApi.h"
#include "Service/Nodes/NodeEngine.h"
#include "Tests/Service/Support/FakeTime.h"
#include "Tests/Service/Support/FakeTraffic.h"
#include "Tests/Service/Support/Lines.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <memory>
#include <string>
#include <string_view>

namespace veranox::test {

/// Runs the answer to its end on a context of its own. Throws std::runtime_error when it does not come by itself.
ControlAnswer awaitAnswer(ControlApi &api, ControlRequest request);

/// The control API over a configuration on disk, without transport: what one request after the other is answered.
class ApiBed {
public:
    static constexpr std::uint16_t port = 43200;

    /// Begins with `config` as the file, or without one. The lab's text decides the engine; without it there is none.
    explicit ApiBed(std::string_view config = "", std::string_view lab = "");

    /// A request from this computer with the right token.
    ControlRequest request(const std::string &method, const std::string &target, std::string body = "") const;
    ControlAnswer ask(const std::string &method, const std::string &target, std::string body = "");

    /// All files and their contents in the configuration folder and beside the control token.
    std::string filesOnDisk() const;

    const TemporaryFolder &folder() const { return m_folder; }
    const std::string &token() const { return m_token; }
    FakeTime &time() { return m_time; }
    ConfigStore &store() { return m_store; }
    NodeEngine &nodes() { return *m_nodes; }
    FakeTraffic &traffic() { return m_traffic; }
    ControlApi &api() { return *m_api; }
    /// What another API over the same things would be made of.
    ControlParts parts(std::uint16_t controlPort, Traffic &traffic);
    const std::vector<std::string> &lines() const { return m_lines.lines; }

private:
    TemporaryFolder m_folder;
    FakeTime m_time;
    ConfigStore m_store{m_folder.path()};
    std::unique_ptr<NodeEngine> m_nodes;
    FakeTraffic m_traffic;
    Lines m_lines;
    Log m_log{m_lines, LogLevel::debug, ""};
    Worker m_saves{8};
    Worker m_lookUps{8};
    std::string m_token;
    std::unique_ptr<ControlApi> m_api;
};

/// The sentence of a refusal; what it answered instead when it was none.
std::string errorOf(const ControlAnswer &answer);

} // namespace veranox::test
