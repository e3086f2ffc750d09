#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "../ui/UIFixture.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "kit/jMath.h"
#include "msg/MsgNode.h"
#include "ui/UIEvent.h"

class UICanvas;
class World;

// A scenario for the module: the data folders point at the repository's data, the data hub exists
// for the whole run (its document is reset around each test), and host messages are recorded.
class ModuleFixture : public UIFixture {
protected:
    void SetUp() override;
    void TearDown() override;

    // Loads data/samples/demo.world into a world owned by the fixture and makes it current.
    World* demoWorld();
    // Loads data/samples/<name> into the document, bound to the demo world.
    bool loadSample(const char* name);
    FTrack* doc() const { return AppData::get()->getTrack(); }
    Track* engine() const { return doc()->getEngineTrack(); }
    // Key-owning parameter i of the document.
    FParameterSingle* single(int i) const { return doc()->getSingleParameters()[i]; }
    // The ids of the host messages posted since the test began, in order.
    const std::vector<int>& messages() const { return m_recorder.ids; }
    void clearMessages() { m_recorder.ids.clear(); }
    // A mouse event at a point of canvas, in screen coordinates as the toolkit delivers it.
    static UIEventMouse mouseAt(const UICanvas* canvas, int x, int y, int button = UI_MOUSE_LEFT,
                                int buttons = 1 << UI_MOUSE_LEFT, int modifiers = 0);
    // The colour canvas shows at a point, read from a screenshot once pending events are handled.
    vec4 pixel(UICanvas* canvas, int x, int y);

private:
    struct Recorder : MsgNode {
        void processMsg(UiMsg* msg) override;
        std::vector<int> ids;
    };

    Recorder m_recorder;
    World* m_world = nullptr;
    TempDir m_shots;
};

// Whether two colours match in red, green and blue.
inline bool near(const vec4& a, const vec4& b, float tolerance = 0.03f)
{
    return std::abs(a.x - b.x) < tolerance && std::abs(a.y - b.y) < tolerance &&
           std::abs(a.z - b.z) < tolerance;
}

// Whether a colour is the grey of this shade.
inline bool isGrey(const vec4& a, float shade)
{
    return near(a, vec4(shade, shade, shade, 1.0f));
}

// The path of a sample under data/samples.
std::string samplePath(const char* name);
