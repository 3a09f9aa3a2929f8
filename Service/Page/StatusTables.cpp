#include "Service/Page/StatusTables.h"

namespace veranox {

namespace {

HtmlLiteral markOpening(Tone tone)
{
    switch (tone) {
    case Tone::good:
        return R"(<span class="state good">)";
    case Tone::busy:
        return R"(<span class="state busy">)";
    case Tone::attention:
        return R"(<span class="state attention">)";
    case Tone::failed:
        return R"(<span class="state failed">)";
    case Tone::off:
        return R"(<span class="state off">)";
    }
    return R"(<span class="state">)";
}

/// What the row is about: its name for people, with the name in the configuration below where that differs.
Html titleCell(const std::string &displayName, const std::string &name)
{
    Html html(R"(<th scope="row"><span class="title">)");
    html.text(displayName.empty() ? name : displayName).add("</span>");
    if (!displayName.empty() && displayName != name)
        html.add(R"(<span class="name">)").text(name).add("</span>");
    return html.add("</th>");
}

Html stateCell(const StateWords &state)
{
    Html html("<td>");
    html.add(stateMark(state));
    if (!state.detail.empty())
        html.add(R"(<span class="detail">)").text(state.detail).add("</span>");
    return html.add("</td>");
}

Html textCell(const std::string &text)
{
    Html html("<td>");
    return html.text(text).add("</td>");
}

Html addressCell(const std::string &address)
{
    if (address.empty())
        return Html("<td><span class=\"none\">none</span></td>");
    Html html("<td><code>");
    return html.breakable(address).add("</code></td>");
}

std::string titleOf(const ConfigDocument &document, const std::string &profile)
{
    const ProfileSettings *settings = findNamed(document.profiles, profile);
    return settings && !settings->displayName.empty() ? settings->displayName : profile;
}

/// The names and addresses that the profile owns.
Html territoryCell(const ProfileSettings &profile)
{
    if (profile.suffixes.empty() && profile.ipRoutes.empty())
        return Html("<td><span class=\"none\">none: no request goes this way</span></td>");
    Html html("<td><ul class=\"list\">");
    for (const std::string &suffix : profile.suffixes)
        html.add("<li><code>").breakable(suffix).add("</code></li>");
    for (const std::string &range : profile.ipRoutes)
        html.add("<li><code>").breakable(range).add("</code></li>");
    return html.add("</ul></td>");
}

Html modeCell(const TunnelSettings &tunnel)
{
    if (tunnel.mode != "ssh" || !tunnel.ssh)
        return Html("<td>Native</td>");
    Html html("<td>SSH through <code>");
    const std::string account = tunnel.ssh->user.empty() ? "" : tunnel.ssh->user + "@";
    return html.breakable(account + tunnel.ssh->bastion).add("</code></td>");
}

struct Section {
    HtmlLiteral opening; // up to the rows
    HtmlLiteral whenEmpty;
};

constexpr HtmlLiteral closing = "</tbody>\n</table>\n</div>\n</section>\n";

const Section profileSection{
    R"(<section aria-labelledby="profiles">
<h2 id="profiles">Profiles</h2>
<div class="card" role="region" aria-labelledby="profiles" tabindex="0">
<table>
<thead><tr><th scope="col">Profile</th><th scope="col">Owns</th><th scope="col">State</th></tr></thead>
<tbody>
)",
    R"(<section aria-labelledby="profiles">
<h2 id="profiles">Profiles</h2>
<div class="card empty"><p><strong>No profiles yet.</strong> A profile joins one tailnet and carries the requests to its hosts. Add one in Veranox under Profiles.</p></div>
</section>
)"};

const Section tunnelSection{
    R"(<section aria-labelledby="tunnels">
<h2 id="tunnels">Tunnels</h2>
<div class="card" role="region" aria-labelledby="tunnels" tabindex="0">
<table class="tunnels">
<thead><tr><th scope="col">Tunnel</th><th scope="col">Endpoint</th><th scope="col">Target</th><th scope="col">Mode</th><th scope="col">Profile</th><th scope="col">State</th></tr></thead>
<tbody>
)",
    R"(<section aria-labelledby="tunnels">
<h2 id="tunnels">Tunnels</h2>
<div class="card empty"><p><strong>No tunnels yet.</strong> A tunnel gives a service of a tailnet a fixed port on this computer. Add one in Veranox under Tunnels.</p></div>
</section>
)"};

