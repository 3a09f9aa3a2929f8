// What the application's tests read.
#pragma once
#include "core.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>
