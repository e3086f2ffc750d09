#include "UIFixture.h"

#include <cstdlib>

#include "kit/jAllocator.h"

namespace {

// The toolkit tests never need a screen: every window renders offscreen, and a modal dialog
// without a queued answer closes at once instead of waiting.
const bool s_offscreen = setenv("QT_QPA_PLATFORM", "offscreen", 1) == 0;

} // namespace

void UIFixture::SetUp()
{
    ASSERT_TRUE(s_offscreen);
    Scenario::SetUp();
    m_root = jNew<UIRoot>("tests/ui", __LINE__, "UIFixture::SetUp");
}

void UIFixture::TearDown()
{
    jDelete(m_root, "tests/ui", __LINE__, "UIFixture::TearDown");
    m_root = nullptr;
    Scenario::TearDown();
}

void UIFixture::settle() const { m_root->processEvents(); }
