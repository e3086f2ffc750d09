#include "data/FParameterSingle.h"

#include "ModuleFixture.h"
#include "anim/Track.h"
#include "anim/TrackParameterDVec3.h"
#include "anim/TrackParameterDouble.h"
#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterToggle.h"
#include "anim/TrackParameterTrack.h"
#include "anim/TrackParameterVec3.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterDouble.h"
#include "data/FParameterFloat.h"
#include "data/FParameterToggle.h"
#include "data/FTrack.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLineKey.h"
#include "ui/UITrackRow.h"

namespace {

constexpr float NO_TIME = -1e9f;
const vec4 FLAT(0.0f, 0.0f, 0.0f, 0.0f);

} // namespace

class FParameterTest : public ModuleFixture {
protected:
    FTrack* doc() const { return AppData::get()->getTrack(); }
    Track* engine() const { return doc()->getEngineTrack(); }
    FParameterSingle* single(int i) const { return doc()->getSingleParameters()[i]; }
    void loadDemo()
    {
        ASSERT_TRUE(AppData::get()->loadTrack(jString(samplePath("demo.anim").c_str()), demoWorld()));
    }
    // A float parameter with keys at the given times (values 10 × time), sorted.
    FParameterFloat* floatWithKeys(std::initializer_list<float> times)
    {
        FParameterFloat* parameter = doc()->createParameterFloat("Keys");
        for (float t : times)
            parameter->createKey(t, 10.0f * t, FLAT, 1);
        parameter->sortKeys();
        return parameter;
    }
    // The row text of a float parameter registered as a material value with this display name.
    jString materialRow(const char* display)
    {
        TrackParameter* param = Track::CreateParameter(TRACK_PARAMETER_FLOAT);
        param->setTypeName("Material.float");
        param->setDisplayName(display);
        engine()->addParameter(param);
        FParameterFloat* parameter = doc()->createParameterFloat(param, "Shown");
        return parameter ? parameter->getRow()->getName() : jString("<refused>");
    }
};

TEST_F(FParameterTest, NewKeyHasTimeZeroAndNoMarks)
{
    FKey key;
    EXPECT_EQ(key.getTime(), 0.0f);
    EXPECT_EQ(key.getLineKey(), nullptr);
    EXPECT_EQ(key.getCurveKey(), nullptr);
    EXPECT_EQ(key.getParameter(), nullptr);
    EXPECT_EQ(key.getType(), -1);
}

TEST_F(FParameterTest, KeyListGrowsToTenThenDoubles)
{
    FParameterFloat* parameter = doc()->createParameterFloat("Grow");
    EXPECT_EQ(parameter->getKeys().capacity(), 0);
    parameter->createKey(0.0f, 1.0f, FLAT, 1);
    EXPECT_EQ(parameter->getKeys().capacity(), 10);
    for (int i = 1; i < 10; ++i)
        parameter->createKey(float(i), 1.0f, FLAT, 1);
    EXPECT_EQ(parameter->getKeys().capacity(), 10);
    parameter->createKey(10.0f, 1.0f, FLAT, 1);
    EXPECT_EQ(parameter->getNumKeys(), 11);
    EXPECT_EQ(parameter->getKeys().capacity(), 20);
    EXPECT_EQ(parameter->getLine()->getKeys().size(), 11);
}

TEST_F(FParameterTest, SortKeysOrdersKeysMarksAndTimes)
{
    FParameterFloat* parameter = floatWithKeys({1.0f, 2.0f, 3.0f});
    FKey* last = parameter->getKey(2);
    last->setTime(0.5f);
    parameter->getKey(0)->setTime(2.5f);
    parameter->sortKeys();
    ASSERT_EQ(parameter->getKeyTimes().size(), 3);
    EXPECT_EQ(parameter->getKeyTimes()[0], 0.5f);
    EXPECT_EQ(parameter->getKeyTimes()[1], 2.0f);
    EXPECT_EQ(parameter->getKeyTimes()[2], 2.5f);
    EXPECT_EQ(parameter->getKey(0), last);
    EXPECT_EQ(parameter->getLine()->getKeys()[0], last->getLineKey());
    EXPECT_EQ(parameter->getLine()->getKeys()[2]->getTime(), 2.5f);
}

