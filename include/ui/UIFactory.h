#pragma once

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <type_traits>

#include "kit/SignalSlot.h"
#include "kit/jString.h"
#include "kit/jVector.h"
#include "msg/MsgMngr.h"
#include "ui/UIButton.h"
#include "ui/UICheckBox.h"
#include "ui/UIEditLine.h"
#include "ui/UIEditLineWheel.h"
#include "ui/UIElement.h"

// Value widgets: small label-less editors that show a value read through a getter of an owning
// object and write the user's input back through its setter, so that a panel is laid out as rows of
// a label and a live value. Each widget puts its editor into a parent layout (which then owns the
// editor); the widget itself belongs to whoever made it and is released before the layout.
//
// The user's edit is written through the setter, the editor then shows what the getter returns
// (the owner may have clamped it), the change listeners hear that value in the order they were
// added, and the widget's message id, when positive, is posted as a host message, so that the
// editor's views catch up with the edit.

// The getter and setter of an owning object, bound to it. A missing setter (null) makes the value
// read-only; a missing getter reads T().
template <class T>
class DataOper {
public:
    DataOper() = default;
    // Binds getter and setter, member functions of owner (or null); any getter whose result converts
    // to T and any setter taking T (by value or reference) will do.
    template <class C, class S, class G>
    DataOper(C* owner, S setter, G getter) : m_owner(owner)
    {
        if constexpr (!std::is_null_pointer_v<G>) {
            if (owner && getter)
                m_get = [owner, getter]() -> T { return T(std::invoke(getter, owner)); };
        }
        if constexpr (!std::is_null_pointer_v<S>) {
            if (owner && setter)
                m_set = [owner, setter](const T& value) { std::invoke(setter, owner, value); };
        }
    }

    // Returns the owner's current value, or T() without a getter.
    T get() const { return m_get(); }
    // Writes value through the setter; does nothing when the value is read-only.
    void set(const T& value) const { m_set(value); }
    bool isReadOnly() const { return m_set.empty(); }
    void* getOwner() const { return m_owner; }

private:
    void* m_owner = nullptr;
    Function<T()> m_get;
    Function<void(const T&)> m_set;
};

// The common base of the value widgets: an identifier, the change listeners, the data operator and
// the editor element.
template <class T>
class UIWrap {
public:
    UIWrap(const DataOper<T>& data, int message) : m_data(data), m_message(message) {}
    // Frees the listener list; the editor stays with its layout.
    virtual ~UIWrap() { m_listeners.release(); }
    UIWrap(const UIWrap&) = delete;
    UIWrap& operator=(const UIWrap&) = delete;

    // Shows the getter's value unless the user is typing into the editor (see each widget).
    virtual void refresh() = 0;
    // Shows value and announces it to the listeners; does nothing when both the getter and the
    // editor already hold it. Writing through the setter is the caller's step.
    virtual void setValue(const T& value) = 0;

    // Appends a listener; listeners are called in the order they were added.
    void addListener(const Function<void(const T&)>& listener) { m_listeners.append(listener); }
    int getNumListeners() const { return m_listeners.size(); }
    int getID() const { return m_id; }
    void setID(int id) { m_id = id; }
    // The host message posted after the user's edit was written; 0 or less posts nothing.
    int getMessage() const { return m_message; }
    UIElement* getEditor() const { return m_editor; }
    const DataOper<T>& getData() const { return m_data; }

protected:
    void notify(const T& value) const
    {
        for (int i = 0; i < m_listeners.size(); ++i)
            m_listeners[i](value);
    }

    // The refresh rule, for a widget whose shown() parses the editor and show(v) writes it.
    template <class Self>
    void refresh_from_source(Self* self, bool skipWhenFocused)
    {
        if (skipWhenFocused && m_editor && m_editor->hasFocus())
            return;
        T value = m_data.get();
        if (!(self->getShown() == value))
            self->show(value);
    }

    // The set-value rule.
    template <class Self>
    void set_value(Self* self, const T& value)
    {
        if (m_data.get() == value && self->getShown() == value)
            return;
        self->show(value);
        notify(value);
    }

    // The user committed typed: write it, show what the owner kept, announce it and post the
    // message; returns true. An unchanged or read-only value only settles the editor and returns
    // false.
    template <class Self>
    bool apply_edit(Self* self, const T& typed)
    {
        if (m_data.isReadOnly() || m_data.get() == typed) {
            refresh_from_source(self, false);
            return false;
        }
        m_data.set(typed);
        T kept = m_data.get();
        if (!(self->getShown() == kept))
            self->show(kept);
        notify(kept);
        if (m_message > 0)
            MsgMngr::get()->notifyHelper(m_message);
        return true;
    }

