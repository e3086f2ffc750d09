#include "data/FTrack.h"

#include "ModuleFixture.h"
#include "anim/Track.h"
#include "anim/TrackParameterFloat.h"
#include "data/FKeyFloat.h"
#include "anim/TrackParameterVec3.h"
#include "data/AppData.h"
#include "data/FParameterColor.h"
#include "data/FParameterDVec3.h"
#include "data/FParameterFloat.h"
#include "data/FParameterStringFile.h"
#include "data/FParameterStringMaterial.h"
#include "data/FParameterToggle.h"
#include "data/FParameterTrack.h"
#include "data/FParameterVec3.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackRow.h"

namespace {

// A track with one parameter the editor never shows (kind 6) between two it does.
constexpr const char* WITH_ENGINE_DATA = R"({
  "format": "kuvo-anim",
  "version": 1,
  "begin": 0.0,
  "end": 2.0,
  "parameters": [
    {"kind": 2, "type": "Render.exposure", "name": "Exposure", "keys": [[0.0, 1.0, 0, 0, 0, 0, 1]]},
    {"kind": 6, "type": "Engine.events", "name": "Cues", "keys": [[0.5, "start"]], "extra": {"a": 1}},
    {"kind": 0, "type": "Node.enabled", "name": "Shown", "keys": [[0.0, 1], [1.0, 0]]}
  ]
}
)";

bool sameColor(const vec4& a, const vec4& b)
{
    return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
}

} // namespace

class FTrackTest : public ModuleFixture {
protected:
    FTrack* doc() const { return AppData::get()->getTrack(); }
    Track* engine() const { return doc()->getEngineTrack(); }
    jVector<FParameterSingle*>& singles() const { return doc()->getSingleParameters(); }
    bool load(const char* sample)
    {
        return AppData::get()->loadTrack(jString(samplePath(sample).c_str()), demoWorld());
    }
    jString rowName(int i) const { return singles()[i]->getRow()->getName(); }
    jString rowText(int i) const { return singles()[i]->getRow()->getText(); }
    bool engineHolds(const TrackParameter* param) const
    {
        for (int i = 0; i < engine()->getNumParameters(); ++i)
            if (engine()->getParameter(i) == param)
                return true;
        return false;
    }
};

TEST_F(FTrackTest, DemoGivesEachVectorThreeAxisRowsUnderItsName)
{
    ASSERT_TRUE(load("demo.anim"));
    ASSERT_EQ(doc()->getParameters().size(), 5); // four vec3 and one nested track
    ASSERT_EQ(singles().size(), 23);
    auto* crate = dynamic_cast<FParameterVec3*>(doc()->getParameters()[0]);
    ASSERT_NE(crate, nullptr);
    ASSERT_EQ(crate->getNumComponents(), 3);
    const char* axes[3] = {"X", "Y", "Z"};
    for (int i = 0; i < 3; ++i) {
        FParameterSingle* axis = crate->getComponent(i);
        EXPECT_EQ(axis, singles()[i]);
        EXPECT_EQ(axis->getComponentIndex(), i);
        EXPECT_EQ(axis->getParent(), crate);
        EXPECT_FALSE(axis->isDetachOnRelease());
        EXPECT_EQ(axis->getLine()->getComponent(), i);
        EXPECT_EQ(axis->getRow()->getIndent(), 8);
        EXPECT_EQ(rowName(i), "position"); // "Node.position" after its last dot
        EXPECT_EQ(rowText(i), axes[i]);
    }
    EXPECT_EQ(crate->getComponent(0)->getNumKeys(), 5);
    EXPECT_EQ(crate->getComponent(1)->getNumKeys(), 9);
    EXPECT_EQ(crate->getComponent(2)->getNumKeys(), 3);
    // A material vector shows the display name of its binding.
    EXPECT_EQ(rowName(18), "wave_direction");
    EXPECT_EQ(rowText(20), "Z");
}

