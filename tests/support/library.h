// What most tests use: the library, its captured messages and a temporary directory.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "orvaneip.h"
#include "tests/support/captured_log.h"
#include "tests/support/temp_directory.h"
