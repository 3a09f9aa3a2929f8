#include "Service/Page/StatusPage.h"

#include "Service/Page/StatusTables.h"
#include "Service/Text/Timestamps.h"

namespace veranox {

namespace {

std::string counted(std::size_t count, const char *one, const char *many)
{
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

/// One sentence for all of it.
StateWords verdict(const StatusTally &all)
{
    if (all.total == 0)
        return {Tone::off, "Nothing is set up yet", "Open Veranox and add a profile: it joins one tailnet."};
    if (all.needsPerson() > 0)
        return {all.failed > 0 ? Tone::failed : Tone::attention,
            counted(all.needsPerson(), "thing needs", "things need") + " attention", ""};
    if (all.busy > 0)
        return {Tone::busy, counted(all.busy, "thing is", "things are") + " still starting", ""};
    if (all.good == 0)
        return {Tone::off, "Everything is switched off", ""};
    return {Tone::good, "Everything works", ""};
}

Html head(const StatusOverview &overview, const StateWords &verdict)
{
    Html html(R"(<!doctype html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
)");
    if (overview.reloads)
        html.add("<meta http-equiv=\"refresh\" content=\"10\">\n");
    html.add("<title>").text(verdict.word).add(R"( – Veranox</title>
<link rel="icon" href="data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 32 32'%3E%3Crect width='32' height='32' rx='8' fill='%234EC98F'/%3E%3Cpath d='M6 16h7m0 0 9-7m-9 7 9 7' stroke='%23fff' stroke-width='3' stroke-linecap='round'/%3E%3Ccircle cx='13' cy='16' r='3.5' fill='%23fff'/%3E%3Ccircle cx='23.5' cy='8.5' r='3' fill='%23fff'/%3E%3Ccircle cx='23.5' cy='23.5' r='3' fill='%23fff'/%3E%3C/svg%3E">
<link rel="stylesheet" href="/status.css">
</head>
)");
    return html;
}

Html masthead(const StatusOverview &overview)
{
    Html html(R"(<header>
<svg class="mark" viewBox="0 0 32 32" aria-hidden="true"><rect width="32" height="32" rx="8"/><path d="M6 16h7m0 0 9-7m-9 7 9 7"/><circle cx="13" cy="16" r="3.5"/><circle cx="23.5" cy="8.5" r="3"/><circle cx="23.5" cy="23.5" r="3"/></svg>
<div class="product">
<h1>Veranox</h1>
<p>Router service )");
    html.text(overview.version).add(R"(</p>
</div>
<p class="moment">As of <time datetime=")");
    html.text(timestamp(overview.now)).add("\">").text(localTime(overview.now)).add("</time><br>\n");
    if (overview.reloads)
        html.add("Reloads every 10 seconds · <a href=\"/\">Stop</a>");
    else
        html.add("<a href=\"/\">Reload</a> · <a href=\"/?reload=true\">Keep up to date</a>");
    return html.add("</p>\n</header>\n");
}

Html tile(HtmlLiteral opening, const StatusTally &tally, const char *goodWord)
{
    Html html(opening);
    html.add("<span class=\"figure\">").number(tally.good);
    html.add("<span class=\"of\"> of ").number(tally.total).add("</span></span><span class=\"meaning\">");
    html.text(goodWord);
    if (tally.needsPerson() > 0)
        html.text(", " + counted(tally.needsPerson(), "needs", "need") + " attention");
    else if (tally.busy > 0)
        html.text(", " + std::to_string(tally.busy) + " starting");
    return html.add("</span></a></li>\n");
}

Html tiles(const StatusTables &tables)
{
    Html html("<ul class=\"tiles\">\n");
    html.add(
        tile(R"(<li><a href="#profiles"><span class="subject">Profiles</span>)", tables.profiles.tally, "running"));
    html.add(tile(R"(<li><a href="#tunnels"><span class="subject">Tunnels</span>)", tables.tunnels.tally, "listening"));
    html.add(tile(R"(<li><a href="#publications"><span class="subject">Publications</span>)", tables.publications.tally,
        "published"));
    return html.add("</ul>\n");
}

Html summary(const StatusTables &tables, const StateWords &verdict)
{
    Html html("<section class=\"summary\" aria-labelledby=\"verdict\">\n");
    html.add("<h2 id=\"verdict\">").add(stateMark(verdict)).add("</h2>\n");
    if (!verdict.detail.empty())
        html.add("<p>").text(verdict.detail).add("</p>\n");
    if (tables.all().total > 0)
        html.add(tiles(tables));
    return html.add("</section>\n");
}

} // namespace

std::string statusPage(const StatusOverview &overview)
{
    const StatusTables tables = statusTables(overview);
    const StateWords word = verdict(tables.all());
    Html html = head(overview, word);
    html.add("<body>\n").add(masthead(overview)).add("<main>\n").add(summary(tables, word));
    html.add(tables.profiles.html).add(tables.tunnels.html).add(tables.publications.html);
    html.add("</main>\n<footer><p>This page only shows. Changes are made in the Veranox application.</p></footer>\n");
    html.add("</body>\n</html>\n");
    return std::move(html).take();
}

} // namespace veranox
