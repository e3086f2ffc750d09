// Fuzzes the document reader and the canonical writer: whatever the reader accepts must write,
// read back to an equal tree and write again to the same bytes, and read with rows of numbers to a
// tree that is equal and writes the same bytes; whatever it rejects must say why.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jLog.h"

namespace {

// Rejections come by the thousand: keep them off stderr.
[[maybe_unused]] const bool stderr_was_on = jLog::setStderr(false);

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    mjl reader;
    if (!reader.parse(reinterpret_cast<const char*>(data), size, "fuzz")) {
        if (reader.getError().empty() || reader.getRoot())
            std::abort();
        return 0;
    }
    std::string first;
    if (!mjl::write(reader.getRoot(), first))
        std::abort();
    mjl again;
    if (!again.parse(first.data(), first.size(), "first write") || !again.getRoot()->equals(*reader.getRoot()))
        std::abort();
    std::string second;
    if (!mjl::write(again.getRoot(), second) || second != first)
        std::abort();
    mjl rows;
    std::string third;
    if (!rows.parse(reinterpret_cast<const char*>(data), size, "fuzz", mjl::NUMBER_ROWS) ||
        !rows.getRoot()->equals(*reader.getRoot()) || !mjl::write(rows.getRoot(), third) || third != first)
        std::abort();
    return 0;
}
