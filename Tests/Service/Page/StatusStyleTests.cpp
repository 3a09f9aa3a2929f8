#include "Service/Page/StatusPage.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <map>
#include <regex>

namespace veranox {

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

using Tokens = std::map<std::string, std::string>;

/// The colours of the ":root" block that comes after `place`, over those given.
Tokens tokensAfter(const std::string &place, Tokens tokens)
{
    std::string style(statusStyle());
    style.erase(0, place.empty() ? 0 : style.find(place));
    const std::size_t begin = style.find(":root {");
    const std::string block = style.substr(begin, style.find('}', begin) - begin);
    const std::regex token(R"(--([a-z-]+): #([0-9a-f]{6});)");
    for (auto found = std::sregex_iterator(block.begin(), block.end(), token); found != std::sregex_iterator(); ++found)
        tokens[(*found)[1]] = (*found)[2];
    return tokens;
}

/// Relative luminance as the accessibility guidelines of the web define it.
double luminance(const std::string &colour)
{
    constexpr std::array<double, 3> weights{0.2126, 0.7152, 0.0722};
    double sum = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const double part = std::stoi(colour.substr(2 * i, 2), nullptr, 16) / 255.0;
        sum += weights.at(i) * (part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4));
    }
    return sum;
}

double contrast(const std::string &one, const std::string &other)
{
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

void expectReadable(const Tokens &tokens)
{
    for (const char *text : {"text", "secondary", "link", "failed-text", "attention-text"})
        for (const char *ground : {"window", "card"})
            EXPECT_GE(contrast(tokens.at(text), tokens.at(ground)), 4.5) << text << " on " << ground;
}

TEST(StatusStyle, ContrastIsMeasuredRightly)
{
    EXPECT_NEAR(contrast("000000", "ffffff"), 21, 1e-9);
    EXPECT_NEAR(contrast("777777", "ffffff"), 4.48, 0.01);
}

TEST(StatusStyle, TextStandsOutInLightAndDark)
{
    const Tokens light = tokensAfter("", {});
    const Tokens dark = tokensAfter("prefers-color-scheme: dark", light);
    EXPECT_GT(luminance(light.at("window")), 0.5);
    EXPECT_LT(luminance(dark.at("window")), 0.1);
    expectReadable(light);
    expectReadable(dark);
}

TEST(StatusStyle, FetchesNothing)
{
    for (const char *forbidden : {"url(", "@import", "@font-face", "http"})
        EXPECT_THAT(std::string(statusStyle()), Not(HasSubstr(forbidden)));
}

TEST(StatusStyle, EachStateHasAShapeOfItsOwn)
{
    const std::string style(statusStyle());
    for (const char *rule : {".good::before", ".busy::before", ".attention::before", ".failed::before"})
        EXPECT_THAT(style, HasSubstr(rule));
}

} // namespace

} // namespace veranox
