#include "Support/FileDescriptor.h"
#include "Support/Files.h"
#include "Support/TestSupport.h"

#include <QProcess>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <string>
#include <sys/acl.h>

namespace corvane {
namespace {

class MacFileAccess : public testing::Test {
  protected:
    static void changeAccess(const QStringList& arguments) {
        ASSERT_EQ(QProcess::execute(QStringLiteral("/bin/chmod"), arguments), 0)
            << qPrintable(arguments.last());
    }

    [[nodiscard]] bool hasEntries() const {
        const files::FileDescriptor descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC));
        acl_t list = acl_get_fd_np(descriptor.number(), ACL_TYPE_EXTENDED);
        if (list == nullptr) return false;
        acl_entry_t entry = nullptr;
        const bool result = acl_get_entry(list, ACL_FIRST_ENTRY, &entry) == 0;
        acl_free(list);
        return result;
    }

    test::ScratchFolder scratch;
    std::filesystem::path file = scratch / "settings.json";
    QString folder = QString::fromStdString(scratch.path().string());
    QString name = QString::fromStdString(file.string());
};

TEST_F(MacFileAccess, aFileWithoutEntriesGetsNoneFromItsFolder) {
    test::writeFile(file, "before");
    changeAccess({QStringLiteral("+a"), QStringLiteral("everyone allow read,file_inherit"), folder});
    ASSERT_FALSE(hasEntries());
    files::writeAtomically(file, "after");
    EXPECT_EQ(test::fileBytes(file), "after");
    EXPECT_FALSE(hasEntries());
}

TEST_F(MacFileAccess, aFileKeepsItsEntries) {
    test::writeFile(file, "before");
    changeAccess({QStringLiteral("+a"), QStringLiteral("everyone allow read"), name});
    ASSERT_TRUE(hasEntries());
    files::writeAtomically(file, "after");
    EXPECT_TRUE(hasEntries());
}

} // namespace
} // namespace corvane
