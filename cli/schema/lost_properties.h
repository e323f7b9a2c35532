// What a column of the wanted layout has and an added column cannot get.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace devcfg {

// The properties of each column of a table that the upgrade leaves out, in words: PRIMARY KEY,
// UNIQUE, NOT NULL, DEFAULT, REFERENCES, GENERATED, and a type of more than one word. (CHECK and
// COLLATE are left out by the upgrade too, but SQLite does not tell whose they are.) A column
// without any is missing in the map.
std::map<std::string, std::vector<std::string>> read_lost_properties(const std::string& path,
                                                                     const std::string& table);

}  // namespace devcfg
