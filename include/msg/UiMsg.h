#pragma once

// A host message: a number from the editor's event vocabulary. Records are made by the message
// manager for one delivery and must not be kept by receivers.
class UiMsg {
public:
    explicit UiMsg(int id) : m_id(id) {}
    virtual ~UiMsg() = default;

    int getID() const { return m_id; }

private:
    int m_id;
};

// A host message that carries a pointer; receivers recognise it with a run-time type check
// (dynamic_cast<UiMsgPTR*>).
class UiMsgPTR : public UiMsg {
public:
    UiMsgPTR(int id, void* ptr) : UiMsg(id), m_ptr(ptr) {}

    void* getPtr() const { return m_ptr; }

private:
    void* m_ptr;
};
