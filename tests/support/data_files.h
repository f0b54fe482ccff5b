#pragma once
// tests/support/data_files.h -- start-up files for tests: scratch directories with spoiled copies in them.

#include <gtest/gtest.h>
#include <stdlib.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace kelmar_test {

inline const std::string data_directory = std::string(KELMAR_SOURCE_DIR) + "/BACKWARD/";

inline constexpr const char *data_file_names[] = {"chdat",   "Qerrs", "pow228", "pprods", "primelist",
                                                  "bprimes", "f256d", "f2t16d", "lrgpmes"};

// An empty directory that is removed with all that is in it.
struct scratch_directory {
    std::string path;  // ends in "/"
    scratch_directory()
    {
        std::string name = testing::TempDir() + "kelmar-data-XXXXXX";
        if (!mkdtemp(name.data())) ADD_FAILURE() << "no scratch directory";
        path = name + "/";
    }
    ~scratch_directory()
    {
        std::filesystem::remove_all(path);
    }
    scratch_directory(const scratch_directory &) = delete;
    scratch_directory &operator=(const scratch_directory &) = delete;
};

inline std::string bytes_of(const std::string &path)
{
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void write_bytes(const std::string &path, const std::string &bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

// What f writes to the standard output.
template <class F> std::string output_of(F f)
{
    testing::internal::CaptureStdout();
    f();
    return testing::internal::GetCapturedStdout();
}

}  // namespace kelmar_test