    // The user confirmed or left a text field: commit what they typed; when the text is still what
    // the widget last wrote (nothing was typed), show the source again instead, so that leaving a
    // field never writes a stale value back over a newer one. Either way the text then shown becomes
    // written, so that typing the earlier value again is an edit too.
    template <class Self>
    void finish_typing(Self* self, jString& written)
    {
        const jString& text = static_cast<const UIEditLine*>(m_editor)->getText();
        if (text == written)
            refresh_from_source(self, false);
        else
            apply_edit(self, self->getShown());
        written = text; // the field's own text, as the commit left it
    }

    int m_id = -1;
    jVector<Function<void(const T&)>> m_listeners;
    DataOper<T> m_data;
    UIElement* m_editor = nullptr;
    int m_message;
};

// A float in an edit line whose value the mouse wheel and a horizontal drag also change.
class UIFloat : public UIWrap<float> {
public:
    // Puts a number field showing getter's value into parent; message is posted after each edit the
    // user commits (see UIWrap).
    template <class C, class S, class G>
    UIFloat(C* owner, S setter, G getter, UIElement* parent, int message, const char* label)
        : UIWrap<float>(DataOper<float>(owner, setter, getter), message)
    {
        auto* line = jNew<UIEditLineWheel>("ui/UIFactory", __LINE__, "UIFloat::UIFloat", parent->getRoot(), label);
        m_editor = line;
        line->setMode(UI_EDIT_NUMBER);
        line->setReadOnly(m_data.isReadOnly());
        show(m_data.get());
        line->sigCommit = bind(&UIFloat::on_commit, this);
        line->sigFocus = bind(&UIFloat::on_focus, this);
        parent->addChild(line, UI_EXPAND_NONE, -1);
    }

    // Shows the getter's value unless the field has the keyboard focus.
    void refresh() override { refresh_from_source(this, true); }
    // See UIWrap::setValue.
    void setValue(const float& value) override { set_value(this, value); }

    // Returns the value the field shows (its text read as a number).
    float getShown() const { return static_cast<float>(std::atof(edit()->getText().c_str())); }
    UIEditLineWheel* edit() const { return static_cast<UIEditLineWheel*>(m_editor); }

private:
    friend class UIWrap<float>;
    void show(float value)
    {
        m_written = ToString(value);
        edit()->setText(m_written.c_str());
    }
    void on_commit() { finish_typing(this, m_written); }
    void on_focus(const UIEventFocus* e, UIElement*)
    {
        if (!e->focused)
            finish_typing(this, m_written);
    }

    jString m_written;
};

// An integer in an edit line, in decimal or (base mode 1) hexadecimal, shown as "0x1F". The label
// names the field in its tooltip.
template <class I>
class UIIntBase : public UIWrap<I> {
public:
    // Puts an integer field showing getter's value into parent; base 1 shows and reads hexadecimal.
    template <class C, class S, class G>
    UIIntBase(C* owner, S setter, G getter, UIElement* parent, int message, const char* label, int base = 0)
        : UIWrap<I>(DataOper<I>(owner, setter, getter), message), m_base(base)
    {
        auto* line = jNew<UIEditLine>("ui/UIFactory", __LINE__, "UIIntBase::UIIntBase", parent->getRoot(), "");
        this->m_editor = line;
        line->setTooltip(label);
        line->setMode(m_base == 1 ? UI_EDIT_HEX : UI_EDIT_INTEGER);
        line->setReadOnly(this->m_data.isReadOnly());
        show(this->m_data.get());
        line->sigCommit = bind(&UIIntBase::on_commit, this);
        line->sigFocus = bind(&UIIntBase::on_focus, this);
        parent->addChild(line, UI_EXPAND_NONE, -1);
    }

    // Shows the getter's value unless the field has the keyboard focus.
    void refresh() override { this->refresh_from_source(this, true); }
    // See UIWrap::setValue.
    void setValue(const I& value) override { this->set_value(this, value); }

