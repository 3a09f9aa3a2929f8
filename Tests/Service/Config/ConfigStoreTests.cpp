#include "Service/Config/ConfigStore.h"
#include "Service/Json/JsonText.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Text/Words.h"
#include "Tests/Service/Support/FakeTime.h"
#include "Tests/Service/Support/FileSizeLimit.h"
#include "Tests/Service/Support/TemporaryFolder.h"
#include <gmock/gmock.h>

namespace veranox {

namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

const std::string kept = "config.json.damaged-20250301T081530Z";

ConfigDocument fullDocument()
{
    ConfigDocument document;
    document.router.profileUDPPortBase = 0;
    document.profiles.emplace_back("work", ProfileSettings{}).second.suffixes = {".a.ts.net"};
    document.profiles.emplace_back("home", ProfileSettings{}).second.displayName = "Ünïcode \"quoted\"";
    TunnelSettings ssh{.displayName = "DB",
        .profile = "work",
        .mode = "ssh",
        .listen = "127.0.0.1:5",
        .target = "db:1",
        .ssh = TunnelSSHSettings{.bastion = "b", .user = "u", .auth = "key", .identityFile = "/k"},
        .disabled = true};
    document.tunnels.emplace_back("db", ssh);
    ssh.mode = "native";
    ssh.listen = "127.0.0.1:6";
    ssh.ssh.reset();
    document.tunnels.emplace_back("web", ssh);
    document.publications.emplace_back("docs",
        PublicationSettings{.displayName = "",
            .profile = "work",
            .target = "127.0.0.1:8080",
            .reach = "funnel",
            .port = 443,
            .tls = true,
            .disabled = false});
    document.security.allowIPLiterals = true;
    return document;
}

class ConfigStoreTest : public ::testing::Test {
protected:
    std::string loadFailure() const
    {
        ConfigStore store(folder.path());
        try {
            store.load(time.wallNow());
        } catch (const ServiceProblem &problem) {
            return problem.what();
        }
        return "";
    }
    ConfigDocument loaded() const
    {
        ConfigStore store(folder.path());
        store.load(time.wallNow());
        return store.document();
    }
    /// The content of the file after a save of what it holds now.
    void saveAgain() const
    {
        ConfigStore store(folder.path());
        store.load(time.wallNow());
        store.save(store.document());
    }

