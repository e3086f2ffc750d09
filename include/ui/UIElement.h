#pragma once

#include "kit/jMath.h"
#include "kit/jVector.h"
#include "ui/UIEvent.h"

class UIRoot;
struct UINative;

// How a child takes the space its parent layout offers (addChild's expand argument).
// "Along" is the layout's direction (down in a vertical layout), "across" the other one.
enum UI_EXPAND_TYPE : int {
    UI_EXPAND_NONE = 0, // natural size, placed by the parent's content alignment
    UI_EXPAND_ACROSS = 1, // fills across, natural size along
    UI_EXPAND_ALONG = 2, // shares the free space along, natural size across
    UI_EXPAND_BOTH = 3, // fills across and shares the free space along
};

// Where children of natural size sit across a layout (setContentAligns).
enum UI_ALIGN : int {
    UI_ALIGN_START = 0, // left in a vertical layout, top in a horizontal one
    UI_ALIGN_CENTER = 1,
    UI_ALIGN_END = 2,
};

// The base of every toolkit element. An element owns its children: release() releases and frees
// them. Input reaches elements top-down from the element at the top of the tree; a handler returns
// true when it consumed the event, and an event the tree does not consume goes on to the native
// widget under the pointer (or with the keyboard focus).
class UIElement {
public:
    // Makes a plain element: a vertical stack of its children.
    explicit UIElement(UIRoot* root);
    virtual ~UIElement();
    UIElement(const UIElement&) = delete;
    UIElement& operator=(const UIElement&) = delete;

    // Advances the element by dt seconds; the base updates every child in order.
    virtual void update(float dt);
    // Releases and frees every child (children first); the element itself stays usable, empty.
    virtual void release();

    // Input handlers; each returns true when it consumed the event. The base offers the event to
    // every shown child in order and returns true as soon as one consumed it.
    virtual bool onMouseDown(const UIEventMouse* e);
    virtual bool onMouseMove(const UIEventMouse* e);
    virtual bool onMouseUp(const UIEventMouse* e);
    virtual bool onMouseDClick(const UIEventMouse* e);
    virtual bool onMouseWheel(const UIEventMouse* e);
    virtual bool onKeyPress(const UIEventKey* e);
    // The pointer left the top element or the toolkit cancelled a drag.
    virtual bool onNonClient(const UIEventMouse* e);

    // Adds child (which must have no parent) with an expand type (UI_EXPAND_TYPE) at position
    // (-1 appends); the element then owns it. Returns false and logs when child is null, is this
    // element or already has a parent.
    virtual bool addChild(UIElement* child, int expand = UI_EXPAND_NONE, int position = -1);
    // Takes child out of this element without freeing it; returns false when it is not a child.
    bool removeChild(UIElement* child);
    int getNumChilds() const { return m_childs.size(); }
    // Returns child i, or null when i is out of range.
    UIElement* getChild(int i) const;
    UIElement* getParent() const { return m_parent; }
    UIRoot* getRoot() const { return m_root; }

    // True when the screen point lies on the visible part of the element.
    bool isHit(int x, int y) const;
    // Converts a screen point to element-local coordinates in place.
    void screenToLocal(int& x, int& y) const;
    // Converts an element-local point to screen coordinates in place.
    void localToScreen(int& x, int& y) const;

    // Gives this element the keyboard focus (the previous holder loses it).
    void setFocus();
    // True while this element holds the keyboard focus.
    bool hasFocus() const;
    // Drops the keyboard focus when this element has it.
    void removeFocus();

    // Where children of natural size sit across (UI_ALIGN).
    void setContentAligns(int align);
    int getContentAligns() const { return m_align; }
    // Minimum sizes in pixels; layouts never make the element smaller.
    void setMinWidth(int w);
    void setMinHeight(int h);
    void setMinSize(int w, int h);
    // Fixes the width (or height); a negative value frees it again.
    void setFixWidth(int w);
    void setFixHeight(int h);
    void setFixSize(int w, int h);
    // The size this element asks for when a container sizes itself to it; 0 means natural.
    void setPreferredSize(int w, int h);
    int getPreferredWidth() const;
    int getPreferredHeight() const;
    // The element's current size in pixels.
    int getWidth() const;
    int getHeight() const;
    // Shares of the free space in the parent (layouts and splitters); 1 by default.
    void setWidthWeight(float w);
    void setHeightWeight(float h);
    float getWidthWeight() const { return m_width_weight; }
    float getHeightWeight() const { return m_height_weight; }
    // A hidden element takes no room in its layout and gets no input.
    void setHidden(bool hidden);
    bool isHidden() const { return m_hidden; }
    // The background colour, painted only while the background mask is on.
    void setBackgroundColor(const vec4& color);
    const vec4& getBackgroundColor() const { return m_background; }
    // Turns the painting of the background colour on or off (off by default).
    void setMaskBackground(bool mask);
    bool isMaskBackground() const { return m_mask_background; }
    // The text shown when the pointer rests on the element.
    void setTooltip(const char* text);

    // Raised when this element gains or loses the keyboard focus.
    UISlot<UIEventFocus> sigFocus;

    // The native side of the element; only the toolkit's implementation looks inside.
    UINative* native() const { return m_native; }

protected:
    // For elements with their own native widget, made by the toolkit's implementation.
    UIElement(UIRoot* root, UINative* native);

    // Places child's native widget; the base puts it into the element's box layout.
    virtual void layoutChild(UIElement* child, int position);
    // Re-applies child's weights or hidden flag after they changed.
    virtual void relayoutChild(UIElement* child);
    // Takes child's native widget out of this element's native widget.
    virtual void unlayoutChild(UIElement* child);
    // Offers an event to every shown child in order; true when one consumed it.
    template <class Event>
    bool dispatch_to_childs(bool (UIElement::*handler)(const Event*), const Event* e);
    int expandOf(const UIElement* child) const { return child->m_expand; }

private:
    void apply_background();

    UIRoot* m_root;
    UINative* m_native;
    UIElement* m_parent = nullptr;
    jVector<UIElement*> m_childs;
    int m_expand = UI_EXPAND_NONE;
    int m_align = UI_ALIGN_START;
    int m_preferred_width = 0;
    int m_preferred_height = 0;
    float m_width_weight = 1.0f;
    float m_height_weight = 1.0f;
    bool m_hidden = false;
    bool m_mask_background = false;
    vec4 m_background{0.0f, 0.0f, 0.0f, 1.0f};
};

template <class Event>
bool UIElement::dispatch_to_childs(bool (UIElement::*handler)(const Event*), const Event* e)
{
    for (int i = 0; i < m_childs.size(); ++i) {
        UIElement* child = m_childs[i];
        if (!child->m_hidden && (child->*handler)(e))
            return true;
    }
    return false;
}
