// A subject's operations over the state and a scripted service, in virtual time and without the store.
#pragma once
#include "State/VeranoxState.h"
#include "Tests/Support/FakeAPIClient.h"
#include "Tests/Support/JobResult.h"
#include "Tests/Support/QtPrinters.h"
#include "Tests/Support/Records.h"
#include <gtest/gtest.h>

class SubjectWorld : public ::testing::Test, protected Records {
protected:
    SubjectWorld() : SubjectWorld(std::make_unique<RecordingObserver>()) { }

    jobs::World world;

private:
    explicit SubjectWorld(std::unique_ptr<RecordingObserver> observer)
        : observed(observer.get()),
          state(std::move(observer))
    {
    }

    FakeAPIClient m_client{world.queue};

protected:
    FakeAPIClient *service = &m_client;
    RecordingObserver *observed; // owned by the state
    VeranoxState state;
};
