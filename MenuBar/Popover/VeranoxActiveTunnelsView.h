#pragma once
#include "MenuBar/Popover/VeranoxActiveRecordsView.h"

// The tunnels in the popover. Main thread only.
class VeranoxActiveTunnelsView final : public VeranoxActiveRecordsView {
    Q_OBJECT

public:
    // The store outlives the view.
    VeranoxActiveTunnelsView(jobs::MainQueue &queue, VeranoxStore &store, VeranoxRowOperations operations,
        std::function<void(const QString &)> copyText);

private:
    void show() override;
};
