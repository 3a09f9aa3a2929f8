#pragma once
#include "MenuBar/Popover/VeranoxRowOperations.h"

class VeranoxStore;

// The store's operations on tunnels and publications, as rows of the popover use them. The store outlives them.
VeranoxRowOperations tunnelOperations(VeranoxStore &store);
VeranoxRowOperations publicationOperations(VeranoxStore &store);
