#include "tools/dcm/description/replace_file.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using dcmtool::replaceFile;

namespace {

// The calls that replace a file, and the one that fails.
bool isWatching = false;
std::vector<std::string> calls;
std::string failing;
int failure = 0;

bool fails(const char *call)
{
    if (!isWatching)
        return false;
    calls.emplace_back(call);
    errno = failure;
    return failing == call;
}

bool isFolder(int file)
{
    struct stat status = {};
    return fstat(file, &status) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

// The tests are linked with --wrap for each of these calls.
extern "C" {
ssize_t __real_write(int file, const void *data, size_t size);
ssize_t __wrap_write(int file, const void *data, size_t size);
int __real_fsync(int file);
int __wrap_fsync(int file);
int __real_fchmod(int file, mode_t mode);
int __wrap_fchmod(int file, mode_t mode);
int __real_rename(const char *from, const char *to);
int __wrap_rename(const char *from, const char *to);

ssize_t __wrap_write(int file, const void *data, size_t size)
{
    // A disk without space writes a part.
    return fails("write") ? -1 : __real_write(file, data, isWatching && size > 3 ? 3 : size);
}

int __wrap_fsync(int file)
{
    return fails(isFolder(file) ? "fsync folder" : "fsync") ? -1 : __real_fsync(file);
}

int __wrap_fchmod(int file, mode_t mode)
{
    return fails("fchmod") ? -1 : __real_fchmod(file, mode);
}

int __wrap_rename(const char *from, const char *to)
{
    return fails("rename") ? -1 : __real_rename(from, to);
}
}

namespace {

class ReplaceFile : public testing::Test {
protected:
    ReplaceFile()
    {
        std::string pattern = (fs::temp_directory_path() / "dcm-replace-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
        write("old");
    }
    ~ReplaceFile() override
    {
        isWatching = false;
        fs::permissions(folder_, fs::perms::owner_all);
        fs::remove_all(folder_);
    }

    std::string file() const { return (folder_ / "device.xml").string(); }
    void write(const std::string &text) const { std::ofstream(file(), std::ios::binary) << text; }
    std::string content() const
    {
        std::ifstream stream(file(), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    size_t filesInFolder() const
    {
        return static_cast<size_t>(std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }
    struct stat status() const
    {
        struct stat status = {};
        EXPECT_EQ(stat(file().c_str(), &status), 0);
        return status;
    }

    fs::path folder_;
};

// Root ignores permissions: tests of them run as another user, who owns the folder.
class Unprivileged {
public:
    explicit Unprivileged(const fs::path &folder)
    {
        if (geteuid() != 0)
            return;
        for (const auto &entry : fs::directory_iterator(folder))
            EXPECT_EQ(chown(entry.path().c_str(), kNobody, kNobody), 0);
        EXPECT_EQ(chown(folder.c_str(), kNobody, kNobody), 0);
        EXPECT_EQ(seteuid(kNobody), 0);
    }
    ~Unprivileged() { static_cast<void>(!seteuid(getuid())); }
    Unprivileged(const Unprivileged &) = delete;
    Unprivileged &operator=(const Unprivileged &) = delete;

private:
    static constexpr uid_t kNobody = 65534;
};

TEST_F(ReplaceFile, GivesAFileItsNewContent)
{
    EXPECT_EQ(replaceFile(file(), "old", "new and longer"), "");
    EXPECT_EQ(content(), "new and longer");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(ReplaceFile, KeepsTheMode)
{
    for (const mode_t mode : {0600U, 0644U, 0664U, 0755U}) {
        ASSERT_EQ(chmod(file().c_str(), mode), 0);
        EXPECT_EQ(replaceFile(file(), content(), "new"), "");
        EXPECT_EQ(status().st_mode & 07777U, mode);
    }
}

TEST_F(ReplaceFile, KeepsOwnerAndGroup)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root gives files away";
    ASSERT_EQ(chown(file().c_str(), 1234, 5678), 0);
    ASSERT_EQ(chmod(file().c_str(), 0640), 0);
    EXPECT_EQ(replaceFile(file(), "old", "new"), "");
    EXPECT_EQ(status().st_uid, 1234U);
    EXPECT_EQ(status().st_gid, 5678U);
    EXPECT_EQ(status().st_mode & 07777U, 0640U);
}

TEST_F(ReplaceFile, FailsWhereTheOwnerCannotBeKept)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root gives files away";
    {
        const Unprivileged somebody(folder_);
        ASSERT_EQ(seteuid(0), 0);
        ASSERT_EQ(chown(file().c_str(), 1234, 5678), 0);
        ASSERT_EQ(chmod(file().c_str(), 0666), 0);
        ASSERT_EQ(seteuid(65534), 0);
        EXPECT_EQ(replaceFile(file(), "old", "new"), "owner and mode cannot be kept: Operation not permitted");
    }
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(ReplaceFile, LeavesASymbolicLinkAndChangesWhatItPointsTo)
{
    fs::create_directory(folder_ / "links");
    fs::create_symlink("../device.xml", folder_ / "links" / "first");
    fs::create_symlink("links/first", folder_ / "second");
    EXPECT_EQ(replaceFile((folder_ / "second").string(), "old", "new"), "");
    EXPECT_EQ(content(), "new");
    EXPECT_EQ(fs::read_symlink(folder_ / "second"), "links/first");
    EXPECT_EQ(fs::read_symlink(folder_ / "links" / "first"), "../device.xml");
    EXPECT_EQ(status().st_nlink, 1U);
}

TEST_F(ReplaceFile, FailsWhereTheFileHasChangedMeanwhile)
{
    write("saved by somebody else");
    EXPECT_EQ(replaceFile(file(), "old", "new"), "it has changed in the meantime");
    EXPECT_EQ(content(), "saved by somebody else");
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(ReplaceFile, FailsWhereTheFileIsProtected)
{
    ASSERT_EQ(chmod(file().c_str(), 0444), 0);
    {
        const Unprivileged somebody(folder_);
        EXPECT_EQ(replaceFile(file(), "old", "new"), "Permission denied");
    }
    EXPECT_EQ(content(), "old");
}

TEST_F(ReplaceFile, FailsWhereTheFolderIsProtected)
{
    ASSERT_EQ(chmod(folder_.c_str(), 0555), 0);
    {
        const Unprivileged somebody(folder_);
        EXPECT_EQ(replaceFile(file(), "old", "new"), "cannot create a temporary file beside it: Permission denied");
    }
    EXPECT_EQ(content(), "old");
}

TEST_F(ReplaceFile, FailsWhereThereIsNoFile)
{
    EXPECT_EQ(replaceFile((folder_ / "none.xml").string(), "", "new"), "No such file or directory");
}

struct Failure {
    const char *call;
    int error;
    const char *fault;
};

class FailingCall : public ReplaceFile, public testing::WithParamInterface<Failure> {};

TEST_P(FailingCall, LeavesTheOldFileAndNothingElse)
{
    isWatching = true;
    calls.clear();
    failing = GetParam().call;
    failure = GetParam().error;
    const std::string fault = replaceFile(file(), "old", "new content");
    isWatching = false;
    EXPECT_EQ(fault, GetParam().fault);
    EXPECT_EQ(calls.back(), GetParam().call);
    EXPECT_EQ(content(), "old");
    EXPECT_EQ(filesInFolder(), 1U);
}

INSTANTIATE_TEST_SUITE_P(
    ReplaceFile, FailingCall,
    testing::Values(Failure{"write", ENOSPC, "No space left on device"},
                    Failure{"write", EDQUOT, "Disk quota exceeded"},
                    Failure{"fchmod", EPERM, "owner and mode cannot be kept: Operation not permitted"},
                    Failure{"fsync", EIO, "Input/output error"}, Failure{"rename", EROFS, "Read-only file system"}));

// A name must not reach the disk before its content.
TEST_F(ReplaceFile, HasAllOnTheDiskBeforeTheNewFileTakesTheName)
{
    isWatching = true;
    calls.clear();
    failing.clear();
    const std::string fault = replaceFile(file(), "old", "seven b");
    isWatching = false;
    EXPECT_EQ(fault, "");
    EXPECT_EQ(calls,
              (std::vector<std::string>{"write", "write", "write", "fchmod", "fsync", "rename", "fsync folder"}));
}

TEST_F(ReplaceFile, LeavesOneOfBothContentsWhenItIsKilled)
{
    const std::string one(100000, '1');
    const std::string two(150000, '2');
    write(one);
    size_t changes = 0;
    for (unsigned i = 0; i < 60; i++) {
        const std::string before = content();
        const pid_t child = fork();
        if (child == 0)
            for (bool isOne = before == one;; isOne = !isOne)
                if (!replaceFile(file(), isOne ? one : two, isOne ? two : one).empty())
                    _exit(1);
        usleep(500 + 397 * (i % 20));
        kill(child, SIGKILL);
        int ended = 0;
        ASSERT_EQ(waitpid(child, &ended, 0), child);
        ASSERT_TRUE(WIFSIGNALED(ended));
        const std::string after = content();
        ASSERT_TRUE(after == one || after == two);
        changes += after != before ? 1U : 0U;
    }
    EXPECT_GT(changes, 0U);
}

} // namespace