TEST_F(FTrackTest, DemoShowsTopLevelParametersByTheirTypeOrDisplayName)
{
    ASSERT_TRUE(load("demo.anim"));
    const std::pair<int, const char*> rows[] = {{3, "enabled"},  {10, "color"},     {11, "intensity"},
                                                {12, "fov"},     {13, "material"},  {14, "exposure"},
                                                {15, "fog_color"}, {16, "roughness"}, {17, "albedo"}};
    for (const auto& [index, name] : rows) {
        EXPECT_EQ(rowName(index), name) << index;
        EXPECT_EQ(rowText(index), "") << index;
        EXPECT_EQ(singles()[index]->getParent(), nullptr);
        EXPECT_EQ(singles()[index]->getComponentIndex(), -1);
        EXPECT_TRUE(singles()[index]->isDetachOnRelease());
        EXPECT_EQ(singles()[index]->getLine()->getComponent(), -1);
    }
    EXPECT_EQ(singles()[11]->getNumKeys(), 6);
    EXPECT_EQ(singles()[13]->getNumKeys(), 3);
}

TEST_F(FTrackTest, NestedTrackMakesNameAndTimeRowsWithAnimFilter)
{
    ASSERT_TRUE(load("demo.anim"));
    auto* nested = dynamic_cast<FParameterTrack*>(doc()->getParameters()[4]);
    ASSERT_NE(nested, nullptr);
    ASSERT_EQ(nested->getNumComponents(), 2);
    FParameterSingle* name = nested->getComponent(0);
    FParameterSingle* time = nested->getComponent(1);
    EXPECT_EQ(name, singles()[21]);
    EXPECT_EQ(time, singles()[22]);
    EXPECT_EQ(name->getRow()->getName(), "Name");
    EXPECT_EQ(time->getRow()->getName(), "Time");
    EXPECT_EQ(name->getRow()->getText(), "play");
    EXPECT_EQ(name->getParent(), nested);
    EXPECT_EQ(time->getParent(), nested);
    EXPECT_FALSE(name->isDetachOnRelease());
    EXPECT_FALSE(time->isDetachOnRelease());
    EXPECT_EQ(static_cast<FParameterStringFile*>(name)->getFilter(), ".anim");
    EXPECT_EQ(name->getNumKeys(), 1);
    EXPECT_EQ(time->getNumKeys(), 2);
}

TEST_F(FTrackTest, LampsGiveDoubleAxesAndSkipEngineData)
{
    ASSERT_TRUE(load("lamps.anim"));
    EXPECT_EQ(engine()->getNumParameters(), 5);
    ASSERT_EQ(doc()->getParameters().size(), 1);
    auto* anchor = dynamic_cast<FParameterDVec3*>(doc()->getParameters()[0]);
    ASSERT_NE(anchor, nullptr);
    EXPECT_FALSE(anchor->getFlag());
    ASSERT_EQ(singles().size(), 6); // three axes, the mesh, the switch, the spot
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(singles()[i]->getType(), 2);
        EXPECT_EQ(singles()[i]->getComponentIndex(), i);
        EXPECT_EQ(singles()[i]->getParent(), anchor);
        EXPECT_EQ(rowName(i), "world_position");
    }
    EXPECT_EQ(rowText(0), "X"); // the nameless double's "World" is replaced by the axis
    EXPECT_EQ(rowName(3), "mesh");
    EXPECT_EQ(rowName(4), "enabled");
    EXPECT_EQ(rowName(5), "intensity");
    EXPECT_FALSE(singles()[5]->getRow()->getState(0)); // "Spot fade" is switched off
}

TEST_F(FTrackTest, KindSixMakesNoParameterAndNoError)
{
    TempDir dir;
    const std::string path = dir.file("cues.anim");
    ASSERT_TRUE(writeFileText(path, WITH_ENGINE_DATA));
    ASSERT_TRUE(AppData::get()->loadTrack(jString(path.c_str()), demoWorld()));
    EXPECT_EQ(engine()->getNumParameters(), 3);
    EXPECT_EQ(engine()->getParameter(1)->getType(), TRACK_PARAMETER_OPAQUE);
    ASSERT_EQ(singles().size(), 2);
    EXPECT_EQ(singles()[0]->getType(), 2);
    EXPECT_EQ(singles()[1]->getType(), 0);
    EXPECT_EQ(doc()->getParameters().size(), 0);
    EXPECT_EQ(log().countAtLeast(jLogLevel::Warning), 0u);
}

