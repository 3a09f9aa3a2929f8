#pragma once
#include "State/VeranoxState.h"
#include <QPointer>

// A flag of the state that is up for the life of this variable, which belongs into the frame of the operation that the
// flag tells of: however the operation ends, also when its job is destroyed where it waits, the flag comes down. Lives
// on when the state dies first.
class VeranoxRaisedFlag {
public:
    using Writer = void (VeranoxState::*)(bool);

    VeranoxRaisedFlag(VeranoxState &state, Writer write) : m_state(&state), m_write(write) { (state.*m_write)(true); }
    ~VeranoxRaisedFlag()
    {
        if (m_state)
            (m_state->*m_write)(false);
    }
    VeranoxRaisedFlag(const VeranoxRaisedFlag &) = delete;
    VeranoxRaisedFlag &operator=(const VeranoxRaisedFlag &) = delete;

private:
    QPointer<VeranoxState> m_state;
    Writer m_write;
};
