#pragma once

namespace veranox::load {

/// Prints the port at which it listens and serves until the process is ended: it swallows what comes, but a lone "?" is
/// answered with "!".
void serveSink();

} // namespace veranox::load