TEST_F(FTrackTest, RowsTakeThePaletteInCreationOrder)
{
    ASSERT_TRUE(load("demo.anim"));
    ASSERT_GT(singles().size(), AppData::ROW_COLORS);
    for (int i = 0; i < singles().size(); ++i)
        EXPECT_TRUE(sameColor(singles()[i]->getRow()->getColor(), AppData::RowColor(i))) << i;
    EXPECT_TRUE(sameColor(singles()[14]->getRow()->getColor(), singles()[0]->getRow()->getColor()));
    EXPECT_FALSE(sameColor(singles()[1]->getRow()->getColor(), singles()[0]->getRow()->getColor()));
}

TEST_F(FTrackTest, ShownCurvesJoinTheCurvePanelOnce)
{
    UITrackCurvePanel curves;
    ASSERT_TRUE(load("demo.anim"));
    // Crate X and Y, Pillar Y and the camera's field of view are shown in the file.
    ASSERT_EQ(curves.getShownCurves().size(), 4);
    EXPECT_TRUE(singles()[0]->isCurveShown());
    EXPECT_TRUE(singles()[1]->isCurveShown());
    EXPECT_FALSE(singles()[2]->isCurveShown());
    EXPECT_TRUE(singles()[12]->isCurveShown());
    curves.showCurve(singles()[0]->getCurve());
    EXPECT_EQ(curves.getShownCurves().size(), 4);
    AppData::get()->reset();
    EXPECT_EQ(curves.getShownCurves().size(), 0);
}

TEST_F(FTrackTest, ClearEmptiesEveryListAndTheEngineTrack)
{
    ASSERT_TRUE(load("demo.anim"));
    doc()->getSelectedParameters().insert(singles()[3]);
    doc()->clear();
    EXPECT_EQ(singles().size(), 0);
    EXPECT_EQ(doc()->getParameters().size(), 0);
    EXPECT_EQ(doc()->getSelectedParameters().size(), 0);
    EXPECT_EQ(engine()->getNumParameters(), 0);
    EXPECT_TRUE(doc()->isEmpty());
    EXPECT_TRUE(AppData::get()->isEmpty());
}

TEST_F(FTrackTest, RemovingAPointerNotListedChangesNothing)
{
    ASSERT_TRUE(load("pulse.anim"));
    ASSERT_EQ(singles().size(), 2);
    FParameterSingle* first = singles()[0];
    FParameterSingle* last = singles()[1];
    auto* stranger = jNew<FParameterFloat>("tests/module/FTrackTest", __LINE__, "test");
    EXPECT_FALSE(doc()->removeSingleParameter(stranger));
    EXPECT_FALSE(doc()->removeParameter(stranger));
    EXPECT_EQ(singles().size(), 2);
    EXPECT_EQ(singles()[0], first);
    AppData::get()->destoryParameter(stranger);

    EXPECT_TRUE(doc()->removeSingleParameter(last));
    ASSERT_EQ(singles().size(), 1);
    EXPECT_EQ(singles()[0], first);
    EXPECT_FALSE(doc()->removeSingleParameter(last));
    // No longer listed, so the document would not free it: delete it as the editor does.
    EXPECT_TRUE(AppData::get()->destoryParameter(last));
    EXPECT_EQ(engine()->getNumParameters(), 1);
}

TEST_F(FTrackTest, DeletingAVectorRemovesItsAxesOnce)
{
    ASSERT_TRUE(load("demo.anim"));
    FParameter* crate = doc()->getParameters()[0];
    TrackParameter* param = crate->getTrackParameter();
    FParameterSingle* fourth = singles()[3];
    EXPECT_TRUE(AppData::get()->destoryParameter(crate));
    EXPECT_EQ(singles().size(), 20);
    EXPECT_EQ(singles()[0], fourth);
    EXPECT_EQ(doc()->getParameters().size(), 4);
    EXPECT_EQ(engine()->getNumParameters(), 13);
    EXPECT_FALSE(engineHolds(param));
}

