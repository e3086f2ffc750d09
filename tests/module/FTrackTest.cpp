#include "data/FTrack.h"

#include "ModuleFixture.h"
#include "anim/Track.h"
#include "anim/TrackParameterFloat.h"
#include "data/FKeyFloat.h"
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

class FTrackTest : public ModuleFixture {
protected:
    jVector<FParameterSingle*>& singles() const { return doc()->getSingleParameters(); }
    jString rowName(int i) const { return single(i)->getRow()->getName(); }
    jString rowText(int i) const { return single(i)->getRow()->getText(); }
};

// Each row shows its binding; a compound's rows are indented and show their axis or file. Rows take
// the palette in creation order, and the curves shown in the file join the curve panel.
TEST_F(FTrackTest, DemoGivesEachParameterItsRowColourAndCurve)
{
    UITrackCurvePanel curves(root());
    ASSERT_TRUE(loadSample("demo.anim"));
    ASSERT_EQ(doc()->getParameters().size(), 5); // four vec3 and one nested track
    ASSERT_EQ(singles().size(), 23);
    const struct {
        int index;
        const char* name;
        const char* text;
        int component;
    } rows[] = {
        {0, "position", "X", 0},      {1, "position", "Y", 1},       {2, "position", "Z", 2},
        {3, "enabled", "", -1},       {10, "color", "", -1},         {11, "intensity", "", -1},
        {12, "fov", "", -1},          {13, "material", "", -1},      {14, "exposure", "", -1},
        {15, "fog_color", "", -1},    {16, "roughness", "", -1},     {17, "albedo", "", -1},
        {18, "wave_direction", "X", 0}, {20, "wave_direction", "Z", 2}, {21, "Name", "play", 0},
        {22, "Time", "play", 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.index);
        const bool inCompound = row.component >= 0;
        EXPECT_EQ(rowName(row.index), row.name);
        EXPECT_EQ(rowText(row.index), row.text);
        EXPECT_EQ(single(row.index)->getComponentIndex(), row.component);
        EXPECT_EQ(single(row.index)->isDetachOnRelease(), !inCompound);
        EXPECT_EQ(single(row.index)->getLine()->getComponent(), row.component);
        EXPECT_EQ(single(row.index)->getRow()->getIndent(), inCompound ? 8 : 0);
    }
    auto* crate = dynamic_cast<FParameterVec3*>(doc()->getParameters()[0]);
    ASSERT_NE(crate, nullptr);
    ASSERT_EQ(crate->getNumComponents(), 3);
    EXPECT_EQ(crate->getComponent(2), single(2));
    EXPECT_EQ(single(22)->getParent(), doc()->getParameters()[4]);
    EXPECT_EQ(static_cast<FParameterStringFile*>(single(21))->getFilter(), ".anim");
    const std::pair<int, int> keys[] = {{0, 5}, {1, 9}, {2, 3}, {11, 6}, {13, 3}, {21, 1}, {22, 2}};
    for (const auto& [index, count] : keys)
        EXPECT_EQ(single(index)->getNumKeys(), count) << index;

    for (int i = 0; i < singles().size(); ++i)
        EXPECT_TRUE(near(single(i)->getRow()->getColor(), AppData::RowColor(i % 14), 1e-6f)) << i;
    EXPECT_EQ(AppData::get()->getNextRowColor(), 23 % 14);

    // Crate X and Y, Pillar Y and the camera's field of view are shown in the file.
    ASSERT_EQ(curves.getShownCurves().size(), 4);
    EXPECT_FALSE(single(2)->isCurveShown());
    EXPECT_TRUE(single(12)->isCurveShown());
    curves.showCurve(single(0)->getCurve());
    EXPECT_EQ(curves.getShownCurves().size(), 4);
    AppData::get()->reset();
    EXPECT_EQ(curves.getShownCurves().size(), 0);
}

// Kinds the editor cannot show (the footsteps' events here) stay in the engine track without a row.
TEST_F(FTrackTest, LampsGiveDoubleAxesAndSkipEngineData)
{
    ASSERT_TRUE(loadSample("lamps.anim"));
    EXPECT_EQ(engine()->getNumParameters(), 5);
    EXPECT_EQ(engine()->getParameter(3)->getType(), TRACK_PARAMETER_OPAQUE);
    ASSERT_EQ(doc()->getParameters().size(), 1);
    auto* anchor = dynamic_cast<FParameterDVec3*>(doc()->getParameters()[0]);
    ASSERT_NE(anchor, nullptr);
    EXPECT_FALSE(anchor->getFlag());
    ASSERT_EQ(singles().size(), 6); // three axes, the mesh, the switch, the spot
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(single(i)->getParent(), anchor);
    EXPECT_EQ(single(2)->getType(), 2);
    EXPECT_EQ(rowName(2), "world_position");
    EXPECT_EQ(rowText(0), "X"); // the nameless double's "World" is replaced by the axis
    EXPECT_EQ(rowName(3), "mesh");
    EXPECT_FALSE(single(5)->getRow()->getState(0)); // "Spot fade" is switched off
}

