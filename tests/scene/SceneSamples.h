#pragma once

#include <string>

// Paths of the sample data the scene tests read.
inline std::string demoWorldPath() { return std::string(KUVO_DATA_DIR) + "/samples/demo.world"; }
