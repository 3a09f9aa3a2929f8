#pragma once
#include "Base/Failures/LocalizedError.h"

// A failure of the log's file or folder: what could not be done, with which path, and the system's reason.
class VeranoxRuntimeLogFileError final : public LocalizedError {
public:
    explicit VeranoxRuntimeLogFileError(QString text) : m_text(std::move(text)) { }
    QString localizedDescription() const override { return m_text; }

private:
    QString m_text;
};
