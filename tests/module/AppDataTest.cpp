#include "data/AppData.h"

#include "ModuleFixture.h"
#include "anim/Track.h"

#include <algorithm>
#include <vector>

// Records what an open of a track file reports of its progress.
class AppDataTest : public ModuleFixture {
protected:
    void SetUp() override
    {
        ModuleFixture::SetUp();
        AppData::get()->getLoadProgress().setListener(&AppDataTest::heard, this);
    }
    void TearDown() override
    {
        AppData::get()->getLoadProgress().setListener(nullptr, nullptr);
        ModuleFixture::TearDown();
    }
    static void heard(void* context, const char*, int percent) { static_cast<AppDataTest*>(context)->percents.push_back(percent); }
    // Whether the open reported rose from 0 to 100, step by step, through every value in steps; the
    // record is then emptied for the next open.
    bool rose(std::vector<int> steps)
    {
        std::vector<int> heard;
        heard.swap(percents);
        steps.insert(steps.begin(), 0);
        steps.push_back(100);
        return heard.front() == 0 && heard.back() == 100 && std::is_sorted(heard.begin(), heard.end()) &&
               std::adjacent_find(heard.begin(), heard.end()) == heard.end() &&
               std::includes(heard.begin(), heard.end(), steps.begin(), steps.end());
    }
    std::vector<int> percents;
};

// The range is only clamped at zero; the cursor takes the begin first, even in an inverted range.
TEST_F(AppDataTest, RangeClampsAtZeroOnlyAndTheCursorStaysInsideItBeginFirst)
{
    AppData* data = AppData::get();
    data->setBeginTime(-1.0f);
    EXPECT_EQ(data->getBeginTime(), 0.0f);
    data->setBeginTime(1.0f);
    data->setTime(0.5f);
    EXPECT_EQ(data->getTime(), 1.0f);
    data->setTime(11.0f);
    EXPECT_EQ(data->getTime(), 10.0f);
    data->setTime(4.25f);
    EXPECT_EQ(data->getTime(), 4.25f);
    data->setBeginTime(2.0f);
    data->setEndTime(1.0f);
    data->setTime(1.5f);
    EXPECT_EQ(data->getTime(), 2.0f);
    data->setTime(3.0f);
    EXPECT_EQ(data->getTime(), 1.0f);
}

// Loading takes the track's range, name and path; saving takes the new path but keeps the name, and
// only when the file was written; a copy or a file opened as another's leaves the path as asked.
TEST_F(AppDataTest, LoadAndSaveTakeTheFileAndResetForgetsIt)
{
    AppData* data = AppData::get();
    ASSERT_TRUE(loadSample("demo.anim"));
    EXPECT_TRUE(rose({30, 40, 99})) << "the keys are made from 40 to 99 %";
    EXPECT_EQ(data->getPath(), samplePath("demo.anim").c_str());
    EXPECT_EQ(data->getEndTime(), engine()->getEndTime());
    EXPECT_EQ(data->getTime(), engine()->getBeginTime());
    TempDir dir;
    jString copy(dir.file("copy.anim").c_str());
    ASSERT_TRUE(data->saveTrack(copy));
    EXPECT_EQ(data->getPath(), copy);
    EXPECT_EQ(data->getName(), "demo");
    EXPECT_EQ(readFileText(copy.c_str()), readFileText(samplePath("demo.anim")));
    jString target(dir.file("missing-folder/out.anim").c_str());
    EXPECT_FALSE(data->saveTrack(target));
    expectLogged("missing-folder/out.anim");
    EXPECT_EQ(readFileText(target.c_str()), "<missing>");
    EXPECT_EQ(data->getPath(), copy);
    jString recovery(dir.file("recovery.anim").c_str());
    ASSERT_TRUE(data->saveCopy(recovery));
    EXPECT_EQ(data->getPath(), copy);
    EXPECT_EQ(readFileText(recovery.c_str()), readFileText(samplePath("demo.anim")));
    ASSERT_TRUE(data->loadTrackAs(recovery, jString(), demoWorld()));
    EXPECT_TRUE(data->getPath().empty());
    EXPECT_FALSE(data->isEmpty());
    ASSERT_TRUE(data->loadTrackAs(recovery, copy, demoWorld()));
    EXPECT_EQ(data->getPath(), copy);
    EXPECT_EQ(data->getName(), "copy");

    data->setTime(3.0f);
    data->reset();
    EXPECT_TRUE(data->isEmpty());
    EXPECT_EQ(data->getBeginTime(), 0.0f);
    EXPECT_EQ(data->getEndTime(), 10.0f);
    EXPECT_EQ(data->getTime(), 0.0f);
    EXPECT_TRUE(data->getPath().empty());
    EXPECT_TRUE(data->getName().empty());
}

// An unreadable file changes nothing; a refused track leaves an empty document under its path.
TEST_F(AppDataTest, FailedLoadsLogWhyAndKeepOrEmptyTheDocument)
{
    AppData* data = AppData::get();
    ASSERT_TRUE(loadSample("demo.anim"));
    const int parameters = engine()->getNumParameters();
    percents.clear();
    EXPECT_FALSE(data->loadTrack(jString("/nonexistent/missing.anim"), demoWorld()));
    expectLogged("Open world error:/nonexistent/missing.anim");
    EXPECT_TRUE(rose({}));
    EXPECT_EQ(data->getPath(), samplePath("demo.anim").c_str());
    EXPECT_EQ(engine()->getNumParameters(), parameters);

    TempDir dir;
    const std::string path = dir.file("broken.anim");
    ASSERT_TRUE(writeFileText(path, "{\"format\": \"kuvo-anim\", \"version\": 1, \"parameters\": 7}\n"));
    EXPECT_FALSE(data->loadTrack(jString(path.c_str()), nullptr));
    expectLogged("AppData::loadTrack:" + path + ": not a track the engine can play");
    EXPECT_TRUE(rose({30}));
    EXPECT_TRUE(data->isEmpty());
    EXPECT_EQ(data->getPath(), path.c_str());
    EXPECT_EQ(data->getName(), "broken");
}
