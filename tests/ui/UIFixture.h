#pragma once

#include "support/Scenario.h"
#include "ui/UIRoot.h"

// A scenario with a live toolkit root, made before the test body and destroyed after it, so the
// allocation check covers every element the test made. The suite runs without a display.
class UIFixture : public Scenario {
protected:
    void SetUp() override;
    void TearDown() override;

    UIRoot* root() const { return m_root; }
    // Handles the pending native events (layout, painting).
    void settle() const;

private:
    UIRoot* m_root = nullptr;
};

// Allocates an element through the engine allocator as the toolkit's users do.
template <class T, class... Args>
T* make(Args&&... args)
{
    return jNew<T>("tests/ui", __LINE__, "test", std::forward<Args>(args)...);
}

// Releases and frees an element made with make().
template <class T>
void destroy(T* element)
{
    if (!element)
        return;
    element->release();
    jDelete(element, "tests/ui", __LINE__, "test");
}