    test::TemporaryFolder folder;
    test::FakeTime time;
};

TEST_F(ConfigStoreTest, WithoutAFileItIsNewAndWritesNothing)
{
    ConfigStore store(folder / "deep/inside");
    store.load(time.wallNow());
    EXPECT_TRUE(store.isNew());
    EXPECT_EQ(store.document(), ConfigDocument{});
    EXPECT_EQ(store.generation(), 1U);
    EXPECT_FALSE(fs::exists(store.file()));
}

TEST_F(ConfigStoreTest, WhatIsSavedIsLoadedAgain)
{
    ConfigStore store(folder.path());
    store.load(time.wallNow());
    store.save(fullDocument());
    EXPECT_EQ(store.generation(), 2U);
    EXPECT_FALSE(store.isNew());
    ConfigDocument again = loaded();
    again.asRead = {};
    EXPECT_EQ(again, fullDocument());
    EXPECT_THAT(folder.names(), ElementsAre("config.json"));
    EXPECT_EQ(static_cast<unsigned>(fs::status(folder / "config.json").permissions()), 0600U);
}

TEST_F(ConfigStoreTest, WhatItDoesNotKnowGoesBackIntoTheFile)
{
    boost::json::object file = parseJson(configFileText(fullDocument())).as_object();
    file["Future"] = {1, 2};
    file["Router"].as_object()["Extra"] = true;
    file["Profiles"].as_object()["work"].as_object()["Note"] = "mine";
    file["Tunnels"].as_object()["db"].as_object()["Note"] = "mine";
    folder.write("config.json", prettyJson(file));
    saveAgain();
    EXPECT_EQ(parseJson(folder.read("config.json")), boost::json::value(file));
}

TEST_F(ConfigStoreTest, WhatIsTakenAwayStaysAway)
{
    folder.write("config.json", configFileText(fullDocument()));
    ConfigStore store(folder.path());
    store.load(time.wallNow());
    ConfigDocument document = store.document();
    document.profiles.erase(document.profiles.begin());
    document.tunnels.clear();
    document.publications.clear();
    store.save(document);
    const boost::json::value file = parseJson(folder.read("config.json"));
    EXPECT_FALSE(file.at("Profiles").as_object().contains("work"));
    EXPECT_TRUE(file.at("Tunnels").as_object().empty());
    EXPECT_TRUE(file.at("Publications").as_object().empty());
}

TEST_F(ConfigStoreTest, ATunnelThatNoLongerNeedsItsBastionLosesIt)
{
    folder.write("config.json", configFileText(fullDocument()));
    ConfigStore store(folder.path());
    store.load(time.wallNow());
    ConfigDocument document = store.document();
    document.tunnels[0].second.mode = "native";
    document.tunnels[0].second.ssh.reset();
    store.save(document);
    EXPECT_FALSE(loaded().tunnels[0].second.ssh);
}

TEST_F(ConfigStoreTest, TornAtAnyByteItIsSetAsideAndTheNextStartBeginsEmpty)
{
    const std::string whole = configFileText(fullDocument());
    for (std::size_t length = 0; length + 1 < whole.size(); ++length) {
        const std::string torn = whole.substr(0, length);
        folder.write("config.json", torn);
        ASSERT_THAT(loadFailure(), HasSubstr("it was set aside as " + (folder / kept).string())) << length;
        ASSERT_THAT(folder.names(), ElementsAre(kept));
        ASSERT_EQ(folder.read(kept), torn);
        ASSERT_EQ(loaded(), ConfigDocument{});
        fs::remove(folder / kept);
    }
}

TEST_F(ConfigStoreTest, EarlierCopiesAreNeverOverwritten)
{
    for (int i = 0; i < 3; ++i) {
        folder.write("config.json", "broken " + std::to_string(i));
        EXPECT_NE(loadFailure(), "");
    }
    EXPECT_THAT(folder.names(), ElementsAre(kept, kept + "-2", kept + "-3"));
    EXPECT_EQ(folder.read(kept), "broken 0");
    EXPECT_EQ(folder.read(kept + "-3"), "broken 2");
}

TEST_F(ConfigStoreTest, SentencesNameFilePlaceAndRemedy)
{
    const std::string file = "The configuration file " + (folder / "config.json").string();
    const std::string leftAlone =
        "; it was left as it is: mend it, or move it away to begin with an empty configuration.";
    const std::string whole = configFileText(fullDocument());
    const auto with = [&](std::string_view from, std::string_view to) {
        std::string text = whole;
        text.replace(text.find(from), from.size(), to);
        return text;
    };
    const std::pair<std::string, std::string> table[] = {
        {"[]", "the top level: must be an object in braces"},
        {"{}", "the top level: the key \"Version\" is missing"},
        {with(R"("Version": 1)", R"("Version": "1")"), "Version: must be a whole number from 1 to 2147483647"},
        {with(R"("Security")", R"("Securities")"), "the top level: the key \"Security\" is missing"},
        {with(R"("work")", R"("Work")"), "Profiles.Work: is not a name that can be used: it " + std::string(nameRule)},
        {with(R"("Backend": "tsnet")", R"("Backend": "other")"),
            R"(Profiles.work.Backend: "other" is not known; it must be "tsnet" or "tailscaled")"},
        {with(R"("Port": 0)", R"("Port": 70000)"), "Profiles.work.Port: must be a whole number from 0 to 65535"},
        {with(R"(".a.ts.net")", "7"), "Profiles.work.Suffixes[0]: must be a text in double quotes"},
        {with(R"("Auth": "key")", R"("Auth": "magic")"),
            R"(Tunnels.db.SSH.Auth: "magic" is not known; it must be "agent", "key" or "password")"},
        {with(R"("Port": 443)", R"("Port": 0)"), "Publications.docs.Port: must be a whole number from 1 to 65535"},
        {with(R"("home")", R"("work")"),
            "the key \"work\": stands twice in one object, so one of the two would be lost"},
    };
    for (const auto &[text, complaint] : table) {
        folder.write("config.json", text);
        for (int start = 0; start < 2; ++start)
            EXPECT_EQ(loadFailure(), file + " is not valid: at " + complaint + leftAlone);
        EXPECT_EQ(folder.read("config.json"), text);
        EXPECT_THAT(folder.names(), ElementsAre("config.json"));
    }
    folder.write("config.json", "{\n  oops");
    EXPECT_EQ(loadFailure(),
        file + " is not valid: at line 2, column 3: syntax error; it was set aside as " + (folder / kept).string()
            + ": start again to begin with an empty configuration, or mend that copy and give it back its name.");
}

TEST_F(ConfigStoreTest, WhatCannotBeReadIsLeftAsItIs)
{
    fs::create_directory(folder / "config.json");
    EXPECT_THAT(loadFailure(), HasSubstr("cannot be read: reading it, as it is no regular file"));
    EXPECT_TRUE(fs::is_directory(folder / "config.json"));
    fs::remove(folder / "config.json");
    folder.write("config.json", std::string(ConfigStore::sizeLimit + 1, ' '));
    EXPECT_THAT(loadFailure(), HasSubstr("more than 4194304 bytes: File too large; it was left as it is: "));
    EXPECT_EQ(fs::file_size(folder / "config.json"), ConfigStore::sizeLimit + 1);
    fs::remove(folder / "config.json");
    fs::create_symlink("nowhere/config.json", folder / "config.json");
    EXPECT_THAT(loadFailure(), HasSubstr("cannot be read: following it to nowhere/config.json: No such file"));
    EXPECT_TRUE(fs::is_symlink(folder / "config.json"));
    EXPECT_FALSE(fs::exists(folder / "nowhere"));
    fs::remove(folder / "config.json");
    fs::create_symlink("config.json", folder / "config.json");
    EXPECT_THAT(loadFailure(), HasSubstr("it was left as it is: "));
    EXPECT_THAT(folder.names(), ElementsAre("config.json"));
}

TEST_F(ConfigStoreTest, WhatIsDeepButJsonIsLeftAsItIs)
{
    const std::string deep = R"({"a": )" + std::string(40, '[') + std::string(40, ']') + "}";
    folder.write("config.json", deep);
    EXPECT_THAT(loadFailure(), HasSubstr("it was left as it is: "));
    EXPECT_EQ(folder.read("config.json"), deep);
}

TEST_F(ConfigStoreTest, ALinkStaysAndItsTargetIsWritten)
{
    fs::create_directory(folder / "dotfiles");
    folder.write("dotfiles/veranox.json", configFileText(fullDocument()));
    folder.write("dotfiles/.veranox.json.17.new", "left behind by a killed process");
    fs::create_symlink("dotfiles/veranox.json", folder / "link");
    fs::create_symlink("link", folder / "config.json");
    ConfigStore store(folder.path());
    store.load(time.wallNow());
    ConfigDocument document = store.document();
    EXPECT_EQ(document.profiles.size(), 2U);
    document.profiles[0].second.displayName = "Renamed";
    store.save(document);
    EXPECT_EQ(fs::read_symlink(folder / "config.json"), "link");
    EXPECT_EQ(fs::read_symlink(folder / "link"), "dotfiles/veranox.json");
    EXPECT_THAT(folder.read("dotfiles/veranox.json"), HasSubstr("Renamed"));
    EXPECT_FALSE(store.disk().holdsOtherThan(*store.knownText()));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder / "dotfiles"), {}), 1);
    EXPECT_EQ(loaded().profiles[0].second.displayName, "Renamed");
}

