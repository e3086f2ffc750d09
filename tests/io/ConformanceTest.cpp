#include "io/mjl.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "support/Scenario.h"

// The JSON parsing test suite: y_ files must be accepted, n_ files rejected, and i_ files (where
// the standard leaves the choice to the parser) must at least not crash or leak.
namespace {

class Conformance : public Scenario {
protected:
    // The suite's files whose names start with prefix, sorted.
    static std::vector<std::string> files(const std::string& prefix)
    {
        std::vector<std::string> found;
        std::error_code ignored;
        for (const auto& entry : std::filesystem::directory_iterator(FOLDER, ignored)) {
            std::string name = entry.path().filename().string();
            if (name.rfind(prefix, 0) == 0)
                found.push_back(entry.path().string());
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    // Writes the root, reads the text back and writes it again; returns whether all of it
    // succeeded and gave the same text twice.
    static bool roundTrips(const Package& root)
    {
        std::string first;
        std::string second;
        mjl again;
        return mjl::write(&root, first) && again.parse(first.data(), first.size(), "first write")
               && mjl::write(again.getRoot(), second) && first == second && again.getRoot()->equals(root);
    }

    static constexpr const char* FOLDER = KUVO_TESTDATA_DIR "/jsontestsuite/test_parsing/";
};

} // namespace

TEST_F(Conformance, AcceptsEveryValidDocumentAndWritesItBackStably)
{
    std::vector<std::string> valid = files("y_");
    ASSERT_GT(valid.size(), 90u) << "suite missing from " << FOLDER;
    for (const std::string& path : valid) {
        mjl reader;
        EXPECT_TRUE(reader.open(path.c_str())) << reader.getError();
        if (reader.getRoot()) {
            EXPECT_TRUE(roundTrips(*reader.getRoot())) << path;
        }
    }
}

TEST_F(Conformance, RejectsEveryInvalidDocumentWithAPositionedMessage)
{
    std::vector<std::string> invalid = files("n_");
    ASSERT_GT(invalid.size(), 150u) << "suite missing from " << FOLDER;
    for (const std::string& path : invalid) {
        mjl reader;
        EXPECT_FALSE(reader.open(path.c_str())) << path;
        EXPECT_EQ(reader.getRoot(), nullptr) << path;
        // "path:line:column: reason" with a reason that is not empty.
        const std::string& error = reader.getError();
        EXPECT_EQ(error.rfind(path + ":", 0), 0u) << error;
        size_t reason = error.find(": ", path.size());
        EXPECT_NE(reason, std::string::npos) << error;
        EXPECT_LT(reason + 2, error.size()) << error;
        if (!error.empty())
            expectLogged(error);
    }
}

TEST_F(Conformance, ImplementationDefinedDocumentsNeitherCrashNorLeak)
{
    std::vector<std::string> either = files("i_");
    ASSERT_GT(either.size(), 20u) << "suite missing from " << FOLDER;
    for (const std::string& path : either) {
        mjl reader;
        if (reader.open(path.c_str())) {
            // A document that was accepted must write back stably, or fail to write with a reason.
            std::string text;
            std::string error;
            if (mjl::write(reader.getRoot(), text, &error))
                EXPECT_TRUE(roundTrips(*reader.getRoot())) << path;
            else
                EXPECT_NE(error, "") << path;
        } else {
            EXPECT_NE(reader.getError(), "") << path;
            expectLogged(reader.getError());
        }
    }
}
