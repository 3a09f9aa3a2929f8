#pragma once
#include "Log/VeranoxRuntimeLogPersisting.h"

// Keeps nothing, for a store whose log shall end with it. Never fails.
class VeranoxRuntimeLogDiscarder final : public VeranoxRuntimeLogPersisting {
public:
    explicit VeranoxRuntimeLogDiscarder(std::optional<QString> fileURL = std::nullopt) : m_fileURL(std::move(fileURL))
    {
    }
    std::optional<QString> fileURL() const override { return m_fileURL; }
    jobs::Async<QList<VeranoxRuntimeLogEntry>> loadRecent(int limit) override;
    jobs::Async<> append(QList<VeranoxRuntimeLogEntry> entries) override;

private:
    std::optional<QString> m_fileURL;
};
