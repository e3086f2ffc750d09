#include "kit/jLog.h"

#include <string>

#include "support/Scenario.h"

using jLogTest = Scenario;

// The log panel is a sink: it sees every line once, with its level, formatted in full however long,
// in the order logged, and nothing once it is removed.
TEST_F(jLogTest, SinksReceiveFormattedLinesInOrder)
{
    jLogBuffer sink;
    jLog::addSink(&sink); // a second registration has no effect
    std::string longText(5000, 'x');
    jLog::message("%s:loaded %d keys", "Track::load", 12);
    jLog::warning("%s:%s", "TrackEditor::change_node", longText.c_str());
    jLog::error("%s:value %.2f out of range", "FKey::setValue", 1.5);
    jLog::fatal("%s:%s", "Engine::init", "r");
    jLog::removeSink(&sink);
    jLog::message("after removal");
    EXPECT_EQ(sink.dump(), "message: Track::load:loaded 12 keys\nwarning: TrackEditor::change_node:" + longText +
                               "\nerror: FKey::setValue:value 1.50 out of range\nfatal: Engine::init:r\n");
    EXPECT_EQ(sink.countAtLeast(jLogLevel::Warning), 3u);
    expectLogged("after removal");
}

// A terminal shows "[level] text" lines until the copy to stderr is switched off.
TEST_F(jLogTest, StderrCopyFollowsTheSetting)
{
    EXPECT_FALSE(jLog::setStderr(true)); // the fixture silenced it
    testing::internal::CaptureStderr();
    jLog::warning("%s:%s", "Panel::init", "m_data");
    std::string shown = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(jLog::setStderr(false));
    testing::internal::CaptureStderr();
    jLog::error("%s:%s", "Panel::init", "hidden");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(shown, "[warning] Panel::init:m_data\n");
    expectLogged("hidden");
}