TEST_F(FParameterTest, MarkedKeysCountOnceAndLeaveWithTheirKey)
{
    FParameterFloat* parameter = floatWithKeys({1.0f, 2.0f});
    jVector<FKey*> both;
    both.append(parameter->getKey(0));
    both.append(parameter->getKey(1));
    parameter->markKeys(both);
    parameter->markKeys(both);
    EXPECT_EQ(parameter->getKeySet().size(), 2);
    FKey* first = parameter->getKey(0);
    first->detach();
    EXPECT_EQ(first->getParameter(), nullptr);
    EXPECT_EQ(parameter->getKeySet().size(), 1);
    EXPECT_EQ(parameter->getNumKeys(), 1);
    EXPECT_EQ(parameter->getKeyTimes()[0], 2.0f);
    EXPECT_FALSE(parameter->removeKey(first));
    first->releaseUI();
    EXPECT_EQ(parameter->getLine()->getKeys().size(), 1);
    jDelete(first, "tests/module/FParameterTest", __LINE__, "test");
}

TEST_F(FParameterTest, KeyTimeBeforeFollowsTheCache)
{
    bool found = true;
    FParameterFloat* empty = doc()->createParameterFloat("Empty");
    EXPECT_EQ(empty->getKeyTimeBefore(1.0f, found), NO_TIME);
    EXPECT_FALSE(found);

    FParameterFloat* parameter = floatWithKeys({3.0f, 1.0f, 2.0f});
    EXPECT_EQ(parameter->getKeyTimeBefore(0.5f, found), 1.0f); // before the first key: the first key
    EXPECT_TRUE(found);
    EXPECT_EQ(parameter->getKeyTimeBefore(1.5f, found), 1.0f);
    EXPECT_TRUE(found);
    EXPECT_EQ(parameter->getKeyTimeBefore(2.75f, found), 2.0f);
    EXPECT_TRUE(found);
    EXPECT_EQ(parameter->getKeyTimeBefore(2.0f, found), NO_TIME); // exactly on a key
    EXPECT_FALSE(found);
    EXPECT_EQ(parameter->getKeyTimeBefore(3.0f, found), NO_TIME); // at the last key
    EXPECT_FALSE(found);
    EXPECT_EQ(parameter->getKeyTimeBefore(9.0f, found), NO_TIME); // after it
    EXPECT_FALSE(found);
}

TEST_F(FParameterTest, DisplayNameKeepsThePartAfterTheLastDot)
{
    EXPECT_EQ(materialRow("roughness"), "roughness");
    EXPECT_EQ(materialRow("a.b.c"), "c");
    EXPECT_EQ(materialRow("ends."), "ends.");
    EXPECT_EQ(materialRow("."), ".");
    // Registrations that do not show display names give their own name's last part.
    TrackParameter* param = Track::CreateParameter(TRACK_PARAMETER_FLOAT);
    param->setTypeName("Camera.fov");
    param->setDisplayName("ignored.name");
    engine()->addParameter(param);
    EXPECT_EQ(doc()->createParameterFloat(param, "Zoom")->getRow()->getName(), "fov");
}

TEST_F(FParameterTest, NamelessRowsStartWithPlaceholderTextsPerKind)
{
    FParameterDouble* wide = doc()->createParameterDouble(jString());
    EXPECT_EQ(wide->getRow()->getName(), "Hello");
    EXPECT_EQ(wide->getRow()->getText(), "World");
    FParameterFloat* narrow = doc()->createParameterFloat(jString());
    EXPECT_EQ(narrow->getRow()->getName(), "");
    EXPECT_EQ(narrow->getRow()->getText(), "");
    FParameterToggle* toggle = doc()->createParameterToggle(jString());
    EXPECT_EQ(toggle->getRow()->getName(), "Hello");
}

