// SPDX-License-Identifier: MIT
// Files that appear whole, with and without a name meanwhile, and the names that they have then.
#include "devhost/util/AtomicFile.h"
#include "host/core/ZString.h"
#include "tests/temporary_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <set>

namespace fs = std::filesystem;

namespace {

class AtomicFiles : public testing::TestWithParam<devhost::AtomicFile::Kind> {
  protected:
    /// Writes a text, and gives what is wrong; empty for nothing.
    std::string write(const std::string &name, const char *text, bool commits = true) const {
        devhost::AtomicFile file(folder_.file(name), GetParam());
        if (file.stream())
            std::fputs(text, file.stream());
        const ZStatus status = file.stream() && !commits ? ZStatus() : file.commit();
        return status.error() ? std::string(status.errorString().asChar()) : "";
    }
    std::string contents(const std::string &name) const {
        std::ifstream file(folder_.file(name));
        return {std::istreambuf_iterator<char>(file), {}};
    }
    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto &entry : fs::directory_iterator(folder_.path))
            names.insert(entry.path().filename());
        return names;
    }

    TemporaryFolder folder_;
};

INSTANTIATE_TEST_SUITE_P(, AtomicFiles,
                         testing::Values(devhost::AtomicFile::kNamelessIfPossible,
                                         devhost::AtomicFile::kNamed));

TEST_P(AtomicFiles, ReplaceTheOldFileOnlyWhenTheyAreCommitted) {
    EXPECT_EQ(write("a", "old"), "");
    EXPECT_EQ(write("a", "dropped", false), "");
    EXPECT_EQ(contents("a"), "old");
    devhost::AtomicFile first(folder_.file("a"), GetParam()), second(folder_.file("a"), GetParam());
    std::fputs("first", first.stream());
    std::fputs("second", second.stream());
    EXPECT_EQ(contents("a"), "old");
    EXPECT_TRUE(second.commit());
    EXPECT_EQ(contents("a"), "second");
    EXPECT_TRUE(first.commit());
    EXPECT_EQ(contents("a"), "first");
    EXPECT_EQ(files(), std::set<std::string>{"a"});
    const mode_t mask = umask(0);
    umask(mask);
    struct stat about;
    ASSERT_EQ(stat(folder_.file("a").c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 0777, 0666 & ~mask);
}

TEST_P(AtomicFiles, AreWrittenThroughLinks) {
    fs::create_directory(folder_.path / "deep");
    fs::create_symlink("deep/second", folder_.path / "first");
    fs::create_symlink("file", folder_.path / "deep/second"); // where nothing is yet
    for (const char *text : {"new", "newer"}) {
        EXPECT_EQ(write("first", text), "");
        EXPECT_EQ(contents("deep/file"), text);
    }
    EXPECT_TRUE(fs::is_symlink(folder_.path / "first"));
    EXPECT_TRUE(fs::is_symlink(folder_.path / "deep/second"));

    fs::create_symlink("none/file", folder_.path / "astray");
    EXPECT_NE(write("astray", "").find("none/file': No such file"), std::string::npos);
    fs::create_symlink("loop", folder_.path / "loop");
    EXPECT_NE(write("loop", "").find("no regular file"), std::string::npos);
    EXPECT_EQ(files(), (std::set<std::string>{"astray", "deep", "first", "loop"}));
}

TEST(TemporaryName, IsTriedAnewWhereItIsTaken) {
    std::set<std::string> names;
    const auto taken = [&](int times) {
        names.clear();
        return [&names, times](const char *name) {
            names.insert(name);
            errno = int(names.size()) <= times ? EEXIST : ENOSPC;
            return int(names.size()) == times + 1 ? 7 : -1;
        };
    };
    devhost::TemporaryName name;
    EXPECT_EQ(name.make("/folder/of/target", taken(3)), 7);
    EXPECT_EQ(names.size(), 4u);
    for (const std::string &each : names)
        EXPECT_EQ(each.rfind("/folder/of/.", 0), 0u) << each;
    EXPECT_LT(name.make("/folder/of/target", taken(1000)), 0); // not for ever
    EXPECT_EQ(errno, EEXIST);
    EXPECT_FALSE(name.exists());
}

} // namespace
