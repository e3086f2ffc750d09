#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"

class UIElement;
class UIRoot;
struct UIAutomationPrivate;

// What a queued answer does to the next modal dialog.
enum class UIAnswerKind {
    TreeItem, // choose the tree item at a dotted path ("Node.position") and activate it
    TreeSelect, // make the tree item at a dotted path current without activating it
    Button, // press the shown button with this text
    Screenshot, // save what the dialog shows as a PNG file at a path
    Find, // type a text into the dialog's search box (its first edit line)
    Ok,
    Cancel,
    Yes,
    No,
    FilePath, // the file a file dialog returns
    Color, // the colour a colour dialog returns
};

struct UIAnswer {
    UIAnswerKind kind = UIAnswerKind::Cancel;
    jString text;
    vec4 color;
};

// The automation hook. Tests and scripts queue answers that the next modal dialogs take in order,
// instead of waiting for a user, and synthesize input that travels the same route as real input
// (through the element trees first, then to the native widgets). Without a display a modal dialog
// that finds no answer closes as cancelled and logs a warning, so nothing ever blocks.
class UIAutomation {
public:
    explicit UIAutomation(UIRoot* root);
    ~UIAutomation();
    UIAutomation(const UIAutomation&) = delete;
    UIAutomation& operator=(const UIAutomation&) = delete;

    // Queues an answer for the modal dialogs to come. After a tree item, select, button,
    // screenshot or search answer the dialog stays open for the next one, unless the panel's own
    // handlers close it.
    void answerTreeItem(const char* dottedPath);
    void answerSelectItem(const char* dottedPath);
    void answerButton(const char* text);
    void answerScreenshot(const char* path);
    void answerFind(const char* text);
    void answerOk();
    void answerCancel();
    void answerYes();
    void answerNo();
    void answerFile(const char* path);
    void answerColor(const vec4& color);
    // Returns how many answers wait.
    int pendingAnswers() const;
    // Takes the oldest answer; returns false when none waits.
    bool takeAnswer(UIAnswer& out);
    // Drops every waiting answer.
    void clearAnswers();

    // Synthesized mouse input at a screen point (button: UI_MOUSE_BUTTON, modifiers: UI_MODIFIER).
    // Each returns false and logs when no shown window lies under the point.
    bool mouseDown(int x, int y, int button = 1, int modifiers = 0);
    bool mouseMove(int x, int y, int modifiers = 0);
    bool mouseUp(int x, int y, int button = 1, int modifiers = 0);
    bool mouseDClick(int x, int y, int button = 1, int modifiers = 0);
    bool mouseWheel(int x, int y, int notches, int modifiers = 0);
    // The pointer leaves a top-level element's window (its tree gets onNonClient).
    bool mouseLeave(const UIElement* window);
    // Press and release at the same point.
    bool click(int x, int y, int button = 1, int modifiers = 0);
    // Returns the screen point of an element-local point (for aiming synthesized input).
    void elementPoint(const UIElement* element, int lx, int ly, int& x, int& y) const;
    // Synthesized key press and release (key: UI_KEY_CODE), delivered to the focused element's
    // window, or to the active window; returns false and logs when there is no window.
    bool keyPress(int key, int modifiers = 0);
    // Types text into the native widget with the keyboard focus; false when there is none.
    bool typeText(const char* text);

    // Saves what the element shows as a PNG file; returns false and logs naming the path when it
    // cannot be written.
    bool saveScreenshot(const UIElement* element, const char* path) const;
    // Saves as a PNG file the pixels the element's window shows where the element is: what it last
    // painted there, parts that wait for a repaint included (a screenshot paints afresh). False,
    // logged naming the path, when the element is not shown or the file cannot be written.
    bool saveShown(const UIElement* element, const char* path) const;
    // Reads the colour of pixel (x, y) of a PNG file; returns false and logs when the file cannot
    // be read or the point lies outside it.
    bool readPixel(const char* path, int x, int y, vec4& out) const;
    // Paints the element's area (x, y, w, h), in local pixels, into an internal image and returns
    // the number of pixels painted; used to measure painting without a screen.
    int renderRegion(const UIElement* element, int x, int y, int w, int h);

private:
    UIRoot* m_root;
    UIAutomationPrivate* m_private;
};
