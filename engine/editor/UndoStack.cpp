#include "editor/UndoStack.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include <QUndoCommand>
#include <QUndoStack>

#include "editor/UndoCommand.h"
#include "kit/jAllocator.h"

namespace {

// Runs one of our commands for the toolkit's stack. The action already ran when the command is
// pushed, so the first redo, which the toolkit's push makes, is skipped. The command is shared so
// that a trimmed history can hand it to a new wrapper.
class QtCommand : public QUndoCommand {
public:
    explicit QtCommand(std::shared_ptr<UndoCommand> command) : m_command(std::move(command))
    {
        setText(QString::fromUtf8(m_command->name().c_str()));
    }

    void undo() override { m_command->undo(); }
    void redo() override
    {
        if (m_pushed)
            m_command->redo();
        m_pushed = true;
    }
    const std::shared_ptr<UndoCommand>& command() const { return m_command; }

private:
    std::shared_ptr<UndoCommand> m_command;
    bool m_pushed = false;
};

std::shared_ptr<UndoCommand> shared(UndoCommand* command)
{
    return std::shared_ptr<UndoCommand>(command, [](UndoCommand* done) {
        jDelete(done, "engine/editor/UndoStack", __LINE__, "QtCommand::~QtCommand");
    });
}

const std::shared_ptr<UndoCommand>& sharedAt(const QUndoStack& stack, int i)
{
    return static_cast<const QtCommand*>(stack.command(i))->command();
}

jString toText(const QString& text)
{
    return jString(text.toUtf8().constData());
}

} // namespace

class UndoStackImpl {
public:
    QUndoStack stack;
    Function<void()> listener;
    size_t byte_limit = 0;

    void changed()
    {
        if (listener)
            listener();
    }

    // Right after a push (no step is undone): frees the oldest steps while the rest hold more than
    // the limit. The toolkit's stack cannot drop its oldest steps, so it is filled again with the
    // kept ones, the clean state where it was.
    void trim()
    {
        if (byte_limit == 0)
            return;
        size_t held = 0;
        int first = stack.count();
        while (first > 0 && held + sharedAt(stack, first - 1)->bytes() <= byte_limit)
            held += sharedAt(stack, --first)->bytes();
        const int drop = std::min(first, stack.count() - 1);
        if (drop <= 0)
            return;
        std::vector<std::shared_ptr<UndoCommand>> kept;
        for (int i = drop; i < stack.count(); ++i)
            kept.push_back(sharedAt(stack, i));
        const int clean = stack.cleanIndex() - drop;
        stack.clear();
        if (clean < 0)
            stack.resetClean();
        for (size_t i = 0; i < kept.size(); ++i) {
            if (int(i) == clean)
                stack.setClean();
            stack.push(new QtCommand(kept[i]));
        }
        if (clean == int(kept.size()))
            stack.setClean();
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
    if (!command)
        return;
    m_impl->stack.push(new QtCommand(shared(command)));
    m_impl->trim();
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

void UndoStack::setByteLimit(size_t bytes)
{
    m_impl->byte_limit = bytes;
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
