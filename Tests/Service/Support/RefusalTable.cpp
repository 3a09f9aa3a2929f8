#include "Tests/Service/Support/RefusalTable.h"

#include "Service/Text/Words.h"
#include <algorithm>
#include <vector>

namespace veranox::test {

namespace {

/// The words of one row: any one of the alternatives, of which all parts must be there.
using Row = std::vector<std::vector<std::string>>;

bool holds(const std::string &text, const Row &row)
{
    return std::ranges::any_of(row, [&](const std::vector<std::string> &parts) {
        return std::ranges::all_of(parts, [&](const std::string &part) { return text.contains(part); });
    });
}

int firstRow(const std::string &sentence, const std::vector<Row> &rows)
{
    const std::string text = lowered(sentence);
    const auto found = std::ranges::find_if(rows, [&](const Row &row) { return holds(text, row); });
    return 1 + static_cast<int>(found - rows.begin());
}

} // namespace

void expectRefused(ApiBed &bed, const RefusedRequest &refused)
{
    const std::string files = bed.filesOnDisk();
    const std::size_t applied = bed.traffic().applied.size();
    const std::uint64_t generation = bed.store().generation();
    const ControlAnswer answer = bed.ask(refused.method, refused.target, refused.body);
    const std::string what = refused.method + " " + refused.target + " " + refused.body;
    EXPECT_EQ(errorOf(answer), refused.sentence) << what;
    EXPECT_EQ(answer.status, refused.status) << what;
    EXPECT_EQ(bed.filesOnDisk(), files) << what;
    EXPECT_EQ(bed.traffic().applied.size(), applied) << what;
    EXPECT_EQ(bed.store().generation(), generation) << what;
    EXPECT_TRUE(bed.traffic().secrets.empty() && bed.traffic().restartedTunnels.empty()
        && bed.traffic().restartedPublications.empty())
        << what;
}

int publicationRow(const std::string &sentence)
{
    return firstRow(sentence,
        {{{"could not be started: "}}, {{"already exists"}}, {{"publications require the tsnet backend"}},
            {{" profile \"", "is not configured"}}, {{"does not exist"}}, {{"is not configured"}}, {{"veranox's own"}},
            {{"loopback"}}, {{"must be host:port"}, {"port must be numeric"}, {"empty host"}}, {{"must be in 1-65535"}},
            {{"publication endpoint"}}, {{"reach"}}, {{"decoding json body"}, {"unknown field"}}});
}

int tunnelRow(const std::string &sentence)
{
    return firstRow(sentence, {{{"already exists"}}, {{"does not exist"}}, {{"is not configured"}}});
}

int configurationRow(const std::string &sentence)
{
    return firstRow(sentence,
        {{{"decoding json body"}, {"unknown field"}}, {{"overlapping suffix"}}, {{"suffix"}},
            {{"profile name"}, {"invalid profile"}}, {{"match", "name"}}});
}

} // namespace veranox::test
