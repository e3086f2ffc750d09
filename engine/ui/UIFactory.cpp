#include "ui/UIFactory.h"

namespace {

// Process-wide like the message manager it stands for; its handler is registered once and lives
// until replaced.
Function<void(int)>& poster()
{
    static Function<void(int)> current;
    return current;
}

} // namespace

void setValueMessagePoster(const Function<void(int)>& value)
{
    poster() = value;
}

void postValueMessage(int id)
{
    if (id > 0)
        poster()(id);
}
