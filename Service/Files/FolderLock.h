#pragma once
#include "Service/Files/Descriptor.h"
#include <filesystem>
#include <string>

namespace veranox {

/// Keeps a folder for this process alone, for as long as it lives: two services in one folder would write over each
/// other's files. A lock that a killed process left behind counts for nothing.
class FolderLock {
public:
    /// Makes the folder where it is missing. Never waits: throws ServiceProblem that names the program and the process
    /// that have it, or why it cannot be used at all. For these sentences: which file the service keeps there, and the
    /// variable that leads to another folder.
    FolderLock(const std::filesystem::path &folder, const std::string &file, const std::string &variable);

private:
    Descriptor m_file;
};

} // namespace veranox
