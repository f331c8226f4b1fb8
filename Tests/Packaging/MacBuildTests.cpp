#include "Packaging/Script.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QXmlStreamReader>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace corvane {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

namespace fs = std::filesystem;

/// The keys and values of a property list's outermost dictionary; "true" and "false" for the truth values.
std::map<std::string, std::string> propertyList(const std::string& text) {
    std::map<std::string, std::string> result;
    QXmlStreamReader reader(QByteArray::fromStdString(text));
    std::string key;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) continue;
        const std::string element = reader.name().toString().toStdString();
        if (element == "key") {
            key = reader.readElementText().toStdString();
        } else if (element == "string") {
            result[key] = reader.readElementText().toStdString();
        } else if (element == "true" || element == "false") {
            result[key] = element;
        }
    }
    if (reader.hasError()) result = {{"error", reader.errorString().toStdString()}};
    return result;
}

/// This project configured for macOS, with stubs of the tools that only a Mac has; the icon built, and
/// installed with a stub of the program.
class MacBuildTest : public testing::Test {
  protected:
    static void SetUpTestSuite() {
        scratch = std::make_unique<test::ScratchFolder>();
        build = *scratch / "build";
        log = *scratch / "log";
        configured =
            cmake({"-S", CORVANE_SOURCES, "-B", build.string(), "-G", "Ninja", "-DCMAKE_SYSTEM_NAME=Darwin",
                   "-DCMAKE_SYSTEM_PROCESSOR=arm64", "-DCMAKE_OSX_SYSROOT=/",
                   "-DCMAKE_OBJCXX_COMPILER=" CORVANE_CLANG,
                   "-DCMAKE_LIBRARY_ARCHITECTURE=" CORVANE_LIBRARY_ARCHITECTURE, "-DCMAKE_PREFIX_PATH=/usr",
                   "-DCMAKE_FIND_LIBRARY_SUFFIXES=.so", "-DCMAKE_CROSSCOMPILING_EMULATOR=/usr/bin/env",
                   "-DCMAKE_PROJECT_INCLUDE=" CORVANE_SOURCES "/Tests/Packaging/FakeDarwin.cmake",
                   "-DCORVANE_WERROR=ON"});
        if (configured.status != 0) return;
        icon = cmake({"--build", build.string(), "--target", "IconFiles"});
        test::writeFile(build / "bin/Corvane.app/Contents/MacOS/Corvane",
                        "\xCF\xFA\xED\xFE\nrpath @executable_path/../Frameworks\nminos 13.0\n");
        installed = cmake({"--install", build.string(), "--prefix", (*scratch / "stage").string()});
    }
    static void TearDownTestSuite() { scratch.reset(); }

    void SetUp() override { ASSERT_EQ(configured.status, 0) << configured.output; }

    static test::Outcome cmake(const std::vector<std::string>& arguments) {
        return test::runScript(CORVANE_CMAKE, arguments,
                               {{"PATH", CORVANE_STUBS ":/usr/local/bin:/usr/bin:/bin"},
                                {"HOME", scratch->path().string()},
                                {"TMPDIR", scratch->path().string()},
                                {"CORVANE_TEST_LOG", log.string()}});
    }

    static inline std::unique_ptr<test::ScratchFolder> scratch;
    static inline fs::path build;
    static inline fs::path log;
    static inline test::Outcome configured;
    static inline test::Outcome icon;
    static inline test::Outcome installed;
};

TEST_F(MacBuildTest, theBundlesPropertyListIsComplete) {
    const auto plist =
        propertyList(test::fileBytes(build / "bin/Corvane.app/Contents/Info.plist").value_or(""));
    const std::map<std::string, std::string> wanted{
        {"CFBundleDevelopmentRegion", "en"},
        {"CFBundleDisplayName", "Corvane"},
        {"CFBundleExecutable", "Corvane"},
        {"CFBundleIconFile", "Corvane.icns"},
        {"CFBundleIdentifier", "org.corvane.Corvane"},
        {"CFBundleInfoDictionaryVersion", "6.0"},
        {"CFBundleName", "Corvane"},
        {"CFBundlePackageType", "APPL"},
        {"CFBundleShortVersionString", CORVANE_VERSION},
        {"CFBundleVersion", CORVANE_VERSION},
        {"LSApplicationCategoryType", "public.app-category.developer-tools"},
        {"LSMinimumSystemVersion", "13.0"},
        {"LSUIElement", "true"},
        {"NSHighResolutionCapable", "true"},
        {"NSHumanReadableCopyright", "MIT licence"},
        {"NSPrincipalClass", "NSApplication"}};
    EXPECT_EQ(plist, wanted);
}

TEST_F(MacBuildTest, theIconIsPackedFromTenPicturesAndPutIntoTheBundle) {
    EXPECT_EQ(icon.status, 0) << icon.output;
    EXPECT_EQ(test::fileBytes(build / "Resources/Icon/Corvane.icns"), "icns\n");
    EXPECT_THAT(test::fileBytes(build / "build.ninja").value_or(""),
                HasSubstr("build bin/Corvane.app/Contents/Resources/Corvane.icns: "));
}