TEST_F(FTrackTest, NewParametersAddEngineParametersOfTheirKind)
{
    struct Made {
        FParameter* parameter;
        int kind, singles, compounds;
    };
    const jString name("Added");
    const Made made[] = {
        {doc()->createParameterToggle(name), 0, 1, 0},   {doc()->createParameterFloat(name), 1, 1, 0},
        {doc()->createParameterDouble(name), 2, 1, 0},   {doc()->createParameterColor(name), 3, 1, 0},
        {doc()->createParameterVec3(name), 4, 3, 1},     {doc()->createParameterDVec3(name), 5, 3, 1},
        {doc()->createParameterTrack(name), 7, 2, 1},    {doc()->createParameterStringFile(name), 8, 1, 0},
        {doc()->createParameterStringMaterial(name), 9, 1, 0},
    };
    int singleCount = 0, compoundCount = 0;
    ASSERT_EQ(engine()->getNumParameters(), 9);
    for (int i = 0; i < 9; ++i) {
        ASSERT_NE(made[i].parameter, nullptr) << i;
        EXPECT_EQ(made[i].parameter->getType(), made[i].kind);
        EXPECT_EQ(made[i].parameter->getOwner(), doc());
        EXPECT_EQ(made[i].parameter->getTrackParameter(), engine()->getParameter(i));
        EXPECT_EQ(engine()->getParameter(i)->getType(), made[i].kind);
        EXPECT_EQ(engine()->getParameter(i)->getName(), "Added");
        singleCount += made[i].singles;
        compoundCount += made[i].compounds;
    }
    EXPECT_EQ(singles().size(), singleCount);
    EXPECT_EQ(doc()->getParameters().size(), compoundCount);
    EXPECT_EQ(singles()[1]->getRow()->getName(), "Added");
    EXPECT_FALSE(doc()->isEmpty());
}

TEST_F(FTrackTest, WrongKindIsRefusedWithItsCheckAndNothingAdded)
{
    TrackParameter* toggle = Track::CreateParameter(TRACK_PARAMETER_TOGGLE);
    ASSERT_TRUE(engine()->addParameter(toggle));
    EXPECT_EQ(doc()->createParameterFloat(toggle, "Wrong"), nullptr);
    expectLogged("FParameterFloat::create:track && param && param->getType() == TRACK_PARAMETER_FLOAT");
    EXPECT_EQ(doc()->createParameterStringFile(toggle, "Wrong"), nullptr);
    expectLogged("FParameterStringFile::create:track && param && (param->getType() == "
                 "TRACK_PARAMETER_STRING_FILE|| param->getType() == TRACK_PARAMETER_STRING_MATERIAL)");
    EXPECT_EQ(singles().size(), 0);
    EXPECT_EQ(engine()->getNumParameters(), 1);
    EXPECT_EQ(toggle->getName(), "");
    // A compound keeps a null entry in its list, deliberately; the single kinds add none.
    EXPECT_EQ(doc()->createParameterVec3(toggle, "Wrong"), nullptr);
    expectLogged("FParameterVec3::create:track && param && param->getType() == TRACK_PARAMETER_VEC3");
    ASSERT_EQ(doc()->getParameters().size(), 1);
    EXPECT_EQ(doc()->getParameters()[0], nullptr);
    EXPECT_EQ(singles().size(), 0);
}

TEST_F(FTrackTest, UnregisteredTypeIsRefusedByName)
{
    TrackParameter* scalar = Track::CreateParameter(TRACK_PARAMETER_FLOAT);
    scalar->setTypeName("Nowhere.float");
    ASSERT_TRUE(engine()->addParameter(scalar));
    EXPECT_EQ(doc()->createParameterFloat(scalar, "Lost"), nullptr);
    expectLogged("FParameterFloat::create:track type \"Nowhere.float\" not support");

    TrackParameter* vector = Track::CreateParameter(TRACK_PARAMETER_VEC3);
    vector->setTypeName("Nowhere.vec3");
    ASSERT_TRUE(engine()->addParameter(vector));
    EXPECT_EQ(doc()->createParameterVec3(vector, "Lost"), nullptr);
    expectLogged("FParameterVec3::create:r");

    TrackParameter* wide = Track::CreateParameter(TRACK_PARAMETER_DVEC3);
    wide->setTypeName("Nowhere.dvec3");
    ASSERT_TRUE(engine()->addParameter(wide));
    EXPECT_EQ(doc()->createParameterDVec3(wide, "Lost"), nullptr);
    expectLogged("FParameterDVec3::create:r");

    EXPECT_EQ(singles().size(), 0); // no axis was made for a refused vector
    EXPECT_EQ(engine()->getNumParameters(), 3);
}

