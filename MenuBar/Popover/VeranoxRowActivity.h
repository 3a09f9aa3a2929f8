#pragma once

// What a person has just done to a row of the popover, until the store tells how it ended.
struct VeranoxRowActivity {
    bool justCopied = false;
    bool isRetrying = false;
    bool isSwitching = false;

    bool operator==(const VeranoxRowActivity &) const = default;
};