    // Returns the value the field shows: hexadecimal read with strtoul in base mode 1, else atoi.
    I getShown() const
    {
        const char* text = edit()->getText().c_str();
        if (m_base == 1)
            return static_cast<I>(std::strtoul(text, nullptr, 16));
        return static_cast<I>(std::atoi(text));
    }
    int getBase() const { return m_base; }
    UIEditLine* edit() const { return static_cast<UIEditLine*>(this->m_editor); }

private:
    friend class UIWrap<I>;
    void show(I value)
    {
        char text[32];
        if (m_base == 1)
            std::snprintf(text, sizeof(text), "0x%lX", static_cast<unsigned long>(value) & 0xffffffffUL);
        else
            std::snprintf(text, sizeof(text), "%ld", static_cast<long>(value));
        m_written = text;
        edit()->setText(text);
    }
    void on_commit() { this->finish_typing(this, m_written); }
    void on_focus(const UIEventFocus* e, UIElement*)
    {
        if (!e->focused)
            this->finish_typing(this, m_written);
    }

    int m_base;
    jString m_written;
};

// A check box that follows a boolean getter, also while it has the keyboard focus.
class UIBool : public UIWrap<bool> {
public:
    // Puts a check box with the label text into parent, checked as the getter says.
    template <class C, class S, class G>
    UIBool(C* owner, S setter, G getter, UIElement* parent, int message, const char* label)
        : UIWrap<bool>(DataOper<bool>(owner, setter, getter), message)
    {
        auto* box = jNew<UICheckBox>("ui/UIFactory", __LINE__, "UIBool::UIBool", parent->getRoot(), label);
        m_editor = box;
        box->setChecked(m_data.get());
        box->sigChanged = bind(&UIBool::on_changed, this);
        parent->addChild(box, UI_EXPAND_NONE, -1);
    }

    // Shows the getter's value; a check box has no typing to protect, so focus does not matter.
    void refresh() override { refresh_from_source(this, false); }
    // See UIWrap::setValue.
    void setValue(const bool& value) override { set_value(this, value); }

    bool getShown() const { return box()->isChecked(); }
    UICheckBox* box() const { return static_cast<UICheckBox*>(m_editor); }

private:
    friend class UIWrap<bool>;
    void show(bool value) { box()->setChecked(value); }
    void on_changed(const UIEventChanged*, UIElement*) { apply_edit(this, getShown()); }
};

// A text line, with an optional button beside it that applies the text and announces it again.
class UIString : public UIWrap<jString> {
public:
    // Puts a text field showing getter's text into parent, and a button labelled buttonText after
    // it when buttonText is not empty. Without a setter the field is read-only.
    template <class C, class S, class G>
    UIString(C* owner, S setter, G getter, UIElement* parent, int message, const char* label,
             const char* buttonText = "")
        : UIWrap<jString>(DataOper<jString>(owner, setter, getter), message)
    {
        auto* line = jNew<UIEditLine>("ui/UIFactory", __LINE__, "UIString::UIString", parent->getRoot(), "");
        m_editor = line;
        // The field shows the value itself; the label names it when the pointer rests on it.
        line->setTooltip(label);
        line->setMode(UI_EDIT_TEXT);
        line->setText(m_data.get().c_str());
        line->setReadOnly(m_data.isReadOnly());
        line->sigChanged = bind(&UIString::on_changed, this);
        parent->addChild(line, UI_EXPAND_NONE, -1);
        if (buttonText && *buttonText) {
            m_button = jNew<UIButton>("ui/UIFactory", __LINE__, "UIString::UIString", parent->getRoot(), buttonText);
            m_button->sigClick = bind(&UIString::on_button, this);
            parent->addChild(m_button, UI_EXPAND_NONE, -1);
        }
    }

    // Shows the getter's text unless the field has the keyboard focus.
    void refresh() override { refresh_from_source(this, true); }
    // See UIWrap::setValue.
    void setValue(const jString& value) override { set_value(this, value); }

    jString getShown() const { return edit()->getText(); }
    UIEditLine* edit() const { return static_cast<UIEditLine*>(m_editor); }
    // The button beside the field, or null when it has none.
    UIButton* getButton() const { return m_button; }

private:
    friend class UIWrap<jString>;
    void show(const jString& value) { edit()->setText(value.c_str()); }
    void on_changed(const UIEventChanged*, UIElement*) { apply_edit(this, getShown()); }
    void on_button(const UIEventMouse*, UIElement*)
    {
        if (!apply_edit(this, getShown()))
            notify(m_data.get());
    }

    UIButton* m_button = nullptr;
};