TEST_F(FTrackTest, SelectedParametersAreCopiedAndSelfAssignmentKeepsThem)
{
    ASSERT_TRUE(load("pulse.anim"));
    jSet<FParameterSingle*> chosen;
    chosen.insert(singles()[0]);
    chosen.insert(singles()[1]);
    doc()->setSelectedParameters(chosen);
    chosen.erase(singles()[0]);
    EXPECT_EQ(doc()->getSelectedParameters().size(), 2);
    doc()->setSelectedParameters(doc()->getSelectedParameters());
    EXPECT_EQ(doc()->getSelectedParameters().size(), 2);
    doc()->setSelectedParameters(chosen);
    EXPECT_EQ(doc()->getSelectedParameters().size(), 1);
    EXPECT_TRUE(doc()->getSelectedParameters().contains(singles()[1]));
}

TEST_F(FTrackTest, NewParameterNeedsADocument)
{
    auto* loose = jNew<FParameterFloat>("tests/module/FTrackTest", __LINE__, "test");
    EXPECT_FALSE(loose->createNew(nullptr, "Loose", true));
    expectLogged("FParameterFloat::createNew:track");
    EXPECT_EQ(loose->getTrackParameter(), nullptr);
    EXPECT_EQ(engine()->getNumParameters(), 0);
    AppData::get()->destoryParameter(loose);
}

TEST_F(FTrackTest, EditedKeysSurviveSavingAndLoading)
{
    ASSERT_TRUE(load("demo.anim"));
    auto* fov = static_cast<FParameterFloat*>(singles()[12]);
    ASSERT_NE(fov->createKey(1.5f, vec4(0.0f, 0.0f, 0.0f, 0.0f)), nullptr);
    fov->sortKeys();
    fov->applyKeys();
    FParameterSingle* crateZ = singles()[2];
    crateZ->getKey(1)->setTime(2.5f);
    crateZ->sortKeys();
    crateZ->getParent()->applyKeys();
    TempDir dir;
    const jString path(dir.file("edited.anim").c_str());
    ASSERT_TRUE(AppData::get()->saveTrack(path));
    ASSERT_TRUE(AppData::get()->loadTrack(path, demoWorld()));
    ASSERT_EQ(singles()[12]->getNumKeys(), 4);
    const auto* key = static_cast<const FKeyFloat*>(singles()[12]->getKey(1));
    EXPECT_EQ(key->getTime(), 1.5f);
    EXPECT_EQ(key->getKeyType(), 1);
    EXPECT_GT(key->getValue(), 42.0f);
    EXPECT_EQ(singles()[2]->getKeyTimes()[1], 2.5f);
    EXPECT_EQ(singles()[2]->getNumKeys(), 3);
}

TEST_F(FTrackTest, NamelessNestedTrackIsLabelledAnim)
{
    FParameterTrack* nested = doc()->createParameterTrack(jString());
    ASSERT_NE(nested, nullptr);
    EXPECT_EQ(nested->getComponent(0)->getRow()->getName(), "Name");
    EXPECT_EQ(nested->getComponent(0)->getRow()->getText(), "Anim");
    EXPECT_EQ(nested->getComponent(1)->getRow()->getName(), "Time");
    EXPECT_EQ(nested->getComponent(1)->getComponentIndex(), 1);
    FParameterVec3* vector = doc()->createParameterVec3("Offset");
    EXPECT_EQ(vector->getComponent(2)->getRow()->getName(), "Offset");
    EXPECT_EQ(vector->getComponent(2)->getRow()->getText(), "Z");
    EXPECT_EQ(engine()->getNumParameters(), 2);
}
