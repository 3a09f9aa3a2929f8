#pragma once
#include "Base/Failures/VeranoxError.h"

// A program that the system would not start.
class VeranoxLaunchError final : public VeranoxError {
public:
    // `code` is the system's error number.
    VeranoxLaunchError(QString executable, int code);

    // Names the program and gives the reason in the system's words.
    QString localizedDescription() const override;

private:
    QString m_executable;
    int m_code;
};
