#pragma once
#include "MenuBar/Popover/VeranoxActiveRecordsView.h"

// The publications in the popover. Main thread only.
class VeranoxActivePublicationsView final : public VeranoxActiveRecordsView {
    Q_OBJECT

public:
    // The store outlives the view.
    VeranoxActivePublicationsView(jobs::MainQueue &queue, VeranoxStore &store, VeranoxRowOperations operations,
        std::function<void(const QString &)> copyText);

private:
    void show() override;
};
