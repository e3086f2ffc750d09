#pragma once

#include <string>
#include <vector>

#include "../ui/UIFixture.h"
#include "msg/MsgNode.h"

class World;

// A scenario for the module: the data folders point at the repository's data, the data hub exists
// for the whole run (its document is reset around each test), and host messages are recorded.
class ModuleFixture : public UIFixture {
protected:
    void SetUp() override;
    void TearDown() override;

    // Loads data/samples/demo.world into a world owned by the fixture and makes it current.
    World* demoWorld();
    // The ids of the host messages posted since the test began, in order.
    const std::vector<int>& messages() const { return m_recorder.ids; }
    void clearMessages() { m_recorder.ids.clear(); }

private:
    struct Recorder : MsgNode {
        void processMsg(UiMsg* msg) override;
        std::vector<int> ids;
    };

    Recorder m_recorder;
    World* m_world = nullptr;
};

// The path of a sample under data/samples.
std::string samplePath(const char* name);
