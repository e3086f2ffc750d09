#include "data/AppData.h"

#include "ModuleFixture.h"
#include "anim/Track.h"
#include "data/FTrack.h"

using AppDataTest = ModuleFixture;

TEST_F(AppDataTest, RangeSettersOnlyClampAtZero)
{
    AppData* data = AppData::get();
    data->setBeginTime(-1.0f);
    EXPECT_EQ(data->getBeginTime(), 0.0f);
    data->setEndTime(0.0f);
    EXPECT_EQ(data->getEndTime(), 0.0f);
    data->setBeginTime(2.0f);
    data->setEndTime(1.0f); // never checked against the begin
    EXPECT_EQ(data->getBeginTime(), 2.0f);
    EXPECT_EQ(data->getEndTime(), 1.0f);
}

TEST_F(AppDataTest, CursorStaysInTheRangeBeginFirst)
{
    AppData* data = AppData::get();
    EXPECT_EQ(data->getBeginTime(), 0.0f);
    EXPECT_EQ(data->getEndTime(), 10.0f);
    data->setBeginTime(1.0f);
    data->setTime(0.5f);
    EXPECT_EQ(data->getTime(), 1.0f);
    data->setTime(11.0f);
    EXPECT_EQ(data->getTime(), 10.0f);
    data->setTime(10.0f);
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

TEST_F(AppDataTest, ResetGivesAnEmptyTenSecondDocument)
{
    AppData* data = AppData::get();
    ASSERT_TRUE(data->loadTrack(jString(samplePath("demo.anim").c_str()), demoWorld()));
    EXPECT_FALSE(data->isEmpty());
    data->setTime(3.0f);
    data->reset();
    EXPECT_TRUE(data->isEmpty());
    EXPECT_EQ(data->getBeginTime(), 0.0f);
    EXPECT_EQ(data->getEndTime(), 10.0f);
    EXPECT_EQ(data->getTime(), 0.0f);
    EXPECT_TRUE(data->getPath().empty());
    EXPECT_TRUE(data->getName().empty());
}

TEST_F(AppDataTest, LoadTakesTheTracksRangeNameAndPath)
{
    AppData* data = AppData::get();
    jString path(samplePath("demo.anim").c_str());
    ASSERT_TRUE(data->loadTrack(path, demoWorld()));
    Track* track = data->getTrack()->getEngineTrack();
    EXPECT_EQ(data->getPath(), path);
    EXPECT_EQ(data->getName(), "demo");
    EXPECT_EQ(data->getBeginTime(), track->getBeginTime());
    EXPECT_EQ(data->getEndTime(), track->getEndTime());
    EXPECT_EQ(data->getTime(), track->getBeginTime());
    EXPECT_GT(track->getNumParameters(), 0);
}

TEST_F(AppDataTest, UnreadableFileChangesNothing)
{
    AppData* data = AppData::get();
    jString path(samplePath("demo.anim").c_str());
    ASSERT_TRUE(data->loadTrack(path, demoWorld()));
    int parameters = data->getTrack()->getEngineTrack()->getNumParameters();
    EXPECT_FALSE(data->loadTrack(jString("/nonexistent/missing.anim"), demoWorld()));
    expectLogged("Open world error:/nonexistent/missing.anim");
    EXPECT_EQ(data->getPath(), path);
    EXPECT_EQ(data->getTrack()->getEngineTrack()->getNumParameters(), parameters);
}

TEST_F(AppDataTest, RefusedTrackLeavesAnEmptyDocumentWithTheNewPath)
{
    TempDir dir;
    std::string path = dir.file("broken.anim");
    ASSERT_TRUE(writeFileText(path, "{\"format\": \"kuvo-anim\", \"version\": 1, \"parameters\": 7}\n"));
    AppData* data = AppData::get();
    EXPECT_FALSE(data->loadTrack(jString(path.c_str()), nullptr));
    expectLogged("AppData::loadTrack:" + path + ": not a track the engine can play");
    EXPECT_TRUE(data->isEmpty());
    EXPECT_EQ(data->getPath(), path.c_str());
    EXPECT_EQ(data->getName(), "broken");
}

TEST_F(AppDataTest, SavingUnderANewPathKeepsTheName)
{
    TempDir dir;
    AppData* data = AppData::get();
    ASSERT_TRUE(data->loadTrack(jString(samplePath("demo.anim").c_str()), demoWorld()));
    jString copy(dir.file("copy.anim").c_str());
    ASSERT_TRUE(data->saveTrack(copy));
    EXPECT_EQ(data->getPath(), copy);
    EXPECT_EQ(data->getName(), "demo");
    EXPECT_EQ(readFileText(copy.c_str()), readFileText(samplePath("demo.anim")));
}

TEST_F(AppDataTest, FailedWriteKeepsTheOldFile)
{
    TempDir dir;
    AppData* data = AppData::get();
    jString target(dir.file("missing-folder/out.anim").c_str());
    EXPECT_FALSE(data->saveTrack(target));
    expectLogged("missing-folder/out.anim");
    EXPECT_EQ(readFileText(target.c_str()), "<missing>");
}
