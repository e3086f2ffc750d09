#include "ModuleFixture.h"

#include "editor/DataDir.h"
#include "kit/jKit.h"
#include "msg/UiMsg.h"
#include "scene/World.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"

namespace {

// The hub lives for the whole process; making it before the first scenario and freeing it after the
// last keeps each scenario's allocation check about what the scenario itself did.
class HubEnvironment : public ::testing::Environment {
public:
    void SetUp() override
    {
        DataDir::set(KUVO_DATA_DIR);
        jKit::setDataPath(KUVO_DATA_DIR);
        AppData::get();
    }
    void TearDown() override { AppData::get()->release(); }
};

const auto* s_environment = ::testing::AddGlobalTestEnvironment(new HubEnvironment);

} // namespace

std::string samplePath(const char* name)
{
    return std::string(KUVO_DATA_DIR) + "/samples/" + name;
}

void ModuleFixture::Recorder::processMsg(UiMsg* msg)
{
    ids.push_back(msg->getID());
}

void ModuleFixture::SetUp()
{
    UIFixture::SetUp();
    m_recorder.attach();
}

void ModuleFixture::TearDown()
{
    m_recorder.detach();
    AppData::get()->reset();
    if (m_world) {
        World::SetCurrent(nullptr);
        m_world->release();
        jDelete(m_world, "tests/module", __LINE__, "ModuleFixture::demoWorld");
        m_world = nullptr;
    }
    UIFixture::TearDown();
}

World* ModuleFixture::demoWorld()
{
    if (!m_world) {
        m_world = jNew<World>("tests/module", __LINE__, "ModuleFixture::demoWorld");
        EXPECT_TRUE(m_world->load(samplePath("demo.world").c_str()));
        World::SetCurrent(m_world);
    }
    return m_world;
}

bool ModuleFixture::loadSample(const char* name)
{
    return AppData::get()->loadTrack(jString(samplePath(name).c_str()), demoWorld());
}

UIEventMouse ModuleFixture::mouseAt(const UICanvas* canvas, int x, int y, int button, int buttons, int modifiers)
{
    UIEventMouse e;
    canvas->localToScreen(x, y);
    e.x = x;
    e.y = y;
    e.button = button;
    e.buttons = buttons;
    e.modifiers = modifiers;
    return e;
}

vec4 ModuleFixture::pixel(UICanvas* canvas, int x, int y)
{
    settle();
    const std::string path = m_shots.file("shot.png");
    vec4 out{-1, -1, -1, -1};
    EXPECT_TRUE(root()->getAutomation()->saveScreenshot(canvas, path.c_str()));
    EXPECT_TRUE(root()->getAutomation()->readPixel(path.c_str(), x, y, out));
    return out;
}
