// What most tests include, parsed once for all of them.
#pragma once

#include <gtest/gtest.h>
#include <json-c/json.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <thread>
#include <tuple>
#include <vector>
