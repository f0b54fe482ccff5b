// tests/unit/session/execname_test.cpp -- finding the program and its data.
#include "session/execname.h"
#include <gtest/gtest.h>
#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

using namespace kelmar;

namespace {

class ExecName : public ::testing::Test {
protected:
    std::string directory;
    std::string old_path;
    char before[path_room];

    void SetUp() override
    {
        char made[] = "/tmp/kelmar_execname_XXXXXX";
        ASSERT_NE(mkdtemp(made), nullptr);
        directory = made;
        ASSERT_EQ(mkdir((directory + "/bin").c_str(), 0755), 0);
        ASSERT_EQ(mkdir((directory + "/lib").c_str(), 0755), 0);
        const std::string program = directory + "/lib/prog";
        FILE *f = fopen(program.c_str(), "w");
        ASSERT_NE(f, nullptr);
        fclose(f);
        ASSERT_EQ(chmod(program.c_str(), 0755), 0);
        ASSERT_NE(getcwd(before, sizeof before), nullptr);
        ASSERT_EQ(chdir(directory.c_str()), 0);
        old_path = getenv("PATH");
    }
    void TearDown() override
    {
        setenv("PATH", old_path.c_str(), 1);
        ASSERT_EQ(chdir(before), 0);
        ASSERT_EQ(std::system(("rm -rf " + directory).c_str()), 0);
    }
    std::string data(const std::string &argv0)
    {
        char buffer[path_room];
        find_data_directory(argv0.c_str(), buffer);
        return buffer;
    }
};

}  // namespace

TEST_F(ExecName, AbsolutePathIsFoundDirectly)
{
    char buffer[path_room];
    EXPECT_EQ(GetExecName((directory + "/lib/prog").c_str(), buffer), 0);
    EXPECT_EQ(buffer, directory + "/lib/prog");
}

TEST_F(ExecName, RelativePathIsMadeFromTheWorkingDirectory)
{
    char buffer[path_room];
    EXPECT_EQ(GetExecName("lib/../lib/prog", buffer), 2);
    EXPECT_EQ(buffer, directory + "/lib/prog");
}

TEST_F(ExecName, BareNameIsFoundAlongPath)
{
    char buffer[path_room];
    setenv("PATH", ("/nowhere:" + directory + "/lib").c_str(), 1);
    EXPECT_EQ(GetExecName("prog", buffer), 0);
    EXPECT_EQ(buffer, directory + "/lib/prog");
}

TEST_F(ExecName, UnknownNameLeavesTheBufferEmpty)
{
    char buffer[path_room] = "old";
    setenv("PATH", "/nowhere", 1);
    EXPECT_EQ(GetExecName("prog", buffer), -1);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(GetExecName("", buffer), -1);
    EXPECT_EQ(GetExecName("./absent", buffer), -1);
}

TEST_F(ExecName, DataStandBesideTheProgram)
{
    EXPECT_EQ(data(directory + "/lib/prog"), directory + "/lib/BACKWARD/");
}

TEST_F(ExecName, AbsoluteLinkIsFollowed)
{
    ASSERT_EQ(symlink((directory + "/lib/prog").c_str(), "bin/prog"), 0);
    EXPECT_EQ(data("bin/prog"), directory + "/lib/BACKWARD/");
}

TEST_F(ExecName, RelativeLinkReplacesTheLastComponent)
{
    ASSERT_EQ(symlink("../lib/prog", "bin/prog"), 0);
    EXPECT_EQ(data(directory + "/bin/prog"), directory + "/bin/../lib/BACKWARD/");
}

TEST_F(ExecName, WithoutAPathTheWorkingDirectoryServes)
{
    setenv("PATH", "/nowhere", 1);
    EXPECT_EQ(data("prog"), "./BACKWARD/");
}

TEST_F(ExecName, PathElementsAreSplitAtColons)
{
    char buffer[path_room];
    const char *rest = getPathElement("/a:/b", buffer);
    EXPECT_STREQ(buffer, "/a");
    EXPECT_STREQ(rest, "/b");
    EXPECT_EQ(getPathElement(rest, buffer), nullptr);
    EXPECT_STREQ(buffer, "/b");
}

TEST_F(ExecName, FileMode)
{
    EXPECT_TRUE(S_ISDIR(get_file_mode("lib")));
    EXPECT_EQ(get_file_mode("absent"), 0u);
}
