#pragma once
#include "Service/Text/Words.h"
#include <filesystem>
#include <string>

namespace veranox {

/// The path as text for people and answers. Its name on disk may be any bytes; what is no UTF-8 becomes U+FFFD.
inline std::string shownPath(const std::filesystem::path &path)
{
    return toUtf8(path.native());
}

} // namespace veranox
