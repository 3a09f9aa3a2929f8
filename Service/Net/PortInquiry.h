#pragma once
#include "Service/Net/LoopbackEndpoint.h"
#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/thread_pool.hpp>
#include <functional>
#include <memory>
#include <string>

namespace veranox {

/// What is in the way of an address that is in use.
struct PortObstacle {
    std::string sentence; // for people
    bool isPassing = false; // a connection that goes out from that port, and ends sooner or later
};

/// Finds out what is in the way of an address, on a thread of its own, as looking through all processes takes its time.
class PortInquiry {
public:
    /// Answers come on that executor.
    explicit PortInquiry(boost::asio::any_io_executor answers) : m_answers(std::move(answers)) { }
    PortInquiry(const PortInquiry &) = delete;
    PortInquiry &operator=(const PortInquiry &) = delete;
    /// Waits for the question that is being looked into, at most.
    ~PortInquiry();

    using Answer = std::function<void(const PortObstacle &)>;

    /// Whoever asks keeps `answer`; it is not called once he has dropped it.
    void ask(const LoopbackEndpoint &endpoint, const std::shared_ptr<Answer> &answer);

private:
    boost::asio::any_io_executor m_answers;
    boost::asio::thread_pool m_worker{1};
};

} // namespace veranox