// Each kind the editor adds makes an engine parameter of that kind, named as its row.
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
        EXPECT_EQ(made[i].parameter->getOwner(), doc());
        EXPECT_EQ(made[i].parameter->getTrackParameter(), engine()->getParameter(i));
        EXPECT_EQ(engine()->getParameter(i)->getType(), made[i].kind);
        EXPECT_EQ(engine()->getParameter(i)->getName(), "Added");
        singleCount += made[i].singles;
        compoundCount += made[i].compounds;
    }
    EXPECT_EQ(singles().size(), singleCount);
    EXPECT_EQ(doc()->getParameters().size(), compoundCount);
    EXPECT_EQ(rowName(1), "Added");
}

// A wrong kind or unregistered type is refused and logged; a refused compound keeps a null entry.
TEST_F(FTrackTest, RefusedParametersLogWhyAndMakeNoRow)
{
    TrackParameter* toggle = Track::CreateParameter(TRACK_PARAMETER_TOGGLE);
    ASSERT_TRUE(engine()->addParameter(toggle));
    EXPECT_EQ(doc()->createParameterFloat(toggle, "Wrong"), nullptr);
    expectLogged("FParameterFloat::create:track && param && param->getType() == TRACK_PARAMETER_FLOAT");
    EXPECT_EQ(doc()->createParameterStringFile(toggle, "Wrong"), nullptr);
    expectLogged("FParameterStringFile::create:track && param && (param->getType() == "
                 "TRACK_PARAMETER_STRING_FILE|| param->getType() == TRACK_PARAMETER_STRING_MATERIAL)");
    EXPECT_EQ(doc()->createParameterVec3(toggle, "Wrong"), nullptr);
    expectLogged("FParameterVec3::create:track && param && param->getType() == TRACK_PARAMETER_VEC3");
    EXPECT_EQ(toggle->getName(), "");
    const auto unregistered = [this](int kind, const char* type) {
        TrackParameter* param = Track::CreateParameter(kind);
        param->setTypeName(type);
        engine()->addParameter(param);
        return param;
    };
    EXPECT_EQ(doc()->createParameterFloat(unregistered(TRACK_PARAMETER_FLOAT, "Nowhere.float"), "Lost"), nullptr);
    expectLogged("FParameterFloat::create:track type \"Nowhere.float\" not support");
    EXPECT_EQ(doc()->createParameterVec3(unregistered(TRACK_PARAMETER_VEC3, "Nowhere.vec3"), "Lost"), nullptr);
    expectLogged("FParameterVec3::create:r");
    EXPECT_EQ(doc()->createParameterDVec3(unregistered(TRACK_PARAMETER_DVEC3, "Nowhere.dvec3"), "Lost"), nullptr);
    expectLogged("FParameterDVec3::create:r");
    ASSERT_EQ(doc()->getParameters().size(), 3);
    EXPECT_EQ(doc()->getParameters()[0], nullptr);
    EXPECT_EQ(singles().size(), 0); // no axis either for a refused vector
    EXPECT_EQ(engine()->getNumParameters(), 4);
}

// The selection is copied, and handing the document its own selection must not empty it.
TEST_F(FTrackTest, SelectedParametersAreCopiedAndSelfAssignmentKeepsThem)
{
    ASSERT_TRUE(loadSample("pulse.anim"));
    jSet<FParameterSingle*> chosen;
    chosen.insert(single(0));
    doc()->setSelectedParameters(chosen);
    chosen.insert(single(1));
    doc()->setSelectedParameters(doc()->getSelectedParameters());
    EXPECT_EQ(doc()->getSelectedParameters().size(), 1);
    EXPECT_TRUE(doc()->getSelectedParameters().contains(single(0)));
}

// Edited keys are written to the engine in key order and survive saving and loading.
TEST_F(FTrackTest, EditedKeysSurviveSavingAndLoading)
{
    ASSERT_TRUE(loadSample("demo.anim"));
    auto* fov = static_cast<FParameterFloat*>(single(12)); // keys at 0, 3, 6: 50, 42, 50
    fov->getKey(2)->setTime(1.0f);
    static_cast<FKeyFloat*>(fov->getKey(1))->setValue(40.0f);
    ASSERT_NE(fov->createKey(4.5f, vec4(0.0f, 0.0f, 0.0f, 0.0f)), nullptr);
    fov->sortKeys();
    fov->applyKeys();
    const TrackParameterFloat* param = fov->engine_parameter();
    ASSERT_EQ(param->getNumKeys(), 4);
    EXPECT_EQ(param->getKey(1).time, 1.0f);
    EXPECT_EQ(param->getKey(1).value, 50.0f);
    EXPECT_EQ(param->getKey(2).time, 3.0f);
    EXPECT_EQ(param->getKey(2).value, 40.0f);
    bool found = false;
    EXPECT_EQ(param->getTrackValue(3.0f, found), 40.0f);
    FParameterSingle* crateZ = single(2);
    crateZ->getKey(1)->setTime(2.5f);
    crateZ->sortKeys();
    crateZ->getParent()->applyKeys();

    TempDir dir;
    const jString path(dir.file("edited.anim").c_str());
    ASSERT_TRUE(AppData::get()->saveTrack(path));
    ASSERT_TRUE(AppData::get()->loadTrack(path, demoWorld()));
    ASSERT_EQ(single(12)->getNumKeys(), 4);
    const auto* key = static_cast<const FKeyFloat*>(single(12)->getKey(3));
    EXPECT_EQ(key->getTime(), 4.5f);
    EXPECT_EQ(key->getKeyType(), 1);
    EXPECT_GT(key->getValue(), 40.0f);
    EXPECT_EQ(single(2)->getKeyTimes()[1], 2.5f);
}