TEST_F(MacBuildTest, theInstalledBundleGetsQtFirstAndItsSignatureLast) {
    EXPECT_EQ(installed.status, 0) << installed.output;
    const std::string bundle = (*scratch / "stage/Corvane.app").string();
    std::vector<std::string> calls = test::linesOf(test::fileBytes(log).value_or(""));
    ASSERT_THAT(calls, SizeIs(5)) << installed.output;
    // CMake's own: the program finds its libraries in the bundle.
    EXPECT_THAT(calls[0], HasSubstr("install_name_tool -add_rpath @executable_path/../Frameworks "));
    EXPECT_TRUE(calls[1].starts_with("macdeployqt Corvane.app")) << calls[1];
    calls.erase(calls.begin(), calls.begin() + 2);
    EXPECT_THAT(calls, ElementsAre("xattr -cr " + bundle, "codesign --force --sign - " + bundle,
                                   "codesign --verify --deep --strict --verbose=2 " + bundle));
}

TEST_F(MacBuildTest, objectiveCUsesArcAndTargetsTheOldestSystem) {
    const std::vector<std::string> lines = test::linesOf(test::fileBytes(build / "build.ninja").value_or(""));
    int sources = 0;
    bool isObjectiveC = false;
    for (const std::string& line : lines) {
        if (line.starts_with("build "))
            isObjectiveC = line.find(".mm.o: OBJCXX_COMPILER") != std::string::npos;
        if (!isObjectiveC || !line.starts_with("  FLAGS = ")) continue;
        ++sources;
        // The last flag ends the line or is followed by a space, by the version of CMake.
        for (const char* const flag : {" -fobjc-arc ", " -Wunguarded-availability ", " -Werror ",
                                       " -std=c++20 ", " -mmacosx-version-min=13.0 "})
            EXPECT_THAT(line + " ", HasSubstr(flag));
    }
    EXPECT_GT(sources, 15);
}

TEST_F(MacBuildTest, everySourceThatIsCompiledThereIsCheckedHere) {
    std::set<std::string> compiled;
    const std::string tree = CORVANE_SOURCES "/";
    const auto commands = QJsonDocument::fromJson(
        QByteArray::fromStdString(test::fileBytes(build / "compile_commands.json").value_or("")));
    for (const QJsonValue& command : commands.array()) {
        const std::string file = command.toObject()[QLatin1String("file")].toString().toStdString();
        // Generated sources are elsewhere.
        if (file.starts_with(tree)) compiled.insert(file.substr(tree.size()));
    }
    const test::Outcome listed =
        test::runScript(CORVANE_SOURCES "/Scripts/check-mac", {"--list"}, {{"PATH", "/usr/bin:/bin"}});
    const std::vector<std::string> lines = test::linesOf(listed.output);
    const std::set<std::string> checked(lines.begin(), lines.end());
    std::vector<std::string> onlyInOne;
    std::ranges::set_symmetric_difference(checked, compiled, std::back_inserter(onlyInOne));
    EXPECT_THAT(onlyInOne, testing::IsEmpty());
    EXPECT_TRUE(compiled.contains("Benchmarks/SettingsBenchmark.cpp"));
    EXPECT_TRUE(compiled.contains("Tests/Mac/PanelTests.mm"));
}

TEST_F(MacBuildTest, thePackageIsADiskImageNamedForVersionAndProcessor) {
    const std::string pack = test::fileBytes(build / "CPackConfig.cmake").value_or("");
    EXPECT_THAT(pack, HasSubstr("set(CPACK_GENERATOR \"DragNDrop\")"));
    EXPECT_THAT(pack, HasSubstr("set(CPACK_PACKAGE_FILE_NAME \"Corvane-" CORVANE_VERSION "-arm64\")"));
    EXPECT_THAT(pack, HasSubstr("set(CPACK_STRIP_FILES \"OFF\")"));
}

struct DeployCase {
    std::string version;
    std::string arguments;
};

TEST(DeployArguments, theArgumentsFollowTheVersionOfQt) {
    const test::ScratchFolder scratch;
    const fs::path script = scratch / "print.cmake";
    test::writeFile(script,
                    "include(" CORVANE_SOURCES "/Packaging/macos/DeployArguments.cmake)\n"
                    "corvane_deploy_arguments(result ${version} ${folders})\nmessage(\"${result}\")\n");
    const std::string common = "TARGET;Corvane;NO_UNSUPPORTED_PLATFORM_ERROR;";
    const std::string options = ";DEPLOY_TOOL_OPTIONS;-libpath=/a/lib;-libpath=/b/lib";
    for (const DeployCase& row : {DeployCase{"6.4.2", common + "FILENAME_VARIABLE;deploy_script"},
                                  DeployCase{"6.6.3", common + "FILENAME_VARIABLE;deploy_script"},
                                  DeployCase{"6.7.0", common + "FILENAME_VARIABLE;deploy_script" + options},
                                  DeployCase{"6.8.2", common + "OUTPUT_SCRIPT;deploy_script" + options},
                                  DeployCase{"6.11.0", common + "OUTPUT_SCRIPT;deploy_script" + options}}) {
        const test::Outcome outcome = test::runScript(
            CORVANE_CMAKE, {"-Dversion=" + row.version, "-Dfolders=/a/lib;/b/lib", "-P", script.string()},
            {{"PATH", "/usr/bin:/bin"}});
        EXPECT_EQ(outcome.output, row.arguments + "\n") << row.version;
    }
    const test::Outcome outcome = test::runScript(CORVANE_CMAKE, {"-Dversion=6.8.0", "-P", script.string()},
                                                  {{"PATH", "/usr/bin:/bin"}});
    EXPECT_EQ(outcome.output, common + "OUTPUT_SCRIPT;deploy_script\n");
}

} // namespace
} // namespace corvane
