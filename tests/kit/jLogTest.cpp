#include "kit/jLog.h"

#include <string>
#include <vector>

#include "support/Scenario.h"

namespace {

// A sink that records what it was given, to check what every sink sees.
class RecordingSink : public jLogSink {
public:
    void write(jLogLevel level, const std::string& text) override
    {
        lines.push_back(std::string(jLog::levelName(level)) + "|" + text);
    }
    std::vector<std::string> lines;
};

} // namespace

using jLogTest = Scenario;

TEST_F(jLogTest, SinksReceiveFormattedLinesInOrder)
{
    RecordingSink sink;
    jLog::addSink(&sink);
    jLog::addSink(&sink); // twice has no effect
    jLog::message("%s:loaded %d keys", "Track::load", 12);
    jLog::warning("%s:%s", "TrackEditor::change_node", "node");
    jLog::error("%s:value %.2f out of range", "FKey::setValue", 1.5);
    jLog::fatal("%s:%s", "Engine::init", "r");
    jLog::removeSink(&sink);
    jLog::message("after removal");
    EXPECT_EQ(sink.lines, (std::vector<std::string>{
                              "message|Track::load:loaded 12 keys",
                              "warning|TrackEditor::change_node:node",
                              "error|FKey::setValue:value 1.50 out of range",
                              "fatal|Engine::init:r",
                          }));
    expectLogged("Engine::init:r");
}

TEST_F(jLogTest, BufferCountsLevelsAndFindsText)
{
    jLogBuffer buffer;
    jLog::message("%s", "one");
    jLog::warning("%s", "two");
    jLog::error("%s", "three");
    EXPECT_EQ(buffer.countAtLeast(jLogLevel::Message), 3u);
    EXPECT_EQ(buffer.countAtLeast(jLogLevel::Warning), 2u);
    EXPECT_EQ(buffer.countAtLeast(jLogLevel::Error), 1u);
    EXPECT_EQ(buffer.countAtLeast(jLogLevel::Fatal), 0u);
    EXPECT_TRUE(buffer.contains("thr"));
    EXPECT_FALSE(buffer.contains("four"));
    EXPECT_EQ(buffer.dump(), "message: one\nwarning: two\nerror: three\n");
    buffer.clear();
    EXPECT_TRUE(buffer.lines().empty());
    expectLogged("three");
}

TEST_F(jLogTest, LongLinesAreNotCut)
{
    std::string longText(5000, 'x');
    jLog::message("%s:%s", "Test::long", longText.c_str());
    ASSERT_FALSE(log().lines().empty());
    EXPECT_EQ(log().lines().back().text, "Test::long:" + longText);
}

TEST_F(jLogTest, StderrCopyFollowsTheSetting)
{
    EXPECT_FALSE(jLog::setStderr(true)); // the fixture silenced it
    testing::internal::CaptureStderr();
    jLog::warning("%s:%s", "Panel::init", "m_data");
    std::string shown = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(jLog::setStderr(false));
    testing::internal::CaptureStderr();
    jLog::error("%s:%s", "Panel::init", "hidden");
    std::string hidden = testing::internal::GetCapturedStderr();
    EXPECT_EQ(shown, "[warning] Panel::init:m_data\n");
    EXPECT_EQ(hidden, "");
    expectLogged("hidden");
}
