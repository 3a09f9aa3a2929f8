#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Config/ConfigFile.h"
#include "Service/Time/WallTime.h"
#include <cstdint>
#include <filesystem>
#include <memory>

namespace veranox {

/// Keeps the configuration document in `config.json` of one folder. Not for use from several threads; for a save
/// on another one there are disk() and adopt().
class ConfigStore {
public:
    static constexpr std::size_t sizeLimit = ConfigFile::sizeLimit;

    /// Nothing is touched before load().
    explicit ConfigStore(std::filesystem::path folder);

    /// Reads the file; without one the document is that of a computer without a profile, and nothing is written. For
    /// whoever has the folder for itself.
    /// What is no JSON is renamed to "config.json.damaged-<time>", `now`, and never overwritten. A file that cannot be
    /// read, is of a newer version or holds what no save would be let through with is left as it is. In both cases, and
    /// when the folder cannot be used, ServiceProblem is thrown. `controlPort` counts as taken; 0 stands for none.
    void load(WallTime now, std::uint16_t controlPort = 0);

    /// Makes current what was written into the file.
    void adopt(ConfigDraft draft);
    /// All at once: writes the document and makes it the current one. On failure, a ServiceProblem, file and current
    /// document are the old ones.
    Durability save(ConfigDocument document);

    const ConfigDocument &document() const { return *m_document; }
    /// The current document for whoever keeps it: a later save does not touch it.
    std::shared_ptr<const ConfigDocument> snapshot() const { return m_document; }
    /// Where the document lies, for any thread.
    const ConfigFile &disk() const { return m_file; }
    std::filesystem::path file() const { return m_file.path(); }
    /// The file as this store last read or wrote it; empty when there was none.
    std::shared_ptr<const std::string> knownText() const { return m_knownText; }
    bool isNew() const { return m_isNew; }
    /// Counts the documents that this process has had, from 1.
    std::uint64_t generation() const { return m_generation; }

private:
    ConfigDocument read(std::string_view text, std::uint16_t controlPort) const;
    [[noreturn]] void leave(const std::string &complaint) const;
    [[noreturn]] void setAside(const std::string &complaint, WallTime now) const;

    ConfigFile m_file;
    std::shared_ptr<const ConfigDocument> m_document = std::make_shared<const ConfigDocument>();
    std::shared_ptr<const std::string> m_knownText = std::make_shared<const std::string>();
    bool m_isNew = true;
    std::uint64_t m_generation = 1;
};

} // namespace veranox
