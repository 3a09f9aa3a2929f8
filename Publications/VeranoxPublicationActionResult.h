#pragma once
#include "State/VeranoxActionOutcome.h"

// How an operation on a publication ended.
using VeranoxPublicationActionResult = VeranoxActionOutcome;