TEST_F(FParameterTest, KeyAtATimeTakesTheEnginesValueAndIsLinear)
{
    loadDemo();
    auto* fov = static_cast<FParameterFloat*>(single(12));
    bool found = false;
    const float expected = fov->engine_parameter()->getTrackValue(1.5f, found);
    ASSERT_TRUE(found);
    FKeyFloat* key = fov->createKey(1.5f, vec4(1.0f, 2.0f, 3.0f, 4.0f));
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(key->getTime(), 1.5f);
    EXPECT_EQ(key->getValue(), expected);
    EXPECT_GT(expected, 42.0f);
    EXPECT_LT(expected, 50.0f);
    EXPECT_EQ(key->getKeyType(), 1);
    EXPECT_EQ(key->getTangents().z, 3.0f);
    EXPECT_EQ(key->getParameter(), fov);
    EXPECT_NE(key->getLineKey(), nullptr);
    EXPECT_NE(key->getCurveKey(), nullptr);
    EXPECT_EQ(fov->getKey(3), key); // appended, not sorted
    fov->sortKeys();
    EXPECT_EQ(fov->getKey(1), key);
}

TEST_F(FParameterTest, AxisKeysTakeTheirElementOfTheVector)
{
    loadDemo();
    auto* crateY = static_cast<FParameterFloat*>(single(1));
    bool found = false;
    const auto* vector = static_cast<const TrackParameterVec3*>(crateY->getParent()->getTrackParameter());
    const float y = vector->getTrackValue(1.0f, found)[1];
    FKeyFloat* key = crateY->createKey(1.0f, FLAT);
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(key->getValue(), y);
    EXPECT_NE(y, vector->getTrackValue(1.0f, found)[0]);

    auto* exposure = static_cast<FParameterDouble*>(single(14));
    const double e = exposure->engine_parameter()->getTrackValue(2.0f, found);
    FKeyDouble* wide = exposure->createKey(2.0f, FLAT);
    ASSERT_NE(wide, nullptr);
    EXPECT_EQ(wide->getValue(), e);
    EXPECT_EQ(wide->getKeyType(), 1);
}

TEST_F(FParameterTest, NestedTimeKeyIsZeroWhereTheEngineHasATime)
{
    loadDemo();
    auto* time = static_cast<FParameterFloat*>(single(22));
    bool found = false;
    const auto* nested = static_cast<const TrackParameterTrack*>(time->getParent()->getTrackParameter());
    EXPECT_GT(nested->getTrackValueTime(3.0f, found), 1.0f);
    ASSERT_TRUE(found);
    FKeyFloat* key = time->createKey(3.0f, FLAT);
    ASSERT_NE(key, nullptr);
    EXPECT_EQ(key->getValue(), 0.0f);
    EXPECT_EQ(key->getKeyType(), 1);
}

TEST_F(FParameterTest, ToggleKeyAtATimeTakesTheSwitchState)
{
    loadDemo();
    auto* visible = static_cast<FParameterToggle*>(single(3));
    FKeyToggle* off = visible->createKey(5.6f);
    FKeyToggle* on = visible->createKey(5.9f);
    ASSERT_NE(off, nullptr);
    ASSERT_NE(on, nullptr);
    EXPECT_FALSE(off->getValue());
    EXPECT_TRUE(on->getValue());
    EXPECT_EQ(visible->getNumKeys(), 5);
}

TEST_F(FParameterTest, KeysWithoutEngineParameterAreRefused)
{
    auto* loose = jNew<FParameterFloat>("tests/module/FParameterTest", __LINE__, "test");
    EXPECT_EQ(loose->createKey(1.0f, FLAT), nullptr);
    expectLogged("FParameterFloat::createKey:m_data");
    auto* toggle = jNew<FParameterToggle>("tests/module/FParameterTest", __LINE__, "test");
    EXPECT_EQ(toggle->createKey(1.0f), nullptr);
    expectLogged("FParameterToggle::createKey:m_data");
    EXPECT_EQ(toggle->createKey(1.0f, true), nullptr);
    expectLogged("FParameterToggle::createKey:m_data");
    EXPECT_TRUE(AppData::get()->destoryParameter(loose));
    EXPECT_TRUE(AppData::get()->destoryParameter(toggle));
    EXPECT_TRUE(AppData::get()->destoryParameter(nullptr));
}

