#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Time/WallTime.h"
#include <cstdint>
#include <filesystem>

namespace veranox {

/// Keeps the configuration document in `config.json` of one folder. Not for use from several threads.
class ConfigStore {
public:
    /// Of the file, as it is and as a save would write it: what is loaded can also be saved and sent around.
    static constexpr std::size_t sizeLimit = 4 * 1024 * 1024;

    /// Nothing is touched before load().
    explicit ConfigStore(std::filesystem::path folder);

    /// Reads the file; without one the document is that of a computer without a profile, and nothing is written.
    /// A file that cannot be used is renamed to "config.json.damaged-<time>" and never overwritten; then, and when the
    /// folder cannot be used, ServiceProblem is thrown. `now` names the kept copy.
    void load(WallTime now);

    /// Writes the document durably and makes it the current one. On failure, a ServiceProblem, file and current
    /// document are the old ones.
    void save(ConfigDocument document);

    /// True when the file holds something else than this store last read or wrote. A file that is gone holds nothing
    /// that could be lost.
    bool isChangedByOthers() const;
    /// Keeps what others wrote into the file as "config.json.replaced-<time>" beside it. Throws ServiceProblem.
    void keepChanged(WallTime now) const;

    const ConfigDocument &document() const { return m_document; }
    std::filesystem::path file() const { return m_folder / "config.json"; }
    bool isNew() const { return m_isNew; }
    /// Counts the documents that this process has had, from 1.
    std::uint64_t generation() const { return m_generation; }

private:
    [[noreturn]] void setAside(const std::string &complaint, WallTime now) const;

    std::filesystem::path m_folder;
    ConfigDocument m_document;
    std::string m_fileText; // as last read or written
    bool m_isNew = true;
    std::uint64_t m_generation = 1;
};

} // namespace veranox