TEST_F(ConfigStoreTest, AFileThatIsHugeOnceItIsWrittenInFullIsLeftAsItIs)
{
    std::string profiles;
    for (int i = 0; i < 20000; ++i)
        profiles += (i == 0 ? "\"p" : ",\"p") + std::to_string(i) + "\":{}";
    std::string text = configFileText(ConfigDocument{});
    text.replace(text.find(R"("Profiles": {})"), 14, R"("Profiles": {)" + profiles + "}");
    ASSERT_LT(text.size(), ConfigStore::sizeLimit / 4);
    folder.write("config.json", text);
    EXPECT_THAT(loadFailure(),
        HasSubstr("is too large: with everything that it leaves out it has more than 4194304 bytes; it "
                  "was left as it is: "));
    EXPECT_EQ(folder.read("config.json"), text);
}

TEST_F(ConfigStoreTest, TheLargestFileIsLoadedAndSaved)
{
    ConfigDocument document = fullDocument();
    document.asRead["Future"] = std::string(ConfigStore::sizeLimit, 'x');
    const std::size_t tooMuch = configFileText(document).size() - ConfigStore::sizeLimit;
    document.asRead["Future"] = std::string(ConfigStore::sizeLimit - tooMuch, 'x');
    folder.write("config.json", configFileText(document));
    ASSERT_EQ(folder.read("config.json").size(), ConfigStore::sizeLimit);
    saveAgain();
    EXPECT_EQ(folder.read("config.json").size(), ConfigStore::sizeLimit);
    document.asRead["Future"].as_string() += 'x';
    ConfigStore store(folder.path());
    store.load(time.wallNow());
    EXPECT_THROW(store.save(document), ServiceProblem);
}

TEST_F(ConfigStoreTest, AFileOfANewerVersionIsLeftInItsPlace)
{
    std::string text = configFileText(fullDocument());
    text.replace(text.find(R"("Version": 1)"), 12, R"("Version": 2)");
    folder.write("config.json", text);
    EXPECT_EQ(loadFailure(),
        "The configuration file " + (folder / "config.json").string()
            + " is too new: at Version: is 2, which a newer Veranox wrote; update Veranox.");
    EXPECT_EQ(folder.read("config.json"), text);
}

TEST_F(ConfigStoreTest, FullDiskKeepsFileAndDocument)
{
    ConfigStore store(folder.path());
    store.load(time.wallNow());
    store.save(fullDocument());
    const std::string before = folder.read("config.json");
    const ConfigDocument document = store.document();
    {
        const test::FileSizeLimit full(100);
        EXPECT_THROW(store.save(ConfigDocument{}), ServiceProblem);
    }
    EXPECT_EQ(store.document(), document);
    EXPECT_EQ(store.generation(), 2U);
    EXPECT_EQ(folder.read("config.json"), before);
    EXPECT_THAT(folder.names(), ElementsAre("config.json"));
}

} // namespace

} // namespace veranox
