#pragma once

class UIElement;
class UIAutomation;
struct UIRootPrivate;

// The toolkit's application: starts the Qt application (or joins the one that already runs), the
// dark Fusion look, the fixed fonts, the input routing into element trees, the keyboard focus and
// the automation hook. One root lives at a time; make it before any element and release it after
// the last one.
class UIRoot {
public:
    UIRoot();
    ~UIRoot();
    UIRoot(const UIRoot&) = delete;
    UIRoot& operator=(const UIRoot&) = delete;

    // Returns the live root, or null when none exists.
    static UIRoot* get();
    // Closes every top-level window still shown and drops queued automation answers.
    void release();

    // Handles the pending native events (painting, posted input) once and returns.
    void processEvents();
    // True when running without a display (QT_QPA_PLATFORM=offscreen or minimal).
    bool isHeadless() const;
    // The element holding the keyboard focus, or null.
    UIElement* getFocus() const;
    // The hook through which tests and scripts answer dialogs and synthesize input.
    UIAutomation* getAutomation() const { return m_automation; }

    // Toolkit-internal: records the focus holder and raises the focus events (null clears it).
    void setFocusElement(UIElement* element);
    // Toolkit-internal: an element is being destroyed; forget every reference to it.
    void forgetElement(UIElement* element);

private:
    UIRootPrivate* m_private;
    UIAutomation* m_automation;
};
