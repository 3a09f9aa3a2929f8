// What the service's tests read.
#pragma once
#include "service.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