const Section publicationSection{
    R"(<section aria-labelledby="publications">
<h2 id="publications">Publications</h2>
<div class="card" role="region" aria-labelledby="publications" tabindex="0">
<table class="publications">
<thead><tr><th scope="col">Publication</th><th scope="col">Address</th><th scope="col">Serves</th><th scope="col">Profile</th><th scope="col">State</th></tr></thead>
<tbody>
)",
    R"(<section aria-labelledby="publications">
<h2 id="publications">Publications</h2>
<div class="card empty"><p><strong>No publications yet.</strong> A publication lets other devices of a tailnet use a service of this computer. Add one in Veranox under Publications.</p></div>
</section>
)"};

/// `row` gives the cells of an entry before its state, `state` the words for that.
template <class Entries>
StatusTable table(const Section &section, const Entries &entries, const auto &row, const auto &state)
{
    StatusTable made;
    if (entries.empty()) {
        made.html.add(section.whenEmpty);
        return made;
    }
    made.html.add(section.opening);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        const StateWords words = state(entries[i].second, i);
        made.tally.count(words.tone);
        made.html.add("<tr>").add(row(entries[i].first, entries[i].second, i)).add(stateCell(words)).add("</tr>\n");
    }
    made.html.add(closing);
    return made;
}

} // namespace

void StatusTally::count(Tone tone)
{
    ++total;
    good += tone == Tone::good ? 1 : 0;
    busy += tone == Tone::busy ? 1 : 0;
    attention += tone == Tone::attention ? 1 : 0;
    failed += tone == Tone::failed ? 1 : 0;
}

StatusTally StatusTally::operator+(const StatusTally &other) const
{
    return {.total = total + other.total,
        .good = good + other.good,
        .busy = busy + other.busy,
        .attention = attention + other.attention,
        .failed = failed + other.failed};
}

Html stateMark(const StateWords &state)
{
    Html html(markOpening(state.tone));
    return html.text(state.word).add("</span>");
}

StatusTables statusTables(const StatusOverview &overview)
{
    const ConfigDocument &document = overview.document;
    const auto profileRow = [](const std::string &name, const ProfileSettings &profile, std::size_t) {
        return titleCell(profile.displayName, name).add(territoryCell(profile));
    };
    const auto tunnelRow = [&](const std::string &name, const TunnelSettings &tunnel, std::size_t) {
        return titleCell(tunnel.displayName, name)
            .add(addressCell(tunnel.listen))
            .add(addressCell(tunnel.target))
            .add(modeCell(tunnel))
            .add(textCell(titleOf(document, tunnel.profile)));
    };
    const auto publicationRow = [&](const std::string &name, const PublicationSettings &publication, std::size_t i) {
        return titleCell(publication.displayName, name)
            .add(addressCell(overview.publications.at(i).address))
            .add(addressCell(publication.target))
            .add(textCell(titleOf(document, publication.profile)));
    };
    return {.profiles = table(profileSection, document.profiles, profileRow,
                [&](const ProfileSettings &, std::size_t i) { return wordsFor(overview.profiles.at(i)); }),
        .tunnels = table(tunnelSection, document.tunnels, tunnelRow,
            [&](const TunnelSettings &tunnel, std::size_t i) { return wordsFor(tunnel, overview.tunnels.at(i)); }),
        .publications = table(publicationSection, document.publications, publicationRow,
            [&](const PublicationSettings &publication, std::size_t i) {
                return wordsFor(publication, overview.publications.at(i));
            })};
}

} // namespace veranox
