#include "Log/VeranoxRuntimeLogEntry.h"
#include "Tests/Fuzz/Records/RecordFuzzer.h"

// Whatever can be read is written as one line that reads the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (const auto entry = VeranoxRuntimeLogEntry::fromJson(bytes)) {
        const QByteArray line = entry->toJson();
        fuzz::require(!line.contains('\n'));
        fuzz::require(VeranoxRuntimeLogEntry::fromJson(line) == entry);
    }
    return 0;
}
