#include "editor/UndoStack.h"

#include <QUndoCommand>
#include <QUndoStack>

#include "editor/UndoCommand.h"
#include "kit/jAllocator.h"

namespace {

// Runs one of our commands for the toolkit's stack. The action already ran when the command is
// pushed, so the first redo, which the toolkit's push makes, is skipped.
class QtCommand : public QUndoCommand {
public:
    explicit QtCommand(UndoCommand* command) : m_command(command)
    {
        setText(QString::fromUtf8(command->name().c_str()));
    }
    ~QtCommand() override { jDelete(m_command, "engine/editor/UndoStack", __LINE__, "QtCommand::~QtCommand"); }
    QtCommand(const QtCommand&) = delete;
    QtCommand& operator=(const QtCommand&) = delete;

    void undo() override { m_command->undo(); }
    void redo() override
    {
        if (m_pushed)
            m_command->redo();
        m_pushed = true;
    }

private:
    UndoCommand* m_command;
    bool m_pushed = false;
};

jString toText(const QString& text)
{
    return jString(text.toUtf8().constData());
}

} // namespace

class UndoStackImpl {
public:
    QUndoStack stack;
    Function<void()> listener;

    void changed()
    {
        if (listener)
            listener();
    }
};

UndoStack::UndoStack() : m_impl(new UndoStackImpl)
{
    QObject::connect(&m_impl->stack, &QUndoStack::indexChanged, [this](int) { m_impl->changed(); });
    QObject::connect(&m_impl->stack, &QUndoStack::cleanChanged, [this](bool) { m_impl->changed(); });
}

UndoStack::~UndoStack()
{
    m_impl->listener.reset();
    delete m_impl;
}

void UndoStack::push(UndoCommand* command)
{
    if (command)
        m_impl->stack.push(new QtCommand(command));
}

bool UndoStack::undo()
{
    if (!canUndo())
        return false;
    m_impl->stack.undo();
    return true;
}

bool UndoStack::redo()
{
    if (!canRedo())
        return false;
    m_impl->stack.redo();
    return true;
}

bool UndoStack::canUndo() const
{
    return m_impl->stack.canUndo();
}

bool UndoStack::canRedo() const
{
    return m_impl->stack.canRedo();
}

jString UndoStack::undoName() const
{
    return toText(m_impl->stack.undoText());
}

jString UndoStack::redoName() const
{
    return toText(m_impl->stack.redoText());
}

int UndoStack::count() const
{
    return m_impl->stack.count();
}

int UndoStack::index() const
{
    return m_impl->stack.index();
}

void UndoStack::setLimit(int steps)
{
    if (m_impl->stack.count() == 0)
        m_impl->stack.setUndoLimit(steps);
}

void UndoStack::clear()
{
    m_impl->stack.clear();
    m_impl->changed();
}

void UndoStack::setClean()
{
    m_impl->stack.setClean();
    m_impl->changed();
}

void UndoStack::resetClean()
{
    m_impl->stack.resetClean();
    m_impl->changed();
}

bool UndoStack::isClean() const
{
    return m_impl->stack.isClean();
}

void UndoStack::setListener(Function<void()> listener)
{
    m_impl->listener = listener;
}