TEST_F(FParameterTest, ApplyKeysWritesTheEngineKeysInKeyOrder)
{
    loadDemo();
    auto* fov = static_cast<FParameterFloat*>(single(12)); // keys at 0, 3, 6: 50, 42, 50
    fov->getKey(2)->setTime(1.0f);
    static_cast<FKeyFloat*>(fov->getKey(1))->setValue(40.0f);
    fov->sortKeys();
    fov->applyKeys();
    const TrackParameterFloat* param = fov->engine_parameter();
    ASSERT_EQ(param->getNumKeys(), 3);
    EXPECT_EQ(param->getKey(0).time, 0.0f);
    EXPECT_EQ(param->getKey(1).time, 1.0f);
    EXPECT_EQ(param->getKey(1).value, 50.0f);
    EXPECT_EQ(param->getKey(2).time, 3.0f);
    EXPECT_EQ(param->getKey(2).value, 40.0f);
    bool found = false;
    EXPECT_EQ(param->getTrackValue(3.0f, found), 40.0f);
}

TEST_F(FParameterTest, ReleaseWithOwnerLeavesTheListAndFreesTheEngineParameter)
{
    loadDemo();
    jVector<FParameterSingle*>& singles = doc()->getSingleParameters();
    const int count = singles.size();
    FParameterSingle* flicker = single(11);
    FParameterSingle* next = single(12);
    TrackParameter* param = flicker->getTrackParameter();
    const int engineCount = engine()->getNumParameters();
    doc()->getSelectedParameters().insert(flicker);
    doc()->getSelectedParameters().insert(next);
    EXPECT_TRUE(AppData::get()->destoryParameter(flicker));
    EXPECT_EQ(doc()->getSelectedParameters().size(), 1); // a deleted row is no longer selected
    EXPECT_TRUE(doc()->getSelectedParameters().contains(next));
    EXPECT_EQ(singles.size(), count - 1);
    EXPECT_EQ(singles.find(flicker), -1);
    EXPECT_EQ(single(11), next);
    EXPECT_EQ(engine()->getNumParameters(), engineCount - 1);
    for (int i = 0; i < engine()->getNumParameters(); ++i)
        EXPECT_NE(engine()->getParameter(i), param);
}

TEST_F(FParameterTest, ReleaseWithoutOwnerLeavesListAndEngineAlone)
{
    loadDemo();
    jVector<FParameterSingle*>& singles = doc()->getSingleParameters();
    const int count = singles.size();
    FParameterSingle* flicker = single(11);
    TrackParameter* param = flicker->getTrackParameter();
    flicker->setOwner(nullptr);
    flicker->release();
    EXPECT_EQ(singles.size(), count);
    EXPECT_EQ(single(11), flicker);
    EXPECT_EQ(flicker->getNumKeys(), 0);
    EXPECT_EQ(flicker->getRow(), nullptr);
    EXPECT_EQ(engine()->getParameter(5), param); // still in the engine track, with its keys
    EXPECT_EQ(param->getNumKeys(), 6);
    EXPECT_TRUE(doc()->removeSingleParameter(flicker));
    jDelete(flicker, "tests/module/FParameterTest", __LINE__, "test");
}

TEST_F(FParameterTest, AxisReleaseKeepsTheVectorsEngineParameter)
{
    loadDemo();
    FParameterSingle* crateX = single(0);
    TrackParameter* vector = crateX->getParent()->getTrackParameter();
    const int keys = vector->getNumKeys();
    const int engineCount = engine()->getNumParameters();
    crateX->release(); // owner still set, but an axis never detaches
    EXPECT_EQ(engine()->getNumParameters(), engineCount);
    EXPECT_EQ(engine()->getParameter(0), vector);
    EXPECT_EQ(vector->getNumKeys(), keys);
    EXPECT_EQ(doc()->getSingleParameters().find(crateX), -1);
}

