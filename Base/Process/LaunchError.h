#pragma once
#include "Base/Failures/LocalizedError.h"

// A program that the system would not start.
class LaunchError final : public LocalizedError {
public:
    // `code` is the system's error number.
    LaunchError(QString executable, int code);

    // Names the program and gives the reason in the system's words.
    QString localizedDescription() const override;

private:
    QString m_executable;
    int m_code;
};
