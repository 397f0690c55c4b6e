// Inputs that the fuzzers found faults with, kept as tests/data/<family>/fuzz-<fault>.<ext>.
#pragma once
#include <dirent.h>

#include <fstream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

// Path and bytes of every fuzz-* file of tests/data/<family>.
inline std::vector<std::pair<std::string, std::string>> fuzzInputs(const std::string& family) {
    std::vector<std::pair<std::string, std::string>> inputs;
    std::string dir = std::string(ZELVAR_SOURCE_DIR) + "/tests/data/" + family;
    if (DIR* d = opendir(dir.c_str())) {
        while (dirent* e = readdir(d)) {
            std::string name = e->d_name;
            if (name.rfind("fuzz-", 0) != 0) continue;
            std::ifstream f(dir + "/" + name, std::ios::binary);
            std::stringstream s;
            s << f.rdbuf();
            inputs.emplace_back(dir + "/" + name, s.str());
        }
        closedir(d);
    }
    return inputs;
}
