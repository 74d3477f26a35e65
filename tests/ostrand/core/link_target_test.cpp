#include "ostrand/core/link_target.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using quirnel::test::TempDir;
using quirnel::test::WriteFile;
namespace fs = std::filesystem;

std::string Resolved(const fs::path& path, int* errorOut = nullptr)
{
    std::string target;
    int error = 0;
    const bool ok = ost::ResolveLinkTarget(path.string(), target, error);
    if (errorOut)
        *errorOut = error;
    return ok ? target : "failed";
}

TEST(ResolveLinkTarget, FollowsChainsOfRelativeAndAbsoluteLinks)
{
    TempDir dir;
    fs::create_directory(dir / "real");
    WriteFile(dir / "real" / "data.csv", "x");
    // link -> sub/hop (relative to the link's folder) -> absolute path of real/data.csv
    fs::create_directory(dir / "sub");
    fs::create_symlink(dir / "real" / "data.csv", dir / "sub" / "hop");
    fs::create_symlink("sub/hop", dir / "link");
    EXPECT_EQ((dir / "real" / "data.csv").string(), Resolved(dir / "link"));
    EXPECT_EQ((dir / "real" / "data.csv").string(), Resolved(dir / "real" / "data.csv"));
    // A link to a file that does not exist yet leads to where that file will be.
    fs::create_symlink("../real/new.csv", dir / "sub" / "dangling");
    EXPECT_EQ((dir / "sub" / "../real/new.csv").string(), Resolved(dir / "sub" / "dangling"));
    EXPECT_EQ((dir / "none.csv").string(), Resolved(dir / "none.csv"));
}

TEST(ResolveLinkTarget, LoopOfLinksFails)
{
    TempDir dir;
    fs::create_symlink("b", dir / "a");
    fs::create_symlink("a", dir / "b");
    int error = 0;
    EXPECT_EQ("failed", Resolved(dir / "a", &error));
    EXPECT_EQ(ELOOP, error);
}

} // namespace
