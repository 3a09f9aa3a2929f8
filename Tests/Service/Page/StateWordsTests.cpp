#include "Service/Page/StateWords.h"
#include <gtest/gtest.h>
#include <ostream>

namespace veranox {

void PrintTo(const StateWords &words, std::ostream *out)
{
    *out << static_cast<int>(words.tone) << ' ' << words.word << ": " << words.detail;
}

namespace {

TEST(StateWordsOfProfiles, SayWhatAPersonCanDo)
{
    const auto words = [](const char *state, const char *error) {
        return wordsFor(NodeStatus{.ok = false, .backendState = state, .raw = "", .error = error, .since = {}});
    };
    EXPECT_EQ(wordsFor(NodeStatus{.ok = true, .backendState = "Running", .raw = "", .error = "", .since = {}}),
        (StateWords{Tone::good, "Running", ""}));
    EXPECT_EQ(
        words("NeedsLogin", ""), (StateWords{Tone::attention, "Needs login", "Sign in to the tailnet in Veranox."}));
    EXPECT_EQ(words("NeedsLogin", "The key is old."), (StateWords{Tone::attention, "Needs login", "The key is old."}));
    EXPECT_EQ(words("NeedsMachineAuth", ""),
        (StateWords{Tone::attention, "Needs approval", "An admin of the tailnet has to approve this computer."}));
    EXPECT_EQ(words("Stopped", "It crashed."), (StateWords{Tone::failed, "Stopped", "It crashed."}));
    EXPECT_EQ(words("Stopped", ""), (StateWords{Tone::failed, "Stopped", "There is no word on why."}));
    for (const char *state : {"NoState", "Starting", ""})
        EXPECT_EQ(words(state, "Wait."), (StateWords{Tone::busy, "Starting", "Wait."})) << state;
}

TEST(StateWordsOfTunnels, TellConnectionsAndErrors)
{
    const auto words = [](const char *state, std::int64_t connections, const char *error) {
        return wordsFor(TunnelSettings{}, {.state = state, .activeConns = connections, .lastError = error});
    };
    EXPECT_EQ(words("listening", 0, ""), (StateWords{Tone::good, "Listening", ""}));
    EXPECT_EQ(words("listening", 1, ""), (StateWords{Tone::good, "Listening", "1 connection"}));
    EXPECT_EQ(
        words("listening", 2, "A try failed."), (StateWords{Tone::good, "Listening", "2 connections · A try failed."}));
    EXPECT_EQ(words("listening", 0, "A try failed."), (StateWords{Tone::good, "Listening", "A try failed."}));
    EXPECT_EQ(words("starting", 0, ""), (StateWords{Tone::busy, "Starting", ""}));
    EXPECT_EQ(words("error", 0, "The port is taken."), (StateWords{Tone::failed, "Error", "The port is taken."}));
    EXPECT_EQ(words("error", 0, ""), (StateWords{Tone::failed, "Error", "There is no word on why."}));
    EXPECT_EQ(words("stopped", 0, ""), (StateWords{Tone::off, "Stopped", ""}));
    EXPECT_EQ(words("", 0, ""), (StateWords{Tone::off, "Stopped", ""}));
    EXPECT_EQ(words("resting", 0, ""), (StateWords{Tone::off, "resting", ""}));
}

TEST(StateWordsOfTunnels, WhatIsSwitchedOffHasNoFault)
{
    TunnelSettings settings;
    settings.disabled = true;
    EXPECT_EQ(wordsFor(settings, {.state = "error", .activeConns = 1, .lastError = "Old."}),
        (StateWords{Tone::off, "Disabled", ""}));
}

TEST(StateWordsOfPublications, TellWhoMayConnect)
{
    const auto words = [](Reachability reachability, std::int64_t connections = 0) {
        PublicationStatus status;
        status.state = "listening";
        status.activeConns = connections;
        status.reachability = std::move(reachability);
        return wordsFor(PublicationSettings{}, status);
    };
    EXPECT_EQ(words({}), (StateWords{Tone::good, "Published", ""}));
    EXPECT_EQ(words({.state = "reachable", .peers = 0, .everyone = true, .detail = "", .hint = {}}, 3),
        (StateWords{Tone::good, "Published", "Open to every device of the tailnet · 3 connections"}));
    EXPECT_EQ(words({.state = "reachable", .peers = 1, .everyone = false, .detail = "", .hint = {}}),
        (StateWords{Tone::good, "Published", "Open to 1 device of the tailnet"}));
    EXPECT_EQ(words({.state = "unknown", .peers = 0, .everyone = false, .detail = "No answer yet.", .hint = {}}),
        (StateWords{Tone::good, "Published", "No answer yet."}));
    EXPECT_EQ(words({.state = "unknown", .peers = 0, .everyone = false, .detail = "", .hint = {}}),
        (StateWords{Tone::good, "Published", "Who may connect is not known."}));
    const StateWords closed =
        words({.state = "unreachable", .peers = 0, .everyone = false, .detail = "", .hint = PolicyHint{}});
    EXPECT_EQ(closed.tone, Tone::attention);
    EXPECT_EQ(closed.word, "Unreachable");
}

TEST(StateWordsOfPublications, NameThePlaceWhereAPolicyIsChanged)
{
    PublicationStatus status;
    status.state = "listening";
    status.reachability = {.state = "unreachable", .peers = 0, .everyone = false, .detail = "", .hint = std::nullopt};
    const std::string closed = "The tailnet's access policy lets no other device connect.";
    EXPECT_EQ(wordsFor(PublicationSettings{}, status).detail, closed);
    status.reachability.hint.emplace().policyURL = "https://policy.example";
    EXPECT_EQ(wordsFor(PublicationSettings{}, status).detail, closed + " Allow it at https://policy.example.");
}

TEST(StateWordsOfPublications, DisabledAndBlocked)
{
    PublicationSettings settings;
    PublicationStatus status;
    status.state = "blocked";
    EXPECT_EQ(wordsFor(settings, status).word, "Not published");
    settings.disabled = true;
    EXPECT_EQ(wordsFor(settings, status).word, "Not published");
    status.state = "stopped";
    EXPECT_EQ(wordsFor(settings, status), (StateWords{Tone::off, "Disabled", ""}));
    settings.disabled = false;
    status.state = "error";
    status.lastError = "The port is taken.";
    EXPECT_EQ(wordsFor(settings, status), (StateWords{Tone::failed, "Error", "The port is taken."}));
}

} // namespace

} // namespace veranox