TEST_F(FParameterTest, NextRowColourCyclesThroughTheFourteen)
{
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(AppData::get()->getNextRowColor(), i % 14);
        FParameterFloat* parameter = doc()->createParameterFloat("Row");
        const vec4 expected = AppData::RowColor(i % 14);
        const vec4& color = parameter->getRow()->getColor();
        EXPECT_EQ(color.x, expected.x);
        EXPECT_EQ(color.y, expected.y);
        EXPECT_EQ(color.z, expected.z);
    }
    EXPECT_EQ(AppData::get()->getNextRowColor(), 2);
    EXPECT_EQ(AppData::RowColor(13).x, 1.0f);
    EXPECT_EQ(AppData::RowColor(0).x, 0.745f);
}

TEST_F(FParameterTest, RowSwitchesDriveTheEngineAndTheCurvePanel)
{
    UITrackCurvePanel curves;
    loadDemo();
    FParameterSingle* crateZ = single(2);
    auto* vector = static_cast<TrackParameterVec3*>(crateZ->getParent()->getTrackParameter());
    ASSERT_FALSE(crateZ->getRow()->getState(1));
    crateZ->getRow()->toggleColumn(1);
    EXPECT_TRUE(vector->isShow(VEC3_SWIZZLE_Z));
    EXPECT_TRUE(crateZ->isCurveShown());
    EXPECT_TRUE(curves.isShown(crateZ->getCurve()));
    crateZ->getRow()->toggleColumn(0);
    EXPECT_FALSE(vector->isEnabled(VEC3_SWIZZLE_Z));
    EXPECT_TRUE(vector->isEnabled(VEC3_SWIZZLE_X));
    crateZ->getRow()->toggleColumn(1);
    EXPECT_FALSE(crateZ->isCurveShown());
    EXPECT_EQ(messages(), (std::vector<int>{200, 200, 200}));
}

TEST_F(FParameterTest, AxesAnswerBindingQueriesThroughTheirVector)
{
    loadDemo();
    FParameterSingle* crateY = single(1);
    EXPECT_EQ(crateY->getNodeIndex(), 20);
    EXPECT_EQ(crateY->getNodeName(), "Crate");
    EXPECT_EQ(crateY->getTypeName(), "Node.position");
    EXPECT_FALSE(crateY->isForMaterial());
    FParameterSingle* waveX = single(18);
    EXPECT_TRUE(waveX->isForMaterial());
    EXPECT_FALSE(waveX->isMaterialHierarchy());
    waveX->setMaterialHierarchy(true);
    EXPECT_TRUE(waveX->getParent()->getTrackParameter()->isMaterialHierarchy());
    EXPECT_TRUE(single(20)->isMaterialHierarchy());
    EXPECT_FALSE(single(22)->isForMaterial()); // the time of a nested track
    EXPECT_TRUE(single(17)->isForMaterial());
    EXPECT_TRUE(single(17)->isMaterialHierarchy());
    EXPECT_EQ(single(14)->getNodeIndex(), -1); // a world setting
}

TEST_F(FParameterTest, CollectUIGivesEachAxisRowLineAndCurve)
{
    loadDemo();
    jVector<UITrackRow*> rows;
    jVector<UITrackLine*> lines;
    jVector<UITrackCurve*> curves;
    doc()->getParameters()[0]->collectUI(rows, lines, curves);
    single(10)->collectUI(rows, lines, curves); // a colour has no curve
    ASSERT_EQ(rows.size(), 4);
    EXPECT_EQ(lines.size(), 4);
    EXPECT_EQ(curves.size(), 3);
    EXPECT_EQ(rows[2], single(2)->getRow());
    EXPECT_EQ(lines[3], single(10)->getLine());
}

TEST_F(FParameterTest, OnDeleteTakesTheEngineParameterOutOfTheTrack)
{
    loadDemo();
    FParameterSingle* flicker = single(11);
    const int engineCount = engine()->getNumParameters();
    flicker->onDelete();
    EXPECT_EQ(flicker->getTrackParameter(), nullptr);
    EXPECT_EQ(engine()->getNumParameters(), engineCount - 1);
    single(0)->onDelete(); // an axis's engine parameter belongs to its vector
    EXPECT_NE(single(0)->getTrackParameter(), nullptr);
    EXPECT_EQ(engine()->getNumParameters(), engineCount - 1);
    EXPECT_TRUE(AppData::get()->destoryParameter(flicker));
    EXPECT_EQ(engine()->getNumParameters(), engineCount - 1);
}
